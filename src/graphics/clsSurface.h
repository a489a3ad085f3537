#pragma once

#include "graphics/clsPalette.h"
#include "native/handles.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <utility>
#include <vector>

namespace marvek {

class clsBitStream;

// The program's image: a colour-index ("planar") image, one byte per pixel,
// read from and written to the game's bitplane layout, and the native 32-bit
// surface built from it with a palette for drawing.
class clsSurface {
public:
    // Bitplanes hold at most bit 7 of an index.
    static constexpr int maximumPlanes = 8;
    // Keeps a hostile width or height from exhausting memory.
    static constexpr std::int64_t maximumPlanarPixels = std::int64_t{1} << 26;

    clsSurface() = default;
    clsSurface(clsSurface&&) noexcept = default;
    clsSurface& operator=(clsSurface&&) noexcept = default;
    clsSurface(const clsSurface&) = delete;
    clsSurface& operator=(const clsSurface&) = delete;
    ~clsSurface() = default;

    // A planar image of zero bytes. False, image unchanged, for a negative
    // size or one above maximumPlanarPixels.
    bool planarCreateEmpty(std::int32_t width, std::int32_t height);
    // A native surface of that size, replacing the old one; false (old kept)
    // when the library cannot make it.
    bool createEmpty(std::int32_t width, std::int32_t height);

    // Reads width x height pixels of `planes` bitplanes at the stream's
    // cursor and leaves the cursor where bit-by-bit reading would. False,
    // image unchanged, for planes outside 0..8 or a bad size.
    bool planarLoadFromBits(clsBitStream& stream, std::int32_t width, std::int32_t height,
                            int planes);
    // Writes `planes` bitplanes at the cursor, setting and clearing bits;
    // index bits from `planes` up are dropped.
    // False, nothing written, for planes outside 0..8.
    bool planarWriteTo(clsBitStream& stream, int planes) const;

    // Rebuilds the native surface from the planar image, keeping a copy of the
    // palette. Indices at or above the palette's count and transparentIndex
    // become transparent. False, old surface kept, for an empty palette or an
    // empty planar image.
    bool planarToSurface(const clsPalette& palette, std::int32_t transparentIndex);

    // Adds delta to every index: below 0 becomes 0, above 255 wraps.
    void planarShiftColors(std::int32_t delta);
    // Becomes the width x height rectangle of source at (x, y). False, image
    // unchanged, unless the rectangle lies inside the source.
    bool planarCopyFrom(const clsSurface& source, std::int32_t x, std::int32_t y,
                        std::int32_t width, std::int32_t height);
    // Pastes source's planar image with its top-left at (x, y); whatever falls
    // outside this image is left out.
    void planarBlit(const clsSurface& source, std::int32_t x, std::int32_t y);

    // Rows from the top, planarWidth bytes each; null while there is none.
    std::uint8_t* ptrPlanar() noexcept { return planar_.data(); }
    const std::uint8_t* ptrPlanar() const noexcept { return planar_.data(); }
    std::span<const std::uint8_t> planarPixels() const noexcept { return planar_; }

    // Loads a BMP straight into the native surface, replacing the old one.
    // False, old surface kept, when the library cannot load it.
    bool loadFromFile(const std::filesystem::path& path);

    std::int32_t width() const noexcept { return width_; }
    std::int32_t height() const noexcept { return height_; }
    std::int32_t surface() const noexcept { return surface_.get(); }
    std::int32_t planarWidth() const noexcept { return planarWidth_; }
    std::int32_t planarHeight() const noexcept { return planarHeight_; }

    // The palette the surface was last built with, or that was given to it.
    const clsPalette& palette() const noexcept { return palette_; }
    void setPalette(clsPalette palette) { palette_ = std::move(palette); }

private:
    void adoptSurface(UniqueSurface surface);
    void pastePlanar(std::span<const std::uint8_t> pixels, std::int32_t width, std::int32_t height,
                     std::int32_t x, std::int32_t y);
    void adoptPlanar(std::int32_t width, std::int32_t height, std::vector<std::uint8_t> pixels);

    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    UniqueSurface surface_;
    std::int32_t planarWidth_ = 0;
    std::int32_t planarHeight_ = 0;
    clsPalette palette_;
    std::vector<std::uint8_t> planar_;
};

} // namespace marvek
