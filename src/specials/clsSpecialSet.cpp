#include "specials/clsSpecialSet.h"

#include "configuration/clsConfiguration.h"
#include "graphics/checkedInt32.h"
#include "native/marvek.h"
#include "specials/SpecialDefinitionError.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <stdexcept>
#include <string>
#include <variant>

namespace marvek {
namespace {

constexpr std::uint32_t selectedRowColour = 0x7F0000;
constexpr std::uint32_t evenRowColour = 0x1F1F1F;
constexpr std::uint32_t oddRowColour = 0x0F0F0F;
constexpr std::uint32_t numberColour = 0xBFBFBF;
constexpr std::uint32_t nameColour = 0xFFFFFF;
constexpr std::int32_t pictureX = 10;
constexpr std::int32_t nameGap = 26;
// A row is its picture plus 5 pixels above and below, then a 2-pixel gap.
constexpr std::int32_t rowPadding = 10;
constexpr std::int32_t rowGap = 2;

// The top of something of itemHeight centred in the row; half-way values
// round to even, as the original arithmetic does.
std::int32_t centredTop(std::int32_t rowTop, std::int32_t rowHeight, std::int32_t itemHeight) {
    return static_cast<std::int32_t>(std::nearbyint(rowTop + rowHeight / 2.0 - itemHeight / 2.0));
}

bool validId(std::int32_t id) {
    return id >= 0 && id <= clsSpecial::maximumId;
}

} // namespace

void clsSpecialSet::loadFrom(const std::filesystem::path& path) {
    clsConfiguration configuration;
    configuration.LoadConfiguration(path);
    const SectionPtr root = configuration.Root(true);
    const Value* found = root->find("Specials");
    const SectionPtr* specials = found != nullptr ? std::get_if<SectionPtr>(found) : nullptr;
    if (specials == nullptr || *specials == nullptr) {
        throw SpecialDefinitionError(path.string() + ": has no \"Specials\" section");
    }
    std::vector<clsSpecial> loaded;
    for (const auto& [key, value] : **specials) {
        const SectionPtr* section = std::get_if<SectionPtr>(&value);
        if (section == nullptr || *section == nullptr) {
            throw SpecialDefinitionError(path.string() + ": \"" + key +
                                         "\" in \"Specials\" is not a section");
        }
        loaded.emplace_back().loadFromDict(**section, path, key);
    }
    std::move(loaded.begin(), loaded.end(), std::back_inserter(specials_));
}

void clsSpecialSet::Init(const clsSurface& spriteSheet, const clsPalette& palette,
                         const std::filesystem::path& applicationFolder) {
    for (clsSpecial& special : specials_) {
        special.Setup(spriteSheet, palette, applicationFolder);
    }
    buildLookup();
    layOutRows();
}

void clsSpecialSet::buildLookup() {
    lut_ = emptyLookup();
    maxWidth_ = 0;
    maxHeight_ = 0;
    for (std::int32_t index = 0; index < count(); ++index) {
        const clsSpecial& special = specials_[static_cast<std::size_t>(index)];
        if (special.Id == 0) {
            continue;
        }
        lut_.at(static_cast<std::size_t>(special.Id)) = index;
        if (special.bounds) {
            maxWidth_ = std::max(maxWidth_, special.bounds->width);
            maxHeight_ = std::max(maxHeight_, special.bounds->height);
        }
    }
}

void clsSpecialSet::layOutRows() {
    rowBottoms_.clear();
    std::int64_t y = 0;
    for (const clsSpecial& special : specials_) {
        y += std::int64_t{special.imgSize.height} + rowPadding + rowGap;
        rowBottoms_.push_back(checkedInt32(y));
    }
    paletteHeight_ = checkedInt32(y);
}

bool clsSpecialSet::specialExists(std::int32_t id) const {
    return id != 0 && getSpecialLUT(id) != nullptr;
}

const clsSpecial& clsSpecialSet::getSpecial(std::int32_t index) const {
    if (index < 0) {
        throw std::out_of_range("special index " + std::to_string(index) + " is negative");
    }
    return specials_.at(static_cast<std::size_t>(index));
}

const clsSpecial* clsSpecialSet::getSpecialLUT(std::int32_t id) const {
    if (!validId(id) || lut_[static_cast<std::size_t>(id)] == noIndex) {
        return nullptr;
    }
    return &specials_[static_cast<std::size_t>(lut_[static_cast<std::size_t>(id)])];
}

const clsSpecial* clsSpecialSet::getSelected(std::int32_t y) const {
    std::int32_t lowerEdge = 0;
    for (std::size_t i = 0; i < rowBottoms_.size(); ++i) {
        if (lowerEdge <= y && y < rowBottoms_[i]) {
            return &specials_[i];
        }
        lowerEdge = rowBottoms_[i];
    }
    return nullptr;
}

void clsSpecialSet::renderTo(clsBackBuffer& backBuffer, const clsCamera& camera,
                             const clsSpecial* selected, const clsFont& font,
                             bool alphaBlending) const {
    backBuffer.Clear();
    const Strip strip{backBuffer.surface(), camera.viewWidth, font, alphaBlending};
    std::int64_t rowTop = -std::int64_t{camera.y};
    // Only rows that Init laid out, so that every height is known to fit.
    for (std::size_t i = 0; i < rowBottoms_.size() && rowTop < backBuffer.height(); ++i) {
        const clsSpecial& special = specials_[i];
        const std::int32_t rowHeight = special.imgSize.height + rowPadding;
        if (rowTop + rowHeight > 0) {
            const bool isSelected = selected != nullptr && special.Id == selected->Id;
            const std::uint32_t background =
                isSelected ? selectedRowColour : (i % 2 == 0 ? evenRowColour : oddRowColour);
            renderRow(strip, special, static_cast<std::int32_t>(rowTop), background);
        }
        rowTop += rowHeight + rowGap;
    }
}

void clsSpecialSet::renderRow(const Strip& strip, const clsSpecial& special, std::int32_t rowTop,
                              std::uint32_t background) const {
    const std::int32_t rowHeight = special.imgSize.height + rowPadding;
    renderBoxFill(strip.surface, 0, rowTop, strip.width, rowHeight, background, 1);
    renderPicture(strip, special, rowTop, rowHeight);
    renderText(strip.surface, strip.font.handle(), maxWidth_ + nameGap,
               centredTop(rowTop, rowHeight, strip.font.charHeight()), nameColour,
               special.Name.c_str());
}

void clsSpecialSet::renderPicture(const Strip& strip, const clsSpecial& special,
                                  std::int32_t rowTop, std::int32_t rowHeight) const {
    const std::int32_t y = centredTop(rowTop, rowHeight, special.imgSize.height);
    switch (special.Kind) {
    case SpecialKind::box:
        renderBoxFill(strip.surface, pictureX, y, clsSpecial::cellSize, clsSpecial::cellSize,
                      static_cast<std::uint32_t>(special.Color), strip.alphaBlending ? 1 : 0);
        break;
    case SpecialKind::sprite:
    case SpecialKind::image:
        renderBlit(strip.surface, special.surface.surface(), pictureX, y, special.imgSize.width,
                   special.imgSize.height);
        break;
    case SpecialKind::number:
        renderText(strip.surface, strip.font.handle(), pictureX,
                   centredTop(rowTop, rowHeight, strip.font.charHeight()), numberColour,
                   std::to_string(special.Id).c_str());
        break;
    case SpecialKind::nothing:
        break;
    }
}

} // namespace marvek
