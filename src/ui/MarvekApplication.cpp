#include "ui/MarvekApplication.h"

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
    // The handler's own message box runs events; a second error then only
    // ends the program.
    if (failing_ || !errorHandler_) {
        exit(1);
        return;
    }
    failing_ = true;
    errorHandler_(description);
    failing_ = false;
}

} // namespace marvek
