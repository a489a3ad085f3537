#include "ui/frmReplaceTile.h"

#include "data/clsTileSet.h"
#include "native/marvek.h"
#include "ui/PictureBox.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSpinBox>

#include <algorithm>

namespace marvek {
namespace {

// Tiles are shown twice their size, as the level view shows them.
constexpr std::int32_t pictureZoom = 2;

} // namespace

frmReplaceTile::frmReplaceTile(QWidget* parent) : QDialog(parent) {
    setObjectName("frmReplaceTile");
    setWindowTitle("Replace Tile");
    auto* layout = new QFormLayout(this);
    udFrom_ = addTileRow("udFrom", "picFrom", "Replace tile:", picFrom_);
    udTo_ = addTileRow("udTo", "picTo", "With tile:", picTo_);
    chkSelectionOnly_ = new QCheckBox("Only in the selection", this);
    chkSelectionOnly_->setObjectName("chkSelectionOnly");
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    cmdOk_ = buttons->button(QDialogButtonBox::Ok);
    cmdOk_->setObjectName("cmdOK");
    buttons->button(QDialogButtonBox::Cancel)->setObjectName("cmdCancel");
    layout->addRow(chkSelectionOnly_);
    layout->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    for (clsBackBuffer* buffer : {&fromBuffer_, &toBuffer_}) {
        buffer->Create(clsTileSet::tileSize, clsTileSet::tileSize, pictureZoom);
    }
}

QSpinBox* frmReplaceTile::addTileRow(const char* name, const char* pictureName,
                                     const QString& caption, PictureBox*& picture) {
    auto* box = new QSpinBox(this);
    box->setObjectName(name);
    box->setSpecialValueText("none");
    picture = new PictureBox(this);
    picture->setObjectName(pictureName);
    picture->setFixedSize(clsTileSet::tileSize * pictureZoom + 2 * PictureBox::border,
                          clsTileSet::tileSize * pictureZoom + 2 * PictureBox::border);
    auto* row = new QHBoxLayout;
    row->addWidget(box, 1);
    row->addWidget(picture);
    static_cast<QFormLayout*>(layout())->addRow(caption, row);
    connect(box, &QSpinBox::valueChanged, this, &frmReplaceTile::tileChanged);
    return box;
}

bool frmReplaceTile::showModal(std::optional<std::int32_t> from, std::optional<std::int32_t> to,
                               const clsTileSet& tiles, std::int32_t largestTile,
                               bool haveSelection) {
    tiles_ = &tiles;
    for (QSpinBox* box : {udFrom_, udTo_}) {
        box->setRange(noTile, std::max(largestTile, 0));
    }
    udFrom_->setValue(from.value_or(noTile));
    udTo_->setValue(to.value_or(noTile));
    tileChanged();
    chkSelectionOnly_->setEnabled(haveSelection);
    chkSelectionOnly_->setChecked(haveSelection);
    udFrom_->setFocus();
    udFrom_->selectAll();
    const bool accepted = exec() == QDialog::Accepted;
    tiles_ = nullptr;
    return accepted;
}

void frmReplaceTile::tileChanged() {
    if (tiles_ != nullptr) {
        showTile(*udFrom_, fromBuffer_, *picFrom_);
        showTile(*udTo_, toBuffer_, *picTo_);
    }
    cmdOk_->setEnabled(from() != noTile && to() != noTile);
}

void frmReplaceTile::showTile(const QSpinBox& box, clsBackBuffer& buffer, PictureBox& picture) {
    const std::int32_t tile = box.value();
    if (tile < 0 || tile >= tiles_->count()) {
        // No picture: an empty box, or a number the tile set lacks.
        picture.clear();
        return;
    }
    buffer.Clear();
    renderBlitFast(buffer.surface(), tiles_->Tile(tile).surface(), 0, 0);
    buffer.Present(picture);
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
