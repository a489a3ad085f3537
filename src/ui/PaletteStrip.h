#pragma once

#include "graphics/clsBackBuffer.h"
#include "graphics/clsCamera.h"

#include <QWidget>

class QScrollBar;

namespace marvek {

struct EditingState;
struct OpenedLevel;
class PictureBox;
class clsFont;

// The strip beside the level view: the tile palette in Tiles mode, the
// special palette in Specials mode, with its scroll bar. Choosing in it
// changes the shared brush or special.
class PaletteStrip : public QWidget {
    Q_OBJECT

public:
    // 20 tiles of 16 pixels a row, inside the border.
    static constexpr int pictureWidth = 20 * 16 + 4;

    PaletteStrip(EditingState& editing, const clsFont& font, QWidget* parent = nullptr);

    // The level whose tiles or specials it shows; null shows nothing.
    void showLevel(const OpenedLevel* opened);
    // The mode changed, or the graphics: drawn anew.
    void refresh();
    void redraw();
    const clsBackBuffer& backBuffer() const noexcept { return buffer_; }
    const clsCamera& camera() const noexcept { return camera_; }
    QSize sizeHint() const override;

signals:
    void brushChosen();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void createBuffer();
    void updateScroll();
    void wheelTurned(int delta);
    void pressed(int button, int shift, float x, float y);
    void moved(int buttons, int shift, float x, float y);
    void released(int button, int shift, float x, float y);
    QPoint cellAt(float x, float y) const;

    EditingState& editing_;
    const clsFont& font_;
    const OpenedLevel* opened_ = nullptr;
    PictureBox* picPalette_;
    QScrollBar* scrlPalette_;
    clsBackBuffer buffer_;
    clsCamera camera_;
    bool choosing_ = false;
};

} // namespace marvek
