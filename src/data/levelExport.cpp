#include "data/levelExport.h"

#include "data/clsLevel.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsBitmap.h"
#include "io/FileError.h"
#include "specials/clsSpecialSet.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
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

char lowerAscii(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

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
    constexpr std::string_view extension = ".bmp";
    const bool hasExtension =
        name.size() >= extension.size() &&
        std::ranges::equal(name.substr(name.size() - extension.size()), extension,
                           [](char a, char b) { return lowerAscii(a) == b; });
    std::string result(name);
    if (!hasExtension) {
        result += extension;
    }
    return result;
}

clsBackBuffer renderLevelExport(const clsLevel& level, const clsTileSet& tileSet,
                                const clsSpecialSet& specialSet, const ExportChoice& choice) {
    constexpr std::int64_t cell = 16;
    const std::int64_t width = level.width * cell;
    const std::int64_t height = level.height * cell;
    clsBackBuffer backBuffer;
    constexpr std::int64_t largest = std::numeric_limits<std::int32_t>::max();
    if (width > largest || height > largest ||
        !backBuffer.Create(static_cast<std::int32_t>(width), static_cast<std::int32_t>(height),
                           1)) {
        throw std::runtime_error("cannot make a picture of " + std::to_string(width) + " x " +
                                 std::to_string(height) + " pixels for the level");
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

} // namespace marvek
