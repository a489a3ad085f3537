#include "graphics/pictureFiles.h"

#include "graphics/clsBitmap.h"
#include "graphics/pictureCodec.h"
#include "graphics/pictureImport.h"
#include "graphics/pngFile.h"
#include "io/FileError.h"
#include "io/atomicWrite.h"
#include "io/clsBitStream.h"
#include "io/packedFile.h"
#include "io/textHelpers.h"

#include <algorithm>
#include <system_error>

namespace marvek {
namespace {

bool lessIgnoringCase(const std::string& a, const std::string& b) {
    const bool less =
        std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                     [](char x, char y) { return lowerAscii(x) < lowerAscii(y); });
    const bool greater =
        std::lexicographical_compare(b.begin(), b.end(), a.begin(), a.end(),
                                     [](char x, char y) { return lowerAscii(x) < lowerAscii(y); });
    return less || (!greater && a < b);
}

std::string sizeText(std::int64_t width, std::int64_t height) {
    return std::to_string(width) + " x " + std::to_string(height);
}

bool holdsGrid(const PictureImport& picture, const PictureFormat& format) {
    const PictureGrid grid = pictureGrid(format);
    return grid.width <= picture.width() && grid.height <= picture.height();
}

std::string gridRefusal(const PictureImport& picture, const PictureFormat& format) {
    const PictureGrid grid = pictureGrid(format);
    return "the picture is " + sizeText(picture.width(), picture.height()) + " pixels; " +
           std::to_string(format.count) + " sub-images of " +
           sizeText(format.width, format.height) + ", " + std::to_string(format.across) +
           " across, need " + sizeText(grid.width, grid.height);
}

std::vector<std::uint8_t> bytesToKeep(const std::filesystem::path& target) {
    std::error_code error;
    if (!std::filesystem::exists(target, error)) {
        return {};
    }
    return readPictureFile(target);
}

// The palette in the game's format at `at`, growing the bytes as needed.
void placePalette(std::vector<std::uint8_t>& bytes, std::uint64_t at, const clsPalette& palette) {
    clsBitStream stream;
    stream.Create();
    stream.autoExpand = true;
    palette.writeTo(stream);
    const auto words = stream.bufferGet()->data();
    if (bytes.size() < at + words.size()) {
        bytes.resize(static_cast<std::size_t>(at + words.size()), 0);
    }
    std::copy(words.begin(), words.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
}

void writePacked(std::span<const std::uint8_t> bytes, const std::filesystem::path& target) {
    if (bytes.size() > static_cast<std::size_t>(clsDataBuffer::maximumSize)) {
        throw FileError(target, "the file would be too large");
    }
    clsDataBuffer buffer;
    buffer.Create(static_cast<std::int32_t>(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), buffer.data().begin());
    implodeToFile(buffer, target);
}

// The palette the picture is shown with over the file's bytes, and the
// indices the format stores.
TargetPalette targetPalette(const PaletteChoice& choice, std::span<const std::uint8_t> bytes,
                            const PictureFormat& format) {
    const std::int32_t first = firstShownIndex(format);
    return {choosePalette(choice, bytes, format), choice.name, first,
            first + (std::int32_t{1} << format.planes)};
}

// The file's bytes as they are on disk (packed or not), once.
ImportResult keepOriginal(const std::filesystem::path& target) {
    ImportResult result;
    result.original = originalCopyPath(target);
    std::error_code error;
    if (!std::filesystem::exists(target, error) ||
        std::filesystem::exists(result.original, error)) {
        return result;
    }
    writeFileAtomically(result.original, readWholeFile(target));
    result.keptOriginal = true;
    return result;
}

} // namespace

std::vector<std::string> listDataFiles(const std::filesystem::path& dataFolder) {
    std::error_code error;
    std::filesystem::directory_iterator entries(dataFolder, error);
    if (error) {
        throw FileError(dataFolder, "the folder cannot be listed (" + error.message() + ")");
    }
    std::vector<std::string> names;
    for (const auto& entry : entries) {
        if (entry.is_regular_file(error)) {
            names.push_back(entry.path().filename().string());
        }
    }
    std::sort(names.begin(), names.end(), lessIgnoringCase);
    return names;
}

std::vector<std::uint8_t> readPictureFile(const std::filesystem::path& path) {
    if (!isFileIMP(path)) {
        return readWholeFile(path);
    }
    const ExplodeResult unpacked = explodeFile(path);
    if (!unpacked.buffer) {
        throw FileError(path, "the packed file does not unpack: " + unpacked.failure);
    }
    const auto data = unpacked.buffer->data();
    return {data.begin(), data.end()};
}

std::string withBmpSuffix(std::string_view name) {
    std::string result(name);
    if (!result.ends_with(".bmp")) {
        result += ".bmp";
    }
    return result;
}

std::string lowerExtension(const std::filesystem::path& path) {
    return lowerAscii(path.extension().string());
}

bool hasPngExtension(std::string_view name) {
    return endsWithIgnoringCase(name, ".png");
}

std::string pictureExportName(std::string_view chosen) {
    return hasPngExtension(chosen) ? std::string(chosen) : withBmpSuffix(chosen);
}

void writePictureBitmap(const clsSurface& picture, const std::filesystem::path& path) {
    clsBitmap bitmap;
    if (!bitmap.createFromPlanarSurface(picture)) {
        throw FileError(path, "there is no picture to export");
    }
    bitmap.writeToFile(path);
}

std::filesystem::path originalCopyPath(const std::filesystem::path& target) {
    std::filesystem::path copy = target;
    copy += ".orig";
    return copy;
}

ImportResult importPicture(const std::filesystem::path& bitmapPath,
                           const std::filesystem::path& target, const PictureFormat& format,
                           const PaletteChoice& palette, const ConfirmReplace& confirmReplace) {
    if (!isValidFormat(format)) {
        throw std::invalid_argument("picture format outside its limits");
    }
    const PictureImport source(bitmapPath);
    if (!holdsGrid(source, format)) {
        throw FileError(bitmapPath, gridRefusal(source, format));
    }
    std::vector<std::uint8_t> bytes = bytesToKeep(target);
    if (static_cast<std::uint64_t>(format.offset) > bytes.size()) {
        throw FileError(target, "the offset " + std::to_string(format.offset) +
                                    " lies past the end of the file (" +
                                    std::to_string(bytes.size()) + " bytes)");
    }
    if (palette.storesPalette()) {
        // The picture brings its own palette, so its indices are the truth.
        encodePicture(source.ownIndices(), format, bytes);
        placePalette(bytes, pictureEnd(format), source.ownPalette(clsPalette::gameEntries));
    } else {
        const PictureGrid grid = pictureGrid(format);
        const TargetPalette colours = targetPalette(palette, bytes, format);
        encodePicture(source.indicesOf(colours, static_cast<std::int32_t>(grid.width),
                                       static_cast<std::int32_t>(grid.height)),
                      format, bytes);
    }
    std::error_code error;
    if (confirmReplace && std::filesystem::exists(target, error) && !confirmReplace(target)) {
        return {};
    }
    ImportResult result = keepOriginal(target);
    writePacked(bytes, target);
    result.written = true;
    return result;
}

void writePictureFile(const clsSurface& picture, const std::filesystem::path& path) {
    if (hasPngExtension(path.string())) {
        writePngFile(picture, path);
    } else {
        writePictureBitmap(picture, path);
    }
}

} // namespace marvek
