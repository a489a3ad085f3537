#pragma once

#include <QString>

#include <filesystem>
#include <memory>

class QMainWindow;

namespace marvek {

struct SharedObjects;
class frmStatus;
class LevelDocument;
class LevelLock;
class LevelTabs;

// Writes a level to its file, or to one the user names, after whatever has
// to be asked or refused first: a level another editor holds, a file
// changed by another program, a name another tab or editor holds.
class LevelSaver {
public:
    LevelSaver(SharedObjects& shared, frmStatus& status, LevelTabs& tabs, QMainWindow& window);

    // Asks question when the level has unsaved changes: Yes saves, No lets
    // them go, Cancel sets cancelled. False when a save failed.
    bool saveIfModified(LevelDocument& document, const QString& question, bool* cancelled);
    // Each true when the level was written (false: cancelled or failed, and
    // the user was told).
    bool save(LevelDocument& document);
    bool saveAs(LevelDocument& document);

private:
    // Says why a read-only level is not saved; false when it is not one.
    bool refuseReadOnly(const LevelDocument& document);
    // Save As writes only a file that no other tab or editor holds, and
    // holds it from then on: fresh gets its lock (left empty when the
    // document already holds it). False, after telling the user, otherwise.
    bool lockTarget(const LevelDocument& document, const std::filesystem::path& target,
                    std::unique_ptr<LevelLock>& fresh);
    // The status window shows while it writes; false after telling why not.
    bool write(LevelDocument& document);
    void tellNotSaved(const QString& why);

    SharedObjects& shared_;
    frmStatus& status_;
    LevelTabs& tabs_;
    QMainWindow& window_;
};

} // namespace marvek
