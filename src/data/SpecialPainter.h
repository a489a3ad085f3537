#pragma once

#include "data/clsRenderOptions.h"

#include <cstdint>

namespace marvek {

class clsSpecial;

// What is drawn over a sprite or image special besides its picture.
struct SpecialMarks {
    // A translucent white box over the cell when the special is oversized.
    bool oversize = false;
    // A dark red outline of the special's bounds.
    bool outline = false;
};

// Draws specials over the level into one surface, at a given cell size.
class SpecialPainter {
public:
    SpecialPainter(std::int32_t surface, std::int32_t cellSize,
                   const clsRenderOptions& options) noexcept;

    // (x, y) is the top-left of the special's cell on the surface.
    void draw(const clsSpecial& special, std::int64_t x, std::int64_t y, SpecialMarks marks) const;
    // The ID in light red on a dark patch inside the cell, for a cell whose
    // special the set does not define; digits that do not fit the cell's
    // width go on further lines.
    void drawUndefined(std::int32_t id, std::int64_t x, std::int64_t y) const;

private:
    void drawPicture(const clsSpecial& special, std::int64_t x, std::int64_t y,
                     SpecialMarks marks) const;
    void drawNumber(std::int32_t number, std::int64_t x, std::int64_t y,
                    std::uint32_t colour) const;

    std::int32_t surface_;
    std::int32_t cellSize_;
    std::int32_t font_;
    std::int32_t alphaBlending_;
};

} // namespace marvek
