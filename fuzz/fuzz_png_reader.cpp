// PNG files as imports read them: by palette indices and by colours. Each
// reader must refuse with a reason or read a picture of the size the header
// gives; a picture read by colours must then match against a palette
// without leaving its memory, every index it gives showing the pixel's
// colour.
#include "graphics/colourMatch.h"
#include "graphics/pngRead.h"

#include <cstdint>
#include <cstdlib>
#include <span>
#include <stdexcept>

namespace {

// Sixteen colours, as a picture drawn with few colours often has: small
// pictures match throughout now and then.
marvek::TargetPalette target() {
    marvek::TargetPalette palette{{}, "fuzz", 0, 16};
    for (std::uint32_t i = 0; i < 16; ++i) {
        palette.palette.addEntry(i * 0x111111u & 0xFFFFFF);
    }
    return palette;
}

void readIndexed(std::span<const std::uint8_t> bytes) {
    try {
        const marvek::clsSurface picture = marvek::decodeIndexedPng(bytes);
        if (picture.planarPixels().size() != static_cast<std::size_t>(picture.planarWidth()) *
                                                 static_cast<std::size_t>(picture.planarHeight())) {
            std::abort();
        }
        marvek::matchIndexedPicture(picture, target(), picture.planarWidth(),
                                    picture.planarHeight());
    } catch (const std::invalid_argument&) {
    } catch (const marvek::MissingColourError&) {
    }
}

void readColours(std::span<const std::uint8_t> bytes) {
    static const marvek::TargetPalette palette = target();
    try {
        const marvek::ColourPicture picture = marvek::decodePngColours(bytes);
        if (picture.pixels.size() !=
            static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height)) {
            std::abort();
        }
        const marvek::clsSurface indices =
            marvek::matchColourPicture(picture, palette, picture.width, picture.height);
        const auto given = indices.planarPixels();
        for (std::size_t i = 0; i < given.size(); ++i) {
            const std::uint32_t colour = picture.pixels[i];
            if (colour != marvek::ColourPicture::transparent &&
                palette.palette.Entry(given[i]) != colour) {
                std::abort();
            }
        }
    } catch (const std::invalid_argument&) {
    } catch (const marvek::MissingColourError&) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> bytes(data, size);
    try {
        if (marvek::isIndexedPng(bytes)) {
            readIndexed(bytes);
        }
    } catch (const std::invalid_argument&) {
    }
    readColours(bytes);
    return 0;
}
