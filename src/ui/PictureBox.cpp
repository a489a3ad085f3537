#include "ui/PictureBox.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <qdrawutil.h>

#include <algorithm>

namespace marvek {
namespace {

int buttonOf(Qt::MouseButton button) {
    switch (button) {
    case Qt::LeftButton:
        return 1;
    case Qt::RightButton:
        return 2;
    case Qt::MiddleButton:
        return 4;
    default:
        return 0;
    }
}

int buttonsOf(Qt::MouseButtons buttons) {
    return ((buttons & Qt::LeftButton) ? 1 : 0) | ((buttons & Qt::RightButton) ? 2 : 0) |
           ((buttons & Qt::MiddleButton) ? 4 : 0);
}

int shiftOf(Qt::KeyboardModifiers modifiers) {
    return ((modifiers & Qt::ShiftModifier) ? 1 : 0) | ((modifiers & Qt::ControlModifier) ? 2 : 0) |
           ((modifiers & Qt::AltModifier) ? 4 : 0);
}

} // namespace

PictureBox::PictureBox(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
}

void PictureBox::present(const std::uint32_t* pixels, std::int32_t width, std::int32_t height) {
    // The back buffer keeps its memory until it is made anew, so the image is
    // wrapped again only then. RGB32 ignores the fourth byte, which counts
    // transparency here, not opacity.
    if (image_.constBits() != reinterpret_cast<const uchar*>(pixels) || image_.width() != width ||
        image_.height() != height) {
        image_ = QImage(reinterpret_cast<const uchar*>(pixels), width, height, width * 4,
                        QImage::Format_RGB32);
    }
    update();
}

void PictureBox::clear() {
    image_ = QImage();
    update();
}

void PictureBox::setShrink(int divisor) {
    shrink_ = std::max(divisor, 1);
    update();
}

void PictureBox::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect().adjusted(border, border, -border, -border), Qt::black);
    if (!image_.isNull() && shrink_ == 1) {
        painter.drawImage(border, border, image_);
    } else if (!image_.isNull()) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(QRectF(border, border, double(image_.width()) / shrink_,
                                 double(image_.height()) / shrink_),
                          image_);
    }
    qDrawShadePanel(&painter, rect(), palette(), true, border);
}

void PictureBox::mousePressEvent(QMouseEvent* event) {
    const QPointF at = event->position() - QPointF(border, border);
    emit pointerPressed(buttonOf(event->button()), shiftOf(event->modifiers()),
                        static_cast<float>(at.x()), static_cast<float>(at.y()));
}

void PictureBox::mouseMoveEvent(QMouseEvent* event) {
    const QPointF at = event->position() - QPointF(border, border);
    emit pointerMoved(buttonsOf(event->buttons()), shiftOf(event->modifiers()),
                      static_cast<float>(at.x()), static_cast<float>(at.y()));
}

void PictureBox::mouseReleaseEvent(QMouseEvent* event) {
    const QPointF at = event->position() - QPointF(border, border);
    emit pointerReleased(buttonOf(event->button()), shiftOf(event->modifiers()),
                         static_cast<float>(at.x()), static_cast<float>(at.y()));
}

void PictureBox::wheelEvent(QWheelEvent* event) {
    emit wheelTurned(event->angleDelta().y());
    const QPointF at = event->position() - QPointF(border, border);
    emit wheelScrolled(event->angleDelta().x(), event->angleDelta().y(),
                       shiftOf(event->modifiers()), static_cast<float>(at.x()),
                       static_cast<float>(at.y()));
    event->accept();
}

void PictureBox::leaveEvent(QEvent* /*event*/) {
    emit pointerLeft();
}

} // namespace marvek
