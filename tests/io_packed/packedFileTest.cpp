#include "io/packedFile.h"
#include "imploder/sampleData.h"
#include "imploder/testEncoder.h"
#include "imploder/unpackers.h"
#include "io/FileError.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace marvek {
namespace {

using test::readBytes;
using test::TempDir;
using test::writeBytes;
using testing::TestEncoder;

std::vector<std::uint8_t> contentsOf(const clsDataBuffer& buffer) {
    return {buffer.data().begin(), buffer.data().end()};
}

clsDataBuffer bufferOf(const std::vector<std::uint8_t>& bytes) {
    clsDataBuffer buffer;
    buffer.Create(static_cast<std::int32_t>(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), buffer.data().begin());
    return buffer;
}

std::string magicOf(const std::filesystem::path& path) {
    const auto bytes = readBytes(path);
    return {bytes.begin(), bytes.begin() + 4};
}

class PackedFile : public ::testing::Test {
protected:
    TempDir folder;
    const std::vector<std::uint8_t> level = testing::levelLikeBytes(5000, 11);
};

TEST_F(PackedFile, RecognisesBothMagics) {
    writeBytes(folder / "imp", TestEncoder::classic(3).pack(level));
    writeBytes(folder / "atn", TestEncoder::classic(3).pack(level, imploder::kMagicAtn));
    writeBytes(folder / "plain", level);
    writeBytes(folder / "tiny", {'I', 'M'});
    EXPECT_TRUE(isFileIMP(folder / "imp"));
    EXPECT_TRUE(isFileIMP(folder / "atn"));
    EXPECT_FALSE(isFileIMP(folder / "plain"));
    EXPECT_FALSE(isFileIMP(folder / "tiny"));
    EXPECT_THROW(isFileIMP(folder / "missing"), FileError);
}

TEST_F(PackedFile, ExplodesAndReadsBits) {
    for (const auto& magic : {imploder::kMagicImp, imploder::kMagicAtn}) {
        writeBytes(folder / "L1MA1", TestEncoder::classic(7).pack(level, magic));
        const ExplodeResult result = explodeFile(folder / "L1MA1");
        ASSERT_TRUE(result.buffer) << result.failure;
        EXPECT_EQ(contentsOf(*result.buffer), level);
        clsBitStream bits = getFileBits(folder / "L1MA1");
        EXPECT_EQ(bits.Size(), static_cast<std::int32_t>(level.size()));
        EXPECT_EQ(bits.getInteger(), static_cast<std::int16_t>(level[0] << 8 | level[1]));
    }
}

TEST_F(PackedFile, PlainFilesAreReadAsTheyAre) {
    writeBytes(folder / "plain", level);
    std::string failure = "untouched";
    clsBitStream bits = getFileBits(folder / "plain", &failure);
    EXPECT_EQ(contentsOf(*bits.bufferGet()), level);
    EXPECT_EQ(failure, "untouched");
}

TEST_F(PackedFile, UnusableFilesGiveAnEmptyStreamAndTheReason) {
    for (std::uint32_t stored = 0; stored <= 3; ++stored) {
        auto file = TestEncoder::classic(0).pack({'a', 'b', 'c'});
        imploder::writeBigEndian32(&file[4], stored);
        testing::resealChecksum(file);
        writeBytes(folder / "short", file);
        std::string failure;
        EXPECT_EQ(getFileBits(folder / "short", &failure).Size(), 0);
        EXPECT_FALSE(failure.empty());
    }
    auto corrupt = TestEncoder::classic(0).pack(level);
    corrupt.back() ^= 0x40;
    writeBytes(folder / "corrupt", corrupt);
    const ExplodeResult result = explodeFile(folder / "corrupt");
    EXPECT_FALSE(result.buffer);
    EXPECT_EQ(result.failure, impStatusText(IMP_ERROR_CHECKSUM));
    std::string failure;
    EXPECT_EQ(getFileBits(folder / "corrupt", &failure).Size(), 0);
    EXPECT_EQ(failure, result.failure);
}

TEST_F(PackedFile, ImplodeWritesAFileAncientAccepts) {
    ASSERT_TRUE(implodeToFile(bufferOf(level), folder / "new"));
    const auto written = readBytes(folder / "new");
    EXPECT_EQ(magicOf(folder / "new"), "IMP!");
    const std::size_t end = imploder::readBigEndian32(&written[8]);
    EXPECT_EQ(written.size(), imploder::packedFileLength(end));
    EXPECT_EQ(testing::unpackWithAncient(written), level);
}

TEST_F(PackedFile, SavingKeepsTheTargetsMagic) {
    writeBytes(folder / "atn",
               TestEncoder::classic(0).pack({'o', 'l', 'd', '!'}, imploder::kMagicAtn));
    writeBytes(folder / "imp", TestEncoder::classic(0).pack({'o', 'l', 'd', '!'}));
    writeBytes(folder / "plain", {'p', 'l', 'a', 'i', 'n'});
    for (const char* name : {"atn", "imp", "plain"}) {
        implodeToFile(bufferOf(level), folder / name);
        EXPECT_EQ(testing::unpackWithAncient(readBytes(folder / name)), level) << name;
        EXPECT_EQ(testing::unpackWithOurs(readBytes(folder / name)).data, level) << name;
    }
    EXPECT_EQ(magicOf(folder / "atn"), "ATN!");
    EXPECT_EQ(magicOf(folder / "imp"), "IMP!");
    EXPECT_EQ(magicOf(folder / "plain"), "IMP!");
}

TEST_F(PackedFile, FailedSaveLeavesTheOldFile) {
    const std::vector<std::uint8_t> old{'k', 'e', 'e', 'p'};
    writeBytes(folder / "target", old);
    clsDataBuffer empty;
    empty.Create(0);
    try {
        implodeToFile(empty, folder / "target");
        FAIL() << "an empty buffer was packed";
    } catch (const FileError& error) {
        EXPECT_EQ(error.path(), folder / "target");
    }
    EXPECT_EQ(readBytes(folder / "target"), old);
    EXPECT_THROW(implodeToFile(bufferOf(level), folder / "no-such-folder" / "x"), FileError);
}

} // namespace
} // namespace marvek
