#pragma once

#include "native/registry.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace marvek {

// Limits that keep a hostile width or height from exhausting memory.
inline constexpr std::int32_t maxSurfaceSide = 32768;
inline constexpr std::int64_t maxSurfacePixels = std::int64_t{1} << 26;

// A 32-bit image, rows top to bottom without padding.
struct Surface {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<std::uint32_t> pixels;

    // nullptr when the size is empty, too large or cannot be allocated.
    static std::unique_ptr<Surface> create(std::int32_t width, std::int32_t height) noexcept;

    std::uint32_t* row(std::int32_t y) noexcept {
        return pixels.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    }
    const std::uint32_t* row(std::int32_t y) const noexcept {
        return pixels.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    }
};

// A bitmap font: a glyph surface (owned, in the surface table) cut into cells.
struct Font {
    std::int32_t surface = 0;
    std::int32_t charWidth = 0;
    std::int32_t charHeight = 0;
};

// The library's handle tables. The library is used from one thread. Inline,
// so that the lookup on every blit costs no call.
inline HandleTable<Surface>& surfaceTable() noexcept {
    static HandleTable<Surface> table;
    return table;
}

inline HandleTable<Font>& fontTable() noexcept {
    static HandleTable<Font> table;
    return table;
}

inline Surface* findSurface(std::int32_t handle) noexcept {
    return surfaceTable().find(handle);
}

// Registers a surface; 0 when it is null or the table is full.
std::int32_t registerSurface(std::unique_ptr<Surface> surface) noexcept;

} // namespace marvek
