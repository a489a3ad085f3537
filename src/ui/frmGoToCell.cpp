#include "ui/frmGoToCell.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>

#include <algorithm>

namespace marvek {
namespace {

// Far beyond any level, so that a number typed past the level's edge stays
// as typed and can be named, instead of losing its last digit.
constexpr int typedLimit = 99'999'999;

} // namespace

frmGoToCell::frmGoToCell(QWidget* parent)
    : QDialog(parent), udCellX_(new QSpinBox(this)), udCellY_(new QSpinBox(this)),
      lblRange_(new QLabel(this)) {
    setObjectName("frmGoToCell");
    setWindowTitle("Go to Cell");
    udCellX_->setObjectName("udCellX");
    udCellY_->setObjectName("udCellY");
    lblRange_->setObjectName("lblRange");
    for (QSpinBox* box : {udCellX_, udCellY_}) {
        box->setRange(0, typedLimit);
        connect(box, &QSpinBox::valueChanged, this, &frmGoToCell::checkCell);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    cmdOk_ = buttons->button(QDialogButtonBox::Ok);
    cmdOk_->setObjectName("cmdOK");
    auto* layout = new QFormLayout(this);
    layout->addRow("&x (column):", udCellX_);
    layout->addRow("&y (row):", udCellY_);
    layout->addRow(lblRange_);
    layout->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

std::optional<QPoint> frmGoToCell::ask(std::int32_t width, std::int32_t height, QPoint current) {
    lastX_ = std::max(width - 1, 0);
    lastY_ = std::max(height - 1, 0);
    udCellX_->setValue(current.x());
    udCellY_->setValue(current.y());
    checkCell();
    udCellX_->setFocus();
    udCellX_->selectAll();
    if (exec() != QDialog::Accepted) {
        return std::nullopt;
    }
    return QPoint(udCellX_->value(), udCellY_->value());
}

QString frmGoToCell::problem() const {
    if (udCellX_->value() > lastX_) {
        return QString("There is no column %1: x goes from 0 to %2.")
            .arg(udCellX_->value())
            .arg(lastX_);
    }
    if (udCellY_->value() > lastY_) {
        return QString("There is no row %1: y goes from 0 to %2.")
            .arg(udCellY_->value())
            .arg(lastY_);
    }
    return {};
}

void frmGoToCell::checkCell() {
    const QString wrong = problem();
    lblRange_->setText(wrong.isEmpty()
                           ? QString("x goes from 0 to %1, y from 0 to %2.").arg(lastX_).arg(lastY_)
                           : wrong);
    cmdOk_->setEnabled(wrong.isEmpty());
}

void frmGoToCell::accept() {
    if (problem().isEmpty()) {
        QDialog::accept();
    }
}

} // namespace marvek
