// marvek: the level editor.
#include "app/SharedObjects.h"
#include "app/modMain.h"
#include "app/qtPaths.h"
#include "ui/EditorWindows.h"
#include "ui/MarvekApplication.h"
#include "ui/frmMain.h"

int main(int argc, char** argv) {
    marvek::MarvekApplication application(argc, argv);
    marvek::SharedObjects shared(marvek::toPath(QCoreApplication::applicationDirPath()),
                                 std::make_unique<marvek::QtCommonDialog>(),
                                 std::make_unique<marvek::QtMessageBox>());
    marvek::EditorWindows windows(shared);
    if (const auto ended = marvek::startProgram(shared, windows)) {
        return *ended;
    }
    application.setErrorHandler([&](const QString& description) {
        marvek::frmMain* window = windows.mainWindow();
        const QString kept = window != nullptr ? window->keepUnsavedWork() : QString();
        shared.messages->showFatal(window,
                                   kept.isEmpty() ? description : description + "\n\n" + kept);
    });
    return QCoreApplication::exec();
}
