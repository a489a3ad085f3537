#pragma once

// Turns a parse into a complete packed file.

#include "native/imploder/implodeParse.h"

#include <cstdint>
#include <span>
#include <vector>

namespace marvek::imploder {

std::vector<std::uint8_t> writePackedFile(std::span<const std::uint8_t> data, const Parse& parse,
                                          const DistanceTable& table);

} // namespace marvek::imploder
