#pragma once

#include "data/clsRenderOptions.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace marvek {

class clsBackBuffer;
class clsLevel;
class clsSpecialSet;
class clsTileSet;

// Each tag of the set once, in the order of first use; "enemy", "hazard",
// "pickup", "graphic" and "playerstart" (exactly so written) chosen.
TagChoice defaultTagChoice(const clsSpecialSet& specialSet);

// The name with ".bmp" appended unless it already ends so, ignoring case.
std::string withBitmapExtension(std::string_view name);
// The name the export writes: a PNG name as it is, any other by the ".bmp"
// rule.
std::string exportFileName(std::string_view name);

// Why the level cannot be one picture (its size, and the largest that can
// be exported), or empty when it can.
std::string exportSizeProblem(const clsLevel& level);

// What the export draws and how.
struct ExportChoice {
    TagChoice tags;
    bool renderAll = false;
    clsRenderOptions options;
};

// The whole level at 16 pixels a cell, whatever the view's grid, in a back
// buffer of its own. Throws std::runtime_error with exportSizeProblem's text
// for a level too large, and when no buffer that large can be made.
clsBackBuffer renderLevelExport(const clsLevel& level, const clsTileSet& tileSet,
                                const clsSpecialSet& specialSet, const ExportChoice& choice);

// The back buffer as a 32-bit Windows bitmap. Throws FileError.
void writeExportBitmap(const clsBackBuffer& backBuffer, const std::filesystem::path& path);
// As PNG when the name says so (hasPngExtension), else as a bitmap. Throws
// FileError.
void writeExportPicture(const clsBackBuffer& backBuffer, const std::filesystem::path& path);

} // namespace marvek
