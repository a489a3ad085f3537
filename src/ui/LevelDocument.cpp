#include "ui/LevelDocument.h"

#include "app/LevelLock.h"
#include "app/autosave.h"
#include "app/qtPaths.h"
#include "data/levelRecovery.h"
#include "data/openLevel.h"
#include "data/specialChanges.h"

#include <QFileSystemWatcher>

#include <algorithm>
#include <exception>
#include <system_error>
#include <utility>
#include <vector>

namespace marvek {
namespace {

namespace fs = std::filesystem;

fs::file_time_type writeTime(const fs::path& file) {
    std::error_code error;
    const auto time = fs::last_write_time(file, error);
    return error ? fs::file_time_type{} : time;
}

SpecialChanges& operator+=(SpecialChanges& total, const SpecialChanges& more) {
    total.removed += more.removed;
    total.replaced += more.replaced;
    return total;
}

SpecialChanges& operator-=(SpecialChanges& total, const SpecialChanges& less) {
    total.removed -= less.removed;
    total.replaced -= less.replaced;
    return total;
}

} // namespace

LevelDocument::LevelDocument(std::unique_ptr<OpenedLevel> opened, QString configuration,
                             fs::path applicationFolder,
                             std::unique_ptr<SingleShotTimer> autosaveTimer, QObject* parent)
    : QObject(parent), opened_(std::move(opened)), configuration_(std::move(configuration)),
      applicationFolder_(std::move(applicationFolder)), watcher_(new QFileSystemWatcher(this)) {
    opened_->level.modified = false;
    setAutosaveTimer(std::move(autosaveTimer));
    connect(watcher_, &QFileSystemWatcher::fileChanged, this, &LevelDocument::fileTouched);
    watchFile(true);
}

LevelDocument::~LevelDocument() = default;

void LevelDocument::setAutosaveTimer(std::unique_ptr<SingleShotTimer> timer) {
    autosave_ = std::make_unique<Autosave>(
        std::move(timer), Autosave::Actions{[this] { return modified() && !isReadOnly(); },
                                            [this] { keepRecoveryCopy(); }});
}

void LevelDocument::setLock(std::unique_ptr<LevelLock> lock) {
    lock_ = std::move(lock);
}

bool LevelDocument::isReadOnly() const noexcept {
    return lock_ && lock_->holder().has_value();
}

const clsLevel& LevelDocument::level() const noexcept {
    return opened_->level;
}

fs::path LevelDocument::file() const {
    return opened_->level.fileName;
}

bool LevelDocument::modified() const noexcept {
    return offTheSteps_ || !history_.atSavedStep();
}

void LevelDocument::setRangeFault(RangeFault fault) {
    rangeFault_ = std::move(fault);
    watchRanges();
}

void LevelDocument::watchRanges() {
    if (rangeFault_) {
        rangeWatch_.reset(opened_->level);
    }
}

void LevelDocument::checkRange(const std::string& step, const std::optional<CellRange>& told) {
    if (!rangeFault_) {
        return;
    }
    const auto changed = rangeWatch_.takeChanges(opened_->level);
    if (changed && !(told && told->covers(*changed))) {
        rangeFault_(step);
    }
}

void LevelDocument::setUndoMaximum(std::int32_t maximum) {
    const bool wasModified = modified();
    history_.setMaximum(maximum);
    trimExtras();
    emit historyChanged();
    settle(wasModified);
}

void LevelDocument::setPitch(std::int32_t pitch) {
    opened_->level.tileSpacing = pitch;
}

CellRange LevelDocument::wholeLevel() const {
    const clsLevel& level = opened_->level;
    return {0, 0, std::max(level.width - 1, 0), std::max(level.height - 1, 0)};
}

void LevelDocument::recordStep(const std::string& name, std::optional<LevelExtras> replaced,
                               bool wholeGrid) {
    if (wholeGrid) {
        history_.record(opened_->level, name);
    } else {
        history_.begin(opened_->level, name);
    }
    redoExtras_.clear();
    undoExtras_.push_back(std::move(replaced));
    trimExtras();
}

void LevelDocument::edit(const std::string& name, const CellRange& range,
                         const std::function<void(clsLevel&)>& change, bool nameBySpecials) {
    const bool wasModified = modified();
    recordStep(name, std::nullopt, false);
    stepSpecials_ = {};
    if (nameBySpecials) {
        stepBaseName_ = name;
    } else {
        stepBaseName_.reset();
    }
    changeCells(name, range, change);
    nameStepBySpecials();
    emit historyChanged();
    settle(wasModified);
}

void LevelDocument::nameStepBySpecials() {
    if (stepBaseName_) {
        history_.renameNewest(nameWithChanges(*stepBaseName_, stepSpecials_));
    }
}

void LevelDocument::continueEdit(const CellRange& range,
                                 const std::function<void(clsLevel&)>& change) {
    const bool wasModified = modified();
    changeCells(history_.nextUndo(), range, change);
    // The cells moved on from the step's state, whatever the step count says.
    offTheSteps_ = offTheSteps_ || !wasModified;
    // The stroke's name follows what it has done to specials so far.
    const std::string before = history_.nextUndo();
    nameStepBySpecials();
    if (history_.nextUndo() != before) {
        emit historyChanged();
    }
    settle(wasModified);
}

void LevelDocument::changeCells(const std::string& name, const CellRange& range,
                                const std::function<void(clsLevel&)>& change) {
    clsLevel& level = opened_->level;
    history_.keep(level, range);
    // Only cells in range change, so the step's count moves by theirs alone.
    if (stepBaseName_) {
        stepSpecials_ -= history_.specialChanges(level, range);
    }
    change(level);
    if (stepBaseName_) {
        stepSpecials_ += history_.specialChanges(level, range);
    }
    checkRange(name, range);
    emit cellsChanged(range);
}

bool LevelDocument::undo() {
    return takeBackOne(true);
}

bool LevelDocument::redo() {
    return takeBackOne(false);
}

bool LevelDocument::takeBackOne(bool undoing) {
    const bool wasModified = modified();
    std::optional<CellRange> changed;
    const std::string name = takeBack(undoing, changed);
    if (name.empty()) {
        return false;
    }
    signalTakenBack(changed, (undoing ? "Undo " : "Redo ") + name);
    settle(wasModified);
    return true;
}

void LevelDocument::signalTakenBack(const std::optional<CellRange>& changed,
                                    const std::string& step) {
    checkRange(step, changed);
    if (changed) {
        emit cellsChanged(*changed);
    }
    emit historyChanged();
}

std::string LevelDocument::takeBack(bool undoing, std::optional<CellRange>& changed) {
    stepBaseName_.reset();
    std::string name = undoing ? history_.undo(opened_->level) : history_.redo(opened_->level);
    if (name.empty()) {
        return name;
    }
    if (const auto& cells = history_.lastChanged()) {
        changed = unite(changed, *cells);
    }
    swapStepExtras(undoing);
    return name;
}

void LevelDocument::swapStepExtras(bool undoing) {
    auto& from = undoing ? undoExtras_ : redoExtras_;
    auto& to = undoing ? redoExtras_ : undoExtras_;
    std::optional<LevelExtras> extras;
    if (!from.empty()) {
        extras = std::move(from.back());
        from.pop_back();
    }
    if (extras) {
        swapExtras(*extras);
    }
    to.push_back(std::move(extras));
    trimExtras();
}

LevelDocument::LevelExtras LevelDocument::currentExtras() const {
    const clsLevel& level = opened_->level;
    LevelExtras extras{opened_->palette,
                       {level.defaultSpecials().begin(), level.defaultSpecials().end()},
                       {},
                       level.remX(),
                       level.remY()};
    std::ranges::copy(level.ccclData(), extras.cccl.begin());
    return extras;
}

void LevelDocument::swapExtras(LevelExtras& extras) {
    LevelExtras now = currentExtras();
    clsLevel& level = opened_->level;
    level.setDefaultSpecials(std::move(extras.defaultSpecials));
    level.setCcclData(extras.cccl);
    level.setRemX(extras.remX);
    level.setRemY(extras.remY);
    opened_->palette = std::move(extras.palette);
    extras = std::move(now);
    try {
        reloadGraphics(*opened_, applicationFolder_);
    } catch (const std::exception& error) {
        emit notice("The graphics could not be read again with the palette: " +
                    QString::fromStdString(error.what()));
        return;
    }
    emit graphicsChanged();
}

void LevelDocument::trimExtras() {
    const std::size_t applied = history_.applied();
    const std::size_t ahead = history_.size() - applied;
    while (undoExtras_.size() > applied) {
        undoExtras_.pop_front();
    }
    while (redoExtras_.size() > ahead) {
        redoExtras_.pop_front();
    }
}

void LevelDocument::goToEntry(std::size_t index) {
    const bool wasModified = modified();
    std::optional<CellRange> changed;
    bool moved = false;
    while (history_.applied() > index && !takeBack(true, changed).empty()) {
        moved = true;
    }
    while (history_.applied() < index && !takeBack(false, changed).empty()) {
        moved = true;
    }
    if (moved) {
        signalTakenBack(changed, "Go to History entry");
        settle(wasModified);
    }
}

void LevelDocument::changePalette(const clsPalette& palette) {
    LevelExtras replaced = currentExtras();
    usePalette(palette);
    const bool wasModified = modified();
    recordStep("Edit Palette", std::move(replaced), false);
    emit graphicsChanged();
    emit historyChanged();
    settle(wasModified);
}

void LevelDocument::usePalette(const clsPalette& palette) {
    clsPalette previous = opened_->palette;
    opened_->palette = palette;
    try {
        reloadGraphics(*opened_, applicationFolder_);
    } catch (...) {
        opened_->palette = previous;
        throw;
    }
}

void LevelDocument::replaceContents(const std::string& name, const clsLevel& from,
                                    const clsPalette& palette) {
    LevelExtras replaced = currentExtras();
    usePalette(palette);
    const bool wasModified = modified();
    recordStep(name, std::move(replaced), true);
    stepBaseName_.reset();
    changeCells(name, wholeLevel(), [&from](clsLevel& level) {
        std::ranges::copy(from.cells(), level.cells().begin());
        level.setDefaultSpecials({from.defaultSpecials().begin(), from.defaultSpecials().end()});
        level.setCcclData(from.ccclData());
        level.setRemX(from.remX());
        level.setRemY(from.remY());
    });
    emit graphicsChanged();
    emit historyChanged();
    settle(wasModified);
}

void LevelDocument::rereadGraphics() {
    reloadGraphics(*opened_, applicationFolder_);
    emit graphicsChanged();
}

void LevelDocument::replace(std::unique_ptr<OpenedLevel> opened, QString configuration) {
    const bool wasModified = modified();
    if (wasModified) {
        // The user let the work go for the level that replaces it.
        dropRecoveryCopy();
    }
    opened_ = std::move(opened);
    opened_->level.modified = false;
    configuration_ = std::move(configuration);
    history_.clear();
    undoExtras_.clear();
    redoExtras_.clear();
    stepBaseName_.reset();
    watchRanges();
    offTheSteps_ = false;
    selection_.reset();
    autosave_->settled();
    watchFile(true);
    emit levelReplaced();
    emit historyChanged();
    emit selectionChanged();
    if (wasModified) {
        emit modifiedChanged(false);
    }
}

void LevelDocument::restoreRecoveryCopy() {
    const bool wasModified = modified();
    marvek::restoreRecoveryCopy(*opened_, applicationFolder_);
    history_.clear();
    undoExtras_.clear();
    redoExtras_.clear();
    stepBaseName_.reset();
    watchRanges();
    // The kept work is not the file's, whatever history says.
    offTheSteps_ = true;
    emit levelReplaced();
    emit historyChanged();
    settle(wasModified);
}

void LevelDocument::rename(const fs::path& file) {
    opened_->level.fileName = file.string();
}

void LevelDocument::setSelection(std::optional<clsRectangle> selection) {
    selection_ = selection;
    emit selectionChanged();
}

void LevelDocument::settle(bool wasModified) {
    const bool now = modified();
    opened_->level.modified = now;
    if (now) {
        autosave_->changed();
    } else if (wasModified) {
        dropRecoveryCopy();
    }
    if (now != wasModified) {
        emit modifiedChanged(now);
    }
}

void LevelDocument::save() {
    clsLevel& level = opened_->level;
    const bool wasModified = modified();
    level.saveToFile(level.fileName, opened_->palette);
    history_.markSaved();
    offTheSteps_ = false;
    watchFile(true);
    dropRecoveryCopy();
    settle(wasModified);
}

bool LevelDocument::changedOnDisk() const {
    const fs::path path = file();
    std::error_code error;
    return !path.empty() && fs::is_regular_file(path, error) && writeTime(path) != knownWrite_;
}

void LevelDocument::watchFile(bool remember) {
    const fs::path path = file();
    if (remember) {
        knownWrite_ = writeTime(path);
    }
    if (!watcher_->files().isEmpty()) {
        watcher_->removePaths(watcher_->files());
    }
    std::error_code error;
    if (!path.empty() && fs::exists(path, error)) {
        watcher_->addPath(toQString(path));
    }
}

void LevelDocument::fileTouched() {
    // A program that writes by renaming takes the watched file away.
    watchFile(false);
    if (changedOnDisk()) {
        emit fileChangedOnDisk();
    }
}

QString LevelDocument::keepUnsavedWork() {
    if (!modified()) {
        return {};
    }
    if (isReadOnly()) {
        return "Your unsaved changes were not kept: another editor holds the level.";
    }
    try {
        const auto path = writeRecoveryCopy(opened_->level, opened_->palette);
        return "Your unsaved changes were kept in " + toQString(path) + ".";
    } catch (const std::exception& error) {
        return "Your unsaved changes could not be kept: " + QString::fromStdString(error.what());
    }
}

void LevelDocument::keepRecoveryCopy() {
    const QString copy = toQString(recoveryPath(opened_->level));
    try {
        writeRecoveryCopy(opened_->level, opened_->palette);
    } catch (const std::exception& error) {
        const QString reason = QString::fromStdString(error.what());
        emit notice("The recovery copy could not be written: " + reason);
        // Once, not at every retry: a box every few seconds would stop the work.
        if (recoveryHealth_.failed() == RecoveryCopyHealth::Change::nowFailing) {
            emit recoveryTrouble("The recovery copy " + copy +
                                     " could not be written, so unsaved work would not "
                                     "survive a crash. Marvek keeps trying.\n\n" +
                                     reason,
                                 true);
        }
        return;
    }
    if (recoveryHealth_.written() == RecoveryCopyHealth::Change::workingAgain) {
        emit recoveryTrouble("The recovery copy " + copy + " is written again.", false);
    }
}

void LevelDocument::dropRecoveryCopy() {
    autosave_->settled();
    // A copy beside a level another editor holds is that editor's work.
    if (!isReadOnly() && !removeRecoveryCopy(opened_->level)) {
        emit notice("The recovery copy " + toQString(recoveryPath(opened_->level)) +
                    " could not be removed.");
    }
}

} // namespace marvek
