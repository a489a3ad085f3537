#pragma once

#include <QDockWidget>

namespace marvek {

// A dock panel that tells when the user closes it with its own button, so
// that the View menu and the settings follow.
class PanelDock : public QDockWidget {
    Q_OBJECT

public:
    PanelDock(const QString& title, const char* name, QWidget* parent);

signals:
    void closedByUser();

protected:
    void closeEvent(QCloseEvent* event) override;
};

} // namespace marvek
