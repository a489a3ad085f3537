#include "ui/PaletteStrip.h"

#include "data/openLevel.h"
#include "data/tilePalette.h"
#include "ui/EditingState.h"
#include "ui/PictureBox.h"

#include <QScrollBar>

#include <algorithm>
#include <cmath>

namespace marvek {
namespace {

constexpr int leftButton = 1;
constexpr std::int32_t paletteColumns = 20;
constexpr std::int32_t paletteCell = 16;
constexpr double wheelStep = 7.5;

std::int32_t rounded(double value) {
    return static_cast<std::int32_t>(std::nearbyint(value));
}

} // namespace

PaletteStrip::PaletteStrip(EditingState& editing, const clsFont& font, QWidget* parent)
    : QWidget(parent), editing_(editing), font_(font), picPalette_(new PictureBox(this)),
      scrlPalette_(new QScrollBar(Qt::Vertical, this)) {
    picPalette_->setObjectName("picPalette");
    scrlPalette_->setObjectName("scrlPalette");
    scrlPalette_->setFocusPolicy(Qt::NoFocus);
    scrlPalette_->setSingleStep(16);
    scrlPalette_->setPageStep(160);
    setFixedWidth(pictureWidth + scrlPalette_->sizeHint().width());
    connect(scrlPalette_, &QScrollBar::valueChanged, this, [this](int value) {
        camera_.y = value;
        redraw();
    });
    connect(picPalette_, &PictureBox::wheelTurned, this, &PaletteStrip::wheelTurned);
    connect(picPalette_, &PictureBox::pointerPressed, this, &PaletteStrip::pressed);
    connect(picPalette_, &PictureBox::pointerMoved, this, &PaletteStrip::moved);
    connect(picPalette_, &PictureBox::pointerReleased, this, &PaletteStrip::released);
}

QSize PaletteStrip::sizeHint() const {
    return {pictureWidth + scrlPalette_->sizeHint().width(), 200};
}

void PaletteStrip::resizeEvent(QResizeEvent* /*event*/) {
    const int scrollWidth = scrlPalette_->sizeHint().width();
    picPalette_->setGeometry(0, 0, pictureWidth, height());
    scrlPalette_->setGeometry(pictureWidth, 1, scrollWidth, std::max(height() - 2, 1));
    refresh();
}

void PaletteStrip::showLevel(const OpenedLevel* opened) {
    opened_ = opened;
    choosing_ = false;
    camera_ = clsCamera();
    {
        const QSignalBlocker quiet(scrlPalette_);
        scrlPalette_->setValue(0);
    }
    refresh();
}

void PaletteStrip::refresh() {
    createBuffer();
    updateScroll();
}

void PaletteStrip::createBuffer() {
    if (opened_ == nullptr) {
        return;
    }
    picPalette_->clear();
    buffer_.Create(picPalette_->width() - 4, picPalette_->height() - 4, 1);
    camera_.viewWidth = buffer_.width();
    camera_.viewHeight = buffer_.height();
    camera_.levelWidth = buffer_.width();
    camera_.levelHeight =
        editing_.mode == editingMode::specials
            ? opened_->specialSet.paletteHeight()
            : tilePaletteRows(opened_->tileSet.count()) * opened_->level.tileSpacing;
    camera_.checkPosition();
}

void PaletteStrip::updateScroll() {
    if (opened_ == nullptr) {
        return;
    }
    // The last row counts when partial, so that its tiles can be reached.
    const int maximum = editing_.mode == editingMode::tiles
                            ? tilePaletteRows(opened_->tileSet.count()) * clsTileSet::tileSize -
                                  picPalette_->height() + 5
                            : opened_->specialSet.paletteHeight() - picPalette_->height();
    {
        const QSignalBlocker quiet(scrlPalette_);
        scrlPalette_->setMaximum(std::max(maximum, 0));
    }
    camera_.y = scrlPalette_->value();
    redraw();
}

void PaletteStrip::redraw() {
    if (opened_ == nullptr || !buffer_.isUsable()) {
        return;
    }
    if (editing_.mode == editingMode::specials) {
        opened_->specialSet.renderTo(buffer_, camera_, editing_.special(opened_->specialSet), font_,
                                     editing_.alphaBlending);
    } else {
        opened_->tileSet.renderTo(buffer_, camera_);
        if (editing_.paletteSelectionVisible) {
            opened_->tileSet.renderSelected(buffer_, editing_.paletteSelection, camera_,
                                            editing_.alphaBlending ? 1 : 0);
        }
    }
    buffer_.Present(*picPalette_);
}

void PaletteStrip::wheelTurned(int delta) {
    if (delta == 0) {
        return;
    }
    const double wanted = std::nearbyint(scrlPalette_->value() - delta / wheelStep);
    scrlPalette_->setValue(static_cast<int>(
        std::clamp<double>(wanted, scrlPalette_->minimum(), scrlPalette_->maximum())));
}

QPoint PaletteStrip::cellAt(float x, float y) const {
    return {(rounded(x) + camera_.x) / paletteCell, (rounded(y) + camera_.y) / paletteCell};
}

void PaletteStrip::pressed(int button, int /*shift*/, float x, float y) {
    if (opened_ == nullptr || button != leftButton) {
        return;
    }
    if (editing_.mode == editingMode::tiles) {
        const QPoint cell = cellAt(x, y);
        if (tilePaletteHolds(opened_->tileSet.count(), cell.x(), cell.y())) {
            choosing_ = true;
            editing_.paletteSelection = clsRectangle();
            editing_.paletteSelection.left = cell.x();
            editing_.paletteSelection.top = cell.y();
            editing_.paletteSelectionVisible = true;
            redraw();
        }
        return;
    }
    if (const clsSpecial* special = opened_->specialSet.getSelected(rounded(y) + camera_.y)) {
        editing_.specialId = special->Id;
        editing_.specialsBrush.reset();
        emit brushChosen();
    }
    redraw();
}

void PaletteStrip::moved(int /*buttons*/, int /*shift*/, float x, float y) {
    if (opened_ == nullptr || !choosing_) {
        return;
    }
    const QPoint cell = cellAt(x, y);
    clsRectangle dragged = editing_.paletteSelection;
    dragged.width = cell.x() - dragged.left;
    dragged.height = cell.y() - dragged.top;
    editing_.paletteSelection = limitTileSelection(dragged, opened_->tileSet.count());
    redraw();
}

void PaletteStrip::released(int /*button*/, int /*shift*/, float /*x*/, float /*y*/) {
    if (opened_ == nullptr || !choosing_) {
        return;
    }
    clsRectangle& area = editing_.paletteSelection;
    area.Normalize();
    editing_.brush = TileGrid(area.width + 1, area.height + 1);
    editing_.brushCells.reset();
    for (std::int32_t j = 0; j <= area.height; ++j) {
        for (std::int32_t i = 0; i <= area.width; ++i) {
            editing_.brush.at(i, j) = (area.top + j) * paletteColumns + area.left + i;
        }
    }
    choosing_ = false;
    redraw();
    emit brushChosen();
}

} // namespace marvek
