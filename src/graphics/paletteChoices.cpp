#include "graphics/paletteChoices.h"

#include "graphics/clsBitmap.h"
#include "graphics/pictureFiles.h"
#include "io/FileError.h"
#include "io/clsBitStream.h"
#include "io/findFile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

namespace marvek {
namespace {

struct RawPalette {
    const char* name;
    const char* file;
};

constexpr std::array<RawPalette, 8> rawPalettes{{
    {"World 1", "pal/world1.pal"},
    {"World 2", "pal/world2.pal"},
    {"World 3", "pal/world3.pal"},
    {"World 4", "pal/world4.pal"},
    {"World 5", "pal/world5.pal"},
    {"World 6", "pal/world6.pal"},
    {"Project Q", "pal/projectq.pal"},
    {"Boss", "pal/boss.pal"},
}};

// Two bytes a colour in the game's format.
constexpr std::size_t gamePaletteBytes = clsPalette::gameEntries * 2;

bool yieldsPalette(const std::filesystem::path& path) {
    clsBitmap bitmap;
    try {
        return bitmap.readFromFile(path) && bitmap.getPal(clsSurface::maximumPlanes).has_value();
    } catch (const FileError&) {
        return false;
    }
}

std::vector<PaletteChoice> bitmapChoices(const std::filesystem::path& folder) {
    std::vector<PaletteChoice> choices;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        PaletteChoice choice = paletteFileChoice(entry.path());
        if (choice.kind == PaletteChoice::Kind::bitmapFile && yieldsPalette(choice.file)) {
            choices.push_back(std::move(choice));
        }
    }
    std::sort(choices.begin(), choices.end(),
              [](const auto& a, const auto& b) { return a.name < b.name; });
    return choices;
}

clsPalette rawPalette(const std::filesystem::path& path) {
    clsPalette palette;
    if (!palette.loadRawFrom(path)) {
        throw FileError(path, "the palette file does not exist");
    }
    return palette;
}

clsPalette bitmapPalette(const std::filesystem::path& path, int planes) {
    clsBitmap bitmap;
    if (!bitmap.readFromFile(path)) {
        throw FileError(path, bitmap.refusal());
    }
    auto palette = bitmap.getPal(planes);
    if (!palette) {
        throw FileError(path, bitmap.planarRefusal());
    }
    return std::move(*palette);
}

} // namespace

std::vector<PaletteChoice> listPaletteChoices(const std::filesystem::path& applicationFolder) {
    std::vector<PaletteChoice> choices{{"Grey", PaletteChoice::Kind::grey, {}},
                                       {"After", PaletteChoice::Kind::after, {}}};
    for (const RawPalette& raw : rawPalettes) {
        choices.push_back(
            {raw.name, PaletteChoice::Kind::rawFile, findFile(applicationFolder, raw.file)});
    }
    auto bitmaps = bitmapChoices(findFile(applicationFolder, "pal"));
    choices.insert(choices.end(), std::make_move_iterator(bitmaps.begin()),
                   std::make_move_iterator(bitmaps.end()));
    return choices;
}

PaletteChoice paletteFileChoice(const std::filesystem::path& file) {
    const bool bitmap = lowerExtension(file) == ".bmp";
    return {file.filename().string(),
            bitmap ? PaletteChoice::Kind::bitmapFile : PaletteChoice::Kind::rawFile, file};
}

std::optional<std::size_t> findPaletteChoice(std::span<const PaletteChoice> choices,
                                             std::string_view name) {
    const auto found = std::find_if(choices.begin(), choices.end(),
                                    [name](const PaletteChoice& c) { return c.name == name; });
    if (found == choices.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - choices.begin());
}

std::size_t restoredPaletteChoice(std::span<const PaletteChoice> choices, std::string_view former) {
    return findPaletteChoice(choices, former).value_or(0);
}

clsPalette greyPalette(int planes) {
    const int levels = 1 << std::clamp(planes, 1, clsSurface::maximumPlanes);
    clsPalette palette;
    for (int i = 0; i < levels; ++i) {
        const auto grey = static_cast<std::uint32_t>(std::nearbyint(i * 255.0 / (levels - 1)));
        palette.addEntry(grey | grey << 8 | grey << 16);
    }
    return palette;
}

std::optional<clsPalette> paletteAfter(std::span<const std::uint8_t> bytes,
                                       const PictureFormat& format) {
    const std::uint64_t start = pictureEnd(format);
    if (start > bytes.size() || bytes.size() - start < gamePaletteBytes) {
        return std::nullopt;
    }
    auto buffer = std::make_shared<clsDataBuffer>();
    buffer->Create(static_cast<std::int32_t>(gamePaletteBytes));
    const auto from = bytes.subspan(static_cast<std::size_t>(start), gamePaletteBytes);
    std::copy(from.begin(), from.end(), buffer->data().begin());
    clsBitStream stream;
    stream.loadFromBuffer(std::move(buffer));
    clsPalette palette;
    palette.loadFrom(stream, clsPalette::gamePlanes);
    return palette;
}

clsPalette choosePalette(const PaletteChoice& choice, std::span<const std::uint8_t> bytes,
                         const PictureFormat& format) {
    switch (choice.kind) {
    case PaletteChoice::Kind::grey:
        break;
    case PaletteChoice::Kind::after:
        if (auto after = paletteAfter(bytes, format)) {
            return std::move(*after);
        }
        break;
    case PaletteChoice::Kind::rawFile:
        return rawPalette(choice.file);
    case PaletteChoice::Kind::bitmapFile:
        return bitmapPalette(choice.file, format.planes);
    case PaletteChoice::Kind::given:
        return choice.palette;
    }
    return greyPalette(format.planes);
}

} // namespace marvek
