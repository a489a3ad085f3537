// A Tiled map (TMX when the first byte is even, JSON otherwise) read as a
// level: it must be refused or taken without touching memory it does not
// own, and whatever is taken must write out as a map and read back the same.
#include "data/clsLevel.h"
#include "io/clsBitStream.h"
#include "maps/levelMap.h"
#include "maps/mapFiles.h"
#include "maps/tileSetPictures.h"

#include <cstdlib>
#include <string_view>

namespace {

marvek::TiledTileSet tileSetNamed(const std::string& source) {
    marvek::TiledTileSet tileSet = marvek::tilesTileSet(source, source + ".png");
    if (source.starts_with("s")) {
        tileSet.tileCount = marvek::mapSpecialCount;
        tileSet.properties.front().value = marvek::tiledNames::specialsLayer;
    }
    return tileSet;
}

marvek::LevelFile baseLevel() {
    marvek::LevelFile base;
    base.level.width = 3;
    base.level.height = 2;
    base.level.resizeCells();
    return base;
}

std::string savedBytes(const marvek::LevelFile& file) {
    marvek::clsBitStream stream;
    stream.Create();
    stream.autoExpand = true;
    file.level.writeTo(stream, file.palette);
    const auto data = stream.bufferGet()->data();
    return file.magic + std::string(data.begin(), data.end());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) {
        return 0;
    }
    const bool xml = data[0] % 2 == 0;
    const std::string_view text(reinterpret_cast<const char*>(data + 1), size - 1);
    const marvek::LevelFile base = baseLevel();
    marvek::LevelFromMap read;
    try {
        const marvek::TiledMap map =
            xml ? marvek::readTmx(text, tileSetNamed) : marvek::readTmj(text, tileSetNamed);
        read = marvek::levelFromMap(map, &base);
    } catch (const std::runtime_error&) {
        return 0;
    }
    const marvek::TiledMap again = marvek::mapFromLevel(read.file, "t", "s");
    const std::string written = xml ? marvek::writeTmx(again, marvek::LayerFormat::csv)
                                    : marvek::writeTmj(again, marvek::LayerFormat::zlib);
    const marvek::TiledMap reread =
        xml ? marvek::readTmx(written, tileSetNamed) : marvek::readTmj(written, tileSetNamed);
    if (savedBytes(marvek::levelFromMap(reread, nullptr).file) != savedBytes(read.file)) {
        std::abort();
    }
    return 0;
}
