#pragma once

#include "graphics/clsPresentTarget.h"
#include "native/handles.h"

#include <cstdint>
#include <span>
#include <vector>

namespace marvek {

// The off-screen image a frame is drawn into (a native surface at level
// size) and the zoomed pixel memory it is shown from. The memory has the
// surface's own layout (top-down, 32 bits, blue, green, red, alpha), so at
// zoom 1 the surface's pixels are shown as they are.
class clsBackBuffer {
public:
    clsBackBuffer() = default;
    clsBackBuffer(clsBackBuffer&&) noexcept = default;
    clsBackBuffer& operator=(clsBackBuffer&&) noexcept = default;
    clsBackBuffer(const clsBackBuffer&) = delete;
    clsBackBuffer& operator=(const clsBackBuffer&) = delete;
    ~clsBackBuffer() = default;

    // Replaces any previous image. On failure (sizes or zoom below 1, no
    // surface, no memory) the buffer is left empty and the result is false;
    // the zoom is kept for a later Resize.
    bool Create(std::int32_t width, std::int32_t height, std::int32_t zoom);
    // Create with the new size and the current zoom.
    bool Resize(std::int32_t width, std::int32_t height);
    void Clear();
    // Zoom 1 hands the surface's own pixels to the target; a larger zoom
    // repeats each of them zoom times across and down into the pixel memory
    // first. The
    // pixels stay where they are until the buffer is made anew, so a target
    // may keep showing them. Allocates nothing.
    void Present(clsPresentTarget& target);

    bool isUsable() const noexcept { return static_cast<bool>(surface_); }
    std::int32_t surface() const noexcept { return surface_.get(); }
    std::int32_t width() const noexcept { return width_; }
    std::int32_t height() const noexcept { return height_; }
    std::int32_t zoom() const noexcept { return zoom_; }
    std::int32_t bitmapWidth() const noexcept { return bitmapWidth_; }
    std::int32_t bitmapHeight() const noexcept { return bitmapHeight_; }
    // The surface's pixels as they are now, copied into memory the buffer
    // keeps from frame to frame (a drawing that blends with what was under
    // it allocates nothing after the first frame).
    const std::vector<std::uint32_t>& keepPixels();

private:
    void release() noexcept;
    void presentScaled(clsPresentTarget& target);

    UniqueSurface surface_;
    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    std::int32_t zoom_ = 1;
    std::int32_t bitmapWidth_ = 0;
    std::int32_t bitmapHeight_ = 0;
    std::vector<std::uint32_t> pixels_;
    std::vector<std::uint32_t> kept_;
};

} // namespace marvek
