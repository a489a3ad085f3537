#pragma once

#include "graphics/clsBackBuffer.h"
#include "graphics/clsPalette.h"

#include <QDialog>

namespace marvek {

struct SharedObjects;
class PictureBox;

// The level's 32 colours as a grid of boxes: click a box to change its
// colour, or exchange the whole palette with a bitmap's colour table.
class frmEditPalette : public QDialog {
    Q_OBJECT

public:
    explicit frmEditPalette(SharedObjects& shared, QWidget* parent = nullptr);

    // Prepares the dialog with the palette to edit.
    void Setup(const clsPalette& palette);
    // Shows the dialog modally; true when the user left it with OK after
    // changing the palette.
    bool showModal();
    const clsPalette& palette() const noexcept { return palette_; }

private:
    void render();
    void editColour(float x, float y);
    void exportPalette();
    void importPalette();

    SharedObjects& shared_;
    clsPalette palette_;
    bool changed_ = false;
    clsBackBuffer buffer_;
    PictureBox* picPalette_ = nullptr;
};

} // namespace marvek
