#pragma once

#include "graphics/clsPalette.h"
#include "graphics/pictureFormat.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace marvek {

// One entry of the graphics browser's palette list.
struct PaletteChoice {
    enum class Kind {
        grey,       // black to white over the plane count's indices
        after,      // the game-format palette that follows the sub-images
        rawFile,    // a raw palette file ("World 1" is pal/world1.pal)
        bitmapFile, // the colour table of a BMP in pal/, listed by file name
        given,      // the colours of `palette` (an open level's, say)
    };
    std::string name;
    Kind kind = Kind::grey;
    std::filesystem::path file; // the palette file of rawFile and bitmapFile
    clsPalette palette{};       // the colours of a given choice

    // A picture imported with this choice is stored with its palette.
    bool storesPalette() const noexcept { return kind == Kind::after; }
};

// "Grey", "After", "World 1" ... "World 6", "Project Q", "Boss", then every
// BMP of the application folder's pal/ (extension "bmp" in any case) that
// reads and has a colour table, sorted by name. Unreadable BMPs are left out.
std::vector<PaletteChoice> listPaletteChoices(const std::filesystem::path& applicationFolder);

// A palette file given by its path: the colour table of a BMP (extension
// "bmp" in any case) or a raw palette, named by the file's name.
PaletteChoice paletteFileChoice(const std::filesystem::path& file);

// The choice of that exact name, if listed.
std::optional<std::size_t> findPaletteChoice(std::span<const PaletteChoice> choices,
                                             std::string_view name);
// The entry to select after the list is rebuilt: the former one, else the
// first.
std::size_t restoredPaletteChoice(std::span<const PaletteChoice> choices, std::string_view former);

// 2^planes greys from black to white.
clsPalette greyPalette(int planes);
// The 32 game-format colours (64 bytes) that start at the first byte after
// the sub-images; none when the bytes end before them.
std::optional<clsPalette> paletteAfter(std::span<const std::uint8_t> bytes,
                                       const PictureFormat& format);

// The palette a choice gives for the picture the bytes hold: "After" falls
// back on grey when the bytes hold no palette after the sub-images; a BMP
// gives 2^planes table entries. Throws FileError naming a palette file that
// is missing or yields none.
clsPalette choosePalette(const PaletteChoice& choice, std::span<const std::uint8_t> bytes,
                         const PictureFormat& format);

} // namespace marvek
