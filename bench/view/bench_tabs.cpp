// marvek-bench-tabs: what an edit, a tab switch and more open levels cost in
// the editor's document and view, against one redraw of the view. Printed
// as NAME: OURS REF RATIO (microseconds, or megabytes for memory).
#include "app/SharedObjects.h"
#include "app/autosave.h"
#include "data/openLevel.h"
#include "tool/benchTiming.h"
#include "ui/EditingState.h"
#include "ui/LevelDocument.h"
#include "ui/LevelView.h"
#include "ui/ToolBox.h"

#include <QApplication>
#include <QStackedWidget>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <memory>
#include <unistd.h>
#include <vector>

namespace marvek {
namespace {

constexpr std::int32_t viewWidth = 1280;
constexpr std::int32_t viewHeight = 720;

OpenedLevel openSample(const char* name) {
    OpenLevelRequest request;
    request.applicationFolder = MARVEK_APP_DIR;
    request.dataFolder = MARVEK_SAMPLE_DATA;
    request.levelFile = name;
    request.configuration = "world1";
    return openLevel(request);
}

// The sample's graphics over a 1024 x 1024 map of its cells, repeated.
std::unique_ptr<OpenedLevel> largeLevel() {
    auto opened = std::make_unique<OpenedLevel>(openSample("L1MA1"));
    const clsLevel small = opened->level;
    clsLevel& level = opened->level;
    level.width = 1024;
    level.height = 1024;
    level.resizeCells();
    for (std::int32_t y = 0; y < level.height; ++y) {
        for (std::int32_t x = 0; x < level.width; ++x) {
            level.cellAt(x, y) = small.cellAt(x % small.width, y % small.height);
        }
    }
    return opened;
}

double residentMegabytes() {
    long pages = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    return double(resident) * double(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

void printFigure(const char* name, double ours, double reference) {
    std::printf("%s: %.1f %.1f %.2f\n", name, ours, reference, ours / reference);
}

class Bench {
public:
    Bench() : shared_(MARVEK_APP_DIR, nullptr, nullptr), services_{shared_, editing_, tools_} {
        // The Select tool draws nothing over the level.
        editing_.tool = EditTool::select;
        stack_.resize(viewWidth + 20, viewHeight + 20);
        stack_.show();
    }

    LevelView& open(std::unique_ptr<OpenedLevel> opened) {
        documents_.push_back(std::make_unique<LevelDocument>(
            std::move(opened), "world1", MARVEK_APP_DIR, std::make_unique<QtSingleShotTimer>()));
        auto* view = new LevelView(*documents_.back(), services_, &stack_);
        stack_.addWidget(view);
        return *view;
    }

    void show(LevelView& view) {
        stack_.setCurrentWidget(&view);
        view.resize(viewWidth + 20, viewHeight + 20);
    }

    double redrawMicros(LevelView& view) {
        return tool::medianMicros(
            [&] {
                view.scheduleRedraw();
                tool::keep(view.backBuffer().width());
            },
            200);
    }

    // nameBySpecials: the step's name counts the specials it replaced, as a
    // paint with auto-place does.
    double oneCellEditMicros(LevelView& view, bool nameBySpecials = false) {
        LevelDocument& document = view.document();
        std::int16_t tile = 0;
        return tool::medianMicros(
            [&] {
                tile = static_cast<std::int16_t>((tile + 1) % 512);
                document.edit(
                    "Paint", {500, 500, 500, 500},
                    [tile, nameBySpecials](clsLevel& level) {
                        level.cellAt(500, 500).tile = tile;
                        if (nameBySpecials) {
                            level.cellAt(500, 500).special = static_cast<std::uint8_t>(tile % 7);
                        }
                    },
                    nameBySpecials);
                tool::keep(view.backBuffer().width());
            },
            200);
    }

    // One undo or redo of a one-cell step, alternately.
    double undoOneCellMicros(LevelView& view) {
        LevelDocument& document = view.document();
        bool undoing = false;
        return tool::medianMicros(
            [&] {
                undoing = !undoing;
                const bool done = undoing ? document.undo() : document.redo();
                tool::keep(view.backBuffer().width() + (done ? 1 : 0));
            },
            200);
    }

    double switchMicros(LevelView& one, LevelView& other) {
        bool first = true;
        return tool::medianMicros(
            [&] {
                first = !first;
                stack_.setCurrentWidget(first ? &one : &other);
                tool::keep((first ? one : other).backBuffer().width());
            },
            200);
    }

private:
    SharedObjects shared_;
    EditingState editing_;
    ToolBox tools_{editing_};
    ViewServices services_;
    QStackedWidget stack_;
    std::vector<std::unique_ptr<LevelDocument>> documents_;
};

} // namespace
} // namespace marvek

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication application(argc, argv);
    try {
        using namespace marvek;
        Bench bench;
        LevelView& large = bench.open(largeLevel());
        bench.show(large);
        const double largeRedraw = bench.redrawMicros(large);
        printFigure("edit-one-cell-1024x1024", bench.oneCellEditMicros(large), largeRedraw);
        printFigure("edit-one-cell-named-by-specials-1024x1024",
                    bench.oneCellEditMicros(large, true), largeRedraw);
        printFigure("undo-one-cell-1024x1024", bench.undoOneCellMicros(large), largeRedraw);
        const double historyMegabytes =
            double(large.document().history().bytes()) / (1024.0 * 1024.0);
        std::printf("memory-history-1024x1024: %.1f MB for %zu one-cell steps\n", historyMegabytes,
                    large.document().history().size());

        LevelView& sample = bench.open(std::make_unique<OpenedLevel>(openSample("L1MA1")));
        LevelView& other = bench.open(std::make_unique<OpenedLevel>(openSample("L1MA2")));
        bench.show(sample);
        const double redraw = bench.redrawMicros(sample);
        printFigure("switch-tab", bench.switchMicros(sample, other), redraw);

        const double before = residentMegabytes();
        for (int i = 0; i < 20; ++i) {
            bench.open(std::make_unique<OpenedLevel>(openSample(i % 2 == 0 ? "L1MA1" : "L1MA2")));
        }
        const double added = residentMegabytes() - before;
        std::printf("memory-20-more-levels: %.1f MB (goal 40 MB) %.2f\n", added, added / 40.0);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "marvek-bench-tabs: %s\n", error.what());
        return 1;
    }
    return 0;
}
