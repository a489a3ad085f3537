#include "ui/frmStatus.h"

#include "app/clsMessageBox.h"

#include <QCoreApplication>
#include <QLabel>
#include <QVBoxLayout>

namespace marvek {

frmStatus::frmStatus(QWidget* parent)
    : QWidget(parent, Qt::Tool | Qt::WindowTitleHint | Qt::CustomizeWindowHint) {
    setObjectName("frmStatus");
    setWindowTitle(applicationTitle);
    lblStatus_ = new QLabel("Loading level data", this);
    lblStatus_->setObjectName("lblStatus");
    auto* wait = new QLabel("Please wait...", this);
    wait->setObjectName("lblWait");
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblStatus_);
    layout->addWidget(wait);
    setMinimumWidth(240);
}

void frmStatus::setStatus(const QString& text) {
    lblStatus_->setText(text);
    if (!isVisible()) {
        show();
        // Let the window appear before the work starts.
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
    repaint();
}

void frmStatus::hideStatus() {
    hide();
}

QString frmStatus::status() const {
    return lblStatus_->text();
}

} // namespace marvek
