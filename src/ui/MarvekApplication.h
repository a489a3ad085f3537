#pragma once

#include <QApplication>

#include <functional>

namespace marvek {

// The application object, which also stops an unexpected error in any event
// handler from tearing the program down unannounced.
class MarvekApplication : public QApplication {
    Q_OBJECT

public:
    // Told the error's description; it keeps what it can and shows the
    // error. Then every event loop ends with exitFailed.
    using ErrorHandler = std::function<void(const QString& description)>;

    MarvekApplication(int& argc, char** argv);

    void setErrorHandler(ErrorHandler handler) { errorHandler_ = std::move(handler); }
    bool notify(QObject* receiver, QEvent* event) override;
    // An error reached the application; the program is ending.
    bool hasFailed() const noexcept { return failed_; }

private:
    void failed(const QString& description);

    ErrorHandler errorHandler_;
    bool handling_ = false;
    bool failed_ = false;
};

} // namespace marvek
