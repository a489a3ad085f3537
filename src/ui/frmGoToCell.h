#pragma once

#include <QDialog>
#include <QPoint>

#include <cstdint>
#include <optional>

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

private:
    QSpinBox* udCellX_;
    QSpinBox* udCellY_;
};

} // namespace marvek
