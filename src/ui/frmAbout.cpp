#include "ui/frmAbout.h"

#include "app/clsMessageBox.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsFont.h"
#include "native/marvek.h"

#include <QDialogButtonBox>
#include <QPainter>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <string_view>

namespace marvek {
namespace {

// At most 28 characters a line, which fill the view in the 8-pixel font.
constexpr std::array<std::string_view, 23> credits{
    "MARVEK",
    "",
    "A LEVEL EDITOR FOR",
    "THORNWICK, AMIGA CD32",
    "",
    "VERSION 0.1.0",
    "",
    "PROGRAMMING",
    "THE MARVEK DEVELOPERS",
    "",
    "SAMPLE WORLDS, FONTS",
    "AND PICTURES DRAWN BY",
    "THE PROJECT'S OWN CODE",
    "",
    "BUILT WITH C++20 AND QT 6",
    "",
    "THORNWICK BELONGS TO",
    "ITS MAKERS. MARVEK IS A",
    "FAN'S TOOL, NOT THEIRS.",
    "",
    "",
    "THANK YOU FOR BUILDING",
    "LEVELS!",
};
constexpr int viewWidth = 448;
constexpr int viewHeight = 260;
// The font's small glyphs are shown at twice their size.
constexpr int scale = 2;
constexpr int tickMilliseconds = 30;

std::uint32_t lineColour(std::size_t line) {
    return line == 0 ? createBGRA(255, 200, 60, 0) : createBGRA(210, 225, 255, 0);
}

// The credits drawn once with the font, as a picture at the font's size.
QImage creditsInFont(const clsFont& font) {
    const std::int32_t charWidth = font.charWidth();
    const std::int32_t lineHeight = font.charHeight() + 2;
    clsBackBuffer buffer;
    if (!buffer.Create(viewWidth / scale, static_cast<std::int32_t>(credits.size()) * lineHeight,
                       1)) {
        return {};
    }
    buffer.Clear();
    for (std::size_t line = 0; line < credits.size(); ++line) {
        const std::string text(credits[line]);
        const auto width = static_cast<std::int32_t>(text.size()) * charWidth;
        renderText(buffer.surface(), font.handle(), (buffer.width() - width) / 2,
                   static_cast<std::int32_t>(line) * lineHeight, lineColour(line), text.c_str());
    }
    const auto* pixels = reinterpret_cast<const uchar*>(surfaceGetDataPtr(buffer.surface()));
    return QImage(pixels, buffer.width(), buffer.height(), buffer.width() * 4, QImage::Format_RGB32)
        .copy();
}

// Without the bitmap font the credits are written in the window's typeface.
QImage creditsInTypeface(const QFont& typeface) {
    const int lineHeight = QFontMetrics(typeface).height() / scale + 1;
    QImage image(viewWidth, static_cast<int>(credits.size()) * lineHeight * scale,
                 QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setFont(typeface);
    for (std::size_t line = 0; line < credits.size(); ++line) {
        const std::uint32_t colour = lineColour(line);
        painter.setPen(QColor((colour >> 16) & 0xFF, (colour >> 8) & 0xFF, colour & 0xFF));
        painter.drawText(
            QRect(0, static_cast<int>(line) * lineHeight * scale, viewWidth, lineHeight * scale),
            Qt::AlignCenter,
            QString::fromLatin1(credits[line].data(), qsizetype(credits[line].size())));
    }
    return image.scaled(image.width() / scale, image.height() / scale);
}

} // namespace

// Shows the credits picture moved up by the scrolled distance: it enters at
// the bottom, leaves at the top and comes round again.
class frmAbout::CreditsView : public QWidget {
public:
    explicit CreditsView(QWidget* parent) : QWidget(parent) {
        setObjectName("picCredits");
        setFixedSize(viewWidth, viewHeight);
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

    void setPicture(QImage picture) { picture_ = std::move(picture); }
    int period() const { return viewHeight + picture_.height() * scale; }

    void setScrolled(int scrolled) {
        scrolled_ = scrolled;
        update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::black);
        const int top = viewHeight - scrolled_ % std::max(period(), 1);
        painter.drawImage(QRect(0, top, picture_.width() * scale, picture_.height() * scale),
                          picture_);
    }

private:
    QImage picture_;
    int scrolled_ = 0;
};

frmAbout::frmAbout(QWidget* parent) : QDialog(parent) {
    setObjectName("frmAbout");
    setWindowTitle(QString("About ") + applicationTitle);
    view_ = new CreditsView(this);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName("cmdOk");
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(view_);
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    timer_ = new QTimer(this);
    timer_->setInterval(tickMilliseconds);
    connect(timer_, &QTimer::timeout, this, &frmAbout::step);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
}

void frmAbout::showModal(const clsFont& font) {
    view_->setPicture(font.handle() != 0 ? creditsInFont(font) : creditsInTypeface(this->font()));
    exec();
}

bool frmAbout::isScrolling() const {
    return timer_->isActive();
}

void frmAbout::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    scrolled_ = 0;
    view_->setScrolled(0);
    timer_->start();
}

void frmAbout::hideEvent(QHideEvent* event) {
    timer_->stop();
    QDialog::hideEvent(event);
}

void frmAbout::step() {
    ++scrolled_;
    view_->setScrolled(scrolled_);
}

} // namespace marvek
