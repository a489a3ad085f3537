#pragma once

#include "ui/LevelOpener.h"
#include "ui/LevelSaver.h"

#include <QObject>
#include <QString>

#include <cstddef>
#include <filesystem>
#include <optional>

class QMainWindow;

namespace marvek {

struct SharedObjects;
class frmOpenLevel;
class frmStatus;
class LevelTabs;
class RecentLevelsMenu;

// The File menu's commands on the open levels: open (here or in a new tab,
// from a dialog, a drop, the recent levels or the command line), reload,
// save, save as, close a tab, and what every level needs when the program
// ends. Each command returns true when it went through (false: cancelled
// or failed, and the user was told).
class LevelFileCommands : public QObject {
    Q_OBJECT

public:
    struct Dialogs {
        frmStatus& status;
        frmOpenLevel& openLevel;
    };

    LevelFileCommands(SharedObjects& shared, Dialogs dialogs, LevelTabs& tabs,
                      RecentLevelsMenu& recent, QMainWindow& window);

    // The command line's levels, else the settings' default; false, after
    // telling the user, when none loads.
    bool openStartupLevels();
    // The level in the front tab (a first tab when there is none); see
    // LevelOpener::useConfig.
    bool useConfig(const std::filesystem::path& levelFile, const QString& configuration,
                   bool loadUnknown, QString* failure = nullptr) {
        return opener_.useConfig(levelFile, configuration, loadUnknown, failure);
    }

    // File > Open: the level in the front tab, after the question.
    bool open();
    bool openInNewTab();
    // A level file from outside (dropped on the window): a new tab, after
    // the level dialog; its own tab when it is open already.
    bool openDropped(const std::filesystem::path& file);
    // File > Recent Levels: the entry with its configuration in a new tab,
    // or taken off the list, telling the user, when the file is gone.
    bool openRecent(std::size_t index);
    // The front tab's level read again from its file, after asking when it
    // has unsaved changes.
    bool reload();
    bool save();
    bool saveAs();

    // Closes the tab after the closing question for its level; the last tab
    // stays. True when it closed.
    bool closeTab(int index);
    // The closing question for each modified level in turn; true when the
    // program may end.
    bool mayClose();
    // Keeps the unsaved work of every open level after an unexpected error
    // or a kill: the text to show, naming the files written, or empty.
    QString keepUnsavedWork();

signals:
    // A level came to the front tab: the shared editing state starts anew.
    void levelOpened();

private:
    bool openStartupLevel();
    bool openDefaultLevel();
    // The file the user picks in the open dialog, if any.
    std::optional<std::filesystem::path> chooseLevelFile();
    // After a file dialog: the configuration, then the level.
    bool openChosenLevel(const std::filesystem::path& file);
    bool openChosenInNewTab(const std::filesystem::path& file);
    // Its tab when the file is open, else a new one.
    bool openInNewTab(const std::filesystem::path& file, const QString& configuration);
    // The question whether to save first; false when the user cancelled or
    // the save failed.
    bool settled(LevelDocument& document, const QString& question);

    SharedObjects& shared_;
    Dialogs dialogs_;
    LevelTabs& tabs_;
    RecentLevelsMenu& recent_;
    QMainWindow& window_;
    LevelOpener opener_;
    LevelSaver saver_;
};

} // namespace marvek
