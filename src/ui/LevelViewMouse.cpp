// A level view's pointer gestures.
#include "ui/LevelView.h"

#include "app/SharedObjects.h"
#include "app/qtPaths.h"
#include "data/levelNavigation.h"
#include "data/openLevel.h"
#include "native/marvek.h"
#include "ui/EditingState.h"
#include "ui/LevelDocument.h"
#include "ui/LevelTool.h"
#include "ui/PictureBox.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace marvek {
namespace {

// Mouse buttons and modifier masks as the picture box reports them.
constexpr int leftButton = 1;
constexpr int rightButton = 2;
constexpr int middleButton = 4;
constexpr int shiftMask = 1;
constexpr int ctrlMask = 2;

// Selections stop at the game's standard level size whatever the open
// level's size, and only on the high side: deliberate, the level operations
// skip what lies outside.
constexpr std::int32_t lastColumn = 299;
constexpr std::int32_t lastRow = 84;

std::int32_t rounded(double value) {
    return static_cast<std::int32_t>(std::nearbyint(value));
}

} // namespace

QPoint LevelView::cellAt(float x, float y) const {
    const std::int32_t pitch = document_.level().tileSpacing;
    return {(rounded(x / scale()) + camera_.x) / pitch, (rounded(y / scale()) + camera_.y) / pitch};
}

QPoint LevelView::pointerCell() const {
    return cellAt(mouseX_, mouseY_);
}

ToolContext LevelView::toolContext(int shift, float x, float y) {
    EditingState& editing = services_.editing;
    return ToolContext{
        document_.level(),
        editing.mode,
        shift,
        cellAt(x, y),
        BrushPattern{editing.brush, editing.brushCells ? &*editing.brushCells : nullptr,
                     editing.specialsBrush ? &*editing.specialsBrush : nullptr},
        editing.special(document_.opened().specialSet),
        editing.autoPlaceSpecials,
        [this](const std::string& name, const CellRange& range, const LevelChange& change) {
            document_.edit(name, range, change, services_.editing.autoPlacing(name));
        },
        [this](const CellRange& range, const LevelChange& change) {
            document_.continueEdit(range, change);
        },
        [this](std::optional<clsRectangle> area) { document_.setSelection(area); },
    };
}

void LevelView::pressed(int button, int shift, float x, float y) {
    mouseX_ = std::nearbyint(x);
    mouseY_ = std::nearbyint(y);
    if (button == middleButton) {
        startPan(x, y);
        return;
    }
    if (button == rightButton && gesture_ == Gesture::none) {
        gesture_ = Gesture::scrolling;
        dragStart_ = services_.shared.cursor->pos();
        picLevel_->setCursor(Qt::SizeAllCursor);
        return;
    }
    if (button != leftButton) {
        return;
    }
    const std::int32_t mode = services_.editing.mode;
    // The modifier mask is compared whole: Shift alone, Ctrl alone.
    if (shift == shiftMask && mode == editingMode::tiles) {
        gesture_ = Gesture::copying;
        startArea(createBGRA(255, 0, 0, 80));
    } else if (shift == ctrlMask && gesture_ == Gesture::none) {
        gesture_ = Gesture::filling;
        startArea(createBGRA(0, 255, 0, 80));
    } else if (mode == editingMode::specials && shift == shiftMask) {
        pickSpecial(x, y);
    } else {
        // The plain press is the active tool's.
        ToolContext context = toolContext(shift, x, y);
        if (activeTool().press(context)) {
            gesture_ = Gesture::toolDrag;
        }
    }
}

void LevelView::pickSpecial(float x, float y) {
    const QPoint cell = cellAt(x, y);
    const clsLevel& level = document_.level();
    const std::uint8_t id =
        level.contains(cell.x(), cell.y()) ? level.getSpecial(cell.x(), cell.y()) : 0;
    const clsSpecialSet& set = document_.opened().specialSet;
    EditingState& editing = services_.editing;
    editing.specialsBrush.reset();
    if (set.getSpecialLUT(id) != nullptr) {
        editing.specialId = id;
    } else if (set.count() > 0) {
        editing.specialId = set.getSpecial(0).Id;
    }
    scheduleRedraw();
    emit brushChanged();
}

void LevelView::moved(int buttons, int shift, float x, float y) {
    mouseX_ = std::nearbyint(x);
    mouseY_ = std::nearbyint(y);
    pointerOver_ = true;
    const bool leftHeld = (buttons & leftButton) != 0;
    if (panning_) {
        panTo(x, y);
    } else if (gesture_ == Gesture::scrolling) {
        scrollDrag();
    } else if (leftHeld && gesture_ == Gesture::toolDrag &&
               activeTool().dragsIn(services_.editing.mode)) {
        ToolContext context = toolContext(shift, x, y);
        activeTool().drag(context);
    } else if (leftHeld &&
               ((gesture_ == Gesture::copying && services_.editing.mode == editingMode::tiles) ||
                gesture_ == Gesture::filling)) {
        dragArea(x, y);
    } else if (gesture_ == Gesture::none) {
        scheduleRedraw();
    }
    showCellStatus();
}

void LevelView::released(int button, int shift, float x, float y) {
    if (button == middleButton) {
        // A pan ends on its own; a drag of another button goes on.
        panning_ = false;
        if (gesture_ == Gesture::none) {
            picLevel_->unsetCursor();
        }
        return;
    }
    const Gesture gesture = gesture_;
    if (button == rightButton && gesture == Gesture::scrolling) {
        // The gesture's work was done as the pointer moved.
    } else if (gesture == Gesture::toolDrag && activeTool().dragsIn(services_.editing.mode)) {
        ToolContext context = toolContext(shift, x, y);
        activeTool().release(context);
    } else if (services_.editing.mode == editingMode::tiles && gesture == Gesture::copying) {
        copyArea();
    } else if (gesture == Gesture::filling) {
        fillArea();
    }
    picLevel_->unsetCursor();
    gesture_ = Gesture::none;
    showCellStatus();
}

void LevelView::left() {
    pointerOver_ = false;
    if (gesture_ == Gesture::none) {
        scheduleRedraw();
    }
    emit cellStatus({});
}

void LevelView::wheel(int dx, int dy, int shift, float x, float y) {
    if (dx == 0 && dy == 0) {
        return;
    }
    if (shift == ctrlMask) {
        // The cell under the pointer stays under it.
        const auto* at = std::find(std::begin(zoomSteps), std::end(zoomSteps), zoom_);
        const auto next = (at - std::begin(zoomSteps)) + (dy > 0 ? 1 : -1);
        if (next >= 0 && next < std::ssize(zoomSteps)) {
            zoomTo(zoomSteps[next], QPointF(x, y));
        }
        return;
    }
    // Shift turns the wheel's turn into a move across.
    if (shift == shiftMask && dx == 0) {
        std::swap(dx, dy);
    }
    const std::int32_t pitch = document_.level().tileSpacing;
    camera_.moveRelative(-wheelPixels(dx, pitch), -wheelPixels(dy, pitch));
    cameraMoved();
}

void LevelView::scrollDrag() {
    // The pointer goes back to where the drag began, so the view moves by
    // each step the mouse makes, scaled, however far the user drags.
    clsScreenCursor& cursor = *services_.shared.cursor;
    const QPoint now = cursor.pos();
    const float sensitivity = services_.editing.moveSensitivity;
    camera_.moveRelative(rounded(double(now.x() - dragStart_.x()) * sensitivity),
                         rounded(double(now.y() - dragStart_.y()) * sensitivity));
    cursor.setPos(dragStart_);
    cameraMoved();
}

void LevelView::startArea(std::uint32_t colour) {
    const QPoint cell = pointerCell();
    gestureArea_ = clsRectangle();
    gestureArea_.left = cell.x();
    gestureArea_.top = cell.y();
    gestureArea_.colour = static_cast<std::int32_t>(colour);
    gestureAreaVisible_ = true;
    scheduleRedraw();
}

void LevelView::dragArea(float x, float y) {
    const QPoint cell = cellAt(x, y);
    gestureArea_.width = cell.x() - gestureArea_.left;
    gestureArea_.height = cell.y() - gestureArea_.top;
    if (gestureArea_.left + gestureArea_.width > lastColumn) {
        gestureArea_.width = lastColumn - gestureArea_.left;
    }
    if (gestureArea_.top + gestureArea_.height > lastRow) {
        gestureArea_.height = lastRow - gestureArea_.top;
    }
    scheduleRedraw();
}

void LevelView::copyArea() {
    releaseModifiers();
    gestureArea_.Normalize();
    EditingState& editing = services_.editing;
    editing.brush = document_.level().getTiles(gestureArea_);
    editing.brushCells.reset();
    // The brush no longer comes from the palette.
    editing.paletteSelectionVisible = false;
    scheduleRedraw();
    emit brushChanged();
}

void LevelView::fillArea() {
    releaseModifiers();
    gestureArea_.Normalize();
    const clsRectangle area = gestureArea_;
    const CellRange range = rangeOf(area);
    const EditingState& editing = services_.editing;
    if (editing.mode == editingMode::tiles && editing.brushCells) {
        // Pasted cells bring their own specials, as they do when painted.
        document_.edit("Fill", range, [&](clsLevel& level) {
            fillCellRectangle(level, *editing.brushCells, area);
        });
    } else if (editing.mode == editingMode::tiles) {
        document_.edit(
            "Fill", range,
            [&](clsLevel& level) {
                level.fillTileRectangle(editing.brush, area, editing.autoPlaceSpecials);
            },
            editing.autoPlacing("Fill"));
    } else if (const clsSpecial* special = editing.special(document_.opened().specialSet)) {
        document_.edit("Fill Specials", range,
                       [&](clsLevel& level) { level.fillSpecialRectangle(*special, area); });
    }
}

void LevelView::startPan(float x, float y) {
    panning_ = true;
    panStart_ = QPointF(x, y);
    panCamera_ = QPoint(camera_.x, camera_.y);
    picLevel_->setCursor(Qt::ClosedHandCursor);
}

void LevelView::panTo(float x, float y) {
    // The level follows the pointer, in level pixels.
    camera_.Move(panCamera_.x() - rounded((x - panStart_.x()) / scale()),
                 panCamera_.y() - rounded((y - panStart_.y()) / scale()));
    cameraMoved();
}

void LevelView::showCellStatus() {
    if (!pointerOver_) {
        return;
    }
    const QPoint cell = pointerCell();
    const OpenedLevel& opened = document_.opened();
    const clsLevel& level = opened.level;
    if (!level.contains(cell.x(), cell.y())) {
        emit cellStatus({});
        return;
    }
    const Cell& content = level.cellAt(cell.x(), cell.y());
    QString special = "Special: none";
    if (content.special != 0) {
        const clsSpecial* definition = opened.specialSet.getSpecialLUT(content.special);
        special = QString("Special %1: %2")
                      .arg(int{content.special})
                      .arg(definition != nullptr ? toQString(definition->Name) : "undefined");
    }
    emit cellStatus(QString("Cell (%1, %2)    Tile %3    %4")
                        .arg(cell.x())
                        .arg(cell.y())
                        .arg(content.tile)
                        .arg(special));
}

} // namespace marvek
