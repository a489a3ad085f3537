#pragma once

#include <QWidget>

class QLabel;

namespace marvek {

// The small "Please wait..." notice shown while a long operation runs on the
// user-interface thread.
class frmStatus : public QWidget {
    Q_OBJECT

public:
    explicit frmStatus(QWidget* parent = nullptr);

    // Shows the window with this status line and paints it at once.
    void setStatus(const QString& text);
    void hideStatus();
    QString status() const;

private:
    QLabel* lblStatus_;
};

} // namespace marvek
