// marvek: the level editor.
#include "app/SharedObjects.h"
#include "app/commandLine.h"
#include "app/desktopSetup.h"
#include "app/modMain.h"
#include "app/qtPaths.h"
#include "ui/EditorWindows.h"
#include "ui/MarvekApplication.h"
#include "ui/frmMain.h"

#include <QStringList>

#include <cstdio>

namespace {

// Read before the application object exists, so that --help and a mistake
// need no display.
QStringList argumentList(int argc, char** argv) {
    QStringList arguments;
    for (int i = 0; i < argc; ++i) {
        arguments << QString::fromLocal8Bit(argv[i]);
    }
    return arguments;
}

} // namespace

int main(int argc, char** argv) {
    const auto parsed = marvek::parseCommandLine(argumentList(argc, argv), MARVEK_VERSION);
    if (!parsed.run) {
        std::fputs(parsed.exit.text.toLocal8Bit().constData(),
                   parsed.exit.toStandardError ? stderr : stdout);
        return parsed.exit.status;
    }
    marvek::MarvekApplication application(argc, argv);
    application.setApplicationVersion(MARVEK_VERSION);
    const auto program = marvek::toPath(QCoreApplication::applicationDirPath());
    const marvek::ProgramFolders folders = marvek::locateProgramFolders(
        program, marvek::standardUserFolders(), marvek::isWritableFolder(program));
    marvek::SharedObjects shared(folders.resourceFolder, std::make_unique<marvek::QtCommonDialog>(),
                                 std::make_unique<marvek::QtMessageBox>());
    if (const QString problem = marvek::useProgramFolders(shared, folders); !problem.isEmpty()) {
        shared.messages->show(nullptr, problem, marvek::messageStyle::exclamation);
    }
    marvek::useCommandLine(shared, *parsed.run);
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
