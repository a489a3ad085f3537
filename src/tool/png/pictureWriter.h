#pragma once

// Writing pictures as PNG needs Qt's image classes, which the libraries
// below the editor do not use; the tool and the editor's windows both link
// this library for it.

#include <cstdint>
#include <filesystem>

namespace marvek {

class clsBackBuffer;
class clsSurface;

// The back buffer's picture as an opaque RGB PNG. Throws FileError.
void writePngFile(const clsBackBuffer& backBuffer, const std::filesystem::path& path);
// A planar picture as an indexed PNG whose colour table is its palette.
// Throws FileError.
void writePngFile(const clsSurface& picture, const std::filesystem::path& path);

// The graphics browser's export: PNG for a path ending in ".png" (any case),
// an 8-bit BMP for any other. Throws FileError.
void writePictureFile(const clsSurface& picture, const std::filesystem::path& path);

} // namespace marvek
