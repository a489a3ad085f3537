#pragma once

#include "app/autosave.h"
#include "data/UndoHistory.h"
#include "data/cellRange.h"
#include "data/clsLevel.h"
#include "data/specialChanges.h"
#include "graphics/clsPalette.h"
#include "graphics/clsRectangle.h"

#include <QObject>
#include <QString>

#include <array>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QFileSystemWatcher;

namespace marvek {

struct OpenedLevel;
class clsLevel;
class Autosave;
class LevelLock;
class SingleShotTimer;

// One open level and everything that goes with it but the widgets: its
// configuration, undo history, cell selection, recovery copy and file. It
// is the only way to change the level, and it tells what changed.
class LevelDocument : public QObject {
    Q_OBJECT

public:
    // Told, when set, of every edit, undo, redo or History jump whose cells
    // reach past the range it signalled; a check for test builds, since it
    // compares whole grids.
    using RangeFault = std::function<void(const std::string& step)>;

    // The application folder is where the graphics are read again from after
    // a palette change.
    LevelDocument(std::unique_ptr<OpenedLevel> opened, QString configuration,
                  std::filesystem::path applicationFolder,
                  std::unique_ptr<SingleShotTimer> autosaveTimer, QObject* parent = nullptr);
    ~LevelDocument() override;
    LevelDocument(const LevelDocument&) = delete;
    LevelDocument& operator=(const LevelDocument&) = delete;

    const OpenedLevel& opened() const noexcept { return *opened_; }
    const clsLevel& level() const noexcept;
    const QString& configuration() const noexcept { return configuration_; }
    std::filesystem::path file() const;
    const UndoHistory& history() const noexcept { return history_; }
    bool modified() const noexcept;
    void setRangeFault(RangeFault fault);
    void setUndoMaximum(std::int32_t maximum);
    // The lock on the level's file; with another editor holding it, the
    // level is read-only: neither saved nor kept in a recovery copy.
    void setLock(std::unique_ptr<LevelLock> lock);
    const LevelLock* lock() const noexcept { return lock_.get(); }
    bool isReadOnly() const noexcept;
    // The recovery copy's timer; tests give a scripted one.
    void setAutosaveTimer(std::unique_ptr<SingleShotTimer> timer);
    // The distance between cell origins the views draw at.
    void setPitch(std::int32_t pitch);

    // A named undo step; change touches no cell outside range.
    // nameBySpecials: the step's name says what it did to specials already
    // placed ("Bucket Fill, 19 specials replaced").
    void edit(const std::string& name, const CellRange& range,
              const std::function<void(clsLevel&)>& change, bool nameBySpecials = false);
    // More cells of the step begun last (a stroke), still one step.
    void continueEdit(const CellRange& range, const std::function<void(clsLevel&)>& change);
    // Each false when there is nothing to take back.
    bool undo();
    bool redo();
    // 0 before every kept step, n after the n-th.
    void goToEntry(std::size_t index);
    // A History step of its own. Throws FileError, the palette unchanged,
    // when the graphics do not read with it.
    void changePalette(const clsPalette& palette);
    // The cells, palette and other fields of from, as one step called name
    // that undo takes back whole. Throws FileError, nothing changed, when
    // the graphics cannot be read with the palette.
    void replaceContents(const std::string& name, const clsLevel& from, const clsPalette& palette);
    // The graphics files changed (an import): read again with the level's
    // palette. Throws FileError, the graphics as they were.
    void rereadGraphics();
    // Another level in this document's place: history, selection and file
    // start anew.
    void replace(std::unique_ptr<OpenedLevel> opened, QString configuration);
    // Opens the kept unsaved work over the saved level. Throws FileError.
    void restoreRecoveryCopy();
    // The names Save As chose, before it writes there.
    void rename(const std::filesystem::path& file);

    const std::optional<clsRectangle>& selection() const noexcept { return selection_; }
    void setSelection(std::optional<clsRectangle> selection);

    // Writes the level to its file; throws FileError, nothing marked saved.
    void save();
    // True when another program wrote the file since this one read or wrote it.
    bool changedOnDisk() const;
    // Keeps a modified level beside its file after an unexpected error or a
    // kill: the text that says where, or empty when nothing needed keeping.
    QString keepUnsavedWork();
    // The work was saved or let go: its recovery copy goes.
    void dropRecoveryCopy();

signals:
    void cellsChanged(const CellRange& range);
    void levelReplaced();
    void graphicsChanged();
    void historyChanged();
    void modifiedChanged(bool modified);
    void selectionChanged();
    void fileChangedOnDisk();
    // Something the user should read in the status bar.
    void notice(const QString& text);
    // The recovery copy stopped being written (or works again): worth a box.
    void recoveryTrouble(const QString& text, bool failing);

private:
    // What a step keeps beside the grid: the palette and the level file's
    // other fields, as they were before it.
    struct LevelExtras {
        clsPalette palette;
        std::vector<std::uint8_t> defaultSpecials;
        std::array<std::uint8_t, clsLevel::ccclSize> cccl{};
        std::int32_t remX = 0;
        std::int32_t remY = 0;
    };
    LevelExtras currentExtras() const;
    // Puts extras in place and keeps what they replaced in them.
    void swapExtras(LevelExtras& extras);
    void usePalette(const clsPalette& palette);

    // wholeGrid: the step keeps every cell (it may change the grid's size);
    // otherwise only those its edits name.
    void recordStep(const std::string& name, std::optional<LevelExtras> replaced, bool wholeGrid);
    void changeCells(const std::string& name, const CellRange& range,
                     const std::function<void(clsLevel&)>& change);
    bool takeBackOne(bool undoing);
    // Takes back the newest step of one side without telling anyone: its
    // name, or empty when there was none; changed grows by its cells.
    std::string takeBack(bool undoing, std::optional<CellRange>& changed);
    void swapStepExtras(bool undoing);
    // Tells views and panels what a move through the history changed.
    void signalTakenBack(const std::optional<CellRange>& changed, const std::string& step);
    void watchRanges();
    void checkRange(const std::string& step, const std::optional<CellRange>& told);
    void nameStepBySpecials();
    void trimExtras();
    void settle(bool wasModified);
    void keepRecoveryCopy();
    // Follows the file's name; remember takes its time as this editor's.
    void watchFile(bool remember);
    void fileTouched();
    CellRange wholeLevel() const;

    std::unique_ptr<OpenedLevel> opened_;
    QString configuration_;
    std::filesystem::path applicationFolder_;
    UndoHistory history_;
    // A step that changed more than cells keeps what it replaced, one entry
    // per step.
    std::deque<std::optional<LevelExtras>> undoExtras_;
    std::deque<std::optional<LevelExtras>> redoExtras_;
    // The cells differ from the file whatever the history's step: a
    // restored recovery copy, or a stroke going on after a save.
    bool offTheSteps_ = false;
    // Set while the newest step is named by what it did to specials, which
    // stepSpecials_ counts as its cells change.
    std::optional<std::string> stepBaseName_;
    SpecialChanges stepSpecials_;
    std::optional<clsRectangle> selection_;
    std::unique_ptr<Autosave> autosave_;
    QFileSystemWatcher* watcher_ = nullptr;
    // The file's time when this editor last read or wrote it.
    std::filesystem::file_time_type knownWrite_{};
    RangeFault rangeFault_;
    CellWatch rangeWatch_;
    std::unique_ptr<LevelLock> lock_;
    RecoveryCopyHealth recoveryHealth_;
};

} // namespace marvek
