#pragma once

#include "graphics/clsPalette.h"
#include "graphics/clsSurface.h"
#include "graphics/colourMatch.h"
#include "graphics/pngRead.h"

#include <cstdint>
#include <filesystem>
#include <optional>

namespace marvek {

// A picture chosen for import: an 8-bit BMP or an indexed PNG by its indices
// and palette, any other PNG by its colours.
class PictureImport {
public:
    // Throws FileError naming the file and why it is refused.
    explicit PictureImport(const std::filesystem::path& path);

    std::int32_t width() const noexcept;
    std::int32_t height() const noexcept;

    // The picture as indices of the target palette inside its top-left
    // width x height, by colour unless its palette is the target's in order.
    // Throws FileError naming the file and the first pixel whose colour the
    // target lacks.
    clsSurface indicesOf(const TargetPalette& target, std::int32_t width,
                         std::int32_t height) const;

    // The picture's own indices and, for storing with them, the first count
    // colours of its palette. Throws FileError for a picture by colours,
    // which has none.
    const clsSurface& ownIndices() const;
    clsPalette ownPalette(std::int32_t count) const;

private:
    std::filesystem::path path_;
    std::optional<clsSurface> indexed_;
    ColourPicture colours_;
};

} // namespace marvek
