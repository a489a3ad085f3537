// The Edit menu's commands: undo and the History, the clipboard and the
// selection, Replace Tile and the palette.
#include "ui/EditCommands.h"

#include "app/SharedObjects.h"
#include "app/clsMessageBox.h"
#include "data/CellBlock.h"
#include "data/cellArea.h"
#include "data/openLevel.h"
#include "ui/EditingState.h"
#include "ui/LevelDocument.h"
#include "ui/LevelView.h"
#include "ui/frmEditPalette.h"
#include "ui/frmReplaceTile.h"
#include "ui/frmStatus.h"
#include "ui/systemClipboard.h"

#include <QWidget>

#include <exception>
#include <utility>

namespace marvek {
namespace {

QString cellCount(std::int64_t count) {
    return count == 1 ? QString("1 cell") : QString("%1 cells").arg(count);
}

QString size(std::int32_t width, std::int32_t height) {
    return QString("%1 x %2").arg(width).arg(height);
}

} // namespace

EditCommands::EditCommands(SharedObjects& shared, EditingState& editing, EditDialogs dialogs,
                           std::function<LevelView*()> currentView, QWidget& window)
    : QObject(&window), shared_(shared), editing_(editing), dialogs_(dialogs),
      currentView_(std::move(currentView)), window_(window) {}

LevelDocument* EditCommands::startCommand() const {
    LevelView* view = currentView_();
    if (view == nullptr) {
        return nullptr;
    }
    view->releaseModifiers();
    return &view->document();
}

void EditCommands::tell(const QString& text, int style) const {
    shared_.messages->show(&window_, text, style);
}

std::optional<clsRectangle> EditCommands::selection() const {
    const LevelView* view = currentView_();
    return view != nullptr ? view->document().selection() : std::nullopt;
}

void EditCommands::undo() {
    if (LevelDocument* document = startCommand()) {
        document->undo();
    }
}

void EditCommands::redo() {
    if (LevelDocument* document = startCommand()) {
        document->redo();
    }
}

void EditCommands::goToHistoryEntry(int index) {
    LevelDocument* document = startCommand();
    if (document != nullptr && index >= 0) {
        document->goToEntry(static_cast<std::size_t>(index));
    }
}

bool EditCommands::copyToClipboard(const LevelDocument& document) {
    const auto& area = document.selection();
    if (!area) {
        return false;
    }
    putCellsOnClipboard(copyCells(document.level(), *area));
    return true;
}

void EditCommands::copy() {
    LevelDocument* document = startCommand();
    if (document != nullptr && copyToClipboard(*document)) {
        const clsRectangle& area = *document->selection();
        emit statusMessage("Copied " + size(area.width + 1, area.height + 1) + " cells");
    }
}

void EditCommands::cut() {
    LevelDocument* document = startCommand();
    if (document != nullptr && copyToClipboard(*document)) {
        clearSelection(*document, "Cut");
    }
}

void EditCommands::deleteSelection() {
    LevelDocument* document = startCommand();
    if (document != nullptr && document->selection()) {
        clearSelection(*document, "Delete");
    }
}

void EditCommands::clearSelection(LevelDocument& document, const std::string& command) {
    const clsRectangle area = *document.selection();
    // Specials mode works on the specials alone: the tiles stay.
    if (editing_.mode == editingMode::specials) {
        document.edit(command + " Specials", rangeOf(area),
                      [&](clsLevel& level) { clearSpecials(level, area); });
    } else {
        document.edit(command, rangeOf(area), [&](clsLevel& level) { clearCells(level, area); });
    }
}

void EditCommands::paste() {
    const LevelDocument* document = startCommand();
    if (document == nullptr) {
        return;
    }
    ClipboardCells pasted;
    try {
        pasted = cellsFromClipboard(document->opened().tileSet.count());
    } catch (const std::exception& error) {
        tell("Nothing was pasted: " + QString::fromStdString(error.what()) + ".",
             messageStyle::exclamation);
        return;
    }
    const QString pastedSize = size(pasted.block.width(), pasted.block.height());
    if (editing_.mode == editingMode::specials && pasted.carriesSpecials) {
        editing_.useSpecials(std::move(pasted.block));
        emit brushPasted(editingMode::specials);
        emit statusMessage("Pasted the specials of " + pastedSize +
                           " cells: click to put them down");
        return;
    }
    if (pasted.carriesSpecials) {
        editing_.useCells(std::move(pasted.block));
    } else {
        editing_.useTiles(pasted.block.tiles());
    }
    // The pasted cells are a brush of tiles: they go down in Tiles mode.
    emit brushPasted(editingMode::tiles);
    emit statusMessage("Pasted " + pastedSize + " cells: click to put them down");
}

void EditCommands::selectAll() {
    if (LevelDocument* document = startCommand()) {
        document->setSelection(levelArea(document->level()));
    }
}

void EditCommands::selectNone() {
    if (LevelDocument* document = startCommand()) {
        document->setSelection(std::nullopt);
    }
}

void EditCommands::replaceTile() {
    LevelDocument* document = startCommand();
    if (document == nullptr) {
        return;
    }
    const clsLevel& level = document->level();
    const LevelView& view = *currentView_();
    // Only tiles the user pointed at or chose start in the boxes: a guess
    // there would make a first Enter replace cells nobody meant.
    const QPoint cell = view.pointerCell();
    std::optional<std::int32_t> underPointer;
    if (view.pointerOver() && level.contains(cell.x(), cell.y())) {
        underPointer = level.cellAt(cell.x(), cell.y()).tile;
    }
    const auto selected = document->selection();
    frmReplaceTile& dialog = dialogs_.replaceTile;
    if (!dialog.showModal(underPointer, editing_.chosenTile(), document->opened().tileSet,
                          clsLevel::largestFileTile, selected.has_value())) {
        return;
    }
    const std::int32_t from = dialog.from();
    const std::int32_t to = dialog.to();
    const clsRectangle* area = dialog.selectionOnly() ? &*selected : nullptr;
    const QString where = area != nullptr ? "in the selection" : "in the level";
    if (from == to) {
        tell(QString("Tile %1 is already tile %2: nothing to replace.").arg(from).arg(to),
             messageStyle::information);
        return;
    }
    if (countTile(level, from, area) == 0) {
        tell(QString("No cell %1 holds tile %2.").arg(where).arg(from), messageStyle::information);
        return;
    }
    std::int64_t replaced = 0;
    document->edit(
        "Replace Tile", area != nullptr ? rangeOf(*area) : wholeLevel(level),
        [&](clsLevel& edited) { replaced = marvek::replaceTile(edited, from, to, area); });
    tell(QString("Replaced tile %1 with tile %2 in %3 %4.")
             .arg(from)
             .arg(to)
             .arg(cellCount(replaced))
             .arg(where),
         messageStyle::information);
}

void EditCommands::editPalette() {
    LevelDocument* document = startCommand();
    if (document == nullptr) {
        return;
    }
    dialogs_.editPalette.Setup(document->opened().palette);
    if (!dialogs_.editPalette.showModal()) {
        return;
    }
    dialogs_.status.setStatus("Reloading graphics...");
    try {
        document->changePalette(dialogs_.editPalette.palette());
    } catch (const std::exception& error) {
        dialogs_.status.hideStatus();
        tell("The graphics could not be read again with the new palette, so the palette stays "
             "as it was.\n\n" +
                 QString::fromStdString(error.what()),
             messageStyle::exclamation);
        return;
    }
    dialogs_.status.hideStatus();
}

} // namespace marvek
