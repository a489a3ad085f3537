#pragma once

#include <QString>

#include <filesystem>
#include <functional>
#include <memory>

class QMainWindow;

namespace marvek {

struct OpenedLevel;
struct SharedObjects;
class frmStatus;
class LevelDocument;
class LevelLock;
class LevelTabs;

// Brings a level file into a tab: another editor's lock, the loading with
// the window disabled and the status window naming each stage, the repairs
// the reader made, and the unsaved work a crash or a kill left behind.
class LevelOpener {
public:
    // levelShown: a level just came to the front tab and the shared
    // editing state starts anew for it.
    LevelOpener(SharedObjects& shared, frmStatus& status, LevelTabs& tabs, QMainWindow& window,
                std::function<void()> levelShown);

    // The level in the front tab (a first tab when there is none), with its
    // recovery copy offered. On failure the open level, its edits and its
    // history stay as they were, and failure (when given) says why.
    bool useConfig(const std::filesystem::path& levelFile, const QString& configuration,
                   bool loadUnknown, QString* failure = nullptr);
    // useConfig, then the level shown; false, after telling the user, when
    // it does not open.
    bool openHere(const std::filesystem::path& levelFile, const QString& configuration,
                  bool loadUnknown);
    // A new tab for the level; false, after telling the user, when it fails.
    bool openInNewTab(const std::filesystem::path& levelFile, const QString& configuration,
                      bool loadUnknown);

private:
    // The lock a level about to open needs, in fresh (left empty when held
    // is that level's); false when another editor holds it and the user
    // chose not to open it read-only.
    bool lock(const std::filesystem::path& levelFile, const LevelLock* held,
              std::unique_ptr<LevelLock>& fresh, QString* failure);
    // Null, failure set, when it does not load.
    std::unique_ptr<OpenedLevel> load(const std::filesystem::path& levelFile,
                                      const QString& configuration, bool loadUnknown,
                                      QString* failure);
    void warnOfRepairs(const OpenedLevel& opened);
    LevelDocument& addTab(std::unique_ptr<OpenedLevel> opened, const QString& configuration);
    void offerRecovery(LevelDocument& document);
    void tellNotOpened(const QString& failure);

    SharedObjects& shared_;
    frmStatus& status_;
    LevelTabs& tabs_;
    QMainWindow& window_;
    std::function<void()> levelShown_;
};

} // namespace marvek
