#pragma once

#include "maps/TiledMap.h"

#include <string>
#include <vector>

namespace marvek {

class clsPalette;
struct LevelFile;

// The level file's fields besides its size and cells, as map properties:
// "palette", "defaultSpecials", "cccl", "remx", "remy" and "magic".
std::vector<TiledProperty> levelProperties(const LevelFile& file);

// Sets the fields from the properties, each missing one from base (when
// given). Throws MapRefusal for a value that cannot be, and
// MissingMapProperties naming every property missing without a base.
void applyLevelProperties(const std::vector<TiledProperty>& properties, const LevelFile* base,
                          LevelFile& file);

// The "palette" property's value: the 32 colours the level file holds.
std::string paletteProperty(const clsPalette& palette);

// True for the names levelProperties writes.
bool isLevelProperty(const std::string& name);

} // namespace marvek
