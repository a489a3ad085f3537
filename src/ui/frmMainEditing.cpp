// The main window's editing tools, selection, clipboard commands and the
// History dock.
#include "ui/frmMain.h"

#include "app/SharedObjects.h"
#include "app/clsMessageBox.h"
#include "app/qtPaths.h"
#include "data/CellBlock.h"
#include "data/cellClipboard.h"
#include "data/editOverlays.h"
#include "data/openLevel.h"
#include "ui/BrushTool.h"
#include "ui/BucketFillTool.h"
#include "ui/HistoryPanel.h"
#include "ui/LevelDocument.h"
#include "ui/LevelView.h"
#include "ui/PaletteStrip.h"
#include "ui/PanelDock.h"
#include "ui/SelectTool.h"
#include "ui/frmReplaceTile.h"
#include "ui/systemClipboard.h"

#include <QAction>
#include <QActionGroup>
#include <QEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QTabBar>
#include <QToolBar>

#include <cmath>
#include <exception>

namespace marvek {
namespace {

struct ToolEntry {
    frmMain::Tool tool;
    const char* name;
    const char* caption;
    const char* key;
};

constexpr ToolEntry toolEntries[] = {
    {frmMain::Tool::brush, "itmToolBrush", "&Brush", "P"},
    {frmMain::Tool::bucketFill, "itmToolBucketFill", "Bucket &Fill", "F"},
    {frmMain::Tool::select, "itmToolSelect", "&Select", "R"},
};

QString cellCount(std::int64_t count) {
    return count == 1 ? QString("1 cell") : QString("%1 cells").arg(count);
}

} // namespace

void frmMain::buildEditing(QMenu& edit) {
    brushTool_ = std::make_unique<BrushTool>();
    bucketFillTool_ = std::make_unique<BucketFillTool>();
    selectTool_ = std::make_unique<SelectTool>();

    edit.addSeparator();
    itmEditCut_ = addCommand(edit, "itmEditCut", "Cu&t", QKeySequence::Cut);
    connect(itmEditCut_, &QAction::triggered, this, &frmMain::editCut);
    itmEditCopy_ = addCommand(edit, "itmEditCopy", "&Copy", QKeySequence::Copy);
    connect(itmEditCopy_, &QAction::triggered, this, &frmMain::editCopy);
    QAction* paste = addCommand(edit, "itmEditPaste", "&Paste", QKeySequence::Paste);
    connect(paste, &QAction::triggered, this, &frmMain::editPaste);
    enableWhileClipboardHoldsCells(*paste);
    itmEditDelete_ = addCommand(edit, "itmEditDelete", "&Delete", QKeySequence(Qt::Key_Delete));
    connect(itmEditDelete_, &QAction::triggered, this, &frmMain::editDelete);
    edit.addSeparator();
    connect(addCommand(edit, "itmEditSelectAll", "Select &All", QKeySequence("Ctrl+A")),
            &QAction::triggered, this, &frmMain::editSelectAll);
    itmEditSelectNone_ =
        addCommand(edit, "itmEditSelectNone", "Select &None", QKeySequence("Ctrl+Shift+A"));
    connect(itmEditSelectNone_, &QAction::triggered, this, &frmMain::editSelectNone);
    connect(addCommand(edit, "itmEditReplaceTile", "Replace T&ile...", QKeySequence("Ctrl+H")),
            &QAction::triggered, this, &frmMain::editReplaceTile);
    buildToolActions(edit);
    replaceTile_ = new frmReplaceTile(this);

    lblTool_ = new QLabel(this);
    lblTool_->setObjectName("lblTool");
    statusBar()->addPermanentWidget(lblTool_);
    chooseTool(Tool::brush);
}

void frmMain::buildToolActions(QMenu& edit) {
    QMenu* tools = edit.addMenu("T&ools");
    tools->setObjectName("mnuEditTools");
    auto* toolBar = addToolBar("Tools");
    toolBar->setObjectName("tbrTools");
    toolBar->setMovable(false);
    toolBar->setFocusPolicy(Qt::NoFocus);
    toolBar->setToolButtonStyle(Qt::ToolButtonTextOnly);
    auto* group = new QActionGroup(this);
    for (std::size_t i = 0; i < std::size(toolEntries); ++i) {
        const ToolEntry& entry = toolEntries[i];
        QAction* action = addCommand(*tools, entry.name, entry.caption, QKeySequence(entry.key));
        action->setCheckable(true);
        action->setToolTip(QString(entry.caption).remove('&') + " (" + entry.key + ")");
        group->addAction(action);
        toolBar->addAction(action);
        toolActions_[i] = action;
        const Tool tool = entry.tool;
        connect(action, &QAction::triggered, this, [this, tool] { chooseTool(tool); });
    }
}

void frmMain::buildHistoryDock() {
    historyDock_ = new PanelDock("History", "dockHistory", this);
    historyPanel_ = new HistoryPanel(historyDock_);
    historyDock_->setWidget(historyPanel_);
    addDockWidget(Qt::RightDockWidgetArea, historyDock_);
    historyDock_->hide();
    connect(historyPanel_, &HistoryPanel::entryChosen, this, &frmMain::goToHistoryEntry);
}

LevelTool& frmMain::activeTool() const {
    switch (editing_.tool) {
    case Tool::bucketFill:
        return *bucketFillTool_;
    case Tool::select:
        return *selectTool_;
    case Tool::brush:
        break;
    }
    return *brushTool_;
}

void frmMain::chooseTool(Tool tool) {
    if (LevelView* view = currentView();
        view != nullptr && view->gesture() == LevelView::Gesture::toolDrag) {
        view->cancelGesture();
    }
    editing_.tool = tool;
    toolActions_[static_cast<std::size_t>(tool)]->setChecked(true);
    lblTool_->setText("Tool: " + activeTool().name());
    if (LevelView* view = currentView()) {
        view->scheduleRedraw();
    }
}

void frmMain::escapeToBrush() {
    if (LevelDocument* document = currentDocument()) {
        document->setSelection(std::nullopt);
    }
    chooseTool(Tool::brush);
    updateSelectionCommands();
}

std::optional<clsRectangle> frmMain::cellSelection() const {
    const LevelDocument* document = currentDocument();
    return document != nullptr ? document->selection() : std::nullopt;
}

void frmMain::updateSelectionCommands() {
    const bool selected = cellSelection().has_value();
    for (QAction* action : {itmEditCut_, itmEditCopy_, itmEditDelete_, itmEditSelectNone_}) {
        if (action != nullptr) {
            action->setEnabled(selected);
        }
    }
}

bool frmMain::copySelectionToClipboard() {
    const auto area = cellSelection();
    if (!area) {
        return false;
    }
    putCellsOnClipboard(copyCells(currentDocument()->level(), *area));
    return true;
}

void frmMain::editCopy() {
    releaseModifiers();
    if (copySelectionToClipboard()) {
        const clsRectangle area = *cellSelection();
        statusBar()->showMessage(
            QString("Copied %1 x %2 cells").arg(area.width + 1).arg(area.height + 1));
    }
}

void frmMain::editCut() {
    releaseModifiers();
    if (copySelectionToClipboard()) {
        clearSelection("Cut");
    }
}

void frmMain::editDelete() {
    releaseModifiers();
    if (cellSelection()) {
        clearSelection("Delete");
    }
}

void frmMain::clearSelection(const std::string& command) {
    const clsRectangle area = *cellSelection();
    // Specials mode works on the specials alone: the tiles stay.
    if (editing_.mode == specialsMode) {
        currentDocument()->edit(command + " Specials", rangeOf(area),
                                [&](clsLevel& level) { clearSpecials(level, area); });
    } else {
        currentDocument()->edit(command, rangeOf(area),
                                [&](clsLevel& level) { clearCells(level, area); });
    }
}

void frmMain::editPaste() {
    releaseModifiers();
    if (currentDocument() == nullptr) {
        return;
    }
    ClipboardCells pasted;
    try {
        pasted = cellsFromClipboard(currentDocument()->opened().tileSet.count());
    } catch (const std::exception& error) {
        shared_.messages->show(this,
                               "Nothing was pasted: " + QString::fromStdString(error.what()) + ".",
                               messageStyle::exclamation);
        return;
    }
    if (editing_.mode == specialsMode && pasted.carriesSpecials) {
        pasteSpecials(std::move(pasted.block));
        return;
    }
    editing_.brush = pasted.block.tiles();
    if (pasted.carriesSpecials) {
        editing_.brushCells = std::move(pasted.block);
    } else {
        editing_.brushCells.reset();
    }
    // The brush no longer comes from the palette.
    editing_.paletteSelectionVisible = false;
    // The pasted cells are a brush of tiles: they go down in Tiles mode.
    tabMode_->setCurrentIndex(tilesMode - 1);
    chooseTool(Tool::brush);
    palette_->redraw();
    statusBar()->showMessage(QString("Pasted %1 x %2 cells: click to put them down")
                                 .arg(editing_.brush.width())
                                 .arg(editing_.brush.height()));
}

void frmMain::pasteSpecials(CellBlock block) {
    editing_.specialsBrush = std::move(block);
    chooseTool(Tool::brush);
    statusBar()->showMessage(QString("Pasted the specials of %1 x %2 cells: click to put them down")
                                 .arg(editing_.specialsBrush->width())
                                 .arg(editing_.specialsBrush->height()));
}

void frmMain::editSelectAll() {
    releaseModifiers();
    if (LevelDocument* document = currentDocument()) {
        document->setSelection(SelectTool::wholeLevel(document->level()));
    }
}

void frmMain::editSelectNone() {
    releaseModifiers();
    if (LevelDocument* document = currentDocument()) {
        document->setSelection(std::nullopt);
    }
}

void frmMain::editReplaceTile() {
    releaseModifiers();
    LevelDocument* document = currentDocument();
    if (document == nullptr) {
        return;
    }
    const clsLevel& level = document->level();
    const LevelView& view = *currentView();
    // Only tiles the user pointed at or chose start in the boxes: a guess
    // there would make a first Enter replace cells nobody meant.
    const QPoint cell = view.pointerCell();
    std::optional<std::int32_t> underPointer;
    if (view.pointerOver() && level.contains(cell.x(), cell.y())) {
        underPointer = level.cellAt(cell.x(), cell.y()).tile;
    }
    // The brush a level opens with (tile 1, the palette's corner outlined).
    const TileGrid& brush = editing_.brush;
    const clsRectangle& chosen = editing_.paletteSelection;
    const bool startingBrush = editing_.paletteSelectionVisible && chosen.left == 0 &&
                               chosen.top == 0 && chosen.width == 0 && chosen.height == 0 &&
                               brush.width() == 1 && brush.height() == 1 && brush.at(0, 0) == 1;
    std::optional<std::int32_t> brushTile;
    if (!brush.empty() && !startingBrush) {
        brushTile = brush.at(0, 0);
    }
    const auto selection = document->selection();
    if (!replaceTile_->showModal(underPointer, brushTile, document->opened().tileSet,
                                 clsLevel::largestFileTile, selection.has_value())) {
        return;
    }
    const std::int32_t from = replaceTile_->from();
    const std::int32_t to = replaceTile_->to();
    const clsRectangle* area = replaceTile_->selectionOnly() ? &*selection : nullptr;
    const QString where = area != nullptr ? "in the selection" : "in the level";
    const std::int64_t found = countTile(level, from, area);
    if (found == 0 || from == to) {
        shared_.messages->show(
            this,
            from == to
                ? QString("Tile %1 is already tile %2: nothing to replace.").arg(from).arg(to)
                : QString("No cell %1 holds tile %2.").arg(where).arg(from),
            messageStyle::information);
        return;
    }
    std::int64_t replaced = 0;
    const CellRange range =
        area != nullptr ? rangeOf(*area) : CellRange{0, 0, level.width - 1, level.height - 1};
    document->edit("Replace Tile", range,
                   [&](clsLevel& edited) { replaced = replaceTile(edited, from, to, area); });
    shared_.messages->show(this,
                           QString("Replaced tile %1 with tile %2 in %3 %4.")
                               .arg(from)
                               .arg(to)
                               .arg(cellCount(replaced))
                               .arg(where),
                           messageStyle::information);
}

void frmMain::goToHistoryEntry(int index) {
    releaseModifiers();
    LevelDocument* document = currentDocument();
    if (document != nullptr && index >= 0) {
        document->goToEntry(static_cast<std::size_t>(index));
    }
    updateCommands();
}

} // namespace marvek
