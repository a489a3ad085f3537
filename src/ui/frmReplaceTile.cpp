#include "ui/frmReplaceTile.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>
#include <QSpinBox>

#include <algorithm>

namespace marvek {

frmReplaceTile::frmReplaceTile(QWidget* parent) : QDialog(parent) {
    setObjectName("frmReplaceTile");
    setWindowTitle("Replace Tile");
    auto* layout = new QFormLayout(this);
    udFrom_ = new QSpinBox(this);
    udFrom_->setObjectName("udFrom");
    udTo_ = new QSpinBox(this);
    udTo_->setObjectName("udTo");
    chkSelectionOnly_ = new QCheckBox("Only in the selection", this);
    chkSelectionOnly_->setObjectName("chkSelectionOnly");
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName("cmdOK");
    buttons->button(QDialogButtonBox::Cancel)->setObjectName("cmdCancel");
    layout->addRow("Replace tile:", udFrom_);
    layout->addRow("With tile:", udTo_);
    layout->addRow(chkSelectionOnly_);
    layout->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

bool frmReplaceTile::showModal(std::int32_t from, std::int32_t to, std::int32_t largestTile,
                               bool haveSelection) {
    for (QSpinBox* box : {udFrom_, udTo_}) {
        box->setRange(0, std::max(largestTile, 0));
    }
    udFrom_->setValue(from);
    udTo_->setValue(to);
    chkSelectionOnly_->setEnabled(haveSelection);
    chkSelectionOnly_->setChecked(haveSelection);
    udFrom_->setFocus();
    udFrom_->selectAll();
    return exec() == QDialog::Accepted;
}

std::int32_t frmReplaceTile::from() const {
    return udFrom_->value();
}

std::int32_t frmReplaceTile::to() const {
    return udTo_->value();
}

bool frmReplaceTile::selectionOnly() const {
    return chkSelectionOnly_->isEnabled() && chkSelectionOnly_->isChecked();
}

} // namespace marvek
