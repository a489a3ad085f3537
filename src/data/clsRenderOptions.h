#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace marvek {

class clsFont;

// Flags of clsLevel::renderTo, combined with |.
namespace renderFlags {
inline constexpr std::int32_t tiles = 1;
inline constexpr std::int32_t specials = 2;
// A translucent white box over the cell of every oversized special.
inline constexpr std::int32_t oversizeMarks = 4;
// A dark red outline of each sprite's or image's bounds.
inline constexpr std::int32_t outlines = 8;
// The number of a cell's special when the set has no definition for it.
inline constexpr std::int32_t undefinedIds = 16;
inline constexpr std::int32_t clear = 32;
// With specials: they are drawn at half strength, so the tiles show through
// (Tiles mode, where they are not edited but must not go unseen).
inline constexpr std::int32_t faintSpecials = 64;
inline constexpr std::int32_t all = tiles | specials | oversizeMarks | outlines;
} // namespace renderFlags

// What the level's drawing takes from the settings.
struct clsRenderOptions {
    clsRenderOptions() = default;
    // Implicit on purpose: a caller that only has the editor font passes it
    // straight, with blending on.
    clsRenderOptions(const clsFont& editorFont, bool blend = true) // NOLINT
        : font(&editorFont), alphaBlending(blend) {}

    // Numbers are not drawn without a font.
    const clsFont* font = nullptr;
    // Off: translucent fills become the faster alternating-pixel pattern.
    bool alphaBlending = true;
};

// The export's choice of tags, in the order the tags were first seen.
using TagChoice = std::vector<std::pair<std::string, bool>>;

inline bool isTagChosen(const TagChoice& choice, std::string_view tag) {
    return std::ranges::any_of(
        choice, [tag](const auto& entry) { return entry.second && entry.first == tag; });
}

} // namespace marvek
