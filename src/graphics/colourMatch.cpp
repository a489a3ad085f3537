#include "graphics/colourMatch.h"

#include <algorithm>
#include <array>
#include <optional>
#include <unordered_map>

namespace marvek {
namespace {

constexpr std::int32_t indexCount = 256;

// Each colour's lowest usable index.
std::unordered_map<std::uint32_t, std::uint8_t> lowestIndices(const TargetPalette& target) {
    std::unordered_map<std::uint32_t, std::uint8_t> lowest;
    const std::int32_t end = std::min({target.end, target.palette.Count(), indexCount});
    for (std::int32_t index = std::max(target.first, 0); index < end; ++index) {
        lowest.try_emplace(target.palette.Entry(index), static_cast<std::uint8_t>(index));
    }
    return lowest;
}

bool usable(const TargetPalette& target, std::int32_t index) {
    return index >= target.first && index < target.end && index < target.palette.Count();
}

std::uint32_t pictureColour(const clsPalette& palette, std::int32_t index) {
    // An index past the palette is drawn black, as in an 8-bit BMP's table.
    return index < palette.Count() ? palette.Entry(index) : 0;
}

clsSurface emptyLike(std::int32_t width, std::int32_t height, const clsPalette& palette) {
    clsSurface result;
    if (!result.planarCreateEmpty(width, height)) {
        throw std::length_error("the picture's size cannot be made");
    }
    result.setPalette(palette);
    return result;
}

// Calls match(x, y, at) for each pixel of the area, row by row.
template <typename Match>
void forEachPixel(std::int32_t pictureWidth, std::int32_t pictureHeight, std::int32_t width,
                  std::int32_t height, Match match) {
    for (std::int32_t y = 0; y < std::min(height, pictureHeight); ++y) {
        for (std::int32_t x = 0; x < std::min(width, pictureWidth); ++x) {
            match(x, y,
                  static_cast<std::size_t>(y) * static_cast<std::size_t>(pictureWidth) +
                      static_cast<std::size_t>(x));
        }
    }
}

} // namespace

MissingColourError::MissingColourError(std::int32_t x, std::int32_t y, std::uint32_t colour,
                                       const std::string& paletteName)
    : std::runtime_error("the pixel at (" + std::to_string(x) + ", " + std::to_string(y) +
                         ") has the colour " + colourText(colour) + ", which the palette \"" +
                         paletteName + "\" lacks"),
      x_(x), y_(y), colour_(colour) {}

std::string colourText(std::uint32_t colour) {
    constexpr std::array<char, 16> digits{'0', '1', '2', '3', '4', '5', '6', '7',
                                          '8', '9', 'A', 'B', 'C', 'D', 'E', 'F'};
    std::string text = "#";
    for (const int shift : {0, 8, 16}) {
        const auto component = (colour >> shift) & 0xFF;
        text += digits[component >> 4];
        text += digits[component & 0xF];
    }
    return text;
}

bool hasTargetOrder(const clsPalette& picturePalette, const TargetPalette& target) {
    const std::int32_t end = std::min({target.end, target.palette.Count(), indexCount});
    if (picturePalette.Count() < end) {
        return false;
    }
    for (std::int32_t index = 0; index < end; ++index) {
        if (picturePalette.Entry(index) != target.palette.Entry(index)) {
            return false;
        }
    }
    return true;
}

clsSurface matchIndexedPicture(const clsSurface& picture, const TargetPalette& target,
                               std::int32_t width, std::int32_t height) {
    if (hasTargetOrder(picture.palette(), target)) {
        clsSurface same = emptyLike(picture.planarWidth(), picture.planarHeight(), target.palette);
        std::copy(picture.planarPixels().begin(), picture.planarPixels().end(), same.ptrPlanar());
        return same;
    }
    // Worked out once for each of the 256 indices a pixel can hold.
    const auto lowest = lowestIndices(target);
    std::array<std::optional<std::uint8_t>, indexCount> indexFor{};
    for (std::int32_t own = 0; own < indexCount; ++own) {
        const std::uint32_t colour = pictureColour(picture.palette(), own);
        if (usable(target, own) && target.palette.Entry(own) == colour) {
            indexFor[static_cast<std::size_t>(own)] = static_cast<std::uint8_t>(own);
        } else if (const auto found = lowest.find(colour); found != lowest.end()) {
            indexFor[static_cast<std::size_t>(own)] = found->second;
        }
    }
    clsSurface result = emptyLike(picture.planarWidth(), picture.planarHeight(), target.palette);
    const std::uint8_t* from = picture.ptrPlanar();
    std::uint8_t* to = result.ptrPlanar();
    forEachPixel(picture.planarWidth(), picture.planarHeight(), width, height,
                 [&](std::int32_t x, std::int32_t y, std::size_t at) {
                     const auto& index = indexFor[from[at]];
                     if (!index) {
                         throw MissingColourError(x, y, pictureColour(picture.palette(), from[at]),
                                                  target.name);
                     }
                     to[at] = *index;
                 });
    return result;
}

clsSurface matchColourPicture(const ColourPicture& picture, const TargetPalette& target,
                              std::int32_t width, std::int32_t height) {
    const auto lowest = lowestIndices(target);
    clsSurface result = emptyLike(picture.width, picture.height, target.palette);
    std::uint8_t* to = result.ptrPlanar();
    forEachPixel(picture.width, picture.height, width, height,
                 [&](std::int32_t x, std::int32_t y, std::size_t at) {
                     const std::uint32_t colour = picture.pixels[at];
                     if (colour == ColourPicture::transparent) {
                         to[at] =
                             static_cast<std::uint8_t>(std::clamp(target.first, 0, indexCount - 1));
                         return;
                     }
                     const auto found = lowest.find(colour);
                     if (found == lowest.end()) {
                         throw MissingColourError(x, y, colour, target.name);
                     }
                     to[at] = found->second;
                 });
    return result;
}

} // namespace marvek
