#include "ui/ModalFocusReturn.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <utility>

namespace marvek {

ModalFocusReturn::ModalFocusReturn(std::function<QWidget*()> mainWindow)
    : mainWindow_(std::move(mainWindow)) {
    qApp->installEventFilter(this);
}

ModalFocusReturn::~ModalFocusReturn() {
    qApp->removeEventFilter(this);
}

bool ModalFocusReturn::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Hide && watched->isWidgetType()) {
        const auto* widget = static_cast<const QWidget*>(watched);
        // Whether the platform has taken the keyboard from the closing window
        // yet depends on how busy it is, so the check waits for the timer.
        if (widget->isWindow() && widget->isModal()) {
            // Once the closing has run its course: the next dialog may be
            // about to open and take the keyboard itself.
            QTimer::singleShot(0, this, [this] { returnFocus(); });
        }
    }
    return false;
}

void ModalFocusReturn::returnFocus() const {
    QWidget* next = QApplication::activeModalWidget();
    if (next == nullptr) {
        next = mainWindow_();
    }
    // A window manager, or the user, may have given it to a window already;
    // a window that is gone holds it for nobody.
    const QWidget* active = QApplication::activeWindow();
    if (next != nullptr && next->isVisible() && (active == nullptr || !active->isVisible())) {
        next->activateWindow();
    }
}

} // namespace marvek
