#pragma once

// The graphics browser's file work: listing, reading, exporting and
// importing raw bitplane pictures.

#include "graphics/clsSurface.h"
#include "graphics/paletteChoices.h"
#include "graphics/pictureFormat.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace marvek {

// The names of the folder's files (not its folders), sorted ignoring case.
// Throws FileError when the folder cannot be listed.
std::vector<std::string> listDataFiles(const std::filesystem::path& dataFolder);

// The file's bytes, unpacked when it is packed. Throws FileError, also for a
// packed file that does not unpack.
std::vector<std::uint8_t> readPictureFile(const std::filesystem::path& path);

// The browser's and palette editor's rule: ".bmp" appended unless the name's
// last four characters are exactly ".bmp" ("PAL.BMP" becomes "PAL.BMP.bmp").
std::string withBmpSuffix(std::string_view name);
// The path's extension in lower case (".bmp").
std::string lowerExtension(const std::filesystem::path& path);
// True when the name ends in ".png" in any case.
bool hasPngExtension(std::string_view name);
// The name an export writes to: a chosen name ending in ".png" (any case)
// is kept and written as PNG; any other follows withBmpSuffix.
std::string pictureExportName(std::string_view chosen);

// The shown picture, with the palette it was drawn with, as an 8-bit BMP.
// Throws FileError.
void writePictureBitmap(const clsSurface& picture, const std::filesystem::path& path);
// The browser's export: an indexed PNG for a name ending in ".png" (any
// case), an 8-bit BMP for any other. Throws FileError.
void writePictureFile(const clsSurface& picture, const std::filesystem::path& path);

// Where the first original of a file replaced by an import is kept:
// NAME.orig beside it.
std::filesystem::path originalCopyPath(const std::filesystem::path& target);

// What an import did.
struct ImportResult {
    // False when the replacement was declined.
    bool written = false;
    // The file existed and its first original was kept now.
    bool keptOriginal = false;
    std::filesystem::path original;
};

// Replaces the sub-images of a file with those of a picture (an 8-bit BMP
// or a PNG), cut in order from the grid of the format (as decodePicture
// places them), and writes the file packed. The picture goes by its colours:
// each pixel becomes the index that shows its colour in the palette chosen
// (over the file's bytes as they are), its own index first, any index when
// the picture's palette is that palette in order; a colour the palette lacks
// refuses the picture, naming the pixel. With a choice that stores its
// palette, the picture's own indices are taken and its first 32 colours
// follow the sub-images in the game's format. The rest of the file (before
// the offset, after the sub-images or their palette) is kept; a new file is
// made when there is none. Throws FileError naming the picture when it is
// refused or too small for the grid, and naming the file when it cannot be
// read, lies short of the offset or cannot be written; nothing is written
// then. An existing file is replaced only when confirmReplace (if given)
// says yes, asked once the picture is known to fit; the first time, its
// bytes are kept as originalCopyPath, and a copy kept before is never
// overwritten.
using ConfirmReplace = std::function<bool(const std::filesystem::path& target)>;
ImportResult importPicture(const std::filesystem::path& bitmapPath,
                           const std::filesystem::path& target, const PictureFormat& format,
                           const PaletteChoice& palette, const ConfirmReplace& confirmReplace = {});

} // namespace marvek
