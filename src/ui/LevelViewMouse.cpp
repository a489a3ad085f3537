// A level view's pointer gestures.
#include "ui/LevelView.h"

#include "app/SharedObjects.h"
#include "app/qtPaths.h"
#include "data/levelNavigation.h"
#include "data/openLevel.h"
#include "ui/EditingState.h"
#include "ui/LevelDocument.h"
#include "ui/LevelTool.h"
#include "ui/PictureBox.h"
#include "ui/ToolBox.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace marvek {
namespace {

// Mouse buttons and modifier masks as the picture box reports them.
constexpr int leftButton = 1;
constexpr int rightButton = 2;
constexpr int middleButton = 4;
constexpr int shiftMask = 1;
constexpr int ctrlMask = 2;

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
        [this](TileGrid tiles) {
            services_.editing.useTiles(std::move(tiles));
            brushChosen();
        },
        [this](std::int32_t id) {
            services_.editing.pickSpecial(document_.opened().specialSet, id);
            brushChosen();
        },
    };
}

void LevelView::brushChosen() {
    scheduleRedraw();
    emit brushChanged();
}

void LevelView::pressed(int button, int shift, float x, float y) {
    mouseX_ = std::nearbyint(x);
    mouseY_ = std::nearbyint(y);
    if (button == middleButton) {
        startPan(x, y);
        return;
    }
    if (button == rightButton && !dragging()) {
        scrolling_ = true;
        dragStart_ = services_.shared.cursor->pos();
        picLevel_->setCursor(Qt::SizeAllCursor);
        return;
    }
    if (button != leftButton) {
        return;
    }
    LevelTool& tool = services_.tools.forPress(shift, dragging());
    ToolContext context = toolContext(shift, x, y);
    if (tool.press(context)) {
        // A tool's drag takes over from a scroll.
        if (dragTool_ != &tool) {
            endDrag();
        }
        dragTool_ = &tool;
        scheduleRedraw();
    }
}

void LevelView::moved(int buttons, int shift, float x, float y) {
    mouseX_ = std::nearbyint(x);
    mouseY_ = std::nearbyint(y);
    pointerOver_ = true;
    const bool leftHeld = (buttons & leftButton) != 0;
    if (panning_) {
        panTo(x, y);
    } else if (scrolling_) {
        scrollDrag();
    } else if (leftHeld && dragTool_ != nullptr && dragTool_->dragsIn(services_.editing.mode)) {
        ToolContext context = toolContext(shift, x, y);
        dragTool_->drag(context);
        scheduleRedraw();
    } else if (!dragging()) {
        scheduleRedraw();
    }
    showCellStatus();
}

void LevelView::released(int button, int shift, float x, float y) {
    if (button == middleButton) {
        // A pan ends on its own; a drag of another button goes on.
        panning_ = false;
        if (!dragging()) {
            picLevel_->unsetCursor();
        }
        return;
    }
    // Whatever button is let go ends the drag; the right one's work was
    // done as the pointer moved.
    LevelTool* tool = std::exchange(dragTool_, nullptr);
    scrolling_ = false;
    if (tool != nullptr && tool->dragsIn(services_.editing.mode)) {
        ToolContext context = toolContext(shift, x, y);
        if (tool->ownsModifiers()) {
            // As if the key that began it were let go.
            releaseModifiers();
        }
        tool->release(context);
    } else if (tool != nullptr) {
        tool->cancel();
    }
    picLevel_->unsetCursor();
    showCellStatus();
}

void LevelView::left() {
    pointerOver_ = false;
    if (!dragging()) {
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
