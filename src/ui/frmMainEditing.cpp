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
    switch (tool_) {
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
    if (toolDragOn()) {
        dragState_ = 0;
    }
    tool_ = tool;
    toolActions_[static_cast<std::size_t>(tool)]->setChecked(true);
    lblTool_->setText("Tool: " + activeTool().name());
    renderLevel();
}

void frmMain::escapeToBrush() {
    selectTool_->drop();
    chooseTool(Tool::brush);
    updateSelectionCommands();
}

std::optional<clsRectangle> frmMain::cellSelection() const {
    return selectTool_->selection();
}

ToolContext frmMain::toolContext(int shift, float x, float y) {
    return ToolContext{
        opened_->level,
        mode_,
        shift,
        levelCellAt(x, y),
        BrushPattern{brush_, brushCells(), specialsBrush()},
        selectedSpecial_,
        autoPlaceSpecials_,
        [this](const std::string& name, const std::function<void(clsLevel&)>& change) {
            editLevel(name, change);
        },
    };
}

void frmMain::renderToolMarks() {
    const clsLevel& level = opened_->level;
    const bool modifierHeld = mode_ == tilesMode ? tileModifierHeld_ : specialModifierHeld_;
    if (!modifierHeld && pointerOverLevel_) {
        const std::int32_t z = zoomFactor();
        const clsRenderOptions options = renderOptions();
        activeTool().preview(ToolPreview{
            level,
            levelBuffer_,
            levelCamera_,
            opened_->tileSet,
            options,
            mode_,
            levelCellAt(mouseX_, mouseY_),
            static_cast<std::int32_t>(std::nearbyint(mouseX_ / z)),
            static_cast<std::int32_t>(std::nearbyint(mouseY_ / z)),
            BrushPattern{brush_, brushCells(), specialsBrush()},
            selectedSpecial_,
        });
    }
    if (const auto& area = selectTool_->selection()) {
        renderDashedFrame(levelBuffer_, levelCamera_, level.tileSpacing, *area);
    }
}

void frmMain::updateSelectionCommands() {
    const bool selected = selectTool_ && selectTool_->selection().has_value();
    for (QAction* action : {itmEditCut_, itmEditCopy_, itmEditDelete_, itmEditSelectNone_}) {
        if (action != nullptr) {
            action->setEnabled(selected);
        }
    }
}

bool frmMain::copySelectionToClipboard() {
    const auto& area = selectTool_->selection();
    if (!opened_ || !area) {
        return false;
    }
    putCellsOnClipboard(copyCells(opened_->level, *area));
    return true;
}

void frmMain::editCopy() {
    releaseModifiers();
    if (copySelectionToClipboard()) {
        const auto& area = *selectTool_->selection();
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
    if (opened_ && selectTool_->selection()) {
        clearSelection("Delete");
    }
}

void frmMain::clearSelection(const std::string& command) {
    const clsRectangle area = *selectTool_->selection();
    // Specials mode works on the specials alone: the tiles stay.
    if (mode_ == specialsMode) {
        editLevel(command + " Specials", [&](clsLevel& level) { clearSpecials(level, area); });
    } else {
        editLevel(command, [&](clsLevel& level) { clearCells(level, area); });
    }
}

void frmMain::editPaste() {
    releaseModifiers();
    if (!opened_) {
        return;
    }
    ClipboardCells pasted;
    try {
        pasted = cellsFromClipboard(opened_->tileSet.count());
    } catch (const std::exception& error) {
        shared_.messages->show(this,
                               "Nothing was pasted: " + QString::fromStdString(error.what()) + ".",
                               messageStyle::exclamation);
        return;
    }
    if (mode_ == specialsMode && pasted.carriesSpecials) {
        pasteSpecials(std::move(pasted.block));
        return;
    }
    brush_ = pasted.block.tiles();
    if (pasted.carriesSpecials) {
        brushCells_ = std::move(pasted.block);
    } else {
        brushCells_.reset();
    }
    // The brush no longer comes from the palette.
    paletteSelectionVisible_ = false;
    // The pasted cells are a brush of tiles: they go down in Tiles mode.
    tabMode_->setCurrentIndex(tilesMode - 1);
    chooseTool(Tool::brush);
    renderPalette();
    statusBar()->showMessage(QString("Pasted %1 x %2 cells: click to put them down")
                                 .arg(brush_.width())
                                 .arg(brush_.height()));
}

void frmMain::pasteSpecials(CellBlock block) {
    specialsBrush_ = std::move(block);
    chooseTool(Tool::brush);
    renderLevel();
    statusBar()->showMessage(QString("Pasted the specials of %1 x %2 cells: click to put them down")
                                 .arg(specialsBrush_->width())
                                 .arg(specialsBrush_->height()));
}

void frmMain::editSelectAll() {
    releaseModifiers();
    if (opened_) {
        selectTool_->selectAll(opened_->level);
        updateSelectionCommands();
        renderLevel();
    }
}

void frmMain::editSelectNone() {
    releaseModifiers();
    selectTool_->drop();
    updateSelectionCommands();
    renderLevel();
}

void frmMain::editReplaceTile() {
    releaseModifiers();
    if (!opened_) {
        return;
    }
    clsLevel& level = opened_->level;
    // Only tiles the user pointed at or chose start in the boxes: a guess
    // there would make a first Enter replace cells nobody meant.
    const QPoint cell = levelCellAt(mouseX_, mouseY_);
    std::optional<std::int32_t> underPointer;
    if (pointerOverLevel_ && level.contains(cell.x(), cell.y())) {
        underPointer = level.cellAt(cell.x(), cell.y()).tile;
    }
    // The brush a level opens with (tile 1, the palette's corner outlined).
    const bool startingBrush = paletteSelectionVisible_ && paletteSelection_.left == 0 &&
                               paletteSelection_.top == 0 && paletteSelection_.width == 0 &&
                               paletteSelection_.height == 0 && brush_.width() == 1 &&
                               brush_.height() == 1 && brush_.at(0, 0) == 1;
    std::optional<std::int32_t> brushTile;
    if (!brush_.empty() && !startingBrush) {
        brushTile = brush_.at(0, 0);
    }
    const auto& selection = selectTool_->selection();
    if (!replaceTile_->showModal(underPointer, brushTile, opened_->tileSet,
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
    editLevel("Replace Tile",
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
    if (!opened_ || index < 0) {
        return;
    }
    const auto wanted = static_cast<std::size_t>(index);
    bool moved = false;
    while (history_.applied() > wanted && !history_.undo(opened_->level).empty()) {
        moved = true;
    }
    while (history_.applied() < wanted && !history_.redo(opened_->level).empty()) {
        moved = true;
    }
    if (moved) {
        opened_->level.modified = true;
        renderLevel();
    }
    updateCommands();
}

} // namespace marvek
