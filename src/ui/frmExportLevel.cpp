#include "ui/frmExportLevel.h"

#include "app/qtPaths.h"
#include "data/levelExport.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace marvek {

frmExportLevel::frmExportLevel(QWidget* parent) : QDialog(parent) {
    setObjectName("frmExportLevel");
    setWindowTitle("Export Level Bitmap");
    buildControls();
}

void frmExportLevel::buildControls() {
    auto* layout = new QVBoxLayout(this);
    lstTags_ = new QListWidget(this);
    lstTags_->setObjectName("lstTags");
    lstTags_->setSelectionMode(QAbstractItemView::MultiSelection);
    chkRenderAll_ = new QCheckBox("Render all specials", this);
    chkRenderAll_->setObjectName("chkRenderAll");
    auto* label = new QLabel(information, this);
    label->setObjectName("lblInformation");
    label->setWordWrap(true);
    auto* buttons = new QDialogButtonBox(this);
    QPushButton* cmdOk = buttons->addButton("OK", QDialogButtonBox::AcceptRole);
    cmdOk->setObjectName("cmdOk");
    cmdOk->setDefault(true);
    buttons->addButton("Cancel", QDialogButtonBox::RejectRole)->setObjectName("cmdCancel");
    layout->addWidget(lstTags_);
    layout->addWidget(chkRenderAll_);
    layout->addWidget(label);
    layout->addWidget(buttons);
    setMinimumWidth(360);

    connect(buttons, &QDialogButtonBox::accepted, this, &frmExportLevel::ok);
    // Cancel, Escape and the close button all cancel.
    connect(this, &QDialog::rejected, this, [this] { cancelled_ = true; });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void frmExportLevel::manualActivate(const clsSpecialSet& specialSet) {
    cancelled_ = false;
    renderAll_ = false;
    chkRenderAll_->setChecked(false);
    lstTags_->clear();
    tagChoice_ = defaultTagChoice(specialSet);
    for (auto& [tag, chosen] : tagChoice_) {
        auto* row = new QListWidgetItem(toQString(tag), lstTags_);
        row->setSelected(chosen);
        // Chosen only by OK.
        chosen = false;
    }
}

void frmExportLevel::showModal() {
    exec();
}

void frmExportLevel::ok() {
    for (int row = 0; row < lstTags_->count(); ++row) {
        if (lstTags_->item(row)->isSelected()) {
            tagChoice_[static_cast<std::size_t>(row)].second = true;
        }
    }
    renderAll_ = chkRenderAll_->isChecked();
    accept();
}

} // namespace marvek
