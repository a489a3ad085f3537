#pragma once

#include "graphics/clsBackBuffer.h"
#include "graphics/clsCamera.h"
#include "graphics/clsFont.h"
#include "graphics/clsPalette.h"
#include "graphics/clsSurface.h"
#include "specials/clsSpecial.h"

#include <array>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <vector>

namespace marvek {

// The special definitions in force for the open level: filled from up to
// three configurations with loadFrom, prepared once with Init, then asked
// which definition a level ID means and drawn as the special palette strip.
class clsSpecialSet {
public:
    // Appends the definitions of the file's "Specials" section in their
    // order, all or none. Throws FileError or ConfigurationError for a file
    // that does not load and SpecialDefinitionError for one without a
    // "Specials" section or with a bad definition.
    void loadFrom(const std::filesystem::path& path);
    // Sets every special up (see clsSpecial::Setup, whose errors pass
    // through), builds the ID table, where the definition loaded last wins,
    // and lays out the palette rows.
    void Init(const clsSurface& spriteSheet, const clsPalette& palette,
              const std::filesystem::path& applicationFolder);

    // False for ID 0, which means no special, and for IDs without a definition.
    bool specialExists(std::int32_t id) const;
    // In load order; throws std::out_of_range outside 0 to count - 1.
    const clsSpecial& getSpecial(std::int32_t index) const;
    // The definition for a level ID, or nullptr.
    const clsSpecial* getSpecialLUT(std::int32_t id) const;
    // The special whose palette row holds y (strip pixels, scroll included),
    // or nullptr.
    const clsSpecial* getSelected(std::int32_t y) const;

    // Draws the palette strip scrolled by the camera's y, highlighting the
    // row(s) with the selected special's ID (none when selected is null).
    void renderTo(clsBackBuffer& backBuffer, const clsCamera& camera, const clsSpecial* selected,
                  const clsFont& font, bool alphaBlending) const;

    std::int32_t count() const noexcept { return static_cast<std::int32_t>(specials_.size()); }
    // Per special, the strip y just below its row.
    const std::vector<std::int32_t>& rowBottoms() const noexcept { return rowBottoms_; }
    std::int32_t paletteHeight() const noexcept { return paletteHeight_; }
    // Largest bounds over the specials with a non-zero ID.
    std::int32_t maxWidth() const noexcept { return maxWidth_; }
    std::int32_t maxHeight() const noexcept { return maxHeight_; }

private:
    static constexpr std::int32_t noIndex = -1;
    using Lookup = std::array<std::int32_t, clsSpecial::maximumId + 1>;

    static constexpr Lookup emptyLookup() {
        Lookup table{};
        table.fill(noIndex);
        return table;
    }

    void buildLookup();
    void layOutRows();
    // What every row of one strip is drawn with.
    struct Strip {
        std::int32_t surface;
        std::int32_t width;
        const clsFont& font;
        bool alphaBlending;
    };
    void renderRow(const Strip& strip, const clsSpecial& special, std::int32_t rowTop,
                   std::uint32_t background) const;
    void renderPicture(const Strip& strip, const clsSpecial& special, std::int32_t rowTop,
                       std::int32_t rowHeight) const;

    // A deque, so that references to loaded specials stay valid.
    std::deque<clsSpecial> specials_;
    Lookup lut_ = emptyLookup();
    std::vector<std::int32_t> rowBottoms_;
    std::int32_t paletteHeight_ = 0;
    std::int32_t maxWidth_ = 0;
    std::int32_t maxHeight_ = 0;
};

} // namespace marvek
