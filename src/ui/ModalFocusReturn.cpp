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
        // The closing window has let go of the keyboard by now; nobody holds it.
        if (widget->isWindow() && widget->isModal() && QApplication::activeWindow() == nullptr) {
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
    // A window manager, or the user, may have given it to a window already.
    if (next != nullptr && next->isVisible() && QApplication::activeWindow() == nullptr) {
        next->activateWindow();
    }
}

} // namespace marvek
