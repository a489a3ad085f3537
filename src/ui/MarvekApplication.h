#pragma once

#include <QApplication>

#include <functional>

namespace marvek {

// The application object, which also stops an unexpected error in any event
// handler from tearing the program down unannounced.
class MarvekApplication : public QApplication {
    Q_OBJECT

public:
    // Told the error's description; it keeps what it can and ends the
    // program. Without one, an error ends the program at once.
    using ErrorHandler = std::function<void(const QString& description)>;

    MarvekApplication(int& argc, char** argv);

    void setErrorHandler(ErrorHandler handler) { errorHandler_ = std::move(handler); }
    bool notify(QObject* receiver, QEvent* event) override;

private:
    void failed(const QString& description);

    ErrorHandler errorHandler_;
    bool failing_ = false;
};

} // namespace marvek
