#pragma once

#include "graphics/clsSurface.h"

#include <cstdint>
#include <vector>

namespace marvek {

class clsBackBuffer;
class clsBitStream;
class clsCamera;
class clsPalette;
class clsRectangle;

// A world's 16 x 16 tiles, read from a headerless planar file, and the tile
// browser drawn from them.
class clsTileSet {
public:
    static constexpr std::int32_t tileSize = 16;
    static constexpr std::int32_t browserColumns = 20;

    // Replaces the tiles with those of the whole stream. The count is the
    // stream's length in tiles, rounded half to even, so a last partial tile
    // that rounds up is read past the end (as zeros). Planes outside 1..8
    // give no tiles.
    void loadFrom(clsBitStream& stream, const clsPalette& palette, int planes);

    std::int32_t count() const noexcept { return static_cast<std::int32_t>(tiles_.size()); }
    // Throws std::out_of_range outside 0..count - 1.
    const clsSurface& Tile(std::int32_t index) const;

    // The browser: 20 tiles a row from the row under the camera's top.
    void renderTo(clsBackBuffer& backBuffer, const clsCamera& camera) const;
    // Highlights the selection, a rectangle in tiles whose width and height
    // are one less than the tiles it covers. Throws std::overflow_error for a
    // box beyond the 32-bit range.
    void renderSelected(clsBackBuffer& backBuffer, const clsRectangle& selection,
                        const clsCamera& camera, std::int32_t alphaBlending) const;

private:
    void renderRow(clsBackBuffer& backBuffer, std::int64_t& index, std::int32_t y) const;

    std::vector<clsSurface> tiles_;
};

// Whole tiles in a file of `size` bytes, halves rounded to even.
std::int32_t tileCountOf(std::int32_t size, int planes);

} // namespace marvek
