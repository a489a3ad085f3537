#include "graphics/pngFile.h"

#include "graphics/clsBackBuffer.h"
#include "graphics/clsPalette.h"
#include "graphics/clsSurface.h"
#include "io/FileError.h"
#include "io/atomicWrite.h"
#include "native/marvek.h"

#include <zlib.h>

#include <array>
#include <functional>
#include <stdexcept>
#include <string_view>

namespace marvek {
namespace {

constexpr std::array<std::uint8_t, 8> signature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};

void putBigEndian(std::vector<std::uint8_t>& out, std::uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8) {
        out.push_back(static_cast<std::uint8_t>(value >> shift));
    }
}

void putChunk(std::vector<std::uint8_t>& out, std::string_view type,
              std::span<const std::uint8_t> data) {
    putBigEndian(out, static_cast<std::uint32_t>(data.size()));
    const std::size_t typeStart = out.size();
    out.insert(out.end(), type.begin(), type.end());
    out.insert(out.end(), data.begin(), data.end());
    // The checksum covers the type and the data, not the length.
    uLong crc = crc32(0L, Z_NULL, 0);
    crc = crc32_z(crc, out.data() + typeStart, out.size() - typeStart);
    putBigEndian(out, static_cast<std::uint32_t>(crc));
}

// Each row starts with filter type 0: the bytes as they are.
std::vector<std::uint8_t> rawRows(std::span<const std::uint32_t> pixels, std::size_t width,
                                  std::size_t height) {
    std::vector<std::uint8_t> rows;
    rows.reserve(height * (width * 3 + 1));
    for (std::size_t y = 0; y < height; ++y) {
        rows.push_back(0);
        for (const std::uint32_t pixel : pixels.subspan(y * width, width)) {
            rows.push_back(static_cast<std::uint8_t>(pixel >> 16));
            rows.push_back(static_cast<std::uint8_t>(pixel >> 8));
            rows.push_back(static_cast<std::uint8_t>(pixel));
        }
    }
    return rows;
}

// One byte an index, each row after its filter type 0.
std::vector<std::uint8_t> rawIndexRows(std::span<const std::uint8_t> indices, std::size_t width,
                                       std::size_t height) {
    std::vector<std::uint8_t> rows;
    rows.reserve(height * (width + 1));
    for (std::size_t y = 0; y < height; ++y) {
        rows.push_back(0);
        const auto row = indices.subspan(y * width, width);
        rows.insert(rows.end(), row.begin(), row.end());
    }
    return rows;
}

std::vector<std::uint8_t> compressed(const std::vector<std::uint8_t>& data) {
    uLongf size = compressBound(data.size());
    std::vector<std::uint8_t> out(size);
    if (compress2(out.data(), &size, data.data(), data.size(), Z_DEFAULT_COMPRESSION) != Z_OK) {
        throw std::runtime_error("the picture could not be compressed");
    }
    out.resize(size);
    return out;
}

} // namespace

namespace {

void checkSize(std::size_t count, std::int32_t width, std::int32_t height) {
    if (width < 1 || height < 1 ||
        count != static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {
        throw std::invalid_argument("the pixels do not make the picture's size");
    }
}

// The header with 8 bits a sample, the colour type, deflate, adaptive
// filtering and no interlace.
std::vector<std::uint8_t> startPng(std::int32_t width, std::int32_t height,
                                   std::uint8_t colourType) {
    std::vector<std::uint8_t> header;
    putBigEndian(header, static_cast<std::uint32_t>(width));
    putBigEndian(header, static_cast<std::uint32_t>(height));
    header.insert(header.end(), {8, colourType, 0, 0, 0});
    std::vector<std::uint8_t> out(signature.begin(), signature.end());
    putChunk(out, "IHDR", header);
    return out;
}

std::vector<std::uint8_t> finishPng(std::vector<std::uint8_t> out,
                                    const std::vector<std::uint8_t>& rows) {
    putChunk(out, "IDAT", compressed(rows));
    putChunk(out, "IEND", {});
    return out;
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
    constexpr std::uint8_t truecolour = 2;
    return finishPng(
        startPng(width, height, truecolour),
        rawRows(pixels, static_cast<std::size_t>(width), static_cast<std::size_t>(height)));
}

std::vector<std::uint8_t> encodeIndexedPng(std::span<const std::uint8_t> indices,
                                           std::int32_t width, std::int32_t height,
                                           const clsPalette& palette) {
    checkSize(indices.size(), width, height);
    constexpr std::uint8_t indexed = 3;
    std::vector<std::uint8_t> out = startPng(width, height, indexed);
    // Every index a byte can hold has a colour; those past the palette are black.
    std::vector<std::uint8_t> colours;
    for (std::int32_t index = 0; index < 256; ++index) {
        const std::uint32_t colour = index < palette.Count() ? palette.Entry(index) : 0;
        colours.insert(colours.end(),
                       {static_cast<std::uint8_t>(colour), static_cast<std::uint8_t>(colour >> 8),
                        static_cast<std::uint8_t>(colour >> 16)});
    }
    putChunk(out, "PLTE", colours);
    return finishPng(std::move(out), rawIndexRows(indices, static_cast<std::size_t>(width),
                                                  static_cast<std::size_t>(height)));
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
