#include "ui/OverviewPanel.h"

#include "data/openLevel.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace marvek {
namespace {

constexpr int margin = 2;
const QColor viewColour(255, 255, 0);

} // namespace

OverviewPanel::OverviewPanel(QWidget* parent) : QWidget(parent) {
    setObjectName("picOverview");
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(120, 40);
}

QSize OverviewPanel::sizeHint() const {
    return {620, 180};
}

void OverviewPanel::showLevel(const OpenedLevel& opened) {
    colours_ = overviewColours(opened.tileSet, opened.specialSet);
    level_ = &opened.level;
    owed_.oweAll();
    catchUp();
}

void OverviewPanel::cellsChanged(const CellRange& range) {
    if (level_ == nullptr) {
        return;
    }
    owed_.owe(range);
    catchUp();
}

void OverviewPanel::forgetLevel() {
    level_ = nullptr;
    owed_.settle();
}

void OverviewPanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    catchUp();
}

void OverviewPanel::catchUp() {
    if (!isVisible() || level_ == nullptr) {
        return;
    }
    const OwedCells::Debt owed = owed_.take();
    if (owed.all || level_->width != overview_.levelWidth() ||
        level_->height != overview_.levelHeight()) {
        redrawAll();
    } else if (owed.range) {
        overview_.drawCells(*level_, colours_, *owed.range);
        update();
    }
}

void OverviewPanel::setView(const CellRange& view) {
    if (view == view_) {
        return;
    }
    view_ = view;
    update();
}

void OverviewPanel::redrawAll() {
    overview_.drawAll(*level_, colours_, fittingCellPixels(level_->width, level_->height));
    // The image wraps the overview's pixels, which stay put until drawAll.
    image_ = QImage(reinterpret_cast<const uchar*>(overview_.pixels().data()), overview_.width(),
                    overview_.height(), overview_.width() * 4, QImage::Format_RGB32);
    update();
}

std::int32_t OverviewPanel::fittingCellPixels(std::int32_t levelWidth,
                                              std::int32_t levelHeight) const {
    const int across = (width() - 2 * margin) / std::max(levelWidth, 1);
    const int down = (height() - 2 * margin) / std::max(levelHeight, 1);
    return std::clamp(std::min(across, down), 1, clsLevelOverview::largestCell);
}

QRectF OverviewPanel::pictureRect() const {
    if (image_.isNull()) {
        return {};
    }
    const QSizeF room(width() - 2 * margin, height() - 2 * margin);
    QSizeF size = image_.size();
    // Even one pixel a cell may not fit a small panel: then it is shrunk.
    if (size.width() > room.width() || size.height() > room.height()) {
        size.scale(room, Qt::KeepAspectRatio);
    }
    return {QPointF((width() - size.width()) / 2, (height() - size.height()) / 2), size};
}

QPointF OverviewPanel::cellPosition(std::int32_t x, std::int32_t y) const {
    const QRectF picture = pictureRect();
    const double across = picture.width() / std::max(overview_.levelWidth(), 1);
    const double down = picture.height() / std::max(overview_.levelHeight(), 1);
    return {picture.left() + x * across, picture.top() + y * down};
}

void OverviewPanel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Dark));
    if (image_.isNull()) {
        return;
    }
    const QRectF picture = pictureRect();
    painter.setRenderHint(QPainter::SmoothPixmapTransform, picture.size() != image_.size());
    painter.drawImage(picture, image_);
    const QPointF topLeft = cellPosition(view_.left, view_.top);
    const QPointF bottomRight = cellPosition(view_.right + 1, view_.bottom + 1);
    painter.setPen(QPen(viewColour, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(topLeft, bottomRight).adjusted(0.5, 0.5, -0.5, -0.5));
}

void OverviewPanel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (level_ != nullptr &&
        fittingCellPixels(level_->width, level_->height) != overview_.cellPixels()) {
        owed_.oweAll();
        catchUp();
    }
}

void OverviewPanel::mousePressEvent(QMouseEvent* event) {
    // The margin around the picture is no place on the level.
    dragging_ = event->button() == Qt::LeftButton && pictureRect().contains(event->position());
    if (dragging_) {
        choose(event->position());
    }
}

void OverviewPanel::mouseMoveEvent(QMouseEvent* event) {
    if (dragging_ && (event->buttons() & Qt::LeftButton) != 0) {
        choose(event->position());
    }
}

void OverviewPanel::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        dragging_ = false;
    }
}

void OverviewPanel::choose(QPointF at) {
    const QRectF picture = pictureRect();
    if (picture.isEmpty()) {
        return;
    }
    const int levelWidth = overview_.levelWidth();
    const int levelHeight = overview_.levelHeight();
    const int x = std::clamp(int((at.x() - picture.left()) * levelWidth / picture.width()), 0,
                             levelWidth - 1);
    const int y = std::clamp(int((at.y() - picture.top()) * levelHeight / picture.height()), 0,
                             levelHeight - 1);
    emit cellChosen(x, y);
}

} // namespace marvek
