#include "app/LevelLock.h"
#include "app/qtPaths.h"
#include "support/TempDir.h"

#include <QCoreApplication>
#include <QProcess>
#include <QSysInfo>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>

namespace marvek::test {
namespace {

namespace fs = std::filesystem;

// A lock file as another program would leave it.
void writeLockOf(const fs::path& level, qint64 process, const QString& program) {
    std::ofstream(LevelLock::lockPath(level)) << process << '\n'
                                              << program.toStdString() << '\n'
                                              << QSysInfo::machineHostName().toStdString() << '\n';
}

TEST(LevelLock, OneHolderAtATimeAndTheLockGoesWithIt) {
    TempDir folder;
    const fs::path level = folder / "L1MA1";
    EXPECT_EQ(LevelLock::lockPath(level), folder / ".L1MA1.lock");
    std::optional<LevelLock> first(std::in_place, level);
    EXPECT_TRUE(first->held());
    EXPECT_FALSE(first->holder());
    EXPECT_TRUE(fs::exists(LevelLock::lockPath(level)));
    EXPECT_TRUE(first->isFor(folder / "." / "L1MA1"));

    // A second editor in this very process is told who holds it.
    const LevelLock second(level);
    EXPECT_FALSE(second.held());
    ASSERT_TRUE(second.holder());
    EXPECT_EQ(second.holder()->process, QCoreApplication::applicationPid());

    first.reset();
    EXPECT_FALSE(fs::exists(LevelLock::lockPath(level)));
    const LevelLock third(level);
    EXPECT_TRUE(third.held());
}

TEST(LevelLock, ALiveProcessKeepsItsLockAndADeadOnesIsTakenOver) {
    TempDir folder;
    const fs::path level = folder / "L1MA1";
    QProcess other;
    other.start("sleep", {"60"});
    ASSERT_TRUE(other.waitForStarted());
    const qint64 otherId = other.processId();
    const QString program = QString::fromStdString(
        fs::read_symlink("/proc/" + std::to_string(otherId) + "/exe").string());
    writeLockOf(level, otherId, program);
    {
        const LevelLock whileAlive(level);
        EXPECT_FALSE(whileAlive.held());
        ASSERT_TRUE(whileAlive.holder());
        EXPECT_EQ(whileAlive.holder()->process, otherId);
        EXPECT_EQ(whileAlive.holder()->host, QSysInfo::machineHostName());
    }
    EXPECT_TRUE(fs::exists(LevelLock::lockPath(level))) << "a refused lock leaves it alone";

    other.kill();
    ASSERT_TRUE(other.waitForFinished());
    const LevelLock afterDeath(level);
    EXPECT_TRUE(afterDeath.held());
    EXPECT_FALSE(afterDeath.holder());
}

TEST(LevelLock, AFolderWithoutRoomForALockNamesNoHolder) {
    const LevelLock nowhere(fs::path("/nonexistent-folder-of-levels") / "L1MA1");
    EXPECT_FALSE(nowhere.held());
    EXPECT_FALSE(nowhere.holder()) << "nothing to be read-only about: saving fails anyway";
}

} // namespace
} // namespace marvek::test
