#include "ui/MarvekApplication.h"

#include "app/modMain.h"

#include <exception>

namespace marvek {

MarvekApplication::MarvekApplication(int& argc, char** argv) : QApplication(argc, argv) {
    setApplicationName("Marvek");
}

bool MarvekApplication::notify(QObject* receiver, QEvent* event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::exception& error) {
        failed(QString::fromStdString(error.what()));
    } catch (...) {
        failed("An unknown error occurred.");
    }
    return false;
}

void MarvekApplication::failed(const QString& description) {
    failed_ = true;
    // The handler's own message box runs events; a second error then only
    // ends the program.
    if (!handling_ && errorHandler_) {
        handling_ = true;
        errorHandler_(description);
        handling_ = false;
    }
    // The level may be half changed: going on could only make it worse.
    exit(exitFailed);
}

} // namespace marvek
