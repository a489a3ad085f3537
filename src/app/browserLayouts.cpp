#include "app/browserLayouts.h"

#include "app/settings.h"
#include "configuration/clsConfiguration.h"
#include "data/clsTileSet.h"
#include "data/openLevel.h"
#include "specials/specialValues.h"

#include <array>
#include <exception>
#include <optional>
#include <system_error>
#include <vector>

namespace marvek {
namespace {

// A file name never holds "/", nor does a palette's name (a file name or
// one of the built-in ones), so it parts the fields: each entry is the file,
// the six numbers, the shift (0 or 1) and the palette.
constexpr char separator = '/';
constexpr std::size_t fieldsPerEntry = 9;

std::vector<std::string> splitFields(const std::string& text) {
    std::vector<std::string> fields;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = text.find(separator, start);
        fields.push_back(text.substr(start, end - start));
        if (end == std::string::npos) {
            return fields;
        }
        start = end + 1;
    }
}

std::optional<BrowserLayout> layoutOf(const std::string* fields) {
    std::array<std::int32_t, 7> numbers{};
    try {
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            numbers[i] = toWholeNumber(std::string_view(fields[i]));
        }
    } catch (const std::exception&) {
        return std::nullopt;
    }
    BrowserLayout layout;
    layout.format = clampedFormat(
        {numbers[0], numbers[1], numbers[2], numbers[3], numbers[4], numbers[5], numbers[6] != 0});
    layout.palette = fields[7];
    return layout;
}

bool liesIn(const std::filesystem::path& file, const std::filesystem::path& folder) {
    std::error_code error;
    return !file.empty() && std::filesystem::equivalent(file.parent_path(), folder, error);
}

} // namespace

BrowserLayouts readBrowserLayouts(const clsConfiguration& settings) {
    const std::vector<std::string> fields =
        splitFields(settingText(settings, settingKey::graphicsLayouts, {}));
    BrowserLayouts layouts;
    for (std::size_t first = 0; first + fieldsPerEntry <= fields.size(); first += fieldsPerEntry) {
        if (const auto layout = layoutOf(&fields[first + 1]); layout && !fields[first].empty()) {
            layouts[fields[first]] = *layout;
        }
    }
    return layouts;
}

void writeBrowserLayouts(clsConfiguration& settings, const BrowserLayouts& layouts) {
    std::string text;
    for (const auto& [file, layout] : layouts) {
        const PictureFormat& format = layout.format;
        for (const std::string& field :
             {file, std::to_string(format.width), std::to_string(format.height),
              std::to_string(format.planes), std::to_string(format.offset),
              std::to_string(format.count), std::to_string(format.across),
              std::string(format.shiftColours ? "1" : "0"), layout.palette}) {
            if (!text.empty()) {
                text += separator;
            }
            text += field;
        }
    }
    settings.WriteSetting(settingKey::graphicsLayouts, text, false);
}

BrowserLayouts knownLayouts(const OpenedLevel& opened, const std::filesystem::path& dataFolder) {
    BrowserLayouts layouts;
    constexpr std::int32_t tile = clsTileSet::tileSize;
    constexpr std::int32_t sheet = OpenedLevel::spriteSheetSize;
    constexpr std::int32_t planes = OpenedLevel::graphicsPlanes;
    if (liesIn(opened.tileFile, dataFolder)) {
        layouts[opened.tileFile.filename().string()].format = {
            tile, tile, planes, 0, opened.tileSet.count(), clsTileSet::browserColumns, false};
    }
    if (liesIn(opened.spriteFile, dataFolder)) {
        layouts[opened.spriteFile.filename().string()].format = {sheet, sheet, planes, 0,
                                                                 1,     1,     false};
    }
    return layouts;
}

} // namespace marvek
