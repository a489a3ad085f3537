#include "ui/frmGoToCell.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QSpinBox>

#include <algorithm>

namespace marvek {

frmGoToCell::frmGoToCell(QWidget* parent)
    : QDialog(parent), udCellX_(new QSpinBox(this)), udCellY_(new QSpinBox(this)) {
    setObjectName("frmGoToCell");
    setWindowTitle("Go to Cell");
    udCellX_->setObjectName("udCellX");
    udCellY_->setObjectName("udCellY");
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    auto* layout = new QFormLayout(this);
    layout->addRow("&x (column):", udCellX_);
    layout->addRow("&y (row):", udCellY_);
    layout->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

std::optional<QPoint> frmGoToCell::ask(std::int32_t width, std::int32_t height, QPoint current) {
    udCellX_->setRange(0, std::max(width - 1, 0));
    udCellY_->setRange(0, std::max(height - 1, 0));
    udCellX_->setValue(current.x());
    udCellY_->setValue(current.y());
    udCellX_->setFocus();
    udCellX_->selectAll();
    if (exec() != QDialog::Accepted) {
        return std::nullopt;
    }
    return QPoint(udCellX_->value(), udCellY_->value());
}

} // namespace marvek
