// The pieces that make the editor a desktop program: where a copy keeps its
// settings, its command line, its recent levels and its autosave timer.
#include "app/SharedObjects.h"
#include "app/autosave.h"
#include "app/commandLine.h"
#include "app/desktopSetup.h"
#include "app/recentLevels.h"
#include "configuration/clsConfiguration.h"
#include "io/programFolders.h"
#include "support/TempDir.h"
#include "support/scripted.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace marvek::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

// Sets an environment variable for one test and puts it back afterwards.
class ScopedEnvironment {
public:
    ScopedEnvironment(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) {
            old_ = old;
        }
        if (value != nullptr) {
            setenv(name, value, 1);
        } else {
            unsetenv(name);
        }
    }
    ~ScopedEnvironment() {
        if (old_) {
            setenv(name_, old_->c_str(), 1);
        } else {
            unsetenv(name_);
        }
    }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    const char* name_;
    std::optional<std::string> old_;
};

// An installed copy: the program in usr/bin, its files in usr/share/marvek.
struct InstalledTree {
    TempDir root;
    fs::path bin = root / "usr" / "bin";
    fs::path share = root / "usr" / "share" / "marvek";

    InstalledTree() {
        fs::create_directories(bin);
        writeText(share / "config" / "world1.cfg", "tileSet = \"TILES1\";\n");
        writeText(share / "sample-data" / "MPIC", "picture");
        writeText(share / "sample-data" / "L1MA1", "level");
        fs::permissions(share / "sample-data" / "L1MA1",
                        fs::perms::owner_read | fs::perms::group_read, fs::perm_options::replace);
        fs::permissions(bin, fs::perms::owner_read | fs::perms::owner_exec,
                        fs::perm_options::replace);
    }
    ~InstalledTree() {
        // Writable again, so that the folder can be removed.
        fs::permissions(bin, fs::perms::owner_all, fs::perm_options::replace);
    }
    InstalledTree(const InstalledTree&) = delete;
    InstalledTree& operator=(const InstalledTree&) = delete;
};

TEST(ProgramFolders, ABuildTreeOrAnyCopyWithItsSettingsIsPortable) {
    TempDir root;
    const fs::path bin = root / "bin";
    writeText(bin / "config" / "world1.cfg", "");
    writeText(root / "sample-data" / "MPIC", "picture");
    const UserFolders user{root / "home-config", root / "home-data"};

    const ProgramFolders writable = locateProgramFolders(bin / "", user, true);
    EXPECT_TRUE(writable.portable);
    EXPECT_EQ(writable.resourceFolder, bin);
    EXPECT_EQ(writable.settingsFile, bin / "marvek.cfg");
    EXPECT_EQ(writable.shippedSampleData, root / "sample-data");
    EXPECT_FALSE(writable.userSampleData);
    EXPECT_EQ(provideSampleData(writable), root / "sample-data") << "nothing to copy";

    // A read-only folder without settings is not a portable copy...
    EXPECT_FALSE(locateProgramFolders(bin, user, false).portable);
    // ...unless the settings are already there.
    writeText(bin / "marvek.cfg", "");
    const ProgramFolders kept = locateProgramFolders(bin, user, false);
    EXPECT_TRUE(kept.portable);
    EXPECT_EQ(kept.settingsFile, bin / "marvek.cfg");
}

TEST(ProgramFolders, AnInstalledCopyKeepsSettingsAndDataInTheUsersHome) {
    InstalledTree tree;
    TempDir home;
    const ScopedEnvironment homeVariable("HOME", home.path().c_str());
    const ScopedEnvironment config("XDG_CONFIG_HOME", nullptr);
    const ScopedEnvironment data("XDG_DATA_HOME", nullptr);
    const UserFolders user = standardUserFolders();
    EXPECT_EQ(user.configFolder, home / ".config/marvek");
    EXPECT_EQ(user.dataFolder, home / ".local/share/marvek");

    // Even a user who may write /usr/bin (root) gets an installed copy.
    for (const bool writable : {false, true}) {
        const ProgramFolders folders = locateProgramFolders(tree.bin, user, writable);
        EXPECT_FALSE(folders.portable);
        EXPECT_EQ(folders.resourceFolder, tree.share);
        EXPECT_EQ(folders.settingsFile, home / ".config/marvek/marvek.cfg");
        EXPECT_EQ(folders.shippedSampleData, tree.share / "sample-data");
        EXPECT_EQ(folders.userSampleData, home / ".local/share/marvek/sample-data");
    }
    EXPECT_EQ(findResourceFolder(tree.bin), tree.share);

    // The first run copies the sample data, writable, and offers the copy.
    SharedObjects shared(tree.share, std::make_unique<ScriptedCommonDialog>(),
                         std::make_unique<ScriptedMessageBox>());
    const ProgramFolders folders = locateProgramFolders(tree.bin, user, false);
    EXPECT_TRUE(useProgramFolders(shared, folders).isEmpty());
    const fs::path copy = home / ".local/share/marvek/sample-data";
    EXPECT_EQ(shared.offeredSampleData(), copy);
    EXPECT_EQ(shared.settingsFile(), home / ".config/marvek/marvek.cfg");
    EXPECT_TRUE(fs::is_directory(home / ".config/marvek")) << "ready for the options' OK";
    EXPECT_EQ(readBytes(copy / "L1MA1"), readBytes(tree.share / "sample-data" / "L1MA1"));
    EXPECT_NE(fs::status(copy / "L1MA1").permissions() & fs::perms::owner_write, fs::perms::none);
    EXPECT_FALSE(fs::exists(copy.string() + ".partial"));

    // The user's own changes to the copy are never copied over.
    writeText(copy / "L1MA1", "edited");
    EXPECT_EQ(provideSampleData(folders), copy);
    const auto edited = readBytes(copy / "L1MA1");
    EXPECT_EQ(std::string(edited.begin(), edited.end()), "edited");
}

TEST(CommandLine, TheLevelItsConfigurationAndTheDataFolder) {
    const QString version = "1.2.3";
    const auto bare = parseCommandLine({"marvek"}, version);
    ASSERT_TRUE(bare.run);
    EXPECT_FALSE(bare.run->level);
    EXPECT_FALSE(bare.run->configuration);
    EXPECT_FALSE(bare.run->dataFolder);

    const auto full = parseCommandLine(
        {"marvek", "levels/L1MA1", "--config", "world2", "--data=/games/TWDATA"}, version);
    ASSERT_TRUE(full.run);
    EXPECT_EQ(full.run->level, fs::path("levels/L1MA1"));
    EXPECT_EQ(full.run->configuration, "world2");
    EXPECT_EQ(full.run->dataFolder, fs::path("/games/TWDATA"));
    EXPECT_TRUE(full.run->moreLevels.empty());

    // Every level after the first opens in a tab of its own.
    const auto several = parseCommandLine({"marvek", "L1", "L2", "--config", "w", "L3"}, version);
    ASSERT_TRUE(several.run);
    EXPECT_EQ(several.run->level, fs::path("L1"));
    EXPECT_EQ(several.run->moreLevels, (std::vector<fs::path>{"L2", "L3"}));

    // Options may come first, and a level may begin with a dash after "--".
    const auto dashed = parseCommandLine({"marvek", "--data", "d", "--", "-odd"}, version);
    ASSERT_TRUE(dashed.run);
    EXPECT_EQ(dashed.run->level, fs::path("-odd"));

    // Qt's own options are the application object's.
    const auto withQt = parseCommandLine(
        {"marvek", "-platform", "offscreen", "L1MA2", "-reverse", "--style", "fusion"}, version);
    ASSERT_TRUE(withQt.run);
    EXPECT_EQ(withQt.run->level, fs::path("L1MA2"));

    const auto help = parseCommandLine({"marvek", "--help"}, version);
    EXPECT_FALSE(help.run);
    EXPECT_EQ(help.exit.status, 0);
    EXPECT_FALSE(help.exit.toStandardError);
    EXPECT_TRUE(help.exit.text.startsWith(commandLineUsage + "\n"));
    EXPECT_TRUE(help.exit.text.contains("--config <NAME>"));
    const auto shown = parseCommandLine({"marvek", "--version"}, version);
    EXPECT_FALSE(shown.run);
    EXPECT_EQ(shown.exit.status, 0);
    EXPECT_EQ(shown.exit.text, "marvek 1.2.3\n");
}

TEST(CommandLine, AMistakePrintsTheUsageAndEndsWithTwo) {
    const std::vector<std::pair<QStringList, QString>> mistakes = {
        {{"marvek", "--bogus"}, "bogus"},
        {{"marvek", "L1MA1", ""}, "empty"},
        {{"marvek", "L1MA1", "--config"}, "config"},
        {{"marvek", "--config", "world1"}, "--config goes with a LEVEL"},
        {{"marvek", "L1MA1", "--data", "a", "--data", "b"}, "--data given twice"},
        {{"marvek", "L1MA1", "--config="}, "--config needs a value"},
        {{"marvek", ""}, "empty"},
    };
    for (const auto& [arguments, what] : mistakes) {
        const auto parsed = parseCommandLine(arguments, "1.0");
        EXPECT_FALSE(parsed.run) << arguments.join(' ').toStdString();
        EXPECT_EQ(parsed.exit.status, exitBadArguments);
        EXPECT_TRUE(parsed.exit.toStandardError);
        EXPECT_TRUE(parsed.exit.text.contains(what)) << parsed.exit.text.toStdString();
        EXPECT_TRUE(parsed.exit.text.endsWith(commandLineUsage + "\n"));
    }
}

TEST(CommandLine, ALevelNamedFromAnyFolderIsFoundAndLendsItsFolderForTheRun) {
    TempDir root;
    const fs::path before = fs::current_path();
    fs::current_path(root.path());
    SharedObjects shared(root / "bin", std::make_unique<ScriptedCommonDialog>(),
                         std::make_unique<ScriptedMessageBox>());
    shared.settings.WriteSetting("thornwickData", std::string("/saved/data"), false);
    useCommandLine(shared, *parseCommandLine({"marvek", "games/../levels/L1MA2"}, "1").run);
    fs::current_path(before);

    EXPECT_EQ(shared.startupLevel, root / "levels" / "L1MA2");
    EXPECT_FALSE(shared.startupConfiguration);
    EXPECT_EQ(shared.dataFolder(), root / "levels");
    EXPECT_EQ(shared.settings.OutputConfiguration("\n", false), "thornwickData=\"/saved/data\";\n")
        << "the run's folder is not a setting";

    useCommandLine(
        shared,
        *parseCommandLine({"marvek", "/x/L1", "--config", "world3", "--data", "/games/TWDATA"}, "1")
             .run);
    EXPECT_EQ(shared.startupConfiguration, "world3");
    EXPECT_EQ(shared.dataFolder(), fs::path("/games/TWDATA"));
}

TEST(RecentLevels, LatestFirstOnceEachAtMostTenAndKeptInTheSettings) {
    RecentLevels recent;
    for (int i = 1; i <= 12; ++i) {
        recent.add({"/data/L" + std::to_string(i), "world" + std::to_string(i % 3)});
    }
    ASSERT_EQ(recent.levels().size(), RecentLevels::limit);
    EXPECT_EQ(recent.levels().front().file, "/data/L12");
    EXPECT_EQ(recent.levels().back().file, "/data/L3") << "the two oldest went";

    // Opening one again moves it up, with the configuration it opened with.
    recent.add({"/data/./L5", "world9"});
    ASSERT_EQ(recent.levels().size(), RecentLevels::limit);
    EXPECT_EQ(recent.levels().front(), (RecentLevel{"/data/./L5", "world9"}));
    EXPECT_EQ(std::count_if(recent.levels().begin(), recent.levels().end(),
                            [](const RecentLevel& entry) { return entry.file.filename() == "L5"; }),
              1);
    EXPECT_TRUE(recent.remove("/data/L12"));
    EXPECT_FALSE(recent.remove("/data/L12"));
    EXPECT_EQ(recent.levels().size(), RecentLevels::limit - 1);

    // Through the settings file's text and back, beside the other keys.
    clsConfiguration settings;
    settings.NewConfiguration();
    settings.WriteSetting("thornwickData", std::string("/data"), false);
    recent.writeTo(settings);
    recent.writeTo(settings);
    clsConfiguration reread;
    reread.InputConfiguration(settings.OutputConfiguration("\r\n", true));
    EXPECT_EQ(RecentLevels::readFrom(reread).levels(), recent.levels());
    EXPECT_TRUE(reread.Root(true)->exists("thornwickData"));
    EXPECT_EQ(reread.Root(true)->count(), 2U);
}

TEST(RecentLevels, EntriesThatMakeNoSenseArePassedOver) {
    clsConfiguration settings;
    settings.InputConfiguration(
        "recentLevels { a { file = \"/d/L1\"; config = \"world1\"; } b = 3; "
        "c { file = \"\"; config = \"w\"; } d { config = \"w\"; } e { file = \"/d/L2\"; config "
        "= 4; } f { file = \"/d/L3\"; config = \"world3\"; } }");
    const auto levels = RecentLevels::readFrom(settings).levels();
    ASSERT_EQ(levels.size(), 2U);
    EXPECT_EQ(levels[0], (RecentLevel{"/d/L1", "world1"}));
    EXPECT_EQ(levels[1], (RecentLevel{"/d/L3", "world3"}));

    clsConfiguration notASection;
    notASection.InputConfiguration("recentLevels = \"L1\";");
    EXPECT_TRUE(RecentLevels::readFrom(notASection).levels().empty());
}

// A timer on a clock the test moves by hand.
struct FakeClock {
    std::chrono::milliseconds now{0};
};

class FakeTimer final : public SingleShotTimer {
public:
    explicit FakeTimer(FakeClock& clock) : clock_(clock) {}
    void start(std::chrono::milliseconds delay) override { due_ = clock_.now + delay; }
    void stop() override { due_.reset(); }
    bool isActive() const override { return due_.has_value(); }
    void onTimeout(std::function<void()> handler) override { handler_ = std::move(handler); }
    // Moves the clock on, firing the timer when it runs out on the way.
    void advanceTo(std::chrono::milliseconds time) {
        while (due_ && *due_ <= time) {
            clock_.now = *due_;
            due_.reset();
            handler_();
        }
        clock_.now = time;
    }

private:
    FakeClock& clock_;
    std::optional<std::chrono::milliseconds> due_;
    std::function<void()> handler_;
};

TEST(Autosave, EveryChangeIsKeptWithinHalfAMinuteWithoutAWritePerEdit) {
    FakeClock clock;
    auto owned = std::make_unique<FakeTimer>(clock);
    FakeTimer& timer = *owned;
    bool unsaved = false;
    std::vector<std::chrono::milliseconds> writes;
    Autosave autosave(std::move(owned),
                      {[&] { return unsaved; }, [&] { writes.push_back(clock.now); }});

    // A burst of edits, a pause, edits spread out, then a long idle time.
    std::vector<std::chrono::milliseconds> changes;
    for (int i = 0; i < 50; ++i) {
        changes.push_back(100ms * i);
    }
    for (int i = 0; i < 20; ++i) {
        changes.push_back(60s + 7s * i);
    }
    for (const auto when : changes) {
        timer.advanceTo(when);
        unsaved = true;
        autosave.changed();
    }
    timer.advanceTo(10min);

    for (const auto when : changes) {
        const auto kept =
            std::find_if(writes.begin(), writes.end(), [&](auto write) { return write >= when; });
        ASSERT_NE(kept, writes.end()) << "change at " << when.count() << " ms never kept";
        EXPECT_LE(*kept - when, 30s);
    }
    EXPECT_LT(writes.size(), changes.size() / 3);
    EXPECT_FALSE(timer.isActive()) << "nothing pending when idle";

    // Saved work is not written, and a save stops what was pending.
    writes.clear();
    autosave.changed();
    unsaved = false;
    autosave.settled();
    timer.advanceTo(20min);
    EXPECT_TRUE(writes.empty());
    unsaved = true;
    autosave.changed();
    unsaved = false;
    timer.advanceTo(30min);
    EXPECT_TRUE(writes.empty()) << "saved before the timer ran out";
}

} // namespace
} // namespace marvek::test
