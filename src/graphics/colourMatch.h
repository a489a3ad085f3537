#pragma once

// Turning a picture made elsewhere into indices of a palette by the colours
// its pixels show, so that an editor reordering the palette on save changes
// nothing.

#include "graphics/clsPalette.h"
#include "graphics/clsSurface.h"
#include "graphics/pngRead.h"

#include <cstdint>
#include <stdexcept>
#include <string>

namespace marvek {

// The palette an import writes indices of, and the indices it may use.
struct TargetPalette {
    clsPalette palette;
    std::string name;
    std::int32_t first = 0; // given to transparent pixels
    std::int32_t end = 0;   // one past the last usable index
};

// A pixel whose colour the target palette lacks.
class MissingColourError : public std::runtime_error {
public:
    MissingColourError(std::int32_t x, std::int32_t y, std::uint32_t colour,
                       const std::string& paletteName);

    std::int32_t x() const noexcept { return x_; }
    std::int32_t y() const noexcept { return y_; }
    std::uint32_t colour() const noexcept { return colour_; }

private:
    std::int32_t x_;
    std::int32_t y_;
    std::uint32_t colour_;
};

// "#RRGGBB" for a Windows colour value (0x00BBGGRR).
std::string colourText(std::uint32_t colour);

// True when the picture's palette starts with the target's colours in
// order up to its last usable index, as this program's own exports write it.
bool hasTargetOrder(const clsPalette& picturePalette, const TargetPalette& target);

// The indexed picture's pixels of its top-left width x height as indices of
// the target, the picture's size kept (pixels outside stay 0): as they are
// when the palettes agree in order; otherwise by colour, the pixel's own
// index first where the target has its colour there, else the lowest usable
// index with it. Throws MissingColourError for the first pixel, row by row,
// whose colour the target lacks.
clsSurface matchIndexedPicture(const clsSurface& picture, const TargetPalette& target,
                               std::int32_t width, std::int32_t height);

// The same for a picture by colours: the lowest usable index with each
// colour, transparent pixels the target's first.
clsSurface matchColourPicture(const ColourPicture& picture, const TargetPalette& target,
                              std::int32_t width, std::int32_t height);

} // namespace marvek
