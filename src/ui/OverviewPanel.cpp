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
    hasLevel_ = true;
    redrawAll(opened.level);
}

void OverviewPanel::levelChanged(const clsLevel& level) {
    if (!hasLevel_) {
        return;
    }
    const auto changed = changedCells(drawnCells_, level);
    if (!changed) {
        return;
    }
    if (level.width != overview_.levelWidth() || level.height != overview_.levelHeight()) {
        redrawAll(level);
        return;
    }
    overview_.drawCells(level, colours_, *changed);
    drawnCells_.assign(level.cells().begin(), level.cells().end());
    update();
}

void OverviewPanel::setView(const CellRange& view) {
    if (view == view_) {
        return;
    }
    view_ = view;
    update();
}

void OverviewPanel::redrawAll(const clsLevel& level) {
    overview_.drawAll(level, colours_, fittingCellPixels(level.width, level.height));
    drawnCells_.assign(level.cells().begin(), level.cells().end());
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
    if (!hasLevel_ ||
        fittingCellPixels(overview_.levelWidth(), overview_.levelHeight()) ==
            overview_.cellPixels() ||
        overview_.levelWidth() < 1 || overview_.levelHeight() < 1) {
        return;
    }
    // The cells as last drawn are the level's cells now.
    clsLevel shown;
    shown.width = overview_.levelWidth();
    shown.height = overview_.levelHeight();
    shown.resizeCells();
    std::copy(drawnCells_.begin(), drawnCells_.end(), shown.cells().begin());
    redrawAll(shown);
}

void OverviewPanel::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        choose(event->position());
    }
}

void OverviewPanel::mouseMoveEvent(QMouseEvent* event) {
    if ((event->buttons() & Qt::LeftButton) != 0) {
        choose(event->position());
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
