#include "ui/ProgramEnd.h"

#include "app/SharedObjects.h"
#include "ui/EditorWindows.h"
#include "ui/LevelFileCommands.h"
#include "ui/frmMain.h"

namespace marvek {

void ProgramEnd::afterError(const QString& description) {
    frmMain* window = windows_.mainWindow();
    const QString kept = window != nullptr ? window->files().keepUnsavedWork() : QString();
    shared_.messages->showFatal(window, kept.isEmpty() ? description : description + "\n\n" + kept);
}

QString ProgramEnd::beforeTermination() {
    frmMain* window = windows_.mainWindow();
    if (window == nullptr) {
        return {};
    }
    return window->files().keepUnsavedWork();
}

bool ProgramEnd::sessionEnding(bool mayAsk) {
    frmMain* window = windows_.mainWindow();
    if (window == nullptr) {
        return true;
    }
    if (!mayAsk) {
        beforeTermination();
        return true;
    }
    return window->files().mayClose();
}

} // namespace marvek
