#include "io/clsDataBuffer.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

namespace marvek {
namespace {

namespace fs = std::filesystem;

class TemporaryFolder {
public:
    TemporaryFolder()
        : path_(fs::temp_directory_path() /
                ("marvek-buffer-" + std::to_string(reinterpret_cast<std::uintptr_t>(this)))) {
        fs::create_directories(path_);
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    const fs::path& path() const { return path_; }

private:
    fs::path path_;
};

std::vector<std::uint8_t> fileBytes(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void writeBytes(const fs::path& path, const std::vector<std::uint8_t>& bytes) {
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
}

TEST(clsDataBuffer, WithoutStorageSizeAndAccessAreErrors) {
    clsDataBuffer buffer;
    EXPECT_FALSE(buffer.hasStorage());
    EXPECT_THROW((void)buffer.Size(), std::logic_error);
    EXPECT_THROW((void)buffer.getByte(0), std::out_of_range);
    EXPECT_TRUE(buffer.data().empty());
    EXPECT_THROW(buffer.writeToFile("unused"), std::logic_error);
}

TEST(clsDataBuffer, SizeCountsDataBytesAndTheSpareIsAddressable) {
    clsDataBuffer buffer;
    buffer.Create(3);
    EXPECT_EQ(buffer.Size(), 3);
    EXPECT_EQ(buffer.data().size(), 3u);
    buffer.putByte(3, 0xAB);
    EXPECT_EQ(buffer.getByte(3), 0xAB);
    EXPECT_THROW(buffer.putByte(4, 1), std::out_of_range);
    EXPECT_THROW(buffer.putByte(-1, 1), std::out_of_range);
    EXPECT_THROW(buffer.Create(-1), std::out_of_range);
}

TEST(clsDataBuffer, ResizeKeepsWhatFitsAndZeroesNewBytes) {
    clsDataBuffer buffer;
    buffer.Create(2);
    for (std::int32_t i = 0; i <= 2; ++i) {
        buffer.putByte(i, static_cast<std::uint8_t>(i + 1));
    }
    buffer.Resize(1);
    EXPECT_EQ(buffer.Size(), 1);
    EXPECT_EQ(buffer.getByte(1), 2);
    buffer.Resize(4);
    EXPECT_EQ(buffer.getByte(0), 1);
    EXPECT_EQ(buffer.getByte(2), 0);
    EXPECT_EQ(buffer.getByte(4), 0);
    buffer.Create(1);
    EXPECT_EQ(buffer.getByte(0), 0);
}

TEST(clsDataBuffer, ReadsAFileWithATrailingZeroAndWritesTheSpareBack) {
    TemporaryFolder folder;
    const auto in = folder.path() / "in";
    writeBytes(in, {0x42, 0x4F, 0x44});

    clsDataBuffer buffer;
    buffer.readFromFile(in);
    ASSERT_EQ(buffer.Size(), 3);
    EXPECT_EQ(buffer.getByte(2), 0x44);
    EXPECT_EQ(buffer.getByte(3), 0);
    EXPECT_EQ(std::vector<std::uint8_t>(buffer.data().begin(), buffer.data().end()),
              (std::vector<std::uint8_t>{0x42, 0x4F, 0x44}));

    const auto out = folder.path() / "out";
    writeBytes(out, std::vector<std::uint8_t>(100, 0xEE));
    buffer.writeToFile(out);
    EXPECT_EQ(fileBytes(out), (std::vector<std::uint8_t>{0x42, 0x4F, 0x44, 0x00}));
}

TEST(clsDataBuffer, MissingFileLeavesTheBufferAlone) {
    TemporaryFolder folder;
    clsDataBuffer buffer;
    buffer.Create(1);
    buffer.putByte(0, 7);
    buffer.readFromFile(folder.path() / "missing");
    EXPECT_EQ(buffer.Size(), 1);
    EXPECT_EQ(buffer.getByte(0), 7);

    clsDataBuffer empty;
    empty.readFromFile(folder.path() / "missing");
    EXPECT_FALSE(empty.hasStorage());
}

TEST(clsDataBuffer, EmptyFileGivesSizeZero) {
    TemporaryFolder folder;
    const auto path = folder.path() / "empty";
    writeBytes(path, {});
    clsDataBuffer buffer;
    buffer.readFromFile(path);
    EXPECT_EQ(buffer.Size(), 0);
    EXPECT_EQ(buffer.getByte(0), 0);
}

} // namespace
} // namespace marvek
