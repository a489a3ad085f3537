// The main window's mouse editing: a small state machine over dragState_.
#include "ui/frmMain.h"

#include "app/SharedObjects.h"
#include "app/autosave.h"
#include "app/qtPaths.h"
#include "data/openLevel.h"
#include "data/tilePalette.h"
#include "native/marvek.h"
#include "ui/BrushTool.h"
#include "ui/LevelTool.h"
#include "ui/PictureBox.h"
#include "ui/SelectTool.h"

#include <QStatusBar>

#include <cmath>

namespace marvek {
namespace {

// Mouse buttons and modifier masks as the picture boxes report them.
constexpr int leftButton = 1;
constexpr int rightButton = 2;
constexpr int middleButton = 4;
constexpr int shiftMask = 1;
constexpr int ctrlMask = 2;

// Drag states; 0 is idle.
constexpr std::int32_t scrolling = 1;
constexpr std::int32_t choosingTiles = 2;
constexpr std::int32_t copying = 4;
constexpr std::int32_t filling = 6;

// Selections stop at the game's standard level size whatever the open
// level's size, and only on the high side: deliberate, the level operations
// skip what lies outside.
constexpr std::int32_t lastColumn = 299;
constexpr std::int32_t lastRow = 84;

constexpr std::int32_t paletteColumns = 20;
constexpr std::int32_t paletteCell = 16;

std::int32_t rounded(double value) {
    return static_cast<std::int32_t>(std::nearbyint(value));
}

} // namespace

QPoint frmMain::levelCellAt(float x, float y) const {
    const std::int32_t z = zoomFactor();
    const std::int32_t pitch = opened_->level.tileSpacing;
    return {(rounded(double(x) / z) + levelCamera_.x) / pitch,
            (rounded(double(y) / z) + levelCamera_.y) / pitch};
}

QPoint frmMain::paletteCellAt(float x, float y) const {
    return {(rounded(x) + paletteCamera_.x) / paletteCell,
            (rounded(y) + paletteCamera_.y) / paletteCell};
}

void frmMain::levelPressed(int button, int shift, float x, float y) {
    if (!opened_) {
        return;
    }
    mouseX_ = std::nearbyint(x);
    mouseY_ = std::nearbyint(y);
    if (button == middleButton) {
        startPan(x, y);
        return;
    }
    if (button == rightButton && dragState_ == 0) {
        dragState_ = scrolling;
        dragStart_ = shared_.cursor->pos();
        picLevel_->setCursor(Qt::SizeAllCursor);
        return;
    }
    if (button != leftButton) {
        return;
    }
    // The modifier mask is compared whole: Shift alone, Ctrl alone.
    if (shift == shiftMask && mode_ == tilesMode) {
        dragState_ = copying;
        startSelection(createBGRA(255, 0, 0, 80));
    } else if (shift == ctrlMask && dragState_ == 0) {
        dragState_ = filling;
        startSelection(createBGRA(0, 255, 0, 80));
    } else if (mode_ == specialsMode && shift == shiftMask) {
        const QPoint cell = levelCellAt(x, y);
        const clsLevel& level = opened_->level;
        const std::uint8_t id =
            level.contains(cell.x(), cell.y()) ? level.getSpecial(cell.x(), cell.y()) : 0;
        const clsSpecialSet& set = opened_->specialSet;
        selectedSpecial_ = set.getSpecialLUT(id);
        specialsBrush_.reset();
        if (selectedSpecial_ == nullptr && set.count() > 0) {
            selectedSpecial_ = &set.getSpecial(0);
        }
        renderLevel();
        renderPalette();
    } else {
        // The plain press is the active tool's.
        ToolContext context = toolContext(shift, x, y);
        if (const std::int32_t state = activeTool().press(context); state != 0) {
            dragState_ = state;
        }
        updateSelectionCommands();
    }
}

void frmMain::levelMoved(int buttons, int shift, float x, float y) {
    mouseX_ = std::nearbyint(x);
    mouseY_ = std::nearbyint(y);
    pointerOverLevel_ = true;
    if (!opened_) {
        return;
    }
    const bool leftHeld = (buttons & leftButton) != 0;
    if (panning_) {
        panTo(x, y);
    } else if (dragState_ == scrolling) {
        scrollDrag();
    } else if (leftHeld && toolDragOn()) {
        ToolContext context = toolContext(shift, x, y);
        activeTool().drag(context);
        // A long stroke goes on changing the level after its one undo step.
        if (opened_->level.modified) {
            autosave_->changed();
        }
        renderLevel();
    } else if (leftHeld &&
               ((dragState_ == copying && mode_ == tilesMode) || dragState_ == filling)) {
        dragSelection(x, y);
    } else if (dragState_ == 0) {
        renderLevel();
    }
    showCellStatus();
}

void frmMain::levelReleased(int button, int shift, float x, float y) {
    if (button == middleButton) {
        // A pan ends on its own; a drag of another button goes on.
        panning_ = false;
        if (dragState_ == 0) {
            picLevel_->unsetCursor();
        }
        return;
    }
    const std::int32_t state = dragState_;
    if (button == rightButton && state == scrolling) {
        // The gesture's work was done as the pointer moved.
    } else if (toolDragOn()) {
        ToolContext context = toolContext(shift, x, y);
        activeTool().release(context);
        if (state == BrushTool::painting) {
            // The stroke's whole work is known only now.
            nameStepBySpecials();
            updateCommands();
        }
        updateSelectionCommands();
    } else if (mode_ == tilesMode && state == copying) {
        copySelection();
    } else if (state == filling) {
        fillSelection();
    }
    picLevel_->unsetCursor();
    dragState_ = 0;
    showCellStatus();
}

void frmMain::levelLeft() {
    pointerOverLevel_ = false;
    if (dragState_ == 0) {
        renderLevel();
    }
    statusBar()->clearMessage();
}

bool frmMain::selectionDragOn() const noexcept {
    return dragState_ == copying || dragState_ == filling;
}

bool frmMain::toolDragOn() const noexcept {
    return (dragState_ == BrushTool::painting && mode_ == tilesMode) ||
           (dragState_ == BrushTool::placing && mode_ == specialsMode) ||
           dragState_ == SelectTool::selecting;
}

void frmMain::scrollDrag() {
    // The pointer goes back to where the drag began, so the view moves by
    // each step the mouse makes, scaled, however far the user drags.
    const QPoint now = shared_.cursor->pos();
    levelCamera_.moveRelative(rounded(double(now.x() - dragStart_.x()) * moveSensitivity_),
                              rounded(double(now.y() - dragStart_.y()) * moveSensitivity_));
    shared_.cursor->setPos(dragStart_);
    renderLevel();
}

void frmMain::startSelection(std::uint32_t colour) {
    const QPoint cell = levelCellAt(mouseX_, mouseY_);
    selection_ = clsRectangle();
    selection_.left = cell.x();
    selection_.top = cell.y();
    selection_.colour = static_cast<std::int32_t>(colour);
    selectionVisible_ = true;
    renderLevel();
}

void frmMain::dragSelection(float x, float y) {
    const QPoint cell = levelCellAt(x, y);
    selection_.width = cell.x() - selection_.left;
    selection_.height = cell.y() - selection_.top;
    if (selection_.left + selection_.width > lastColumn) {
        selection_.width = lastColumn - selection_.left;
    }
    if (selection_.top + selection_.height > lastRow) {
        selection_.height = lastRow - selection_.top;
    }
    renderLevel();
}

void frmMain::copySelection() {
    releaseModifiers();
    selection_.Normalize();
    brush_ = opened_->level.getTiles(selection_);
    brushCells_.reset();
    // The brush no longer comes from the palette.
    paletteSelectionVisible_ = false;
    renderLevel();
    renderPalette();
}

void frmMain::fillSelection() {
    releaseModifiers();
    selection_.Normalize();
    if (mode_ == tilesMode && brushCells_) {
        // Pasted cells bring their own specials, as they do when painted.
        editLevel("Fill",
                  [this](clsLevel& level) { fillCellRectangle(level, *brushCells_, selection_); });
    } else if (mode_ == tilesMode) {
        editLevel("Fill", [this](clsLevel& level) {
            level.fillTileRectangle(brush_, selection_, autoPlaceSpecials_);
        });
    } else if (selectedSpecial_ != nullptr) {
        editLevel("Fill Specials", [this](clsLevel& level) {
            level.fillSpecialRectangle(*selectedSpecial_, selection_);
        });
    }
}

void frmMain::palettePressed(int button, int /*shift*/, float x, float y) {
    if (!opened_ || button != leftButton) {
        return;
    }
    if (mode_ == tilesMode) {
        const QPoint cell = paletteCellAt(x, y);
        if (tilePaletteHolds(opened_->tileSet.count(), cell.x(), cell.y())) {
            dragState_ = choosingTiles;
            paletteSelection_ = clsRectangle();
            paletteSelection_.left = cell.x();
            paletteSelection_.top = cell.y();
            paletteSelectionVisible_ = true;
            renderPalette();
        }
        return;
    }
    if (const clsSpecial* special =
            opened_->specialSet.getSelected(rounded(y) + paletteCamera_.y)) {
        selectedSpecial_ = special;
        specialsBrush_.reset();
    }
    renderPalette();
}

void frmMain::paletteMoved(int /*buttons*/, int /*shift*/, float x, float y) {
    if (!opened_ || dragState_ != choosingTiles) {
        return;
    }
    const QPoint cell = paletteCellAt(x, y);
    clsRectangle dragged = paletteSelection_;
    dragged.width = cell.x() - dragged.left;
    dragged.height = cell.y() - dragged.top;
    paletteSelection_ = limitTileSelection(dragged, opened_->tileSet.count());
    renderPalette();
}

void frmMain::paletteReleased(int /*button*/, int /*shift*/, float /*x*/, float /*y*/) {
    if (!opened_ || dragState_ != choosingTiles) {
        return;
    }
    clsRectangle& area = paletteSelection_;
    area.Normalize();
    brush_ = TileGrid(area.width + 1, area.height + 1);
    brushCells_.reset();
    for (std::int32_t j = 0; j <= area.height; ++j) {
        for (std::int32_t i = 0; i <= area.width; ++i) {
            brush_.at(i, j) = (area.top + j) * paletteColumns + area.left + i;
        }
    }
    dragState_ = 0;
    renderPalette();
}

void frmMain::showCellStatus() {
    if (!opened_ || !pointerOverLevel_) {
        return;
    }
    const QPoint cell = levelCellAt(mouseX_, mouseY_);
    const clsLevel& level = opened_->level;
    if (!level.contains(cell.x(), cell.y())) {
        statusBar()->clearMessage();
        return;
    }
    const Cell& content = level.cellAt(cell.x(), cell.y());
    QString special = "Special: none";
    if (content.special != 0) {
        const clsSpecial* definition = opened_->specialSet.getSpecialLUT(content.special);
        special = QString("Special %1: %2")
                      .arg(int{content.special})
                      .arg(definition != nullptr ? toQString(definition->Name) : "undefined");
    }
    statusBar()->showMessage(QString("Cell (%1, %2)    Tile %3    %4")
                                 .arg(cell.x())
                                 .arg(cell.y())
                                 .arg(content.tile)
                                 .arg(special));
}

} // namespace marvek
