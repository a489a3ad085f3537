#include "ui/frmEditPalette.h"

#include "app/SharedObjects.h"
#include "app/pictureSaveDialog.h"
#include "app/qtPaths.h"
#include "graphics/paletteEditing.h"
#include "graphics/pictureFiles.h"
#include "native/marvek.h"
#include "ui/PictureBox.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QVBoxLayout>

#include <exception>

namespace marvek {
namespace {

const QString bitmapFilter = "Bitmap files (*.bmp)|*.bmp|All files (*.*)|*.*";
const QString importFilter = "Pictures (*.bmp *.png)|*.bmp;*.png|Bitmap files (*.bmp)|*.bmp|"
                             "PNG pictures (*.png)|*.png|All files (*.*)|*.*";

std::uint32_t opaque(std::uint32_t colour) {
    return createBGRA(getRed(colour), getGreen(colour), getBlue(colour), 0);
}

} // namespace

frmEditPalette::frmEditPalette(SharedObjects& shared, QWidget* parent)
    : QDialog(parent), shared_(shared) {
    setObjectName("frmEditPalette");
    setWindowTitle("Edit Palette");
    picPalette_ = new PictureBox(this);
    picPalette_->setObjectName("picPalette");
    picPalette_->setFixedSize(PaletteGrid::width() + 2 * PictureBox::border,
                              PaletteGrid::height() + 2 * PictureBox::border);
    picPalette_->setToolTip("Click a colour to change it.");
    auto* buttons = new QDialogButtonBox(this);
    auto* cmdExport = buttons->addButton("Export...", QDialogButtonBox::ActionRole);
    cmdExport->setObjectName("cmdExport");
    auto* cmdImport = buttons->addButton("Import...", QDialogButtonBox::ActionRole);
    cmdImport->setObjectName("cmdImport");
    auto* cmdOk = buttons->addButton("OK", QDialogButtonBox::AcceptRole);
    cmdOk->setObjectName("cmdOk");
    cmdOk->setDefault(true);
    buttons->addButton("Cancel", QDialogButtonBox::RejectRole)->setObjectName("cmdCancel");
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(picPalette_);
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(cmdExport, &QPushButton::clicked, this, &frmEditPalette::exportPalette);
    connect(cmdImport, &QPushButton::clicked, this, &frmEditPalette::importPalette);
    connect(picPalette_, &PictureBox::pointerPressed, this,
            [this](int button, int /*shift*/, float x, float y) {
                if (button == 1) {
                    editColour(x, y);
                }
            });
    buffer_.Create(PaletteGrid::width(), PaletteGrid::height(), 1);
}

void frmEditPalette::Setup(const clsPalette& palette) {
    palette_ = palette;
    changed_ = false;
    render();
}

bool frmEditPalette::showModal() {
    return exec() == QDialog::Accepted && changed_;
}

void frmEditPalette::render() {
    buffer_.Clear();
    for (std::int32_t index = 0; index < clsPalette::gameEntries; ++index) {
        const clsRectangle box = PaletteGrid::box(index);
        renderBoxFill(buffer_.surface(), box.left, box.top, box.width, box.height,
                      opaque(shownColour(palette_, index)), 1);
    }
    buffer_.Present(*picPalette_);
}

void frmEditPalette::editColour(float x, float y) {
    const auto index =
        PaletteGrid::indexAt(static_cast<std::int32_t>(x), static_cast<std::int32_t>(y));
    if (!index) {
        return;
    }
    const std::int32_t chosen = shared_.dialogs->getColor(
        this, 0, static_cast<std::int32_t>(shownColour(palette_, *index)));
    if (chosen < 0) {
        return;
    }
    // The game keeps 4 bits a channel: the box shows what will be stored.
    palette_.setEntry(*index, quantiseColour(static_cast<std::uint32_t>(chosen)));
    changed_ = true;
    render();
}

void frmEditPalette::exportPalette() {
    const QString chosen = askPictureSavePath(
        *shared_.dialogs, *shared_.messages, this,
        {"Export Palette as Bitmap", bitmapFilter, "palette.bmp", withBmpSuffix});
    if (chosen.isEmpty()) {
        return;
    }
    try {
        exportPaletteBitmap(palette_, toPath(chosen));
    } catch (const std::exception& error) {
        shared_.messages->show(this, QString::fromStdString(error.what()),
                               messageStyle::exclamation);
    }
}

void frmEditPalette::importPalette() {
    const auto chosen = shared_.dialogs->openFile(this, "Import Bitmap as Palette", importFilter,
                                                  QString(), clsCommonDialog::openFlags, 1,
                                                  clsCommonDialog::FileKind::picture);
    if (chosen.empty()) {
        return;
    }
    const PaletteImport imported = importPaletteBitmap(toPath(chosen.begin()->second));
    if (!imported.palette) {
        shared_.messages->show(this, "The bitmap was invalid or did not have a palette.",
                               messageStyle::exclamation);
        return;
    }
    palette_ = *imported.palette;
    changed_ = true;
    render();
}

} // namespace marvek
