// Tile sets of any length and plane count, then the tile browser drawn from
// them: no tile may be read or drawn outside its memory.
#include "common/input.h"
#include "data/clsTileSet.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsCamera.h"
#include "graphics/clsPalette.h"
#include "graphics/clsRectangle.h"
#include "native/marvek.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool initialised = (renderInit(), true);
    (void)initialised;
    marvek::fuzz::Input input(data, size);
    const int planes = input.byte() % 10;
    const std::int32_t scroll = input.byte();
    marvek::clsPalette palette;
    for (std::uint32_t i = 0; i < 1u << (planes % 6); ++i) {
        palette.addEntry(i * 0x050301u);
    }
    auto stream = marvek::fuzz::streamOver(input.rest());
    marvek::clsTileSet tiles;
    tiles.loadFrom(stream, palette, planes);
    if (tiles.count() !=
        (planes >= 1 && planes <= 8 ? marvek::tileCountOf(stream.Size(), planes) : 0)) {
        std::abort();
    }
    if (tiles.count() == 0) {
        return 0;
    }
    tiles.Tile(tiles.count() - 1);
    marvek::clsBackBuffer browser;
    if (browser.Create(marvek::clsTileSet::tileSize * 5, 48, 1)) {
        marvek::clsCamera camera;
        camera.viewWidth = browser.width();
        camera.viewHeight = browser.height();
        camera.levelHeight = 100000;
        camera.Move(0, scroll);
        tiles.renderTo(browser, camera);
        marvek::clsRectangle selection;
        selection.width = 3;
        selection.height = 2;
        tiles.renderSelected(browser, selection, camera, 80);
    }
    return 0;
}
