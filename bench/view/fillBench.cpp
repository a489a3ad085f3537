#include "fillBench.h"

#include "app/SharedObjects.h"
#include "app/clsCommonDialog.h"
#include "app/clsMessageBox.h"
#include "app/modMain.h"
#include "data/openLevel.h"
#include "specials/clsSpecialSet.h"
#include "ui/EditorWindows.h"
#include "ui/PictureBox.h"
#include "ui/frmMain.h"

#include <QApplication>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <stdexcept>
#include <vector>

namespace marvek {
namespace {

namespace fs = std::filesystem;

// A benchmark has no one to answer: every message is printed and taken as
// OK, or Cancel for a question.
class PrintedMessages final : public clsMessageBox {
public:
    int show(QWidget* /*owner*/, const QString& text, int style) override {
        std::fprintf(stderr, "message: %s\n", qPrintable(text));
        return (style & 7) == 0 ? messageAnswer::ok : messageAnswer::cancel;
    }
    void showFatal(QWidget* /*owner*/, const QString& text) override {
        std::fprintf(stderr, "fatal: %s\n", qPrintable(text));
    }
};

// A program folder of its own, so that the settings written are not the
// build's.
fs::path programFolder(const fs::path& applicationFolder, const fs::path& sampleData) {
    const fs::path folder = fs::temp_directory_path() / "marvek-bench-fill";
    fs::remove_all(folder);
    fs::create_directories(folder);
    for (const char* name : {"config", "fonts", "pal", "bitmaps", "faq"}) {
        fs::copy(applicationFolder / name, folder / name, fs::copy_options::recursive);
    }
    std::ofstream settings(folder / "marvek.cfg", std::ios::binary);
    settings << "thornwickData = \"" << sampleData.string()
             << "\";\r\ndefaultLevel = \"L1MA1\";\r\ndefaultConfig = \"world1\";\r\n"
                "editorFont = \"game\";\r\nalphaBlending = 1;\r\nundoLevels = 64;\r\n"
                "autoPlaceSpecials = 1;\r\nopenPanels = \"overview,specials,history\";\r\n";
    return folder;
}

// The processor time the program used: on a busy machine the wall clock
// counts other programs' turns too, and a fill is long enough to lose many.
double cpuMicros() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e6 + double(now.tv_nsec) / 1e3;
}

QPoint viewPoint(const frmMain& window, int x, int y) {
    const clsCamera& camera = window.levelCamera();
    return {PictureBox::border + (16 * x + 8 - camera.x) * 2,
            PictureBox::border + (16 * y + 8 - camera.y) * 2};
}

} // namespace

double skyFillMicros(const fs::path& applicationFolder, const fs::path& sampleData) {
    const fs::path folder = programFolder(applicationFolder, sampleData);
    SharedObjects shared(folder, std::make_unique<QtCommonDialog>(),
                         std::make_unique<PrintedMessages>());
    EditorWindows windows(shared);
    if (startProgram(shared, windows).has_value() || windows.mainWindow() == nullptr) {
        throw std::runtime_error("the editor did not start");
    }
    frmMain& window = *windows.mainWindow();
    window.resize(1280, 900);
    window.show();
    QApplication::processEvents();

    // Specials mode, the first special of the palette, the Bucket Fill.
    QTest::keyClick(&window, Qt::Key_S);
    auto& palette = *window.findChild<PictureBox*>("picPalette");
    const clsSpecialSet& set = window.openedLevel()->specialSet;
    QTest::mouseClick(&palette, Qt::LeftButton, {},
                      {40, PictureBox::border + set.rowBottoms().front() + 1});
    window.chooseTool(frmMain::Tool::bucketFill);
    auto& view = *window.findChild<PictureBox*>("picLevel");
    QApplication::processEvents();

    const QPoint sky = viewPoint(window, 5, 2);
    std::vector<double> runs;
    for (int run = 0; run < 6; ++run) {
        const double begin = cpuMicros();
        QTest::mouseClick(&view, Qt::LeftButton, {}, sky);
        QApplication::processEvents();
        const double end = cpuMicros();
        if (run > 0) {
            runs.push_back(end - begin);
        }
        window.editUndo();
        QApplication::processEvents();
    }
    fs::remove_all(folder);
    std::ranges::nth_element(runs, runs.begin() + std::ptrdiff_t(runs.size() / 2));
    return runs[runs.size() / 2];
}

} // namespace marvek
