#include "graphics/pngRead.h"

#include <png.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

namespace marvek {
namespace {

constexpr std::array<std::uint8_t, 8> signature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};

// Where libpng reads from and where its last error is kept.
struct Source {
    std::span<const std::uint8_t> bytes;
    std::size_t at = 0;
    std::array<char, 160> error{};
};

void readBytes(png_structp png, png_bytep out, png_size_t length) {
    auto* source = static_cast<Source*>(png_get_io_ptr(png));
    if (length > source->bytes.size() - source->at) {
        png_error(png, "the file ends early");
    }
    std::memcpy(out, source->bytes.data() + source->at, length);
    source->at += length;
}

void keepError(png_structp png, png_const_charp message) {
    auto* source = static_cast<Source*>(png_get_error_ptr(png));
    std::strncpy(source->error.data(), message, source->error.size() - 1);
    png_longjmp(png, 1);
}

void ignoreWarning(png_structp /*png*/, png_const_charp /*message*/) {}

// libpng's read and info structures, released together.
class PngReader {
public:
    explicit PngReader(Source& source)
        : png_(png_create_read_struct(PNG_LIBPNG_VER_STRING, &source, keepError, ignoreWarning)) {
        if (png_ == nullptr) {
            throw std::bad_alloc();
        }
        info_ = png_create_info_struct(png_);
        if (info_ == nullptr) {
            png_destroy_read_struct(&png_, nullptr, nullptr);
            throw std::bad_alloc();
        }
        png_set_read_fn(png_, &source, readBytes);
    }
    PngReader(const PngReader&) = delete;
    PngReader& operator=(const PngReader&) = delete;
    ~PngReader() { png_destroy_read_struct(&png_, &info_, nullptr); }

    png_structp png() const noexcept { return png_; }
    png_infop info() const noexcept { return info_; }

private:
    png_structp png_ = nullptr;
    png_infop info_ = nullptr;
};

// libpng reports errors by a long jump back into these two functions, so
// they own nothing that a jump would skip.
bool readHeader(png_structp png, png_infop info) {
    if (setjmp(png_jmpbuf(png))) {
        return false;
    }
    png_read_info(png, info);
    return true;
}

bool readRows(png_structp png, png_infop info, png_bytepp rows) {
    if (setjmp(png_jmpbuf(png))) {
        return false;
    }
    // Indices of 1, 2 or 4 bits become a byte each.
    png_set_packing(png);
    png_set_interlace_handling(png);
    png_read_update_info(png, info);
    png_read_image(png, rows);
    png_read_end(png, nullptr);
    return true;
}

[[noreturn]] void refuse(const std::string& why) {
    throw std::invalid_argument(why);
}

// Every colour type as 8-bit red, green, blue and alpha.
bool readRgbaRows(png_structp png, png_infop info, png_bytepp rows) {
    if (setjmp(png_jmpbuf(png))) {
        return false;
    }
    png_set_expand(png);
    png_set_strip_16(png);
    png_set_gray_to_rgb(png);
    png_set_add_alpha(png, 0xFF, PNG_FILLER_AFTER);
    png_set_interlace_handling(png);
    png_read_update_info(png, info);
    png_read_image(png, rows);
    png_read_end(png, nullptr);
    return true;
}

constexpr std::size_t rgbaBytes = 4;

std::uint32_t colourOf(const std::uint8_t* rgba) {
    if (rgba[3] == 0) {
        return ColourPicture::transparent;
    }
    return std::uint32_t{rgba[0]} | std::uint32_t{rgba[1]} << 8 | std::uint32_t{rgba[2]} << 16;
}

// The header read, the size checked against what a picture may be.
struct PngSize {
    png_uint_32 width = 0;
    png_uint_32 height = 0;
};

PngSize checkedSize(const PngReader& reader) {
    const PngSize size{png_get_image_width(reader.png(), reader.info()),
                       png_get_image_height(reader.png(), reader.info())};
    if (std::uint64_t{size.width} * size.height > clsSurface::maximumPlanarPixels) {
        refuse("the picture has more than " + std::to_string(clsSurface::maximumPlanarPixels) +
               " pixels");
    }
    return size;
}

void readHeaderOf(std::span<const std::uint8_t> bytes, Source& source, const PngReader& reader) {
    if (!isPngData(bytes)) {
        refuse("not a PNG file");
    }
    if (!readHeader(reader.png(), reader.info())) {
        refuse(std::string("the PNG does not read: ") + source.error.data());
    }
}

std::string colourTypeName(int colourType) {
    switch (colourType) {
    case PNG_COLOR_TYPE_GRAY:
    case PNG_COLOR_TYPE_GRAY_ALPHA:
        return "a grey picture";
    default:
        return "a true-colour picture";
    }
}

clsPalette paletteOf(png_structp png, png_infop info) {
    png_colorp colours = nullptr;
    int count = 0;
    if (png_get_PLTE(png, info, &colours, &count) != PNG_INFO_PLTE || count < 1) {
        refuse("the PNG has no palette");
    }
    clsPalette palette;
    for (const png_color& colour : std::span(colours, static_cast<std::size_t>(count))) {
        palette.addEntry(std::uint32_t{colour.red} | std::uint32_t{colour.green} << 8 |
                         std::uint32_t{colour.blue} << 16);
    }
    return palette;
}

} // namespace

bool isPngData(std::span<const std::uint8_t> bytes) noexcept {
    return bytes.size() >= signature.size() &&
           std::equal(signature.begin(), signature.end(), bytes.begin());
}

clsSurface decodeIndexedPng(std::span<const std::uint8_t> bytes) {
    Source source{bytes};
    const PngReader reader(source);
    readHeaderOf(bytes, source, reader);
    const int colourType = png_get_color_type(reader.png(), reader.info());
    if (colourType != PNG_COLOR_TYPE_PALETTE) {
        refuse("only PNG pictures with a palette are taken; this is " + colourTypeName(colourType));
    }
    const auto [width, height] = checkedSize(reader);
    clsSurface picture;
    if (!picture.planarCreateEmpty(static_cast<std::int32_t>(width),
                                   static_cast<std::int32_t>(height))) {
        refuse("the picture's size cannot be made");
    }
    picture.setPalette(paletteOf(reader.png(), reader.info()));
    std::vector<png_bytep> rows(height);
    for (png_uint_32 row = 0; row < height; ++row) {
        rows[row] = picture.ptrPlanar() + std::size_t{row} * width;
    }
    if (!readRows(reader.png(), reader.info(), rows.data())) {
        refuse(std::string("the PNG does not read: ") + source.error.data());
    }
    return picture;
}

bool isIndexedPng(std::span<const std::uint8_t> bytes) {
    Source source{bytes};
    const PngReader reader(source);
    readHeaderOf(bytes, source, reader);
    return png_get_color_type(reader.png(), reader.info()) == PNG_COLOR_TYPE_PALETTE;
}

ColourPicture decodePngColours(std::span<const std::uint8_t> bytes) {
    Source source{bytes};
    const PngReader reader(source);
    readHeaderOf(bytes, source, reader);
    const auto [width, height] = checkedSize(reader);
    std::vector<std::uint8_t> rgba(std::size_t{width} * height * rgbaBytes);
    std::vector<png_bytep> rows(height);
    for (png_uint_32 row = 0; row < height; ++row) {
        rows[row] = rgba.data() + std::size_t{row} * width * rgbaBytes;
    }
    if (!readRgbaRows(reader.png(), reader.info(), rows.data())) {
        refuse(std::string("the PNG does not read: ") + source.error.data());
    }
    ColourPicture picture{static_cast<std::int32_t>(width), static_cast<std::int32_t>(height), {}};
    picture.pixels.resize(std::size_t{width} * height);
    for (std::size_t pixel = 0; pixel < picture.pixels.size(); ++pixel) {
        picture.pixels[pixel] = colourOf(rgba.data() + pixel * rgbaBytes);
    }
    return picture;
}

} // namespace marvek
