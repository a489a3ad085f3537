// A level view: its picture, camera, zoom and drawing.
#include "ui/LevelView.h"

#include "app/SharedObjects.h"
#include "data/editOverlays.h"
#include "data/levelNavigation.h"
#include "data/openLevel.h"
#include "native/marvek.h"
#include "ui/EditingState.h"
#include "ui/LevelDocument.h"
#include "ui/LevelTool.h"
#include "ui/PictureBox.h"
#include "ui/ToolBox.h"

#include <QScrollBar>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace marvek {
namespace {

constexpr int highlightMilliseconds = 1500;

std::int32_t rounded(double value) {
    return static_cast<std::int32_t>(std::nearbyint(value));
}

QScrollBar* levelScrollBar(Qt::Orientation orientation, const char* name, QWidget* parent) {
    auto* bar = new QScrollBar(orientation, parent);
    bar->setObjectName(name);
    bar->setFocusPolicy(Qt::NoFocus);
    return bar;
}

} // namespace

LevelView::LevelView(LevelDocument& document, ViewServices services, QWidget* parent)
    : QWidget(parent), document_(document), services_(std::move(services)),
      picLevel_(new PictureBox(this)),
      scrlLevelX_(levelScrollBar(Qt::Horizontal, "scrlLevelX", this)),
      scrlLevelY_(levelScrollBar(Qt::Vertical, "scrlLevelY", this)) {
    setObjectName("levelView");
    picLevel_->setObjectName("picLevel");
    // The view takes the keys, so that arrows reach the window before any
    // panel's list or text field.
    picLevel_->setFocusPolicy(Qt::StrongFocus);
    connect(picLevel_, &PictureBox::pointerPressed, this, &LevelView::pressed);
    connect(picLevel_, &PictureBox::pointerMoved, this, &LevelView::moved);
    connect(picLevel_, &PictureBox::pointerReleased, this, &LevelView::released);
    connect(picLevel_, &PictureBox::pointerLeft, this, &LevelView::left);
    connect(picLevel_, &PictureBox::wheelScrolled, this, &LevelView::wheel);
    const auto scrolled = [this] {
        camera_.Move(scrlLevelX_->value(), scrlLevelY_->value());
        cameraMoved();
    };
    connect(scrlLevelX_, &QScrollBar::valueChanged, this, scrolled);
    connect(scrlLevelY_, &QScrollBar::valueChanged, this, scrolled);
    connectDocument();
    document_.setPitch(16);
    followMode();
}

LevelView::~LevelView() = default;

void LevelView::connectDocument() {
    connect(&document_, &LevelDocument::cellsChanged, this, [this] {
        scheduleRedraw();
        // The cell under a still pointer may have changed.
        showCellStatus();
    });
    connect(&document_, &LevelDocument::graphicsChanged, this, [this] { scheduleRedraw(); });
    connect(&document_, &LevelDocument::selectionChanged, this, [this] { scheduleRedraw(); });
    connect(&document_, &LevelDocument::levelReplaced, this, [this] {
        camera_ = clsCamera();
        zoom_ = usualZoom;
        renderFlags_ = 12;
        highlighted_.reset();
        document_.setPitch(16);
        followMode();
        createBuffer();
        scheduleRedraw();
    });
}

void LevelView::resizeEvent(QResizeEvent* /*event*/) {
    layOut();
    createBuffer();
    redraw();
}

void LevelView::showEvent(QShowEvent* /*event*/) {
    createBuffer();
    redraw();
}

void LevelView::hideEvent(QHideEvent* /*event*/) {
    // A view behind another tab needs no picture; it draws again when shown.
    picLevel_->clear();
    buffer_ = clsBackBuffer();
}

void LevelView::layOut() {
    const int barHeight = scrlLevelX_->sizeHint().height();
    const int barWidth = scrlLevelY_->sizeHint().width();
    const int levelWidth = std::max(width() - barWidth, 1);
    const int levelHeight = std::max(height() - barHeight, 1);
    picLevel_->setGeometry(0, 0, levelWidth, levelHeight);
    scrlLevelX_->setGeometry(0, levelHeight, levelWidth, barHeight);
    scrlLevelY_->setGeometry(levelWidth, 0, barWidth, levelHeight);
}

int LevelView::bufferZoom() const noexcept {
    return std::max(zoom_ / 100, 1);
}

double LevelView::scale() const noexcept {
    return zoom_ / 100.0;
}

void LevelView::createBuffer() {
    if (!isVisible()) {
        return;
    }
    const clsLevel& level = document_.level();
    picLevel_->clear();
    picLevel_->setShrink(zoom_ < 100 ? 100 / zoom_ : 1);
    // Below 100 % the buffer holds more level pixels than the box shows,
    // and the box shrinks them.
    const double perBufferPixel = zoom_ < 100 ? 100.0 / zoom_ : 1.0;
    buffer_.Create(rounded((picLevel_->width() - 4) * perBufferPixel / bufferZoom()),
                   rounded((picLevel_->height() - 4) * perBufferPixel / bufferZoom()),
                   bufferZoom());
    camera_.viewWidth = buffer_.width();
    camera_.viewHeight = buffer_.height();
    camera_.levelWidth = level.width * level.tileSpacing;
    camera_.levelHeight = level.height * level.tileSpacing;
    camera_.checkPosition();
    followCamera();
}

void LevelView::scheduleRedraw() {
    if (redrawPending_) {
        return;
    }
    redrawPending_ = true;
    QTimer::singleShot(0, this, [this] {
        if (redrawPending_) {
            redraw();
        }
    });
}

const clsBackBuffer& LevelView::backBuffer() {
    if (redrawPending_) {
        redraw();
    }
    return buffer_;
}

clsRenderOptions LevelView::renderOptions() const {
    return {services_.shared.editorFont, services_.editing.alphaBlending};
}

void LevelView::redraw() {
    redrawPending_ = false;
    if (!buffer_.isUsable()) {
        return;
    }
    const OpenedLevel& opened = document_.opened();
    const clsLevel& level = opened.level;
    level.renderTo(buffer_, camera_, opened.tileSet, opened.specialSet, renderFlags_,
                   renderOptions());
    drawMarks();
    buffer_.Present(*picLevel_);
    showCellStatus();
}

void LevelView::renderOnly(std::int32_t flags) {
    if (buffer_.isUsable()) {
        const OpenedLevel& opened = document_.opened();
        opened.level.renderTo(buffer_, camera_, opened.tileSet, opened.specialSet, flags,
                              renderOptions());
    }
}

void LevelView::presentNow() {
    buffer_.Present(*picLevel_);
    picLevel_->repaint();
}

void LevelView::drawMarks() {
    const OpenedLevel& opened = document_.opened();
    const clsLevel& level = opened.level;
    const EditingState& editing = services_.editing;
    if (!modifiersHeld_ && pointerOver_) {
        const clsRenderOptions options = renderOptions();
        services_.tools.chosen().preview(ToolPreview{
            level,
            buffer_,
            camera_,
            opened.tileSet,
            options,
            editing.mode,
            pointerCell(),
            rounded(mouseX_ / scale()),
            rounded(mouseY_ / scale()),
            BrushPattern{editing.brush, editing.brushCells ? &*editing.brushCells : nullptr,
                         editing.specialsBrush ? &*editing.specialsBrush : nullptr},
            editing.special(opened.specialSet),
        });
    }
    if (const auto& area = document_.selection()) {
        renderDashedFrame(buffer_, camera_, level.tileSpacing, *area);
    }
    if (const clsRectangle* area = draggedArea()) {
        level.renderTileRect(buffer_, camera_, *area, editing.alphaBlending);
    }
    if (highlighted_) {
        drawCellFrame(buffer_, camera_, level.tileSpacing, highlighted_->x(), highlighted_->y(),
                      createBGRA(255, 255, 0, 0));
    }
}

void LevelView::followCamera() {
    // Zoomed out, the view may be larger than the level: it then starts at
    // the level's edge instead of before it.
    camera_.x = std::max(camera_.x, 0);
    camera_.y = std::max(camera_.y, 0);
    const std::int32_t pitch = document_.level().tileSpacing;
    const auto follow = [](QScrollBar& bar, std::int32_t position, std::int32_t view,
                           std::int32_t total, std::int32_t step) {
        const QSignalBlocker quiet(&bar);
        bar.setRange(0, std::max(total - view, 0));
        bar.setPageStep(std::max(view, 1));
        bar.setSingleStep(step);
        bar.setValue(position);
    };
    follow(*scrlLevelX_, camera_.x, camera_.viewWidth, camera_.levelWidth, pitch);
    follow(*scrlLevelY_, camera_.y, camera_.viewHeight, camera_.levelHeight, pitch);
    emit viewMoved();
}

void LevelView::cameraMoved() {
    followCamera();
    scheduleRedraw();
    // The view may have moved under a still pointer.
    showCellStatus();
}

CellRange LevelView::shownCells() const {
    const clsLevel& level = document_.level();
    return visibleCells(camera_, level.tileSpacing, level.width, level.height);
}

void LevelView::toggleRenderFlag(std::int32_t flag) {
    renderFlags_ ^= flag;
    scheduleRedraw();
}

void LevelView::toggleGrid() {
    renderFlags_ ^= renderFlags::clear;
    const std::int32_t before = document_.level().tileSpacing;
    document_.setPitch((renderFlags_ & renderFlags::clear) != 0 ? 17 : 16);
    camera_.changePitch(before, document_.level().tileSpacing);
    createBuffer();
    scheduleRedraw();
}

void LevelView::toggleZoom() {
    zoomToCentre(zoom_ == usualZoom ? 100 : usualZoom);
}

void LevelView::zoomBy(int steps) {
    const auto* at = std::find(std::begin(zoomSteps), std::end(zoomSteps), zoom_);
    const auto index = std::clamp<std::ptrdiff_t>(at - std::begin(zoomSteps) + steps, 0,
                                                  std::ssize(zoomSteps) - 1);
    zoomToCentre(zoomSteps[index]);
}

void LevelView::zoomToCentre(int percent) {
    zoomTo(percent, QPointF((picLevel_->width() - 4) / 2.0, (picLevel_->height() - 4) / 2.0));
}

void LevelView::zoomTo(int percent, QPointF at) {
    if (percent == zoom_) {
        return;
    }
    // The level pixel under the point stays under it.
    const double levelX = camera_.x + at.x() / scale();
    const double levelY = camera_.y + at.y() / scale();
    zoom_ = percent;
    camera_.x = rounded(levelX - at.x() / scale());
    camera_.y = rounded(levelY - at.y() / scale());
    createBuffer();
    scheduleRedraw();
}

void LevelView::followMode() {
    renderFlags_ |= renderFlags::tiles;
    renderFlags_ &= ~(renderFlags::specials | renderFlags::faintSpecials);
    if (services_.editing.mode != editingMode::tiles) {
        renderFlags_ |= renderFlags::specials;
    } else if (services_.editing.specialsInTilesMode) {
        // Seen, so that what painting does to them is seen too.
        renderFlags_ |= renderFlags::specials | renderFlags::faintSpecials;
    }
    endDrag();
    modifiersHeld_ = false;
    scheduleRedraw();
}

void LevelView::stepView(ViewStep step) {
    stepCamera(camera_, step, document_.level().tileSpacing);
    cameraMoved();
}

void LevelView::centreOn(int x, int y) {
    centreCamera(camera_, x, y, document_.level().tileSpacing);
    cameraMoved();
}

void LevelView::highlight(QPoint cell) {
    highlighted_ = cell;
    QTimer::singleShot(highlightMilliseconds, this, [this, cell] {
        if (highlighted_ == cell) {
            highlighted_.reset();
            scheduleRedraw();
        }
    });
    centreOn(cell.x(), cell.y());
}

const clsRectangle* LevelView::draggedArea() const {
    return dragTool_ != nullptr ? dragTool_->draggedArea() : nullptr;
}

void LevelView::holdModifiers() {
    if (!dragging()) {
        modifiersHeld_ = true;
        scheduleRedraw();
    }
}

void LevelView::modifierReleased() {
    if (dragTool_ == nullptr || !dragTool_->ownsModifiers()) {
        releaseModifiers();
    }
}

void LevelView::releaseModifiers() {
    modifiersHeld_ = false;
    endDrag();
    scheduleRedraw();
}

void LevelView::cancelDragOf(const LevelTool& tool) {
    if (dragTool_ == &tool) {
        endDrag();
        scheduleRedraw();
    }
}

void LevelView::endDrag() {
    if (dragTool_ != nullptr) {
        dragTool_->cancel();
        dragTool_ = nullptr;
    }
    scrolling_ = false;
}

} // namespace marvek
