#include "graphics/clsFont.h"

#include <string>

namespace marvek {

bool clsFont::loadFromFile(const std::filesystem::path& path) {
    font_.reset();
    charWidth_ = 0;
    charHeight_ = 0;
    const std::u8string utf8 = path.u8string();
    font_.reset(fontLoadFromBitmap(reinterpret_cast<const char*>(utf8.c_str())));
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
