#pragma once

#include <cstdint>
#include <vector>

namespace marvek::sample {

// A colour-index picture to draw the sample graphics on. Every call clips, so
// shapes may run over the edges.
class Canvas {
public:
    Canvas(std::int32_t width, std::int32_t height, std::uint8_t colour = 0);

    std::int32_t width() const noexcept { return width_; }
    std::int32_t height() const noexcept { return height_; }
    const std::vector<std::uint8_t>& pixels() const noexcept { return pixels_; }

    bool contains(std::int32_t x, std::int32_t y) const noexcept;
    // Colour 0 outside the canvas.
    std::uint8_t at(std::int32_t x, std::int32_t y) const noexcept;
    void set(std::int32_t x, std::int32_t y, std::uint8_t colour) noexcept;

    void fill(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
              std::uint8_t colour) noexcept;
    void frame(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
               std::uint8_t colour) noexcept;
    void line(std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1,
              std::uint8_t colour) noexcept;
    // Filled ellipse inside the box (x, y, width, height).
    void ellipse(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                 std::uint8_t colour) noexcept;
    // Replaces one colour with another inside a box.
    void recolour(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                  std::uint8_t from, std::uint8_t to) noexcept;
    // Gives every pixel of colour `background` inside the box that touches a
    // pixel of another colour (not `background`) the outline colour, so
    // shapes drawn on a clear box get a one-pixel rim.
    void outline(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                 std::uint8_t background, std::uint8_t colour);
    // Copies another canvas in, skipping pixels of the colour `clear`
    // (pass a value above 255 to copy every pixel).
    void paste(const Canvas& source, std::int32_t x, std::int32_t y, std::int32_t clear = 256);

private:
    std::int32_t width_;
    std::int32_t height_;
    std::vector<std::uint8_t> pixels_;
};

} // namespace marvek::sample
