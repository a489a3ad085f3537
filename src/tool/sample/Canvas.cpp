#include "tool/sample/Canvas.h"

#include "data/lineWalk.h"

namespace marvek::sample {

Canvas::Canvas(std::int32_t width, std::int32_t height, std::uint8_t colour)
    : width_(width), height_(height),
      pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), colour) {}

bool Canvas::contains(std::int32_t x, std::int32_t y) const noexcept {
    return x >= 0 && y >= 0 && x < width_ && y < height_;
}

std::uint8_t Canvas::at(std::int32_t x, std::int32_t y) const noexcept {
    return contains(x, y) ? pixels_[static_cast<std::size_t>(y * width_ + x)] : 0;
}

void Canvas::set(std::int32_t x, std::int32_t y, std::uint8_t colour) noexcept {
    if (contains(x, y)) {
        pixels_[static_cast<std::size_t>(y * width_ + x)] = colour;
    }
}

void Canvas::fill(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                  std::uint8_t colour) noexcept {
    for (std::int32_t j = y; j < y + height; ++j) {
        for (std::int32_t i = x; i < x + width; ++i) {
            set(i, j, colour);
        }
    }
}

void Canvas::frame(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                   std::uint8_t colour) noexcept {
    fill(x, y, width, 1, colour);
    fill(x, y + height - 1, width, 1, colour);
    fill(x, y, 1, height, colour);
    fill(x + width - 1, y, 1, height, colour);
}

void Canvas::line(std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1,
                  std::uint8_t colour) noexcept {
    walkLine(x0, y0, x1, y1, [&](std::int32_t x, std::int32_t y) { set(x, y, colour); });
}

void Canvas::ellipse(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                     std::uint8_t colour) noexcept {
    // Integer test against doubled coordinates so even sizes stay symmetric.
    const std::int64_t rx = width;
    const std::int64_t ry = height;
    for (std::int32_t j = 0; j < height; ++j) {
        for (std::int32_t i = 0; i < width; ++i) {
            const std::int64_t px = 2 * i + 1 - rx;
            const std::int64_t py = 2 * j + 1 - ry;
            if (px * px * ry * ry + py * py * rx * rx <= rx * rx * ry * ry) {
                set(x + i, y + j, colour);
            }
        }
    }
}

void Canvas::recolour(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                      std::uint8_t from, std::uint8_t to) noexcept {
    for (std::int32_t j = y; j < y + height; ++j) {
        for (std::int32_t i = x; i < x + width; ++i) {
            if (contains(i, j) && at(i, j) == from) {
                set(i, j, to);
            }
        }
    }
}

void Canvas::outline(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                     std::uint8_t background, std::uint8_t colour) {
    const Canvas before = *this;
    const auto inside = [&](std::int32_t i, std::int32_t j) {
        return i >= x && j >= y && i < x + width && j < y + height;
    };
    const auto isShape = [&](std::int32_t i, std::int32_t j) {
        const std::uint8_t c = before.at(i, j);
        return inside(i, j) && c != background && c != colour;
    };
    for (std::int32_t j = y; j < y + height; ++j) {
        for (std::int32_t i = x; i < x + width; ++i) {
            if (before.at(i, j) == background && (isShape(i - 1, j) || isShape(i + 1, j) ||
                                                  isShape(i, j - 1) || isShape(i, j + 1))) {
                set(i, j, colour);
            }
        }
    }
}

void Canvas::paste(const Canvas& source, std::int32_t x, std::int32_t y, std::int32_t clear) {
    for (std::int32_t j = 0; j < source.height(); ++j) {
        for (std::int32_t i = 0; i < source.width(); ++i) {
            const std::uint8_t c = source.at(i, j);
            if (c != clear) {
                set(x + i, y + j, c);
            }
        }
    }
}

} // namespace marvek::sample
