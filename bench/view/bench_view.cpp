// marvek-bench-view: what redrawing the editor's level view costs, against
// copying the shown frame's bytes. Printed as NAME: OURS REF RATIO
// (microseconds; ratio = ours / reference), as marvek-tool bench prints.
#include "fillBench.h"

#include "data/openLevel.h"
#include "graphics/clsFont.h"
#include "tool/benchTiming.h"
#include "ui/PictureBox.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <vector>

namespace marvek {
namespace {

constexpr std::int32_t viewWidth = 1280;
constexpr std::int32_t viewHeight = 720;

// The editor's redraw: the level under the camera with the Tiles mode's
// flags and the brush preview, then presented into the picture box's image.
double redrawMicros(const OpenedLevel& world, const clsFont& font, PictureBox& box,
                    std::int32_t zoom) {
    clsBackBuffer buffer;
    buffer.Create(viewWidth / zoom, viewHeight / zoom, zoom);
    clsCamera camera;
    camera.viewWidth = buffer.width();
    camera.viewHeight = buffer.height();
    camera.levelWidth = world.level.width * world.level.tileSpacing;
    camera.levelHeight = world.level.height * world.level.tileSpacing;
    // Framed where the level's ground and objects are.
    camera.Move(camera.levelWidth / 3, camera.levelHeight);
    TileGrid brush(2, 2);
    const clsRenderOptions options(font);
    return tool::medianMicros(
        [&] {
            world.level.renderTo(buffer, camera, world.tileSet, world.specialSet, 13, options);
            world.level.renderSelectMap(buffer, camera, world.tileSet, brush, 200, 150);
            buffer.Present(box);
        },
        200);
}

double frameCopyMicros() {
    const std::size_t bytes = std::size_t{viewWidth} * viewHeight * 4;
    std::vector<std::uint8_t> from(bytes, 1);
    std::vector<std::uint8_t> to(bytes);
    return tool::medianMicros(
        [&] {
            std::memcpy(to.data(), from.data(), bytes);
            tool::keep(to[bytes / 2]);
        },
        200);
}

void printFigure(const char* name, double ours, double reference) {
    std::printf("%s: %.1f %.1f %.2f\n", name, ours, reference, ours / reference);
}

} // namespace
} // namespace marvek

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication application(argc, argv);
    try {
        marvek::OpenLevelRequest request;
        request.applicationFolder = MARVEK_APP_DIR;
        request.dataFolder = MARVEK_SAMPLE_DATA;
        request.levelFile = "L1MA1";
        request.configuration = "world1";
        const marvek::OpenedLevel world = marvek::openLevel(request);
        marvek::clsFont font;
        font.loadFromFile(request.applicationFolder / "fonts" / "game.bmp");
        marvek::PictureBox box;
        box.resize(marvek::viewWidth + 4, marvek::viewHeight + 4);
        const double reference = marvek::frameCopyMicros();
        marvek::printFigure("view-redraw-zoom1", marvek::redrawMicros(world, font, box, 1),
                            reference);
        const double redraw = marvek::redrawMicros(world, font, box, 2);
        marvek::printFigure("view-redraw-zoom2", redraw, reference);
        // Against one redraw of the view, not against a frame's bytes.
        marvek::printFigure("sky-fill-all-panels",
                            marvek::skyFillMicros(request.applicationFolder, request.dataFolder),
                            redraw);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "marvek-bench-view: %s\n", error.what());
        return 1;
    }
    return 0;
}
