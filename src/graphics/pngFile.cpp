#include "graphics/pngFile.h"

#include "graphics/clsBackBuffer.h"
#include "io/FileError.h"
#include "io/atomicWrite.h"
#include "native/marvek.h"

#include <zlib.h>

#include <array>
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

std::vector<std::uint8_t> encodePng(std::span<const std::uint32_t> pixels, std::int32_t width,
                                    std::int32_t height) {
    if (width < 1 || height < 1 ||
        pixels.size() != static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {
        throw std::invalid_argument("the pixels do not make the picture's size");
    }
    std::vector<std::uint8_t> header;
    putBigEndian(header, static_cast<std::uint32_t>(width));
    putBigEndian(header, static_cast<std::uint32_t>(height));
    // 8 bits a sample, truecolour, deflate, adaptive filtering, no interlace.
    header.insert(header.end(), {8, 2, 0, 0, 0});

    std::vector<std::uint8_t> out(signature.begin(), signature.end());
    putChunk(out, "IHDR", header);
    putChunk(out, "IDAT",
             compressed(rawRows(pixels, static_cast<std::size_t>(width),
                                static_cast<std::size_t>(height))));
    putChunk(out, "IEND", {});
    return out;
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
    std::vector<std::uint8_t> bytes;
    try {
        bytes = encodePng(pixels, width, height);
    } catch (const std::exception& error) {
        throw FileError(path, error.what());
    }
    writeFileAtomically(path, bytes);
}

} // namespace marvek
