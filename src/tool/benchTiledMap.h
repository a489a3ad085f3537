#pragma once

#include "data/openLevel.h"

namespace marvek::tool {

// "tmx-export", "tmx-import", "tmj-export", "tmj-import": a level's map
// written and read, each against the library's parsing of the same text.
void benchTiledMaps(const OpenedLevel& world);

} // namespace marvek::tool
