#pragma once

#include <QDialog>
#include <QImage>

class QTimer;

namespace marvek {

class clsFont;

// The About box: credits written in the editor's font that scroll up by
// themselves while the box is open.
class frmAbout : public QDialog {
    Q_OBJECT

public:
    explicit frmAbout(QWidget* parent = nullptr);

    // Draws the credits in the font (the window's own typeface when the
    // font is not loaded) and shows the box modally.
    void showModal(const clsFont& font);

    bool isScrolling() const;
    // How far the credits have travelled since the box opened, in pixels.
    int scrolled() const noexcept { return scrolled_; }

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void step();

    class CreditsView;
    CreditsView* view_ = nullptr;
    QTimer* timer_ = nullptr;
    int scrolled_ = 0;
};

} // namespace marvek
