#pragma once

#include "graphics/clsPalette.h"
#include "graphics/clsSurface.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace marvek {

class clsBackBuffer;

// A Windows BMP file as it stands on disk: headers, a colour table of
// exactly 256 entries and the pixel bytes, rows bottom-up. Converts between
// that and planar images, palettes and the back buffer.
class clsBitmap {
public:
    struct FileHeader {
        std::uint16_t type = 0;
        std::uint32_t fileSize = 0;
        std::uint16_t reserved1 = 0;
        std::uint16_t reserved2 = 0;
        std::uint32_t pixelOffset = 0;
    };
    struct InfoHeader {
        std::uint32_t headerSize = 0;
        std::int32_t width = 0;
        std::int32_t height = 0;
        std::uint16_t planes = 0;
        std::uint16_t bitsPerPixel = 0;
        std::uint32_t compression = 0;
        std::uint32_t imageSize = 0;
        std::int32_t horizontalResolution = 0;
        std::int32_t verticalResolution = 0;
        std::uint32_t coloursUsed = 0;
        std::uint32_t coloursImportant = 0;
    };
    static constexpr std::size_t fileHeaderBytes = 14;
    static constexpr std::size_t infoHeaderBytes = 40;
    static constexpr std::size_t colourTableEntries = 256;
    static constexpr std::size_t colourTableBytes = colourTableEntries * 4;
    // Larger files are refused before being read.
    static constexpr std::uintmax_t maximumFileBytes = std::uintmax_t{1} << 28;

    // False when the file does not exist or is not a bitmap this reader
    // accepts; refusal() then says why and the bitmap is unchanged. Takes
    // what image editors write: top-down rows, RLE8 and RLE4, a last row
    // without its padding, longer headers. Whatever is read is kept
    // bottom-up and uncompressed. An indexed PNG is taken as the 8-bit
    // bitmap of its indices and palette; other PNGs are refused. Throws
    // FileError when it cannot be read.
    bool readFromFile(const std::filesystem::path& path);
    // Why the last readFromFile gave false ("compressed with JPEG ..."); empty
    // after one that gave true.
    const std::string& refusal() const noexcept { return refusal_; }
    // Replaces the file through a temporary one. Throws FileError.
    bool writeToFile(const std::filesystem::path& path) const;

    // The 8-bit image as a planar image with a palette of 2^planes table
    // entries (planes 0..8); none for any other depth.
    std::optional<clsSurface> createPlanar(int planes) const;
    // Why createPlanar gives none ("24-bit pictures have no palette"); empty
    // for an 8-bit picture.
    std::string planarRefusal() const;
    // 2^planes entries of the colour table (planes 0..8); none above 8 bits.
    std::optional<clsPalette> getPal(int planes) const;

    // A 32-bit bitmap of the back buffer's surface. False, bitmap unchanged,
    // when the buffer has no surface.
    bool createFromBackBuffer(const clsBackBuffer& backBuffer);
    // An 8-bit bitmap of the planar indices with the image's palette as the
    // colour table. False, bitmap unchanged, for an empty image.
    bool createFromPlanarSurface(const clsSurface& image);

    const FileHeader& fileHeader() const noexcept { return fileHeader_; }
    const InfoHeader& infoHeader() const noexcept { return infoHeader_; }
    std::span<const std::uint8_t> pixelBytes() const noexcept { return pixels_; }

private:
    std::string readRefusal(const std::filesystem::path& path);
    std::string readIndexedPng(std::span<const std::uint8_t> bytes);

    FileHeader fileHeader_;
    InfoHeader infoHeader_;
    std::array<std::uint8_t, colourTableBytes> colourTable_{};
    std::vector<std::uint8_t> pixels_;
    std::string refusal_;
};

} // namespace marvek
