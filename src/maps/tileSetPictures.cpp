#include "maps/tileSetPictures.h"

#include "data/SpecialPainter.h"
#include "data/clsTileSet.h"
#include "maps/levelMap.h"
#include "native/handles.h"
#include "native/marvek.h"
#include "specials/clsSpecialSet.h"

#include <algorithm>
#include <stdexcept>

namespace marvek {
namespace {

constexpr std::int32_t cell = clsTileSet::tileSize;
constexpr std::int32_t tileColumns = 32;
constexpr std::int32_t specialColumns = 8;
constexpr std::uint32_t opaqueBlack = 0x00000000u;
constexpr std::uint32_t opaqueWhite = 0x00FFFFFFu;
constexpr std::uint32_t invisible = 0xFF000000u;

UniqueSurface makeSurface(std::int32_t width, std::int32_t height) {
    UniqueSurface surface(surfaceCreate(width, height));
    if (surface.get() == 0) {
        throw std::runtime_error("no picture of " + std::to_string(width) + " x " +
                                 std::to_string(height) + " pixels can be made");
    }
    return surface;
}

std::vector<std::uint32_t> pixelsOf(const UniqueSurface& surface) {
    const std::uint32_t* data = surfaceGetDataPtr(surface.get());
    const auto size = static_cast<std::size_t>(surfaceGetWidth(surface.get())) *
                      static_cast<std::size_t>(surfaceGetHeight(surface.get()));
    return {data, data + size};
}

// The picture scaled down (nearest pixel, never up) to fit a cell, centred.
UniqueSurface fittedPicture(const clsSpecial& special) {
    UniqueSurface fitted = makeSurface(cell, cell);
    surfaceFill(fitted.get(), invisible);
    const std::int32_t width = std::min(special.imgSize.width, special.surface.width());
    const std::int32_t height = std::min(special.imgSize.height, special.surface.height());
    if (width < 1 || height < 1) {
        return fitted;
    }
    const std::int32_t side = std::max({width, height, cell});
    const std::int32_t outWidth = std::max(1, width * cell / side);
    const std::int32_t outHeight = std::max(1, height * cell / side);
    const std::int32_t left = (cell - outWidth) / 2;
    const std::int32_t top = (cell - outHeight) / 2;
    for (std::int32_t y = 0; y < outHeight; ++y) {
        for (std::int32_t x = 0; x < outWidth; ++x) {
            surfaceSetPixel(
                fitted.get(), left + x, top + y,
                surfaceGetPixel(special.surface.surface(), x * side / cell, y * side / cell));
        }
    }
    return fitted;
}

// Draws every special's cell over the given background.
std::vector<std::uint32_t> drawSpecials(const clsSpecialSet& specialSet,
                                        const clsRenderOptions& options, std::uint32_t background) {
    const std::int32_t side = specialColumns * cell;
    const UniqueSurface surface = makeSurface(side, side);
    surfaceFill(surface.get(), background);
    const SpecialPainter painter(surface.get(), cell, options);
    for (std::int32_t id = 1; id < mapSpecialCount; ++id) {
        const std::int32_t x = id % specialColumns * cell;
        const std::int32_t y = id / specialColumns * cell;
        const clsSpecial* special = specialSet.getSpecialLUT(id);
        if (special == nullptr) {
            painter.drawUndefined(id, x, y);
        } else if (special->Kind == SpecialKind::sprite || special->Kind == SpecialKind::image) {
            if (special->hasImage) {
                const UniqueSurface fitted = fittedPicture(*special);
                renderBlit(surface.get(), fitted.get(), x, y, cell, cell);
            }
        } else {
            painter.draw(*special, x, y, {});
        }
    }
    return pixelsOf(surface);
}

// The colour and transparency that give both drawings: over black a pixel
// is colour x opacity, over white that plus the white let through.
std::uint32_t unblended(std::uint32_t overBlack, std::uint32_t overWhite) {
    std::uint32_t letThrough = 0;
    for (int shift = 0; shift < 24; shift += 8) {
        const auto black = static_cast<std::int32_t>((overBlack >> shift) & 0xFF);
        const auto white = static_cast<std::int32_t>((overWhite >> shift) & 0xFF);
        letThrough = std::max(letThrough, static_cast<std::uint32_t>(std::max(white - black, 0)));
    }
    if (letThrough >= 255) {
        return invisible;
    }
    const std::uint32_t opacity = 255 - letThrough;
    std::uint32_t colour = letThrough << 24;
    for (int shift = 0; shift < 24; shift += 8) {
        const std::uint32_t black = (overBlack >> shift) & 0xFF;
        colour |= std::min<std::uint32_t>(255, (black * 255 + opacity / 2) / opacity) << shift;
    }
    return colour;
}

std::vector<TiledProperty> specialTileProperties(const clsSpecial& special) {
    return {{"name", "string", special.Name}, {"tag", "string", special.Tag}};
}

} // namespace

TilePicture tilesPicture(const clsTileSet& tileSet) {
    const std::int32_t rows = mapTileCount / tileColumns;
    const UniqueSurface surface = makeSurface(tileColumns * cell, rows * cell);
    surfaceFill(surface.get(), opaqueBlack);
    for (std::int32_t tile = 0; tile < std::min(tileSet.count(), mapTileCount); ++tile) {
        renderBlitFast(surface.get(), tileSet.Tile(tile).surface(), tile % tileColumns * cell,
                       tile / tileColumns * cell);
    }
    return {tileColumns * cell, rows * cell, pixelsOf(surface)};
}

TilePicture specialsPicture(const clsSpecialSet& specialSet, const clsRenderOptions& options) {
    const std::vector<std::uint32_t> overBlack = drawSpecials(specialSet, options, opaqueBlack);
    const std::vector<std::uint32_t> overWhite = drawSpecials(specialSet, options, opaqueWhite);
    TilePicture picture{specialColumns * cell, specialColumns * cell, {}};
    picture.pixels.resize(overBlack.size());
    std::ranges::transform(overBlack, overWhite, picture.pixels.begin(), unblended);
    return picture;
}

namespace {

// A tile set of one picture, cut into cells, that only layer may use.
TiledTileSet gridTileSet(const std::string& name, const std::string& image, std::int32_t count,
                         std::int32_t columns, const char* layer) {
    TiledTileSet tileSet;
    tileSet.name = name;
    tileSet.tileCount = count;
    tileSet.columns = columns;
    tileSet.image = image;
    tileSet.imageWidth = columns * cell;
    tileSet.imageHeight = count / columns * cell;
    tileSet.properties = {{tiledNames::layerProperty, "string", layer}};
    return tileSet;
}

} // namespace

TiledTileSet tilesTileSet(const std::string& name, const std::string& image) {
    return gridTileSet(name, image, mapTileCount, tileColumns, tiledNames::tilesLayer);
}

TiledTileSet specialsTileSet(const std::string& name, const std::string& image,
                             const clsSpecialSet& specialSet) {
    TiledTileSet tileSet =
        gridTileSet(name, image, mapSpecialCount, specialColumns, tiledNames::specialsLayer);
    for (std::int32_t id = 1; id < mapSpecialCount; ++id) {
        if (const clsSpecial* special = specialSet.getSpecialLUT(id)) {
            tileSet.tileProperties.emplace_back(id, specialTileProperties(*special));
        }
    }
    return tileSet;
}

} // namespace marvek
