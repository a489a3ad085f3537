// The main window's level bitmap export, benchmark, help and About box.
#include "ui/frmMain.h"

#include "app/SharedObjects.h"
#include "app/pictureSaveDialog.h"
#include "app/qtPaths.h"
#include "data/levelExport.h"
#include "data/openLevel.h"
#include "ui/LevelView.h"
#include "ui/frmAbout.h"
#include "ui/frmExportLevel.h"
#include "ui/frmStatus.h"

#include <QFileInfo>
#include <QStatusBar>

#include <exception>
#include <filesystem>
#include <system_error>

namespace marvek {
namespace {

const QString exportFilter =
    "Windows bitmap files (*.bmp)|*.bmp|PNG pictures (*.png)|*.png|All files (*.*)|*.*";
const QString benchmarkQuestion =
    "This will run a few rendering benchmarks. Do you want to continue?";

} // namespace

bool frmMain::fileExportBitmap() {
    const OpenedLevel* opened = openedLevel();
    if (opened == nullptr) {
        return false;
    }
    const clsLevel& level = opened->level;
    // Said before any question, so that nothing is asked in vain.
    if (const std::string problem = exportSizeProblem(level); !problem.empty()) {
        shared_.messages->show(this, toQString(problem), messageStyle::exclamation);
        return false;
    }
    const QString chosen = askPictureSavePath(
        *shared_.dialogs, *shared_.messages, this,
        {"Save Level Bitmap", exportFilter,
         QFileInfo(toQString(level.fileName)).completeBaseName() + ".bmp", exportFileName});
    if (chosen.isEmpty()) {
        return false;
    }
    const std::filesystem::path path = toPath(chosen);
    frmExportLevel& dialog = dialogs_.exportLevel;
    dialog.manualActivate(opened->specialSet);
    dialog.showModal();
    if (dialog.cancelled()) {
        return false;
    }

    setEnabled(false);
    dialogs_.status.setStatus("Rendering...");
    QString failure;
    try {
        const clsBackBuffer picture = renderLevelExport(
            level, opened->tileSet, opened->specialSet,
            {dialog.tagChoice(), dialog.renderAll(), {shared_.editorFont, editing_.alphaBlending}});
        dialogs_.status.setStatus("Saving...");
        writeExportPicture(picture, path);
    } catch (const std::exception& error) {
        failure = QString::fromStdString(error.what());
    }
    dialogs_.status.hideStatus();
    setEnabled(true);
    if (!failure.isEmpty()) {
        shared_.messages->show(this, "The level bitmap was not saved.\n\n" + failure,
                               messageStyle::exclamation);
        return false;
    }
    statusBar()->showMessage("The level bitmap was saved as " + chosen + ".");
    return true;
}

void frmMain::toolsBenchmark() {
    if (shared_.messages->show(this, benchmarkQuestion, messageStyle::yesNoQuestion) !=
            messageAnswer::yes ||
        currentView() == nullptr) {
        return;
    }
    LevelView& view = *currentView();
    const auto render = [&view](std::int32_t flags) {
        return [&view, flags] { view.renderOnly(flags); };
    };
    const std::vector<BenchmarkTest> tests{
        {"Render tiles", render(renderFlags::tiles)},
        {"Render specials",
         render(renderFlags::specials | renderFlags::oversizeMarks | renderFlags::outlines)},
        // Presenting ends on the screen: the picture box paints at once.
        {"Present backbuffer", [&view] { view.presentNow(); }}};
    const std::string results = runBenchmark(tests, tickClock_);
    shared_.messages->show(this, toQString(results), messageStyle::information);
}

void frmMain::aboutFAQ() {
    const std::filesystem::path page = shared_.applicationFolder / "faq" / "index.html";
    std::error_code error;
    if (!std::filesystem::is_regular_file(page, error)) {
        shared_.messages->show(this, "The help page " + toQString(page) + " does not exist.",
                               messageStyle::exclamation);
    } else if (!shared_.utils.shellOpen(page)) {
        shared_.messages->show(this,
                               "The help page " + toQString(page) +
                                   " could not be opened: this system has no program set to "
                                   "open web pages.",
                               messageStyle::exclamation);
    }
}

void frmMain::helpAbout() {
    dialogs_.about.showModal(shared_.editorFont);
}

} // namespace marvek
