#include "tool/png/pictureWriter.h"

#include "graphics/clsBackBuffer.h"
#include "graphics/clsSurface.h"
#include "graphics/pictureFiles.h"
#include "io/FileError.h"
#include "io/atomicWrite.h"
#include "native/marvek.h"

#include <QBuffer>
#include <QByteArray>
#include <QImage>

#include <algorithm>
#include <cstring>
#include <span>

namespace marvek {
namespace {

void savePng(const QImage& image, const std::filesystem::path& path) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (image.isNull() || !image.save(&buffer, "PNG")) {
        throw FileError(path, "the PNG could not be made");
    }
    writeFileAtomically(path, std::span(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                                        static_cast<std::size_t>(bytes.size())));
}

QList<QRgb> colourTable(const clsPalette& palette) {
    constexpr int indices = 256;
    QList<QRgb> table(indices, qRgb(0, 0, 0));
    const int known = std::min(palette.Count(), indices);
    for (int index = 0; index < known; ++index) {
        const auto entry = palette.Entry(index);
        table[index] = qRgb(getRed(entry), getGreen(entry), getBlue(entry));
    }
    return table;
}

} // namespace

void writePngFile(const clsBackBuffer& backBuffer, const std::filesystem::path& path) {
    const std::int32_t width = backBuffer.width();
    const std::int32_t height = backBuffer.height();
    const std::uint32_t* source = surfaceGetDataPtr(backBuffer.surface());
    if (source == nullptr || width <= 0 || height <= 0) {
        throw FileError(path, "there is no picture to write");
    }
    QImage image(width, height, QImage::Format_RGB32);
    for (std::int32_t y = 0; y < height && !image.isNull(); ++y) {
        auto* row = reinterpret_cast<std::uint32_t*>(image.scanLine(y));
        const std::uint32_t* from = source + static_cast<std::size_t>(y) * width;
        // The surface's fourth byte counts transparency; the export is opaque.
        for (std::int32_t x = 0; x < width; ++x) {
            row[x] = from[x] | 0xFF000000u;
        }
    }
    savePng(image, path);
}

void writePngFile(const clsSurface& picture, const std::filesystem::path& path) {
    const std::int32_t width = picture.planarWidth();
    const std::int32_t height = picture.planarHeight();
    if (width <= 0 || height <= 0) {
        throw FileError(path, "there is no picture to write");
    }
    QImage image(width, height, QImage::Format_Indexed8);
    image.setColorTable(colourTable(picture.palette()));
    for (std::int32_t y = 0; y < height && !image.isNull(); ++y) {
        std::memcpy(image.scanLine(y),
                    picture.ptrPlanar() +
                        static_cast<std::size_t>(y) * static_cast<std::size_t>(width),
                    static_cast<std::size_t>(width));
    }
    savePng(image, path);
}

void writePictureFile(const clsSurface& picture, const std::filesystem::path& path) {
    if (hasPngExtension(path.string())) {
        writePngFile(picture, path);
    } else {
        writePictureBitmap(picture, path);
    }
}

} // namespace marvek
