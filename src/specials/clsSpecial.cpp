#include "specials/clsSpecial.h"

#include "io/FileError.h"
#include "io/caseInsensitivePath.h"
#include "io/textHelpers.h"
#include "native/marvek.h"
#include "specials/SpecialDefinitionError.h"
#include "specials/specialValues.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <vector>

namespace marvek {
namespace {

// Colour boxes are drawn partly transparent.
constexpr std::uint8_t colorBoxAlpha = 80;

// Latin-1 upper case, one byte a character.
std::string toUpperLatin1(std::string text) {
    for (char& c : text) {
        const auto byte = static_cast<unsigned char>(c);
        const bool lower =
            (byte >= 'a' && byte <= 'z') || (byte >= 0xE0 && byte <= 0xFE && byte != 0xF7);
        if (lower) {
            c = static_cast<char>(byte - 0x20);
        }
    }
    return text;
}

std::vector<std::string_view> splitAtCommas(std::string_view text) {
    std::vector<std::string_view> parts;
    for (std::size_t start = 0;;) {
        const std::size_t comma = text.find(',', start);
        parts.push_back(text.substr(start, comma - start));
        if (comma == std::string_view::npos) {
            return parts;
        }
        start = comma + 1;
    }
}

std::int32_t inRange(std::int32_t value, std::int32_t low, std::int32_t high) {
    if (value < low || value > high) {
        throw std::out_of_range(std::to_string(value) + " is outside " + std::to_string(low) +
                                " to " + std::to_string(high));
    }
    return value;
}

std::uint8_t toColorComponent(std::string_view text) {
    return static_cast<std::uint8_t>(inRange(toWholeNumber(trimBlanks(text)), 0, 255));
}

bool occupiesOneCell(SpecialKind kind) {
    return kind == SpecialKind::nothing || kind == SpecialKind::box || kind == SpecialKind::number;
}

SpecialDefinitionError definitionError(const clsSpecial& special, const std::string& reason) {
    return SpecialDefinitionError(special.sourceFile.string() + ": " + special.label() + ": " +
                                  reason);
}

std::string upperText(const Value& value) {
    return toUpperLatin1(toText(value));
}

std::int32_t wholeNumber(const Value& value) {
    return toWholeNumber(value);
}

std::uint8_t byteNumber(const Value& value) {
    return static_cast<std::uint8_t>(inRange(toWholeNumber(value), 0, 255));
}

SpecialKind kindOf(const Value& value) {
    return clsSpecial::kindFromWord(toText(value));
}

// One special's keys; a value that does not convert is an error naming the key.
class KeyReader {
public:
    KeyReader(const Section& section, const clsSpecial& special)
        : section_(section), special_(special) {}

    template <typename T, typename Convert>
    T read(const std::string& key, T fallback, Convert convert) const {
        const Value* value = section_.find(key);
        if (value == nullptr) {
            return fallback;
        }
        try {
            return convert(*value);
        } catch (const std::logic_error& error) {
            throw definitionError(special_, "key " + key + ": " + error.what());
        }
    }

    void readPair(const std::string& key, std::int32_t& first, std::int32_t& second) const {
        read(key, 0, [&](const Value& value) {
            clsSpecial::parsePair(toText(value), first, second);
            return 0;
        });
    }

private:
    const Section& section_;
    const clsSpecial& special_;
};

} // namespace

void clsSpecial::loadFromDict(const Section& section, const std::filesystem::path& file,
                              std::string_view entryKey) {
    sourceFile = file;
    entryKey_ = entryKey;
    const KeyReader keys(section, *this);
    Name = keys.read("Name", Name, upperText);
    Id = keys.read("Id", Id, wholeNumber);
    if (Id < 0 || Id > maximumId) {
        fail("Id " + std::to_string(Id) + " is outside 0 to " + std::to_string(maximumId));
    }
    Color = keys.read("Color", Color, stringToColor);
    Tag = keys.read("Tag", Tag, toText);
    Kind = keys.read("Kind", Kind, kindOf);
    noExport = keys.read("noExport", noExport, byteNumber);
    imgFile = keys.read("imgFile", imgFile, toText);
    keys.readPair("imgOffset", imgOffset.x, imgOffset.y);
    keys.readPair("imgSize", imgSize.width, imgSize.height);
    keys.readPair("Offset", Offset.x, Offset.y);
}

void clsSpecial::Setup(const clsSurface& spriteSheet, const clsPalette& palette,
                       const std::filesystem::path& applicationFolder) {
    if (Kind == SpecialKind::sprite && !setupSprite(spriteSheet, palette)) {
        return;
    }
    if (Kind == SpecialKind::image) {
        setupImage(applicationFolder);
    }
    computeBounds();
}

std::int32_t clsSpecial::stringToColor(const Value& value) {
    const std::string text = toText(value);
    const std::vector<std::string_view> parts = splitAtCommas(text);
    if (parts.size() != 3) {
        return noColor;
    }
    const std::uint8_t red = toColorComponent(parts[0]);
    const std::uint8_t green = toColorComponent(parts[1]);
    const std::uint8_t blue = toColorComponent(parts[2]);
    return static_cast<std::int32_t>(createBGRA(red, green, blue, colorBoxAlpha));
}

void clsSpecial::parsePair(std::string_view text, std::int32_t& first, std::int32_t& second) {
    const std::size_t comma = text.find(',');
    if (comma == std::string_view::npos) {
        return;
    }
    const std::int32_t left = toWholeNumber(trimBlanks(text.substr(0, comma)));
    const std::int32_t right = toWholeNumber(trimBlanks(text.substr(comma + 1)));
    first = left;
    second = right;
}

SpecialKind clsSpecial::kindFromWord(std::string_view word) {
    static constexpr std::array<std::pair<std::string_view, SpecialKind>, 5> words{{
        {"nothing", SpecialKind::nothing},
        {"box", SpecialKind::box},
        {"sprite", SpecialKind::sprite},
        {"image", SpecialKind::image},
        {"number", SpecialKind::number},
    }};
    const std::string lower = lowerAscii(word);
    for (const auto& [text, kind] : words) {
        if (lower == text) {
            return kind;
        }
    }
    return SpecialKind::nothing;
}

std::string clsSpecial::label() const {
    if (!Name.empty()) {
        return "special \"" + Name + "\"";
    }
    if (!entryKey_.empty()) {
        return "special \"" + entryKey_ + "\"";
    }
    return "special";
}

bool clsSpecial::setupSprite(const clsSurface& spriteSheet, const clsPalette& palette) {
    surface = clsSurface{};
    if (!surface.planarCopyFrom(spriteSheet, imgOffset.x, imgOffset.y, imgSize.width,
                                imgSize.height)) {
        fail("sprite " + std::to_string(imgSize.width) + " x " + std::to_string(imgSize.height) +
             " at " + std::to_string(imgOffset.x) + ", " + std::to_string(imgOffset.y) +
             " lies outside the " + std::to_string(spriteSheet.planarWidth()) + " x " +
             std::to_string(spriteSheet.planarHeight()) + " sprite sheet");
    }
    // Colour 0 is the sprite's background.
    if (!surface.planarToSurface(palette, 0)) {
        return false;
    }
    hasImage = true;
    return true;
}

void clsSpecial::setupImage(const std::filesystem::path& applicationFolder) {
    const std::filesystem::path folder = applicationFolder / "bitmaps";
    const std::string owner =
        "the picture of " + label() + " (" + sourceFile.filename().string() + ")";
    const auto found = findIgnoringCase(folder, imgFile);
    if (!found) {
        throw FileError(folder / imgFile, owner + " does not exist");
    }
    surface = clsSurface{};
    if (!surface.loadFromFile(*found)) {
        throw FileError(*found, owner + " is not a readable BMP file");
    }
    imgSize = {surface.width(), surface.height()};
    hasImage = true;
}

void clsSpecial::computeBounds() {
    const std::int64_t width = imgSize.width;
    const std::int64_t height = imgSize.height;
    const std::int64_t x = Offset.x;
    const std::int64_t y = Offset.y;
    // Deliberately not a test of containment in the cell: kept as the game's
    // editor has always decided it.
    isOversized = !(width <= cellSize && height <= cellSize && x >= -15 && y >= -15 &&
                    x + 15 <= width && y + 15 <= height);
    if (occupiesOneCell(Kind)) {
        imgSize = {cellSize, cellSize};
    }
    clsRectangle area;
    area.width = cellSize;
    area.height = cellSize;
    try {
        area.addArea(Offset.x, Offset.y, imgSize.width, imgSize.height);
    } catch (const std::overflow_error&) {
        fail("Offset and picture size reach beyond the 32-bit range");
    }
    bounds = area;
}

void clsSpecial::fail(const std::string& reason) const {
    throw definitionError(*this, reason);
}

} // namespace marvek
