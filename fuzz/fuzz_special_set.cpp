// A configuration's special definitions loaded into a special set and set up
// against a sprite sheet, as opening a level does, then the palette strip
// drawn: a bad definition must fail with an error, never a crash.
#include "common/input.h"
#include "common/scratch.h"
#include "configuration/ConfigurationError.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsBitmap.h"
#include "graphics/clsCamera.h"
#include "graphics/clsFont.h"
#include "graphics/clsPalette.h"
#include "graphics/clsSurface.h"
#include "io/FileError.h"
#include "native/marvek.h"
#include "specials/SpecialDefinitionError.h"
#include "specials/clsSpecialSet.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>

namespace {

using marvek::fuzz::ScratchFolder;

marvek::clsPalette gamePalette() {
    marvek::clsPalette palette;
    for (std::uint32_t i = 0; i < marvek::clsPalette::gameEntries; ++i) {
        palette.addEntry(i * 0x070503u);
    }
    return palette;
}

// The game's 320 x 320 sheet, every pixel a colour of its own.
marvek::clsSurface spriteSheet(const marvek::clsPalette& palette) {
    marvek::clsSurface sheet;
    sheet.planarCreateEmpty(320, 320);
    for (std::int32_t i = 0; i < 320 * 320; ++i) {
        sheet.ptrPlanar()[i] = static_cast<std::uint8_t>((i / 7 + i / 320) % 32);
    }
    sheet.planarToSurface(palette, 0);
    return sheet;
}

// What the application folder holds for image specials and the strip's text.
struct World {
    ScratchFolder scratch;
    marvek::clsPalette palette = gamePalette();
    marvek::clsSurface sheet = spriteSheet(palette);
    marvek::clsFont font;

    World() {
        std::filesystem::create_directories(scratch / "bitmaps");
        marvek::clsSurface picture;
        picture.planarCreateEmpty(24, 12);
        marvek::clsBitmap bitmap;
        bitmap.createFromPlanarSurface(picture);
        bitmap.writeToFile(scratch / "bitmaps" / "door.bmp");
        font.loadFromFile(scratch / "bitmaps" / "door.bmp");
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool initialised = (renderInit(), true);
    static const World world;
    (void)initialised;
    const auto path = world.scratch.write("level.cfg", data, size);
    marvek::clsSpecialSet set;
    try {
        set.loadFrom(path);
        set.Init(world.sheet, world.palette, world.scratch.path());
    } catch (const marvek::FileError&) {
        return 0;
    } catch (const marvek::ConfigurationError&) {
        return 0;
    } catch (const marvek::SpecialDefinitionError&) {
        return 0;
    }
    for (std::int32_t id = 0; id <= marvek::clsSpecial::maximumId; ++id) {
        set.getSpecialLUT(id);
    }
    marvek::clsBackBuffer strip;
    if (strip.Create(120, 160, 1)) {
        marvek::clsCamera camera;
        camera.viewWidth = 120;
        camera.viewHeight = 160;
        const auto* selected = set.count() > 0 ? &set.getSpecial(set.count() - 1) : nullptr;
        set.renderTo(strip, camera, selected, world.font, true);
    }
    return 0;
}
