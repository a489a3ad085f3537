#include "io/packedFile.h"
#include "io/FileError.h"
#include "io/textHelpers.h"
#include "support/expect.h"
#include "support/packing.h"
#include "support/sampleData.h"

#include <gtest/gtest.h>

namespace marvek::test {
namespace {

Bytes contentsOf(const clsDataBuffer& buffer) {
    return {buffer.data().begin(), buffer.data().end()};
}

clsDataBuffer bufferOf(const Bytes& bytes) {
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
    const Bytes level = levelLike(5000, 11);
    const Bytes packed = pack(level, 3);
};

TEST_F(PackedFile, ReadsBothMagicsAndPlainFiles) {
    writeBytes(folder / "IMP", packed);
    writeBytes(folder / "ATN", withMagic(packed, imploder::kMagicAtn));
    writeBytes(folder / "plain", level);
    writeBytes(folder / "tiny", {'I', 'M'});
    EXPECT_FALSE(isFileIMP(folder / "plain") || isFileIMP(folder / "tiny"));
    EXPECT_THROW(isFileIMP(folder / "missing"), FileError);
    for (const char* name : {"IMP", "ATN"}) {
        EXPECT_TRUE(isFileIMP(folder / name));
        const ExplodeResult result = explodeFile(folder / name);
        ASSERT_TRUE(result.buffer) << result.failure;
        EXPECT_EQ(contentsOf(*result.buffer), level);
        clsBitStream bits = getFileBits(folder / name);
        EXPECT_EQ(bits.Size(), static_cast<std::int32_t>(level.size()));
        EXPECT_EQ(bits.getInteger(), static_cast<std::int16_t>(level[0] << 8 | level[1]));
    }
    std::string failure = "untouched";
    EXPECT_EQ(contentsOf(*getFileBits(folder / "plain", &failure).bufferGet()), level);
    EXPECT_EQ(failure, "untouched");
}

TEST_F(PackedFile, UnusableFilesGiveAnEmptyStreamAndTheReason) {
    for (std::uint32_t stored = 0; stored <= 3; ++stored) {
        auto file = pack({'a', 'b', 'c'}, 0);
        imploder::writeBigEndian32(&file[4], stored);
        resealChecksum(file);
        writeBytes(folder / "short", file);
        std::string failure;
        EXPECT_EQ(getFileBits(folder / "short", &failure).Size(), 0);
        EXPECT_FALSE(failure.empty());
    }
    auto corrupt = packed;
    corrupt.back() ^= 0x40;
    writeBytes(folder / "corrupt", corrupt);
    const ExplodeResult result = explodeFile(folder / "corrupt");
    EXPECT_FALSE(result.buffer);
    EXPECT_EQ(result.failure, impStatusText(IMP_ERROR_CHECKSUM));
    std::string failure;
    EXPECT_EQ(getFileBits(folder / "corrupt", &failure).Size(), 0);
    EXPECT_EQ(failure, result.failure);
}

TEST_F(PackedFile, SavingKeepsTheTargetsMagic) {
    const auto old = pack({'o', 'l', 'd', '!'}, 0);
    writeBytes(folder / "atn", withMagic(old, imploder::kMagicAtn));
    writeBytes(folder / "imp", old);
    writeBytes(folder / "plain", {'p', 'l', 'a', 'i', 'n'});
    for (const auto& [name, magic] :
         {std::pair{"atn", "ATN!"}, {"imp", "IMP!"}, {"plain", "IMP!"}, {"new", "IMP!"}}) {
        ASSERT_TRUE(implodeToFile(bufferOf(level), folder / name));
        const auto written = readBytes(folder / name);
        EXPECT_EQ(written.size(),
                  imploder::packedFileLength(imploder::readBigEndian32(&written[8])));
        EXPECT_EQ(unpackWithAncient(written), level) << name;
        EXPECT_EQ(unpackWithOurs(written).data, level) << name;
        EXPECT_EQ(magicOf(folder / name), magic);
    }
}

TEST_F(PackedFile, FailedSaveLeavesTheOldFile) {
    const Bytes old{'k', 'e', 'e', 'p'};
    writeBytes(folder / "target", old);
    clsDataBuffer empty;
    empty.Create(0);
    const auto error = failureOf<FileError>([&] { implodeToFile(empty, folder / "target"); });
    EXPECT_TRUE(error && error->path() == folder / "target");
    EXPECT_EQ(readBytes(folder / "target"), old);
    EXPECT_THROW(implodeToFile(bufferOf(level), folder / "no-such-folder" / "x"), FileError);
}

using namespace std::string_literals;

TEST(TextHelpers, StringToLongPutsTheFirstCharacterLowestAndStringsAreCutOrPadded) {
    EXPECT_EQ(stringToLong("IMP!"), 0x21504D49);
    EXPECT_EQ(stringToLong("A"), 0x41);
    EXPECT_EQ(stringToLong("\xFF\xFF\xFF\xFF"), -1);
    // stripFile keeps the folder.
    EXPECT_EQ(stripFile("C:\\a\\b.bin"), "C:\\a");
    EXPECT_EQ(stripFile("b.bin"), "b.bin");
    EXPECT_EQ(stripFile("data\\x/L1MA1"), "data\\x");
    EXPECT_EQ(stripFile("/L1MA1"), "");
    // stripNull removes only trailing NULs, padRight never cuts.
    EXPECT_EQ(stripNull("ab\0\0"s), "ab");
    EXPECT_EQ(stripNull("a\0b\0"s), "a\0b"s);
    EXPECT_EQ(stripNull("\0\0"s), "\0\0"s);
    EXPECT_EQ(padRight("ab", 4, "yz"), "abyy");
    EXPECT_EQ(padRight("abcdef", 4, "yz"), "abcdef");
    EXPECT_EQ(padRight("ab", -3, "x"), "ab");
    EXPECT_EQ(padRight("ab", 5, ""), "ab");
}

} // namespace
} // namespace marvek::test
