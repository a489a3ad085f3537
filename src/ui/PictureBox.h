#pragma once

#include "graphics/clsPresentTarget.h"

#include <QImage>
#include <QWidget>

namespace marvek {

// A sunken picture box that shows a back buffer's pixel memory as it is: the
// image wraps the presented pixels, so presenting copies nothing more. Mouse
// positions are reported inside the border, where the picture starts.
class PictureBox : public QWidget, public clsPresentTarget {
    Q_OBJECT

public:
    static constexpr int border = 2;

    explicit PictureBox(QWidget* parent = nullptr);

    void present(const std::uint32_t* pixels, std::int32_t width, std::int32_t height) override;
    // Forgets the presented pixels: call before the back buffer that owns
    // them is made anew.
    void clear();
    // Shows the picture divisor times smaller (a zoom below 100 %).
    void setShrink(int divisor);
    // What the box shows now (empty before the first present).
    const QImage& image() const noexcept { return image_; }

signals:
    // button: 1 left, 2 right; shift: 1 Shift, 2 Ctrl, 4 Alt.
    void pointerPressed(int button, int shift, float x, float y);
    void pointerMoved(int buttons, int shift, float x, float y);
    void pointerReleased(int button, int shift, float x, float y);
    void wheelTurned(int delta);
    // The whole turn: across and down, the modifier mask, and where.
    void wheelScrolled(int dx, int dy, int shift, float x, float y);
    void pointerLeft();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    QImage image_;
    int shrink_ = 1;
};

} // namespace marvek
