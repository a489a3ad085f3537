#pragma once

#include "configuration/Section.h"
#include "graphics/clsPalette.h"
#include "graphics/clsRectangle.h"
#include "graphics/clsSurface.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace marvek {

// How a special is drawn.
enum class SpecialKind : std::int32_t { nothing = 0, box = 1, sprite = 2, image = 3, number = 4 };

struct SpecialPoint {
    std::int32_t x = 0;
    std::int32_t y = 0;
};

struct SpecialSize {
    std::int32_t width = 0;
    std::int32_t height = 0;
};

// One kind of object a level's special layer can hold, as a configuration
// section describes it: filled by loadFromDict, prepared once by Setup, then
// only read.
class clsSpecial {
public:
    static constexpr std::int32_t noColor = -1;
    // The level format keeps a special ID in 6 bits.
    static constexpr std::int32_t maximumId = 63;
    static constexpr std::int32_t cellSize = 16;

    std::string Name;
    std::int32_t Id = 0;
    // createBGRA colour, or noColor.
    std::int32_t Color = noColor;
    std::string Tag;
    SpecialKind Kind = SpecialKind::nothing;
    std::uint8_t noExport = 0;
    std::string imgFile;
    SpecialPoint imgOffset;
    SpecialSize imgSize;
    SpecialPoint Offset;
    clsSurface surface;
    bool hasImage = false;
    bool isOversized = false;
    // Relative to the cell's top-left; unset when a sprite could not be made.
    std::optional<clsRectangle> bounds;
    // The configuration the definition came from, for messages.
    std::filesystem::path sourceFile;

    // Reads the keys of one special's section. entryKey, the section's own
    // name, only serves messages about a special without a Name. Throws
    // SpecialDefinitionError naming sourceFile for a value that does not
    // convert and for an Id outside 0 to maximumId.
    void loadFromDict(const Section& section, const std::filesystem::path& sourceFile,
                      std::string_view entryKey = {});

    // Cuts the sprite from the sheet or loads the image from the application
    // folder's bitmaps/, then works out the bounds. Throws
    // SpecialDefinitionError for a sprite rectangle outside the sheet and
    // FileError for an image that is missing or does not load.
    void Setup(const clsSurface& spriteSheet, const clsPalette& palette,
               const std::filesystem::path& applicationFolder);

    // "r, g, b" as a translucent createBGRA colour; noColor unless there are
    // exactly three parts. Throws std::invalid_argument or std::out_of_range
    // for a part that is not a whole number from 0 to 255.
    static std::int32_t stringToColor(const Value& value);
    // Reads "first, second" into the two numbers; text without a comma leaves
    // them unchanged. Throws as stringToColor does for a part that does not
    // convert.
    static void parsePair(std::string_view text, std::int32_t& first, std::int32_t& second);
    // The word compared without regard to case; unknown words give nothing.
    static SpecialKind kindFromWord(std::string_view word);

    // "special \"NAME\"" for messages.
    std::string label() const;

private:
    bool setupSprite(const clsSurface& spriteSheet, const clsPalette& palette);
    void setupImage(const std::filesystem::path& applicationFolder);
    void computeBounds();
    [[noreturn]] void fail(const std::string& reason) const;

    std::string entryKey_;
};

} // namespace marvek
