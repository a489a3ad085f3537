#include "app/clsMessageBox.h"

#include <QMessageBox>

namespace marvek {
namespace {

QMessageBox::StandardButtons buttonsOf(int style) {
    switch (style & 7) {
    case 3:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case 4:
        return QMessageBox::Yes | QMessageBox::No;
    default:
        return QMessageBox::Ok;
    }
}

QMessageBox::Icon iconOf(int style) {
    switch (style & 0x70) {
    case 32:
        return QMessageBox::Question;
    case 48:
        return QMessageBox::Warning;
    case 64:
        return QMessageBox::Information;
    default:
        return QMessageBox::NoIcon;
    }
}

int answerOf(int button) {
    switch (button) {
    case QMessageBox::Yes:
        return messageAnswer::yes;
    case QMessageBox::No:
        return messageAnswer::no;
    case QMessageBox::Cancel:
        return messageAnswer::cancel;
    default:
        return messageAnswer::ok;
    }
}

} // namespace

int QtMessageBox::show(QWidget* owner, const QString& text, int style) {
    QMessageBox box(iconOf(style), applicationTitle, text, buttonsOf(style), owner);
    // So that a result (the benchmark's) can be copied.
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    // Escape or the close button answer Cancel where there is one, else No.
    if ((style & 7) == 4) {
        box.setEscapeButton(QMessageBox::No);
    }
    return answerOf(box.exec());
}

void QtMessageBox::showFatal(QWidget* owner, const QString& text) {
    QMessageBox box(QMessageBox::Critical, applicationTitle, text, QMessageBox::Ok, owner);
    box.exec();
}

} // namespace marvek
