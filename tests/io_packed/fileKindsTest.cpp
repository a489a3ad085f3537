#include "io/FileError.h"
#include "io/packedFile.h"
#include "io/readFile.h"
#include "native/fileBytes.h"
#include "support/TempDir.h"
#include "support/packing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <sys/stat.h>

namespace marvek::test {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

// The reason a read gives, or "" when it did not throw.
std::string reasonOf(const std::function<void()>& read) {
    try {
        read();
    } catch (const FileError& error) {
        return error.reason();
    }
    return {};
}

// Every reader that takes a path from the user, asked about one file.
void expectEveryReaderRefuses(const fs::path& path, const std::string& reason) {
    EXPECT_THAT(reasonOf([&] { readWholeFile(path); }), HasSubstr(reason));
    EXPECT_THAT(reasonOf([&] { readFileStart(path, 4); }), HasSubstr(reason));
    EXPECT_THAT(reasonOf([&] { isFileIMP(path); }), HasSubstr(reason));
    EXPECT_THAT(reasonOf([&] { getFileBits(path); }), HasSubstr(reason));
    EXPECT_THAT(reasonOf([&] { readPackedBytes(path); }), HasSubstr(reason));
    EXPECT_THAT(reasonOf([&] { clsDataBuffer().readFromFile(path); }), HasSubstr(reason));
    EXPECT_FALSE(readFileBytes(path.c_str(), 1 << 20).has_value());
}

// Without a writer, opening a named pipe for reading waits for ever; these
// return at once or the test never ends.
TEST(FileKinds, NamedPipesAreRefusedWithoutWaiting) {
    const TempDir folder;
    const fs::path pipe = folder / "L1MA1";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    expectEveryReaderRefuses(pipe, "not a regular file but a named pipe (FIFO)");
    EXPECT_THAT(reasonOf([&] { readWholeFile(folder.path()); }), HasSubstr("is a folder"));
}

TEST(FileKinds, UnreadableFilesSayTheSystemsReason) {
    const TempDir folder;
    // Works as root too, where permissions would not stop a read.
    fs::create_symlink(folder / "b", folder / "a");
    fs::create_symlink(folder / "a", folder / "b");
    expectEveryReaderRefuses(folder / "a", "too many levels of symbolic links");
    EXPECT_EQ(reasonOf([&] { readWholeFile(folder / "none"); }), "the file does not exist");
}

// Sparse files: gigabytes that cost no disk, and would cost memory and
// minutes if anything read them whole.
TEST(FileSizes, HugeFilesAreRefusedBeforeReading) {
    const TempDir folder;
    const fs::path zeros = folder / "zeros";
    writeBytes(zeros, {});
    fs::resize_file(zeros, std::uintmax_t{2} << 30);
    EXPECT_THAT(reasonOf([&] { readWholeFile(zeros); }), HasSubstr("the file is too large"));
    EXPECT_THAT(reasonOf([&] { getFileBits(zeros); }), HasSubstr("the file is too large"));
    // Four bytes say it is no packed file.
    EXPECT_THAT(reasonOf([&] { readPackedBytes(zeros); }), HasSubstr("not a packed file"));

    // A game file is a few hundred KB, far below what other files may be.
    const fs::path large = folder / "large";
    writeBytes(large, {});
    fs::resize_file(large, maximumGameFileBytes + 1);
    EXPECT_THAT(reasonOf([&] { getFileBits(large); }), HasSubstr("the file is too large"));
    EXPECT_EQ(readWholeFile(large).size(), maximumGameFileBytes + 1);
}

TEST(FileSizes, PackedFilesAreJudgedByTheirHeader) {
    const TempDir folder;
    const Bytes data(3000, 7);
    Bytes packed = pack(data, 3);
    const std::size_t packedLength = packed.size();

    // Bytes after the trailer are tolerated, and not even read.
    const fs::path tail = folder / "tail";
    writeBytes(tail, packed);
    fs::resize_file(tail, std::uintmax_t{3} << 30);
    EXPECT_EQ(readPackedBytes(tail).size(), packedLength);
    const ExplodeResult unpacked = explodeFile(tail);
    ASSERT_TRUE(unpacked.buffer) << unpacked.failure;
    EXPECT_EQ(Bytes(unpacked.buffer->data().begin(), unpacked.buffer->data().end()), data);

    // A stated length beyond the limit is refused before anything is unpacked.
    const fs::path claims = folder / "claims";
    packed[4] = 0x40;
    writeBytes(claims, packed);
    EXPECT_THAT(explodeFile(claims).failure, HasSubstr("the unpacked length is too large"));
    std::string failure;
    getFileBits(claims, &failure);
    EXPECT_THAT(failure, HasSubstr("the unpacked length is too large"));
    EXPECT_THAT(reasonOf([&] { readPackedBytes(claims); }), HasSubstr("too large"));
}

} // namespace
} // namespace marvek::test
