#pragma once

#include <QAbstractSpinBox>

class QLineEdit;

namespace marvek {

// Up and down arrows beside a text box: each step changes the box's number by
// one within [minimum, maximum]. The text box stays the place the value lives.
class UpDown : public QAbstractSpinBox {
    Q_OBJECT

public:
    UpDown(QLineEdit& buddy, int minimum, int maximum, QWidget* parent = nullptr);

    void stepBy(int steps) override;
    // How much one step changes the number (1 unless set).
    void setStep(int step) { step_ = step; }
    QSize sizeHint() const override;

protected:
    StepEnabled stepEnabled() const override;

private:
    int value() const;

    QLineEdit& buddy_;
    int minimum_;
    int maximum_;
    int step_ = 1;
};

// The leading whole number of a text, as a text box's value; 0 when the text
// does not start with one.
int leadingNumber(const QString& text);

// The text's number kept within [minimum, maximum].
int limitedNumber(const QString& text, int minimum, int maximum);

// Keeps a number box within [minimum, maximum] once the user leaves it (focus
// moves on, or Enter). While typing, any text stands: limiting each keystroke
// turned an emptied box into "1" at once, so typing "25" gave "125".
void limitOnLeaving(QLineEdit& box, int minimum, int maximum);

} // namespace marvek
