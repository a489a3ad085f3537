#include "ui/UpDown.h"

#include <QLineEdit>

#include <algorithm>

namespace marvek {

int leadingNumber(const QString& text) {
    const QString trimmed = text.trimmed();
    qsizetype end = 0;
    if (end < trimmed.size() && (trimmed[end] == '-' || trimmed[end] == '+')) {
        ++end;
    }
    while (end < trimmed.size() && trimmed[end].isDigit()) {
        ++end;
    }
    // Too many digits for an int is still a large number, not 0.
    const qlonglong value = trimmed.left(std::min<qsizetype>(end, 12)).toLongLong();
    return static_cast<int>(std::clamp<qlonglong>(value, INT_MIN, INT_MAX));
}

int limitedNumber(const QString& text, int minimum, int maximum) {
    return std::clamp(leadingNumber(text), minimum, maximum);
}

void limitOnLeaving(QLineEdit& box, int minimum, int maximum) {
    QObject::connect(&box, &QLineEdit::editingFinished, &box, [&box, minimum, maximum] {
        const QString limited = QString::number(limitedNumber(box.text(), minimum, maximum));
        if (box.text() != limited) {
            box.setText(limited);
        }
    });
}

UpDown::UpDown(QLineEdit& buddy, int minimum, int maximum, QWidget* parent)
    : QAbstractSpinBox(parent), buddy_(buddy), minimum_(minimum), maximum_(maximum) {
    // Only the arrows show; the number is typed into the buddy.
    lineEdit()->setReadOnly(true);
    lineEdit()->setFocusPolicy(Qt::NoFocus);
    setFocusPolicy(Qt::NoFocus);
    setFrame(false);
    setFixedWidth(sizeHint().width());
    connect(&buddy_, &QLineEdit::textChanged, this, [this] { update(); });
}

int UpDown::value() const {
    return leadingNumber(buddy_.text());
}

void UpDown::stepBy(int steps) {
    buddy_.setText(QString::number(std::clamp(value() + steps * step_, minimum_, maximum_)));
}

QAbstractSpinBox::StepEnabled UpDown::stepEnabled() const {
    StepEnabled enabled = StepNone;
    if (value() < maximum_) {
        enabled |= StepUpEnabled;
    }
    if (value() > minimum_) {
        enabled |= StepDownEnabled;
    }
    return enabled;
}

QSize UpDown::sizeHint() const {
    const QSize full = QAbstractSpinBox::sizeHint();
    return {16, full.height()};
}

} // namespace marvek
