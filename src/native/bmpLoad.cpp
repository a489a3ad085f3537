#include "native/bmpLoad.h"

#include "native/bmpRunLength.h"

#include <array>
#include <new>
#include <optional>
#include <vector>

namespace marvek {

namespace {

constexpr std::size_t fileHeaderSize = 14;
constexpr std::size_t minInfoHeaderSize = 40;
constexpr std::uint32_t uncompressed = 0;
constexpr std::uint32_t runLength8 = 1;
constexpr std::uint32_t bitFields = 3;
constexpr std::size_t maskOffset = fileHeaderSize + minInfoHeaderSize;

// Bounds-checked little-endian reads; out-of-range reads give nothing.
class ByteReader {
public:
    explicit ByteReader(std::span<const std::uint8_t> bytes) noexcept : bytes_(bytes) {}

    std::optional<std::uint32_t> u32(std::size_t offset) const noexcept {
        if (!has(offset, 4)) {
            return std::nullopt;
        }
        return static_cast<std::uint32_t>(bytes_[offset]) |
               static_cast<std::uint32_t>(bytes_[offset + 1]) << 8 |
               static_cast<std::uint32_t>(bytes_[offset + 2]) << 16 |
               static_cast<std::uint32_t>(bytes_[offset + 3]) << 24;
    }
    std::optional<std::uint16_t> u16(std::size_t offset) const noexcept {
        if (!has(offset, 2)) {
            return std::nullopt;
        }
        return static_cast<std::uint16_t>(bytes_[offset] | bytes_[offset + 1] << 8);
    }
    bool has(std::uint64_t offset, std::uint64_t length) const noexcept {
        return offset <= bytes_.size() && length <= bytes_.size() - offset;
    }
    const std::uint8_t* at(std::size_t offset) const noexcept { return bytes_.data() + offset; }

private:
    std::span<const std::uint8_t> bytes_;
};

struct BitmapLayout {
    std::int32_t width = 0;
    std::int32_t height = 0;
    bool topDown = false;
    std::uint16_t bitsPerPixel = 0;
    std::size_t pixelOffset = 0;
    std::size_t rowBytes = 0;
    std::size_t paletteOffset = 0;
    std::size_t paletteEntries = 0;
    bool runLength = false;
};

// Masks follow a 40-byte header or sit inside a larger one, at the same place.
bool hasStandardMasks(const ByteReader& reader) {
    constexpr std::array<std::uint32_t, 3> standard = {0x00FF0000u, 0x0000FF00u, 0x000000FFu};
    for (std::size_t i = 0; i < standard.size(); ++i) {
        if (reader.u32(maskOffset + 4 * i) != standard[i]) {
            return false;
        }
    }
    return true;
}

bool acceptsCompression(const ByteReader& reader, std::uint32_t compression,
                        std::uint16_t bitsPerPixel) {
    if (compression == uncompressed) {
        return bitsPerPixel == 8 || bitsPerPixel == 24 || bitsPerPixel == 32;
    }
    if (compression == runLength8) {
        return bitsPerPixel == 8;
    }
    return compression == bitFields && bitsPerPixel == 32 && hasStandardMasks(reader);
}

bool readDimensions(const ByteReader& reader, BitmapLayout& layout) {
    const auto width = reader.u32(18);
    const auto height = reader.u32(22);
    if (!width || !height) {
        return false;
    }
    const auto signedWidth = static_cast<std::int32_t>(*width);
    const auto signedHeight = static_cast<std::int64_t>(static_cast<std::int32_t>(*height));
    const std::int64_t rows = signedHeight < 0 ? -signedHeight : signedHeight;
    if (signedWidth <= 0 || rows == 0 || signedWidth > maxSurfaceSide || rows > maxSurfaceSide ||
        std::int64_t{signedWidth} * rows > maxSurfacePixels) {
        return false;
    }
    layout.width = signedWidth;
    layout.height = static_cast<std::int32_t>(rows);
    layout.topDown = signedHeight < 0;
    return true;
}

bool readPalette(const ByteReader& reader, std::uint32_t headerSize, BitmapLayout& layout) {
    const auto coloursUsed = reader.u32(46);
    if (!coloursUsed || *coloursUsed > 256) {
        return false;
    }
    layout.paletteEntries = *coloursUsed == 0 ? 256 : *coloursUsed;
    layout.paletteOffset = fileHeaderSize + headerSize;
    return reader.has(layout.paletteOffset, layout.paletteEntries * 4);
}

std::optional<BitmapLayout> readLayout(const ByteReader& reader) {
    const auto magic = reader.u16(0);
    const auto pixelOffset = reader.u32(10);
    const auto headerSize = reader.u32(14);
    const auto planes = reader.u16(26);
    const auto bitsPerPixel = reader.u16(28);
    const auto compression = reader.u32(30);
    if (!magic || *magic != 0x4D42 || !pixelOffset || !headerSize ||
        *headerSize < minInfoHeaderSize || *headerSize > 1024 || planes != 1 || !bitsPerPixel ||
        !compression || !acceptsCompression(reader, *compression, *bitsPerPixel)) {
        return std::nullopt;
    }
    BitmapLayout layout;
    layout.bitsPerPixel = *bitsPerPixel;
    layout.pixelOffset = *pixelOffset;
    layout.runLength = *compression == runLength8;
    if (!readDimensions(reader, layout) || (layout.runLength && layout.topDown)) {
        return std::nullopt;
    }
    if (layout.bitsPerPixel == 8 && !readPalette(reader, *headerSize, layout)) {
        return std::nullopt;
    }
    const std::uint64_t rowBits =
        std::uint64_t{static_cast<std::uint32_t>(layout.width)} * layout.bitsPerPixel;
    layout.rowBytes = static_cast<std::size_t>((rowBits + 31) / 32 * 4);
    // Some writers leave out the last row's padding; rows are read to their
    // last pixel only.
    const std::uint64_t needed =
        std::uint64_t{layout.rowBytes} * static_cast<std::uint64_t>(layout.height - 1) +
        (rowBits + 7) / 8;
    if (!reader.has(layout.pixelOffset, layout.runLength ? 0 : needed)) {
        return std::nullopt;
    }
    return layout;
}

constexpr std::uint32_t opaqueRgb(std::uint8_t blue, std::uint8_t green, std::uint8_t red) {
    return static_cast<std::uint32_t>(red) << 16 | static_cast<std::uint32_t>(green) << 8 | blue;
}

void decodeRow(const ByteReader& reader, const BitmapLayout& layout, const std::uint8_t* source,
               std::uint32_t* target) {
    const auto width = static_cast<std::size_t>(layout.width);
    if (layout.bitsPerPixel == 8) {
        for (std::size_t x = 0; x < width; ++x) {
            const std::size_t index = source[x];
            if (index < layout.paletteEntries) {
                const std::uint8_t* entry = reader.at(layout.paletteOffset + index * 4);
                target[x] = opaqueRgb(entry[0], entry[1], entry[2]);
            } else {
                target[x] = 0; // an index beyond a short colour table reads as black
            }
        }
        return;
    }
    const std::size_t step = layout.bitsPerPixel / 8u;
    for (std::size_t x = 0; x < width; ++x) {
        const std::uint8_t* pixel = source + x * step;
        target[x] = opaqueRgb(pixel[0], pixel[1], pixel[2]);
    }
}

// The rows as an uncompressed file holds them: the file's own, or those
// decoded from RLE8 data. Empty when the data does not decode.
std::span<const std::uint8_t> pixelRows(std::span<const std::uint8_t> file,
                                        const BitmapLayout& layout,
                                        std::vector<std::uint8_t>& decoded) {
    const auto data = file.subspan(layout.pixelOffset);
    if (!layout.runLength) {
        return data;
    }
    RunLengthResult result = decodeRunLength(data, {layout.width, layout.height, 8});
    decoded = std::move(result.rows);
    return decoded;
}

} // namespace

std::unique_ptr<Surface> loadBitmapSurface(std::span<const std::uint8_t> file) noexcept {
    const ByteReader reader(file);
    const auto layout = readLayout(reader);
    if (!layout) {
        return nullptr;
    }
    try {
        std::vector<std::uint8_t> decoded;
        const auto rows = pixelRows(file, *layout, decoded);
        auto surface = rows.empty() ? nullptr : Surface::create(layout->width, layout->height);
        if (surface == nullptr) {
            return nullptr;
        }
        for (std::int32_t fileRow = 0; fileRow < layout->height; ++fileRow) {
            const std::int32_t y = layout->topDown ? fileRow : layout->height - 1 - fileRow;
            decodeRow(reader, *layout,
                      rows.data() + static_cast<std::size_t>(fileRow) * layout->rowBytes,
                      surface->row(y));
        }
        return surface;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

} // namespace marvek
