#include "graphics/pictureImport.h"

#include "graphics/clsBitmap.h"
#include "io/FileError.h"
#include "io/readFile.h"

#include <stdexcept>

namespace marvek {
namespace {

constexpr std::size_t pngSignatureBytes = 8;

// A PNG without a palette, by its colours; none for anything else.
std::optional<ColourPicture> colourPng(const std::filesystem::path& path) {
    if (!isPngData(readFileStart(path, pngSignatureBytes))) {
        return std::nullopt;
    }
    const std::vector<std::uint8_t> bytes = readWholeFile(path, clsBitmap::maximumFileBytes);
    try {
        if (isIndexedPng(bytes)) {
            return std::nullopt;
        }
        return decodePngColours(bytes);
    } catch (const std::invalid_argument& error) {
        throw FileError(path, error.what());
    }
}

clsSurface indexedPicture(const std::filesystem::path& path) {
    clsBitmap bitmap;
    if (!bitmap.readFromFile(path)) {
        throw FileError(path, bitmap.refusal());
    }
    auto picture = bitmap.createPlanar(clsSurface::maximumPlanes);
    if (!picture) {
        throw FileError(path, bitmap.planarRefusal());
    }
    return std::move(*picture);
}

} // namespace

PictureImport::PictureImport(const std::filesystem::path& path) : path_(path) {
    if (auto colours = colourPng(path)) {
        colours_ = std::move(*colours);
    } else {
        indexed_ = indexedPicture(path);
    }
}

std::int32_t PictureImport::width() const noexcept {
    return indexed_ ? indexed_->planarWidth() : colours_.width;
}

std::int32_t PictureImport::height() const noexcept {
    return indexed_ ? indexed_->planarHeight() : colours_.height;
}

clsSurface PictureImport::indicesOf(const TargetPalette& target, std::int32_t width,
                                    std::int32_t height) const {
    try {
        return indexed_ ? matchIndexedPicture(*indexed_, target, width, height)
                        : matchColourPicture(colours_, target, width, height);
    } catch (const MissingColourError& error) {
        throw FileError(path_, error.what());
    }
}

const clsSurface& PictureImport::ownIndices() const {
    if (!indexed_) {
        throw FileError(path_, "a picture without a palette has none to store with it");
    }
    return *indexed_;
}

clsPalette PictureImport::ownPalette(std::int32_t count) const {
    const clsPalette& palette = ownIndices().palette();
    clsPalette first;
    for (std::int32_t index = 0; index < count && index < palette.Count(); ++index) {
        first.addEntry(palette.Entry(index));
    }
    return first;
}

} // namespace marvek
