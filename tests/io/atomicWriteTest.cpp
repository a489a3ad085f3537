#include "io/atomicWrite.h"
#include "io/FileError.h"
#include "support/TempDir.h"
#include "support/expect.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace marvek::test {
namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

std::vector<std::string> namesIn(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
}

fs::perms permissionsOf(const fs::path& path) {
    return fs::status(path).permissions();
}

void killNow(const fs::path& /*temporary*/) {
    ::raise(SIGKILL);
}

void failNow(const fs::path& /*temporary*/) {
    throw FileError("seam", "refused");
}

// Runs a write in a child process that is killed just before the rename.
void writeAndDieBeforeReplacing(const fs::path& path, const Bytes& bytes) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        try {
            writeFileAtomically(path, bytes, killNow);
        } catch (...) {
        }
        ::_exit(1); // only reached when the kill did not happen
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
}

TEST(AtomicWrite, KilledWritesLeaveTheOldFileAndTheNextWriteClearsTheirTemporaries) {
    const TempDir folder;
    const auto level = folder / "L1MA1";
    writeFileAtomically(level, Bytes{1, 2, 3});
    for (std::uint8_t i = 0; i < 20; ++i) {
        writeAndDieBeforeReplacing(level, Bytes(1000, i));
        EXPECT_EQ(readBytes(level), (Bytes{1, 2, 3}));
        // Each write clears what the one before it left.
        EXPECT_EQ(staleTemporaryFiles(level).size(), 1U);
        EXPECT_EQ(namesIn(folder.path()).size(), 2U);
    }

    writeFileAtomically(level, Bytes{4, 5});
    EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>{"L1MA1"});
    EXPECT_EQ(readBytes(level), (Bytes{4, 5}));
}

TEST(AtomicWrite, OnlyDeadWritersTemporariesOfTheSameTargetAreRemoved) {
    const TempDir folder;
    const auto level = folder / "L1MA1";
    const std::string ours = ".L1MA1.tmp" + std::to_string(::getpid()) + "-7";
    // A name no process can have, as an earlier version wrote them.
    const std::string oldStyle = ".L1MA1.tmp999999999";
    for (const char* name : {".L1MA2.tmp999999999", ".L1MA1.tmpx", "L1MA1.tmp999999999", "notes"}) {
        writeText(folder / name, "keep");
    }
    writeText(folder / ours, "in use");
    writeText(folder / oldStyle, "stale");
    writeFileAtomically(level, Bytes{9});
    std::vector<std::string> kept{".L1MA1.tmpx",        ours,   ".L1MA2.tmp999999999", "L1MA1",
                                  "L1MA1.tmp999999999", "notes"};
    std::ranges::sort(kept);
    EXPECT_EQ(namesIn(folder.path()), kept);
}

TEST(AtomicWrite, AFailedWriteRemovesItsTemporaryAndKeepsTheTarget) {
    const TempDir folder;
    const auto path = folder / "file";
    writeFileAtomically(path, Bytes{1});
    EXPECT_EQ(whatOf<FileError>([&] { writeFileAtomically(path, Bytes{2}, failNow); }),
              "seam: refused");
    EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>{"file"});
    EXPECT_EQ(readBytes(path), Bytes{1});

    fs::create_directory(folder / "folder");
    EXPECT_EQ(whatOf<FileError>([&] { writeFileAtomically(folder / "folder", Bytes{2}); }),
              (folder / "folder").string() + ": is a folder, not a file");
    EXPECT_THROW(writeFileAtomically(folder / "missing" / "file", Bytes{2}), FileError);
}

TEST(AtomicWrite, ALinkIsFollowedAndStaysALink) {
    const TempDir folder;
    fs::create_directory(folder / "real");
    const auto file = folder / "real" / "level";
    writeFileAtomically(file, Bytes{1});
    // A relative link to a relative link.
    fs::create_symlink("real/level", folder / "first");
    fs::create_symlink("first", folder / "second");
    writeFileAtomically(folder / "second", Bytes{2, 3});
    EXPECT_TRUE(fs::is_symlink(folder / "first"));
    EXPECT_TRUE(fs::is_symlink(folder / "second"));
    EXPECT_EQ(readBytes(file), (Bytes{2, 3}));
    EXPECT_EQ(namesIn(folder / "real"), std::vector<std::string>{"level"});

    // A link to a file that does not exist yet makes that file.
    fs::create_symlink(folder / "real" / "new", folder / "dangling");
    writeFileAtomically(folder / "dangling", Bytes{4});
    EXPECT_TRUE(fs::is_symlink(folder / "dangling"));
    EXPECT_EQ(readBytes(folder / "real" / "new"), Bytes{4});

    fs::create_symlink("loop", folder / "loop");
    EXPECT_THROW(writeFileAtomically(folder / "loop", Bytes{5}), FileError);
}

TEST(AtomicWrite, TheNewFileKeepsThePermissionsAndAReadOnlyFileIsRefused) {
    const TempDir folder;
    const auto path = folder / "level";
    writeFileAtomically(path, Bytes{1});
    constexpr auto ownerAndGroupRead =
        fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
    fs::permissions(path, ownerAndGroupRead);
    writeFileAtomically(path, Bytes{2});
    EXPECT_EQ(permissionsOf(path), ownerAndGroupRead);

    fs::permissions(path, fs::perms::owner_read | fs::perms::group_read);
    const auto error = failureOf<FileError>([&] { writeFileAtomically(path, Bytes{3}); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->path(), path);
    EXPECT_EQ(error->reason(), "the file is read-only");
    EXPECT_EQ(readBytes(path), Bytes{2});
    EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>{"level"});
}

} // namespace
} // namespace marvek::test
