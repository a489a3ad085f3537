#include "data/SpecialPainter.h"

#include "data/screenCoordinate.h"
#include "graphics/clsFont.h"
#include "native/handles.h"
#include "native/marvek.h"
#include "specials/clsSpecial.h"

#include <algorithm>
#include <charconv>

namespace marvek {
namespace {

constexpr std::uint32_t oversizeColour = 0x7FFFFFFF;
constexpr std::uint32_t outlineColour = 0x00BF0000;
constexpr std::uint32_t numberColour = 0x7FFFFFFF;
constexpr std::uint32_t undefinedColour = 0x3FFF3F3F;
// Dark and opaque, so that each number stands on its own patch.
constexpr std::uint32_t undefinedBackground = 0x00200808;

} // namespace

SpecialPainter::SpecialPainter(std::int32_t surface, std::int32_t cellSize,
                               const clsRenderOptions& options) noexcept
    : surface_(surface), cellSize_(cellSize),
      font_(options.font != nullptr ? options.font->handle() : 0),
      alphaBlending_(options.alphaBlending ? 1 : 0) {}

void SpecialPainter::draw(const clsSpecial& special, std::int64_t x, std::int64_t y,
                          SpecialMarks marks) const {
    switch (special.Kind) {
    case SpecialKind::box:
        renderBoxFill(surface_, screenCoordinate(x), screenCoordinate(y), cellSize_, cellSize_,
                      static_cast<std::uint32_t>(special.Color), alphaBlending_);
        break;
    case SpecialKind::sprite:
    case SpecialKind::image:
        drawPicture(special, x, y, marks);
        break;
    case SpecialKind::number:
        drawNumber(special.Id, x, y, numberColour);
        break;
    case SpecialKind::nothing:
        break;
    }
}

void SpecialPainter::drawUndefined(std::int32_t id, std::int64_t x, std::int64_t y) const {
    const std::int32_t charWidth = fontGetCharWidth(font_);
    const std::int32_t charHeight = fontGetCharHeight(font_);
    if (charWidth <= 0 || charHeight <= 0 || cellSize_ < 2) {
        return;
    }
    char digits[16];
    const auto end = std::to_chars(digits, digits + sizeof digits, id).ptr;
    const auto length = static_cast<std::int32_t>(end - digits);
    // As many digits a line as the cell is wide; the rest on the lines below.
    const std::int32_t perLine = std::max(1, cellSize_ / charWidth);
    const std::int32_t lines = (length + perLine - 1) / perLine;
    // Drawn on a patch one pixel short of the cell, so that the numbers of
    // neighbouring cells never run together.
    const UniqueSurface patch(
        surfaceCreate(std::min(std::min(length, perLine) * charWidth, cellSize_ - 1),
                      std::min(lines * charHeight, cellSize_ - 1)));
    surfaceFill(patch.get(), undefinedBackground);
    for (std::int32_t line = 0; line < lines; ++line) {
        char text[16] = {};
        const std::int32_t from = line * perLine;
        std::copy(digits + from, digits + std::min(length, from + perLine), text);
        renderText(patch.get(), font_, 0, line * charHeight, undefinedColour, text);
    }
    renderBlit(surface_, patch.get(), screenCoordinate(x), screenCoordinate(y),
               surfaceGetWidth(patch.get()), surfaceGetHeight(patch.get()));
}

void SpecialPainter::drawPicture(const clsSpecial& special, std::int64_t x, std::int64_t y,
                                 SpecialMarks marks) const {
    renderBlit(surface_, special.surface.surface(), screenCoordinate(x + special.Offset.x),
               screenCoordinate(y + special.Offset.y), special.imgSize.width,
               special.imgSize.height);
    if (marks.oversize && special.isOversized) {
        renderBoxFill(surface_, screenCoordinate(x), screenCoordinate(y), cellSize_, cellSize_,
                      oversizeColour, alphaBlending_);
    }
    if (marks.outline && special.bounds) {
        const clsRectangle& bounds = *special.bounds;
        renderBox(surface_, screenCoordinate(x + bounds.left), screenCoordinate(y + bounds.top),
                  bounds.width, bounds.height, outlineColour);
    }
}

void SpecialPainter::drawNumber(std::int32_t number, std::int64_t x, std::int64_t y,
                                std::uint32_t colour) const {
    // Drawn every frame: formatted on the stack rather than into a string.
    char text[16];
    const auto result = std::to_chars(text, text + sizeof text - 1, number);
    *result.ptr = '\0';
    renderText(surface_, font_, screenCoordinate(x), screenCoordinate(y), colour, text);
}

} // namespace marvek
