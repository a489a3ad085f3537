#include "maps/levelProperties.h"

#include "io/clsBitStream.h"
#include "maps/layerData.h"
#include "maps/levelMap.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <functional>

namespace marvek {
namespace {

constexpr std::array<const char*, 6> propertyNames{
    "palette", "defaultSpecials", "cccl", "remx", "remy", "magic"};
constexpr std::uint32_t largestSpecial = 63;
// A level's palette chunk holds this many colours, whatever the palette.
constexpr std::size_t fileColours = clsPalette::gameEntries;

// The colours the palette chunk holds: the palette as the writer writes it.
std::vector<std::uint32_t> writtenColours(const clsPalette& palette) {
    clsBitStream stream;
    stream.Create();
    stream.autoExpand = true;
    palette.writeTo(stream);
    const auto bytes = stream.bufferGet()->data();
    std::vector<std::uint32_t> colours(fileColours);
    for (std::size_t i = 0; i < fileColours && 2 * i + 1 < bytes.size(); ++i) {
        const std::uint32_t word = std::uint32_t{bytes[2 * i]} << 8 | bytes[2 * i + 1];
        // 4 bits a component to 8, as the reader widens them.
        colours[i] =
            ((word >> 8) & 15) * 17 << 16 | ((word >> 4) & 15) * 17 << 8 | (word & 15) * 17;
    }
    return colours;
}

} // namespace

std::string paletteProperty(const clsPalette& palette) {
    std::string text;
    for (const std::uint32_t rgb : writtenColours(palette)) {
        std::array<char, 9> colour{};
        std::snprintf(colour.data(), colour.size(), "#%06x", rgb);
        text += text.empty() ? "" : " ";
        text += colour.data();
    }
    return text;
}

namespace {

std::string defaultSpecialsText(std::span<const std::uint8_t> specials) {
    std::vector<std::uint32_t> numbers(std::max(specials.size(), clsLevel::fileDefaultSpecials));
    std::ranges::transform(specials, numbers.begin(),
                           [](std::uint8_t special) { return special & largestSpecial; });
    std::string text;
    appendNumberList(text, numbers, 0);
    return text;
}

std::string hexText(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

[[noreturn]] void refuseValue(const char* name, const std::string& why) {
    throw MapRefusal(std::string("map property \"") + name + "\" " + why);
}

// Numbers separated by sep (and blanks); each must lie within 0..largest.
std::vector<std::uint32_t> numbersIn(const std::string& text, char sep, int base,
                                     std::uint32_t largest, const char* name) {
    std::vector<std::uint32_t> numbers;
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at != end) {
        while (at != end && (*at == ' ' || *at == sep || *at == '#' || *at == '\n')) {
            ++at;
        }
        if (at == end) {
            break;
        }
        std::uint32_t value = 0;
        const auto [next, error] = std::from_chars(at, end, value, base);
        if (error != std::errc() || value > largest) {
            refuseValue(name, "holds \"" + std::string(at, std::min<std::ptrdiff_t>(end - at, 8)) +
                                  "\" where a number up to " + std::to_string(largest) +
                                  " belongs");
        }
        numbers.push_back(value);
        at = next;
    }
    return numbers;
}

clsPalette paletteFrom(const std::string& text) {
    const auto colours = numbersIn(text, ' ', 16, 0xFFFFFF, "palette");
    if (colours.size() != fileColours) {
        refuseValue("palette", "holds " + std::to_string(colours.size()) +
                                   " colours; a level's palette has 32 (#rrggbb each)");
    }
    clsPalette palette;
    for (const std::uint32_t rgb : colours) {
        palette.addEntry((rgb >> 16) | (rgb & 0xFF00) | (rgb & 0xFF) << 16);
    }
    return palette;
}

std::vector<std::uint8_t> defaultSpecialsFrom(const std::string& text) {
    const auto numbers = numbersIn(text, ',', 10, largestSpecial, "defaultSpecials");
    if (numbers.size() > static_cast<std::size_t>(clsLevel::maximumCells)) {
        refuseValue("defaultSpecials", "holds more entries than a level file can");
    }
    return {numbers.begin(), numbers.end()};
}

std::array<std::uint8_t, clsLevel::ccclSize> ccclFrom(const std::string& text) {
    std::array<std::uint8_t, clsLevel::ccclSize> bytes{};
    if (text.size() != 2 * bytes.size()) {
        refuseValue("cccl", "must be 128 hexadecimal digits (64 bytes)");
    }
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto [next, error] =
            std::from_chars(text.data() + 2 * i, text.data() + 2 * i + 2, bytes[i], 16);
        if (error != std::errc() || next != text.data() + 2 * i + 2) {
            refuseValue("cccl", "must be 128 hexadecimal digits (64 bytes)");
        }
    }
    return bytes;
}

std::int32_t int32From(const std::string& text, const char* name) {
    std::int32_t value = 0;
    const auto [next, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || next != text.data() + text.size()) {
        refuseValue(name, "is \"" + text + "\", not a whole number of 32 bits");
    }
    return value;
}

std::string magicFrom(const std::string& text) {
    if (text != "IMP!" && text != "ATN!") {
        refuseValue("magic", "is \"" + text + "\"; a packed level begins with IMP! or ATN!");
    }
    return text;
}

// Applies one property's value to the file, or copies it from base.
void applyOne(const std::string& name, const std::string* value, const LevelFile* base,
              LevelFile& file) {
    clsLevel& level = file.level;
    if (name == "palette") {
        file.palette = value != nullptr ? paletteFrom(*value) : base->palette;
    } else if (name == "defaultSpecials") {
        level.setDefaultSpecials(
            value != nullptr ? defaultSpecialsFrom(*value)
                             : std::vector<std::uint8_t>(base->level.defaultSpecials().begin(),
                                                         base->level.defaultSpecials().end()));
    } else if (name == "cccl") {
        if (value != nullptr) {
            level.setCcclData(ccclFrom(*value));
        } else {
            level.setCcclData(base->level.ccclData());
        }
    } else if (name == "remx") {
        level.setRemX(value != nullptr ? int32From(*value, "remx") : base->level.remX());
    } else if (name == "remy") {
        level.setRemY(value != nullptr ? int32From(*value, "remy") : base->level.remY());
    } else if (name == "magic") {
        file.magic = value != nullptr ? magicFrom(*value) : base->magic;
    }
}

} // namespace

std::vector<TiledProperty> levelProperties(const LevelFile& file) {
    const clsLevel& level = file.level;
    return {
        {"palette", "string", paletteProperty(file.palette)},
        {"defaultSpecials", "string", defaultSpecialsText(level.defaultSpecials())},
        {"cccl", "string", hexText(level.ccclData())},
        {"remx", "int", std::to_string(level.remX())},
        {"remy", "int", std::to_string(level.remY())},
        {"magic", "string", file.magic},
    };
}

bool isLevelProperty(const std::string& name) {
    return std::ranges::find(propertyNames, name) != propertyNames.end();
}

void applyLevelProperties(const std::vector<TiledProperty>& properties, const LevelFile* base,
                          LevelFile& file) {
    std::vector<std::string> missing;
    for (const char* name : propertyNames) {
        const TiledProperty* property = findProperty(properties, name);
        if (property == nullptr && base == nullptr) {
            missing.emplace_back(name);
            continue;
        }
        applyOne(name, property != nullptr ? &property->value : nullptr, base, file);
    }
    if (!missing.empty()) {
        throw MissingMapProperties(std::move(missing));
    }
}

} // namespace marvek
