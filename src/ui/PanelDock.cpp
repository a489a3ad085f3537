#include "ui/PanelDock.h"

#include <QCloseEvent>

namespace marvek {

PanelDock::PanelDock(const QString& title, const char* name, QWidget* parent)
    : QDockWidget(title, parent) {
    setObjectName(name);
}

void PanelDock::closeEvent(QCloseEvent* event) {
    QDockWidget::closeEvent(event);
    if (event->isAccepted()) {
        // Hidden now rather than after this event, so that whoever is told
        // sees the panel closed.
        hide();
        emit closedByUser();
    }
}

} // namespace marvek
