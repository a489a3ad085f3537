#include "graphics/clsBitmap.h"

#include "graphics/clsBackBuffer.h"
#include "graphics/pngRead.h"
#include "io/atomicWrite.h"
#include "native/bmpRunLength.h"
#include "native/marvek.h"
#include "native/surface.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <system_error>

namespace marvek {
namespace {

constexpr std::uint16_t bitmapType = 0x4D42; // "BM" read as a little-endian word
constexpr std::uint32_t uncompressed = 0;
constexpr std::uint32_t runLength8 = 1;
constexpr std::uint32_t runLength4 = 2;
constexpr std::uint32_t bitFields = 3;
constexpr std::uint32_t jpeg = 4;
constexpr std::uint32_t png = 5;
constexpr std::int32_t pixelsPerMetre = 2835; // 72 dots per inch
constexpr std::int32_t maximumSide = 32768;
constexpr std::size_t bytesPerColour = 4;

// Little-endian fields at fixed offsets; bytes past the end read as 0, as a
// short read of the colour table does in other readers.
class LittleEndianReader {
public:
    explicit LittleEndianReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    std::uint8_t byte(std::size_t at) const { return at < bytes_.size() ? bytes_[at] : 0; }
    std::uint16_t word(std::size_t at) const {
        return static_cast<std::uint16_t>(byte(at) | byte(at + 1) << 8);
    }
    std::uint32_t dword(std::size_t at) const {
        return static_cast<std::uint32_t>(word(at)) | static_cast<std::uint32_t>(word(at + 2))
                                                          << 16;
    }
    std::int32_t signedDword(std::size_t at) const { return static_cast<std::int32_t>(dword(at)); }

private:
    std::span<const std::uint8_t> bytes_;
};

class LittleEndianWriter {
public:
    void word(std::uint16_t value) { bytes(value, 2); }
    void dword(std::uint32_t value) { bytes(value, 4); }
    void signedDword(std::int32_t value) { dword(static_cast<std::uint32_t>(value)); }
    void append(std::span<const std::uint8_t> data) {
        out_.insert(out_.end(), data.begin(), data.end());
    }
    const std::vector<std::uint8_t>& result() const noexcept { return out_; }

private:
    void bytes(std::uint32_t value, int count) {
        for (int i = 0; i < count; ++i) {
            out_.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
        }
    }
    std::vector<std::uint8_t> out_;
};

clsBitmap::FileHeader readFileHeader(const LittleEndianReader& in) {
    return {in.word(0), in.dword(2), in.word(6), in.word(8), in.dword(10)};
}

clsBitmap::InfoHeader readInfoHeader(const LittleEndianReader& in) {
    constexpr std::size_t at = clsBitmap::fileHeaderBytes;
    return {in.dword(at),      in.signedDword(at + 4),  in.signedDword(at + 8),
            in.word(at + 12),  in.word(at + 14),        in.dword(at + 16),
            in.dword(at + 20), in.signedDword(at + 24), in.signedDword(at + 28),
            in.dword(at + 32), in.dword(at + 36)};
}

std::string compressionName(std::uint32_t compression) {
    switch (compression) {
    case runLength8:
        return "RLE8";
    case runLength4:
        return "RLE4";
    case bitFields:
        return "bit fields";
    case jpeg:
        return "JPEG";
    case png:
        return "PNG";
    default:
        return "method " + std::to_string(compression);
    }
}

// Why pixels of this depth and compression are not read; empty when they are.
std::string depthRefusal(const clsBitmap::InfoHeader& info) {
    const std::uint16_t bits = info.bitsPerPixel;
    if (bits != 1 && bits != 4 && bits != 8 && bits != 16 && bits != 24 && bits != 32) {
        return std::to_string(bits) + " bits per pixel are not read";
    }
    const bool topDown = info.height < 0;
    const bool fits = info.compression == uncompressed ||
                      (info.compression == runLength8 && bits == 8 && !topDown) ||
                      (info.compression == runLength4 && bits == 4 && !topDown) ||
                      (info.compression == bitFields && (bits == 16 || bits == 32));
    if (fits) {
        return {};
    }
    return "compressed with " + compressionName(info.compression) + " at " + std::to_string(bits) +
           " bits per pixel" + (topDown ? ", top-down" : "") + ", which is not read";
}

std::int64_t rowCount(const clsBitmap::InfoHeader& info) {
    return info.height < 0 ? -std::int64_t{info.height} : info.height;
}

// Why a file with these headers is not read; empty when it is.
std::string headerRefusal(const clsBitmap::FileHeader& file, const clsBitmap::InfoHeader& info) {
    if (file.type != bitmapType) {
        return "not a BMP file";
    }
    if (info.headerSize < clsBitmap::infoHeaderBytes) {
        return "an old kind of BMP header that is not read";
    }
    const std::int64_t rows = rowCount(info);
    if (info.width < 1 || info.width > maximumSide || rows < 1 || rows > maximumSide) {
        return "the width or height is out of range";
    }
    // A few bytes of RLE data may describe a picture of any size; one that no
    // surface can hold is refused before its pixels are decoded.
    if (std::int64_t{info.width} * rows > maxSurfacePixels) {
        return "the picture has more than " + std::to_string(maxSurfacePixels) + " pixels";
    }
    return depthRefusal(info);
}

std::uint64_t widthRoundedToFour(std::int32_t width) {
    return (static_cast<std::uint64_t>(width) + 3) / 4 * 4;
}

std::uint64_t standardRowBytes(const clsBitmap::InfoHeader& info) {
    return (static_cast<std::uint64_t>(info.width) * info.bitsPerPixel + 31) / 32 * 4;
}

// What the rows need on disk: some writers leave out the last row's padding.
std::uint64_t neededPixelBytes(const clsBitmap::InfoHeader& info) {
    const std::uint64_t lastRow =
        (static_cast<std::uint64_t>(info.width) * info.bitsPerPixel + 7) / 8;
    return standardRowBytes(info) * static_cast<std::uint64_t>(rowCount(info) - 1) + lastRow;
}

// What is read: the row size is taken from the width in pixels, not in
// bytes, and one byte more. Deliberate: it is how this program has always
// read bitmaps, and right for the 8-bit ones it converts.
std::uint64_t storedPixelBytes(const clsBitmap::InfoHeader& info) {
    return info.bitsPerPixel / 8u * static_cast<std::uint64_t>(rowCount(info)) *
               widthRoundedToFour(info.width) +
           1;
}

// The first count bytes; bytes past the end read as 0, as a short read of
// the colour table or the last row does in other readers.
std::vector<std::uint8_t> prefixOf(std::span<const std::uint8_t> bytes, std::uint64_t count) {
    std::vector<std::uint8_t> prefix(static_cast<std::size_t>(count), 0);
    std::copy_n(bytes.begin(), std::min(prefix.size(), bytes.size()), prefix.begin());
    return prefix;
}

// A top-down file's rows in the bottom-up order of every other.
std::vector<std::uint8_t> bottomUpRows(std::span<const std::uint8_t> rows,
                                       const clsBitmap::InfoHeader& info) {
    const auto rowBytes = static_cast<std::size_t>(standardRowBytes(info));
    const auto height = static_cast<std::size_t>(rowCount(info));
    std::vector<std::uint8_t> flipped(rowBytes * height, 0);
    for (std::size_t row = 0; row < height; ++row) {
        const auto from = rows.subspan(std::min(row * rowBytes, rows.size()));
        std::copy_n(from.begin(), std::min(rowBytes, from.size()),
                    flipped.begin() + static_cast<std::ptrdiff_t>((height - 1 - row) * rowBytes));
    }
    return flipped;
}

struct PixelBytes {
    std::vector<std::uint8_t> stored;
    std::string refusal;
};

// The pixel bytes as this program keeps them (uncompressed, bottom-up,
// storedPixelBytes long) from the data at the file's pixel offset.
PixelBytes readPixelBytes(std::span<const std::uint8_t> data, const clsBitmap::InfoHeader& info) {
    const std::uint64_t count = storedPixelBytes(info);
    if (info.compression == runLength8 || info.compression == runLength4) {
        RunLengthResult decoded = decodeRunLength(
            data, {info.width, static_cast<std::int32_t>(rowCount(info)), info.bitsPerPixel});
        if (!decoded.failure.empty()) {
            return {{}, std::move(decoded.failure)};
        }
        return {prefixOf(decoded.rows, count), {}};
    }
    if (neededPixelBytes(info) > data.size()) {
        return {{}, "the pixel data is cut short"};
    }
    if (info.height < 0) {
        return {prefixOf(bottomUpRows(data, info), count), {}};
    }
    return {prefixOf(data, count), {}};
}

// The headers as they describe the pixels kept: bottom-up and uncompressed.
clsBitmap::InfoHeader keptInfo(clsBitmap::InfoHeader info) {
    info.height = static_cast<std::int32_t>(rowCount(info));
    if (info.compression == runLength8 || info.compression == runLength4) {
        info.compression = uncompressed;
        info.imageSize = static_cast<std::uint32_t>(standardRowBytes(info) *
                                                    static_cast<std::uint64_t>(info.height));
    }
    return info;
}

std::vector<std::uint8_t> bytesFrom(const LittleEndianReader& in, std::size_t at,
                                    std::size_t count) {
    std::vector<std::uint8_t> bytes(count);
    for (std::size_t i = 0; i < count; ++i) {
        bytes[i] = in.byte(at + i);
    }
    return bytes;
}

std::uint32_t tableColour(std::span<const std::uint8_t> table, std::size_t index) {
    const std::size_t at = index * bytesPerColour;
    const std::uint32_t blue = table[at];
    const std::uint32_t green = table[at + 1];
    const std::uint32_t red = table[at + 2];
    return red | green << 8 | blue << 16;
}

bool isPlaneCount(int planes) {
    return planes >= 0 && planes <= clsSurface::maximumPlanes;
}

clsPalette paletteFromTable(std::span<const std::uint8_t> table, int planes) {
    clsPalette palette;
    for (std::size_t index = 0; index < (std::size_t{1} << planes); ++index) {
        palette.addEntry(tableColour(table, index));
    }
    return palette;
}

clsBitmap::InfoHeader newInfoHeader(std::int32_t width, std::int32_t height, std::uint16_t bits,
                                    std::uint32_t imageSize) {
    clsBitmap::InfoHeader info;
    info.headerSize = clsBitmap::infoHeaderBytes;
    info.width = width;
    info.height = height;
    info.planes = 1;
    info.bitsPerPixel = bits;
    info.compression = uncompressed;
    info.imageSize = imageSize;
    info.horizontalResolution = pixelsPerMetre;
    info.verticalResolution = pixelsPerMetre;
    info.coloursUsed = bits < 16 ? clsBitmap::colourTableEntries : 0;
    return info;
}

clsBitmap::FileHeader newFileHeader(const clsBitmap::InfoHeader& info) {
    std::uint32_t offset = clsBitmap::fileHeaderBytes + clsBitmap::infoHeaderBytes;
    if (info.bitsPerPixel < 16) {
        offset += clsBitmap::colourTableBytes;
    }
    clsBitmap::FileHeader file;
    file.type = bitmapType;
    file.fileSize = offset + info.imageSize;
    file.pixelOffset = offset;
    return file;
}

} // namespace

bool clsBitmap::readFromFile(const std::filesystem::path& path) {
    refusal_ = readRefusal(path);
    return refusal_.empty();
}

std::string clsBitmap::readRefusal(const std::filesystem::path& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) {
        return std::filesystem::exists(path, error) ? "not a regular file"
                                                    : "the file does not exist";
    }
    const auto length = std::filesystem::file_size(path, error);
    if (error || length > maximumFileBytes) {
        return "the file is too large for a picture";
    }
    const std::vector<std::uint8_t> bytes = readWholeFile(path);
    if (isPngData(bytes)) {
        return readIndexedPng(bytes);
    }
    if (bytes.size() < fileHeaderBytes + infoHeaderBytes) {
        return "the file is too short for a BMP file";
    }
    const LittleEndianReader in(bytes);
    const FileHeader file = readFileHeader(in);
    const InfoHeader info = readInfoHeader(in);
    if (std::string why = headerRefusal(file, info); !why.empty()) {
        return why;
    }
    if (file.pixelOffset > bytes.size()) {
        return "the pixel data lies past the end of the file";
    }
    PixelBytes pixels = readPixelBytes(std::span(bytes).subspan(file.pixelOffset), info);
    if (!pixels.refusal.empty()) {
        return pixels.refusal;
    }
    if (info.bitsPerPixel < 16) {
        const auto table = bytesFrom(in, fileHeaderBytes + info.headerSize, colourTableBytes);
        std::copy(table.begin(), table.end(), colourTable_.begin());
    } else {
        colourTable_.fill(0);
    }
    pixels_ = std::move(pixels.stored);
    fileHeader_ = file;
    infoHeader_ = keptInfo(info);
    return {};
}

bool clsBitmap::writeToFile(const std::filesystem::path& path) const {
    LittleEndianWriter out;
    out.word(fileHeader_.type);
    out.dword(fileHeader_.fileSize);
    out.word(fileHeader_.reserved1);
    out.word(fileHeader_.reserved2);
    out.dword(fileHeader_.pixelOffset);
    out.dword(infoHeader_.headerSize);
    out.signedDword(infoHeader_.width);
    out.signedDword(infoHeader_.height);
    out.word(infoHeader_.planes);
    out.word(infoHeader_.bitsPerPixel);
    out.dword(infoHeader_.compression);
    out.dword(infoHeader_.imageSize);
    out.signedDword(infoHeader_.horizontalResolution);
    out.signedDword(infoHeader_.verticalResolution);
    out.dword(infoHeader_.coloursUsed);
    out.dword(infoHeader_.coloursImportant);
    if (infoHeader_.bitsPerPixel < 16) {
        out.append(colourTable_);
    }
    out.append(pixels_);
    writeFileAtomically(path, out.result());
    return true;
}

std::string clsBitmap::planarRefusal() const {
    const std::uint16_t bits = infoHeader_.bitsPerPixel;
    if (bits == 8) {
        return {};
    }
    if (bits > 8) {
        return std::to_string(bits) + "-bit pictures have no palette";
    }
    return std::to_string(bits) + "-bit pictures are not read: save it with 8 bits per pixel";
}

std::optional<clsSurface> clsBitmap::createPlanar(int planes) const {
    if (infoHeader_.bitsPerPixel != 8 || !isPlaneCount(planes)) {
        return std::nullopt;
    }
    const std::int32_t width = infoHeader_.width;
    const std::int32_t height = infoHeader_.height;
    clsSurface image;
    if (!image.planarCreateEmpty(width, height)) {
        return std::nullopt;
    }
    image.setPalette(paletteFromTable(colourTable_, planes));
    const auto stride = static_cast<std::size_t>(widthRoundedToFour(width));
    for (std::int32_t row = 0; row < height; ++row) {
        const auto* from = pixels_.data() + static_cast<std::size_t>(row) * stride;
        auto* to = image.ptrPlanar() +
                   static_cast<std::size_t>(height - 1 - row) * static_cast<std::size_t>(width);
        std::copy_n(from, width, to);
    }
    return image;
}

std::optional<clsPalette> clsBitmap::getPal(int planes) const {
    if (infoHeader_.bitsPerPixel > 8 || !isPlaneCount(planes)) {
        return std::nullopt;
    }
    return paletteFromTable(colourTable_, planes);
}

bool clsBitmap::createFromBackBuffer(const clsBackBuffer& backBuffer) {
    const std::int32_t surface = backBuffer.surface();
    const std::int32_t width = surfaceGetWidth(surface);
    const std::int32_t height = surfaceGetHeight(surface);
    const std::uint32_t* source = surfaceGetDataPtr(surface);
    if (source == nullptr || width <= 0 || height <= 0) {
        return false;
    }
    const std::size_t rowBytes = static_cast<std::size_t>(width) * 4;
    std::vector<std::uint8_t> pixels(rowBytes * static_cast<std::size_t>(height));
    // The surface runs top-down, the file bottom-up.
    for (std::int32_t row = 0; row < height; ++row) {
        std::memcpy(pixels.data() + static_cast<std::size_t>(height - 1 - row) * rowBytes,
                    source + static_cast<std::size_t>(row) * static_cast<std::size_t>(width),
                    rowBytes);
    }
    infoHeader_ = newInfoHeader(width, height, 32, static_cast<std::uint32_t>(pixels.size()));
    fileHeader_ = newFileHeader(infoHeader_);
    colourTable_.fill(0);
    pixels_ = std::move(pixels);
    return true;
}

std::string clsBitmap::readIndexedPng(std::span<const std::uint8_t> bytes) {
    try {
        const clsSurface picture = decodeIndexedPng(bytes);
        createFromPlanarSurface(picture);
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return {};
}

bool clsBitmap::createFromPlanarSurface(const clsSurface& image) {
    const std::int32_t width = image.planarWidth();
    const std::int32_t height = image.planarHeight();
    if (width <= 0 || height <= 0) {
        return false;
    }
    const auto stride = static_cast<std::size_t>(widthRoundedToFour(width));
    std::vector<std::uint8_t> pixels(stride * static_cast<std::size_t>(height), 0);
    for (std::int32_t row = 0; row < height; ++row) {
        const auto* from =
            image.ptrPlanar() + static_cast<std::size_t>(row) * static_cast<std::size_t>(width);
        std::copy_n(from, width,
                    pixels.data() + static_cast<std::size_t>(height - 1 - row) * stride);
    }
    colourTable_.fill(0);
    const clsPalette& palette = image.palette();
    const auto colours = std::min<std::size_t>(
        static_cast<std::size_t>(std::max(palette.Count(), 0)), colourTableEntries);
    for (std::size_t index = 0; index < colours; ++index) {
        const auto entry = palette.Entry(static_cast<std::int32_t>(index));
        const std::size_t at = index * bytesPerColour;
        colourTable_[at] = getBlue(entry);
        colourTable_[at + 1] = getGreen(entry);
        colourTable_[at + 2] = getRed(entry);
    }
    infoHeader_ = newInfoHeader(width, height, 8, static_cast<std::uint32_t>(pixels.size()));
    fileHeader_ = newFileHeader(infoHeader_);
    pixels_ = std::move(pixels);
    return true;
}

} // namespace marvek
