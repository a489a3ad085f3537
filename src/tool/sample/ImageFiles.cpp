#include "tool/sample/ImageFiles.h"

#include "graphics/clsBitmap.h"
#include "graphics/clsSurface.h"
#include "io/FileError.h"
#include "io/clsBitStream.h"

#include <algorithm>
#include <stdexcept>

namespace marvek::sample {
namespace {

clsSurface planarImage(const Canvas& canvas) {
    clsSurface image;
    if (!image.planarCreateEmpty(canvas.width(), canvas.height())) {
        throw std::length_error("the picture is too large");
    }
    std::copy(canvas.pixels().begin(), canvas.pixels().end(), image.ptrPlanar());
    return image;
}

} // namespace

std::vector<std::uint8_t> planarBytes(const Canvas& canvas, int planes) {
    clsBitStream stream;
    stream.Create();
    stream.autoExpand = true;
    planarImage(canvas).planarWriteTo(stream, planes);
    const auto data = stream.bufferGet()->data();
    return {data.begin(), data.end()};
}

void writeBitmap(const Canvas& canvas, const clsPalette& palette,
                 const std::filesystem::path& path) {
    clsSurface image = planarImage(canvas);
    image.setPalette(palette);
    clsBitmap bitmap;
    if (!bitmap.createFromPlanarSurface(image)) {
        throw FileError(path, "the picture is empty");
    }
    bitmap.writeToFile(path);
}

} // namespace marvek::sample
