#pragma once

// Choosing the tables and the parse of a packed file.

#include "native/imploder/implodeParse.h"

#include <cstdint>
#include <span>

namespace marvek::imploder {

struct PackPlan {
    DistanceTable table;
    Parse parse;
};

// The classic packer: the mode's tables (a smaller mode's when its window
// already covers the data) and a greedy parse.
PackPlan classicPlan(std::span<const std::uint8_t> data, std::size_t mode);

// The smallest file found: candidate tables ranked by a greedy pass, the best
// few parsed optimally, then tables fitted to the distances that parse uses.
PackPlan smallestPlan(std::span<const std::uint8_t> data);

// Extra-bit counts that code the parse's distances in the fewest bits, each
// selector still reaching every distance it is used with.
DistanceExtraBits fittedExtraBits(const Parse& parse, const DistanceTable& current);

} // namespace marvek::imploder
