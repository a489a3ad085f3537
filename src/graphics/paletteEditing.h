#pragma once

// What the palette editor does besides showing its window.

#include "graphics/clsPalette.h"
#include "graphics/clsRectangle.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace marvek {

// The editor shows and exchanges the game's 32 colours.
inline constexpr std::int32_t editedColours = clsPalette::gameEntries;

// The grid of colour boxes: 32-pixel boxes a 33-pixel step apart, a new row
// begun where the next box would pass 528 pixels (16 to a row).
struct PaletteGrid {
    static constexpr std::int32_t boxSize = 32;
    static constexpr std::int32_t step = 33;
    static constexpr std::int32_t rowWidth = 528;

    // The box of colour index 0..31.
    static clsRectangle box(std::int32_t index);
    // The colour index whose box holds the point, or none.
    static std::optional<std::int32_t> indexAt(std::int32_t x, std::int32_t y);
    // The width and height the whole grid takes.
    static std::int32_t width();
    static std::int32_t height();
};

// Entry `index`, black where the palette has none.
std::uint32_t shownColour(const clsPalette& palette, std::int32_t index);

// The colour as the game stores it: each component to 4 bits (c / 17
// rounded) and back (v * 17).
std::uint32_t quantiseColour(std::uint32_t colour);

// A 32 x 32 8-bit BMP of colour 0 whose colour table is the palette. Throws
// FileError.
void exportPaletteBitmap(const clsPalette& palette, const std::filesystem::path& path);

// The first 32 colour-table entries of an 8-bit BMP, or why there are none.
struct PaletteImport {
    std::optional<clsPalette> palette;
    std::string failure;
};
PaletteImport importPaletteBitmap(const std::filesystem::path& path);

} // namespace marvek
