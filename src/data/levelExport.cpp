#include "data/levelExport.h"

#include "data/clsLevel.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsBitmap.h"
#include "graphics/pictureFiles.h"
#include "graphics/pngFile.h"
#include "io/FileError.h"
#include "io/textHelpers.h"
#include "native/surface.h"
#include "specials/clsSpecialSet.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <stdexcept>

namespace marvek {
namespace {

bool isChosenInAdvance(std::string_view tag) {
    static constexpr std::array<std::string_view, 5> chosen{"enemy", "hazard", "pickup", "graphic",
                                                            "playerstart"};
    return std::ranges::find(chosen, tag) != chosen.end();
}

bool hasTag(const TagChoice& choice, std::string_view tag) {
    return std::ranges::any_of(choice, [tag](const auto& entry) { return entry.first == tag; });
}

constexpr std::int64_t cellPixels = 16;
// The largest picture a surface can hold, in cells.
constexpr std::int64_t largestSideCells = maxSurfaceSide / cellPixels;
constexpr std::int64_t largestCells = maxSurfacePixels / (cellPixels * cellPixels);

} // namespace

TagChoice defaultTagChoice(const clsSpecialSet& specialSet) {
    TagChoice choice;
    for (std::int32_t index = 0; index < specialSet.count(); ++index) {
        const std::string& tag = specialSet.getSpecial(index).Tag;
        if (!tag.empty() && !hasTag(choice, tag)) {
            choice.emplace_back(tag, isChosenInAdvance(tag));
        }
    }
    return choice;
}

std::string withBitmapExtension(std::string_view name) {
    std::string result(name);
    if (!endsWithIgnoringCase(name, ".bmp")) {
        result += ".bmp";
    }
    return result;
}

std::string exportFileName(std::string_view name) {
    return hasPngExtension(name) ? std::string(name) : withBitmapExtension(name);
}

std::string exportSizeProblem(const clsLevel& level) {
    const std::int64_t width = level.width;
    const std::int64_t height = level.height;
    if (width <= largestSideCells && height <= largestSideCells && width * height <= largestCells) {
        return {};
    }
    return "The level is too large to export as one picture: its " + std::to_string(width) + " x " +
           std::to_string(height) + " cells make " + std::to_string(width * cellPixels) + " x " +
           std::to_string(height * cellPixels) +
           " pixels. The largest level that can be exported has at most " +
           std::to_string(largestSideCells) + " cells across and down and " +
           std::to_string(largestCells) + " cells in all (" +
           std::to_string(largestSideCells * cellPixels) + " pixels a side, " +
           std::to_string(maxSurfacePixels) + " pixels in all).";
}

clsBackBuffer renderLevelExport(const clsLevel& level, const clsTileSet& tileSet,
                                const clsSpecialSet& specialSet, const ExportChoice& choice) {
    if (const std::string problem = exportSizeProblem(level); !problem.empty()) {
        throw std::runtime_error(problem);
    }
    clsBackBuffer backBuffer;
    if (!backBuffer.Create(static_cast<std::int32_t>(level.width * cellPixels),
                           static_cast<std::int32_t>(level.height * cellPixels), 1)) {
        throw std::runtime_error("there is not enough memory for a picture of the whole level");
    }
    level.renderExportTo(backBuffer, tileSet, specialSet, choice.tags, choice.renderAll,
                         choice.options);
    return backBuffer;
}

void writeExportBitmap(const clsBackBuffer& backBuffer, const std::filesystem::path& path) {
    clsBitmap bitmap;
    if (!bitmap.createFromBackBuffer(backBuffer)) {
        throw FileError(path, "there is no picture to write");
    }
    bitmap.writeToFile(path);
}

void writeExportPicture(const clsBackBuffer& backBuffer, const std::filesystem::path& path) {
    if (hasPngExtension(path.string())) {
        writePngFile(backBuffer, path);
    } else {
        writeExportBitmap(backBuffer, path);
    }
}

} // namespace marvek
