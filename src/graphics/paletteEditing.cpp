#include "graphics/paletteEditing.h"

#include "graphics/clsBitmap.h"
#include "graphics/clsSurface.h"
#include "io/FileError.h"
#include "native/marvek.h"

namespace marvek {
namespace {

constexpr std::int32_t exportSide = 32;
constexpr std::uint32_t componentScale = 17; // 4 bits to 8: 15 * 17 = 255

std::uint32_t quantised(std::uint8_t component) {
    return (component + componentScale / 2) / componentScale * componentScale;
}

} // namespace

clsRectangle PaletteGrid::box(std::int32_t index) {
    clsRectangle box;
    box.width = boxSize;
    box.height = boxSize;
    for (std::int32_t i = 0; i < index; ++i) {
        box.left += step;
        if (box.left + boxSize > rowWidth) {
            box.left = 0;
            box.top += step;
        }
    }
    return box;
}

std::optional<std::int32_t> PaletteGrid::indexAt(std::int32_t x, std::int32_t y) {
    for (std::int32_t index = 0; index < editedColours; ++index) {
        const clsRectangle at = box(index);
        if (x >= at.left && x < at.left + at.width && y >= at.top && y < at.top + at.height) {
            return index;
        }
    }
    return std::nullopt;
}

std::int32_t PaletteGrid::width() {
    std::int32_t right = 0;
    for (std::int32_t index = 0; index < editedColours; ++index) {
        right = std::max(right, box(index).left + boxSize);
    }
    return right;
}

std::int32_t PaletteGrid::height() {
    return box(editedColours - 1).top + boxSize;
}

std::uint32_t shownColour(const clsPalette& palette, std::int32_t index) {
    return index >= 0 && index < palette.Count() ? palette.Entry(index) : 0;
}

std::uint32_t quantiseColour(std::uint32_t colour) {
    return quantised(getRed(colour)) | quantised(getGreen(colour)) << 8 |
           quantised(getBlue(colour)) << 16;
}

void exportPaletteBitmap(const clsPalette& palette, const std::filesystem::path& path) {
    clsSurface image;
    image.planarCreateEmpty(exportSide, exportSide);
    image.setPalette(palette);
    clsBitmap bitmap;
    bitmap.createFromPlanarSurface(image);
    bitmap.writeToFile(path);
}

PaletteImport importPaletteBitmap(const std::filesystem::path& path) {
    clsBitmap bitmap;
    try {
        if (!bitmap.readFromFile(path)) {
            return {std::nullopt, bitmap.refusal()};
        }
    } catch (const FileError& error) {
        return {std::nullopt, error.reason()};
    }
    const auto image = bitmap.createPlanar(clsPalette::gamePlanes);
    if (!image) {
        return {std::nullopt, bitmap.planarRefusal()};
    }
    return {image->palette(), {}};
}

} // namespace marvek
