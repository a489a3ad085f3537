#pragma once

#include <QDialog>
#include <QPoint>

#include <cstdint>
#include <optional>

class QLabel;
class QPushButton;
class QSpinBox;

namespace marvek {

// Edit > Go to Cell: asks for a cell of the level.
class frmGoToCell : public QDialog {
    Q_OBJECT

public:
    explicit frmGoToCell(QWidget* parent = nullptr);

    // Offers the cells of a width x height level, starting at current; the
    // chosen cell, or none when cancelled.
    std::optional<QPoint> ask(std::int32_t width, std::int32_t height, QPoint current);

    // Only a cell of the level is taken.
    void accept() override;

private:
    // What is wrong with the cell typed, or "" for a cell of the level.
    QString problem() const;
    void checkCell();

    QSpinBox* udCellX_;
    QSpinBox* udCellY_;
    QLabel* lblRange_;
    QPushButton* cmdOk_ = nullptr;
    std::int32_t lastX_ = 0;
    std::int32_t lastY_ = 0;
};

} // namespace marvek
