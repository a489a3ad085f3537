#include "graphics/clsFont.h"

#include "graphics/clsSurface.h"
#include "graphics/pngRead.h"
#include "io/FileError.h"
#include "io/readFile.h"
#include "native/marvek.h"

#include <algorithm>
#include <string>
#include <vector>

namespace marvek {

namespace {

constexpr std::size_t signatureBytes = 8;

// The file's first bytes, fewer when it is shorter or cannot be read.
std::vector<std::uint8_t> leadingBytes(const std::filesystem::path& path) {
    try {
        return readFileStart(path, signatureBytes);
    } catch (const FileError&) {
        return {};
    }
}

// An indexed PNG's glyphs drawn as an 8-bit bitmap's would be: indices past
// its palette are black.
std::int32_t loadPngFont(const std::filesystem::path& path) {
    clsSurface glyphs;
    try {
        glyphs = decodeIndexedPng(readWholeFile(path));
    } catch (const std::exception&) {
        return 0;
    }
    clsPalette palette = glyphs.palette();
    while (palette.Count() < 256) {
        palette.addEntry(0);
    }
    if (!glyphs.planarToSurface(palette, -1)) {
        return 0;
    }
    return fontLoadFromSurface(glyphs.surface());
}

} // namespace

bool clsFont::loadFromFile(const std::filesystem::path& path) {
    font_.reset();
    charWidth_ = 0;
    charHeight_ = 0;
    if (isPngData(leadingBytes(path))) {
        font_.reset(loadPngFont(path));
    } else {
        const std::u8string utf8 = path.u8string();
        font_.reset(fontLoadFromBitmap(reinterpret_cast<const char*>(utf8.c_str())));
    }
    if (!font_) {
        return false;
    }
    charWidth_ = fontGetCharWidth(font_.get());
    charHeight_ = fontGetCharHeight(font_.get());
    return true;
}

std::int32_t clsFont::getSurface() const {
    return fontGetSurface(font_.get());
}

} // namespace marvek
