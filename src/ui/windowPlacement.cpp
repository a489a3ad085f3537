#include "ui/windowPlacement.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace marvek {

QRect fittedWindowGeometry(QSize preferred, QRect available) {
    const QSize room = (available.size() - windowDecoration).expandedTo(QSize(1, 1));
    const QSize size = preferred.boundedTo(room);
    QRect placed(QPoint(), size);
    placed.moveCenter(available.center());
    // The frame's top and left edges lie outside the client area.
    placed.moveLeft(std::max(placed.left(), available.left() + windowDecoration.width() / 2));
    placed.moveTop(std::max(placed.top(), available.top() + windowDecoration.height() -
                                              windowDecoration.width() / 2));
    return placed;
}

void fitToScreen(QWidget& window, QSize preferred) {
    const QScreen* screen = window.screen();
    if (screen == nullptr) {
        screen = QGuiApplication::primaryScreen();
    }
    if (screen == nullptr) {
        window.resize(preferred);
        return;
    }
    window.setGeometry(fittedWindowGeometry(preferred, screen->availableGeometry()));
}

} // namespace marvek
