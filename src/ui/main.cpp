// marvek: the level editor.
#include "app/SharedObjects.h"
#include "app/TerminationSignals.h"
#include "app/modMain.h"
#include "app/qtPaths.h"
#include "ui/EditorWindows.h"
#include "ui/MarvekApplication.h"
#include "ui/ProgramEnd.h"

#include <QSessionManager>

#include <cstdio>
#include <optional>

int main(int argc, char** argv) {
    marvek::MarvekApplication application(argc, argv);
    marvek::SharedObjects shared(marvek::toPath(QCoreApplication::applicationDirPath()),
                                 std::make_unique<marvek::QtCommonDialog>(),
                                 std::make_unique<marvek::QtMessageBox>());
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
