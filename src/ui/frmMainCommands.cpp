// The main window's menu commands: the options and the graphics, and the
// menus following the level in front.
#include "ui/frmMain.h"

#include "app/SharedObjects.h"
#include "app/qtPaths.h"
#include "app/settings.h"
#include "data/openLevel.h"
#include "ui/HistoryPanel.h"
#include "ui/LevelDocument.h"
#include "ui/LevelView.h"
#include "ui/PaletteStrip.h"
#include "ui/frmGraphics.h"
#include "ui/frmOptions.h"
#include "ui/frmStatus.h"

#include <QAction>
#include <QFileInfo>
#include <QLabel>

#include <exception>

namespace marvek {
namespace {

QString stepCaption(const QString& command, const std::string& step) {
    return step.empty() ? command : command + " " + toQString(step);
}

} // namespace

void frmMain::toolsOptions() {
    const QString formerData =
        toQString(settingText(shared_.settings, settingKey::thornwickData, {}));
    dialogs_.options.showModal();
    // File dialogs follow a new data folder until the user chooses another.
    if (shared_.dialogs->lastFolder() == formerData) {
        shared_.dialogs->setLastFolder(
            toQString(settingText(shared_.settings, settingKey::thornwickData, {})));
    }
    loadOptions();
    // Fewer undo levels drop the oldest steps: the menu and History follow.
    updateCommands();
    if (LevelView* view = currentView()) {
        view->scheduleRedraw();
    }
    palette_->redraw();
}

void frmMain::toolsGraphics() {
    LevelDocument* document = currentDocument();
    if (!dialogs_.graphics.showModal(document != nullptr ? &document->opened() : nullptr) ||
        document == nullptr) {
        return;
    }
    // An import replaced the level's own graphics: show the new pictures.
    try {
        document->rereadGraphics();
    } catch (const std::exception& error) {
        shared_.messages->show(this,
                               "The level's graphics could not be read again, so it shows them "
                               "as they were.\n\n" +
                                   QString::fromStdString(error.what()),
                               messageStyle::exclamation);
    }
}

void frmMain::updateCommands() {
    const LevelDocument* document = currentDocument();
    if (document != nullptr) {
        const QString name = QFileInfo(toQString(document->file())).completeBaseName();
        setWindowTitle(QString(applicationTitle) + " - " + name.toUpper() +
                       (document->isReadOnly() ? " (read-only)" : "") + "[*]");
        setWindowModified(document->modified());
    }
    const UndoHistory& steps = history();
    const std::string undo = steps.nextUndo();
    const std::string redo = steps.nextRedo();
    itmEditUndo_->setText(stepCaption("&Undo", undo));
    itmEditUndo_->setEnabled(!undo.empty());
    itmEditRedo_->setText(stepCaption("&Redo", redo));
    itmEditRedo_->setEnabled(!redo.empty());
    itmFileReload_->setEnabled(document != nullptr && !document->file().empty());
    if (historyPanel_ != nullptr) {
        historyPanel_->historyChanged(steps);
    }
    updateSelectionCommands();
    showZoom();
}

void frmMain::showZoom() {
    if (lblZoom_ != nullptr) {
        lblZoom_->setText(QString("Zoom %1%").arg(zoom()));
    }
}

} // namespace marvek
