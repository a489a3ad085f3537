#pragma once

#include "native/handles.h"

#include <cstdint>
#include <filesystem>

namespace marvek {

// A bitmap font loaded by the native library, owned for its whole life.
class clsFont {
public:
    clsFont() = default;
    clsFont(clsFont&&) noexcept = default;
    clsFont& operator=(clsFont&&) noexcept = default;
    clsFont(const clsFont&) = delete;
    clsFont& operator=(const clsFont&) = delete;
    ~clsFont() = default;

    // Frees any font already loaded, then loads the image at path. On failure
    // the object holds no font and the result is false.
    bool loadFromFile(const std::filesystem::path& path);

    // The glyph surface, owned by the font (0 without a font).
    std::int32_t getSurface() const;
    std::int32_t handle() const noexcept { return font_.get(); }
    std::int32_t charWidth() const noexcept { return charWidth_; }
    std::int32_t charHeight() const noexcept { return charHeight_; }

private:
    UniqueFont font_;
    std::int32_t charWidth_ = 0;
    std::int32_t charHeight_ = 0;
};

} // namespace marvek
