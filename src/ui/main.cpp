// marvek: the level editor.
#include "app/SharedObjects.h"
#include "app/TerminationSignals.h"
#include "app/commandLine.h"
#include "app/desktopSetup.h"
#include "app/modMain.h"
#include "app/qtPaths.h"
#include "ui/EditorWindows.h"
#include "ui/MarvekApplication.h"
#include "ui/ProgramEnd.h"

#include <QSessionManager>
#include <QStringList>

#include <cstdio>
#include <optional>

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
    marvek::ProgramEnd ending(shared, windows);
    application.setErrorHandler(
        [&ending](const QString& description) { ending.afterError(description); });

    std::optional<int> terminatedWith;
    marvek::TerminationSignals terminations;
    QObject::connect(&terminations, &marvek::TerminationSignals::received,
                     [&ending, &terminatedWith](int signalNumber) {
                         const QString kept = ending.beforeTermination();
                         if (!kept.isEmpty()) {
                             std::fprintf(stderr, "marvek: %s\n", qPrintable(kept));
                         }
                         terminatedWith = marvek::TerminationSignals::exitStatusFor(signalNumber);
                         QCoreApplication::exit(*terminatedWith);
                     });
#ifndef QT_NO_SESSIONMANAGER
    QObject::connect(&application, &QGuiApplication::commitDataRequest,
                     [&ending](QSessionManager& session) {
                         if (!ending.sessionEnding(session.allowsInteraction())) {
                             session.cancel();
                         }
                         session.release();
                     });
#endif

    const auto ended = marvek::startProgram(shared, windows);
    // An error or a signal during start-up ends the program as it would later.
    if (application.hasFailed()) {
        return marvek::exitFailed;
    }
    if (terminatedWith) {
        return *terminatedWith;
    }
    if (ended) {
        return *ended;
    }
    return QCoreApplication::exec();
}
