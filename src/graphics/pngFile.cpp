#include "graphics/pngFile.h"

#include "graphics/clsBackBuffer.h"
#include "graphics/clsPalette.h"
#include "graphics/clsSurface.h"
#include "io/FileError.h"
#include "io/atomicWrite.h"
#include "native/marvek.h"

#include <png.h>

#include <array>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace marvek {
namespace {

// Where libpng writes to and where its last error is kept.
struct Sink {
    std::vector<std::uint8_t> bytes;
    std::array<char, 160> error{};
};

void appendBytes(png_structp png, png_bytep data, png_size_t length) {
    auto* sink = static_cast<Sink*>(png_get_io_ptr(png));
    try {
        sink->bytes.insert(sink->bytes.end(), data, data + length);
    } catch (const std::bad_alloc&) {
        png_error(png, "out of memory");
    }
}

void flushNothing(png_structp /*png*/) {}

void keepError(png_structp png, png_const_charp message) {
    auto* sink = static_cast<Sink*>(png_get_error_ptr(png));
    std::strncpy(sink->error.data(), message, sink->error.size() - 1);
    png_longjmp(png, 1);
}

void ignoreWarning(png_structp /*png*/, png_const_charp /*message*/) {}

// libpng's write and info structures, released together.
class PngWriter {
public:
    explicit PngWriter(Sink& sink)
        : png_(png_create_write_struct(PNG_LIBPNG_VER_STRING, &sink, keepError, ignoreWarning)) {
        if (png_ == nullptr) {
            throw std::bad_alloc();
        }
        info_ = png_create_info_struct(png_);
        if (info_ == nullptr) {
            png_destroy_write_struct(&png_, nullptr);
            throw std::bad_alloc();
        }
        png_set_write_fn(png_, &sink, appendBytes, flushNothing);
    }
    PngWriter(const PngWriter&) = delete;
    PngWriter& operator=(const PngWriter&) = delete;
    ~PngWriter() { png_destroy_write_struct(&png_, &info_); }

    png_structp png() const noexcept { return png_; }
    png_infop info() const noexcept { return info_; }

private:
    png_structp png_ = nullptr;
    png_infop info_ = nullptr;
};

struct PngLayout {
    png_uint_32 width;
    png_uint_32 height;
    int colourType;
    // 256 colours for an indexed picture, none for a true-colour one.
    const png_color* colours;
};

// libpng reports errors by a long jump back here, so this function owns
// nothing that a jump would skip.
bool writeImage(png_structp png, png_infop info, const PngLayout& layout, png_bytepp rows) {
    if (setjmp(png_jmpbuf(png))) {
        return false;
    }
    png_set_IHDR(png, info, layout.width, layout.height, 8, layout.colourType, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (layout.colours != nullptr) {
        png_set_PLTE(png, info, layout.colours, 256);
    }
    // Unfiltered rows compress the game's flat-coloured pictures best.
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
    png_write_info(png, info);
    if (layout.colours == nullptr) {
        // Surface pixels are bytes blue, green, red and a transparency byte
        // that the opaque picture leaves out.
        png_set_bgr(png);
        if (layout.colourType == PNG_COLOR_TYPE_RGB) {
            png_set_filler(png, 0, PNG_FILLER_AFTER);
        }
    }
    png_write_image(png, rows);
    png_write_end(png, info);
    return true;
}

void checkSize(std::size_t count, std::int32_t width, std::int32_t height) {
    if (width < 1 || height < 1 ||
        count != static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {
        throw std::invalid_argument("the pixels do not make the picture's size");
    }
}

// Rows of the pixels, each rowBytes long. libpng copies a row before it
// changes anything, so the pixels are only read.
template <typename Pixel>
std::vector<png_bytep> rowsOf(std::span<const Pixel> pixels, std::int32_t width,
                              std::int32_t height) {
    std::vector<png_bytep> rows(static_cast<std::size_t>(height));
    for (std::size_t row = 0; row < rows.size(); ++row) {
        // NOLINTNEXTLINE: libpng's row type is not const, though it only reads
        rows[row] = reinterpret_cast<png_bytep>(
            const_cast<Pixel*>(pixels.data() + row * static_cast<std::size_t>(width)));
    }
    return rows;
}

std::vector<std::uint8_t> encode(const PngLayout& layout, std::vector<png_bytep>& rows) {
    Sink sink;
    const PngWriter writer(sink);
    if (!writeImage(writer.png(), writer.info(), layout, rows.data())) {
        throw std::runtime_error(std::string("the picture could not be encoded: ") +
                                 sink.error.data());
    }
    return std::move(sink.bytes);
}

void writeBytes(const std::filesystem::path& path,
                const std::function<std::vector<std::uint8_t>()>& encode) {
    std::vector<std::uint8_t> bytes;
    try {
        bytes = encode();
    } catch (const std::exception& error) {
        throw FileError(path, error.what());
    }
    writeFileAtomically(path, bytes);
}

} // namespace

std::vector<std::uint8_t> encodePng(std::span<const std::uint32_t> pixels, std::int32_t width,
                                    std::int32_t height) {
    checkSize(pixels.size(), width, height);
    auto rows = rowsOf(pixels, width, height);
    return encode({static_cast<png_uint_32>(width), static_cast<png_uint_32>(height),
                   PNG_COLOR_TYPE_RGB, nullptr},
                  rows);
}

std::vector<std::uint8_t> encodeTranslucentPng(std::span<const std::uint32_t> pixels,
                                               std::int32_t width, std::int32_t height) {
    checkSize(pixels.size(), width, height);
    // A PNG counts opacity where a surface counts transparency.
    std::vector<std::uint32_t> opacity(pixels.begin(), pixels.end());
    for (std::uint32_t& pixel : opacity) {
        pixel ^= 0xFF000000u;
    }
    auto rows = rowsOf(std::span<const std::uint32_t>(opacity), width, height);
    return encode({static_cast<png_uint_32>(width), static_cast<png_uint_32>(height),
                   PNG_COLOR_TYPE_RGB_ALPHA, nullptr},
                  rows);
}

std::vector<std::uint8_t> encodeIndexedPng(std::span<const std::uint8_t> indices,
                                           std::int32_t width, std::int32_t height,
                                           const clsPalette& palette) {
    checkSize(indices.size(), width, height);
    // Every index a byte can hold has a colour; those past the palette are black.
    std::array<png_color, 256> colours{};
    for (std::int32_t index = 0; index < palette.Count() && index < 256; ++index) {
        const std::uint32_t colour = palette.Entry(index);
        colours[static_cast<std::size_t>(index)] = {static_cast<png_byte>(colour),
                                                    static_cast<png_byte>(colour >> 8),
                                                    static_cast<png_byte>(colour >> 16)};
    }
    auto rows = rowsOf(indices, width, height);
    return encode({static_cast<png_uint_32>(width), static_cast<png_uint_32>(height),
                   PNG_COLOR_TYPE_PALETTE, colours.data()},
                  rows);
}

void writePngFile(const clsBackBuffer& backBuffer, const std::filesystem::path& path) {
    const std::int32_t surface = backBuffer.surface();
    const std::uint32_t* source = surfaceGetDataPtr(surface);
    const std::int32_t width = surfaceGetWidth(surface);
    const std::int32_t height = surfaceGetHeight(surface);
    if (source == nullptr || width <= 0 || height <= 0) {
        throw FileError(path, "there is no picture to write");
    }
    const std::span pixels(source,
                           static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    writeBytes(path, [&] { return encodePng(pixels, width, height); });
}

void writePngFile(const clsSurface& picture, const std::filesystem::path& path) {
    const std::int32_t width = picture.planarWidth();
    const std::int32_t height = picture.planarHeight();
    if (width <= 0 || height <= 0) {
        throw FileError(path, "there is no picture to write");
    }
    const std::span indices(picture.ptrPlanar(),
                            static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    writeBytes(path, [&] { return encodeIndexedPng(indices, width, height, picture.palette()); });
}

} // namespace marvek
