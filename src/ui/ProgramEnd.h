#pragma once

#include <QString>

namespace marvek {

struct SharedObjects;
class EditorWindows;

// The ways the editor ends other than Quit: an unexpected error, a signal
// to terminate, the end of the desktop session. None of them loses a
// modified level.
class ProgramEnd {
public:
    ProgramEnd(SharedObjects& shared, EditorWindows& windows)
        : shared_(shared), windows_(windows) {}

    // Keeps a modified level as NAME.recovered and shows the error, naming
    // that file; the caller then ends the program.
    void afterError(const QString& description);
    // Keeps a modified level as NAME.recovered; the text to report, empty
    // when nothing needed keeping.
    QString beforeTermination();
    // Asks the closing question when the session lets the program ask,
    // otherwise keeps the work; true when the session may end.
    bool sessionEnding(bool mayAsk);

private:
    SharedObjects& shared_;
    EditorWindows& windows_;
};

} // namespace marvek
