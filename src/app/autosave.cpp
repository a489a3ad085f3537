#include "app/autosave.h"

#include <QTimer>

#include <utility>

namespace marvek {

QtSingleShotTimer::QtSingleShotTimer() : timer_(std::make_unique<QTimer>()) {
    timer_->setSingleShot(true);
}

QtSingleShotTimer::~QtSingleShotTimer() = default;

void QtSingleShotTimer::start(std::chrono::milliseconds delay) {
    timer_->start(delay);
}

void QtSingleShotTimer::stop() {
    timer_->stop();
}

bool QtSingleShotTimer::isActive() const {
    return timer_->isActive();
}

void QtSingleShotTimer::onTimeout(std::function<void()> handler) {
    QObject::connect(timer_.get(), &QTimer::timeout, timer_.get(), std::move(handler));
}

Autosave::Autosave(std::unique_ptr<SingleShotTimer> timer, Actions actions)
    : timer_(std::move(timer)), actions_(std::move(actions)) {
    timer_->onTimeout([this] { timedOut(); });
}

void Autosave::changed() {
    if (!timer_->isActive()) {
        timer_->start(interval);
    }
}

void Autosave::settled() {
    timer_->stop();
}

void Autosave::timedOut() {
    if (actions_.hasUnsavedWork()) {
        actions_.keep();
    }
}

RecoveryCopyHealth::Change RecoveryCopyHealth::failed() noexcept {
    if (failing_) {
        return Change::none;
    }
    failing_ = true;
    return Change::nowFailing;
}

RecoveryCopyHealth::Change RecoveryCopyHealth::written() noexcept {
    if (!failing_) {
        return Change::none;
    }
    failing_ = false;
    return Change::workingAgain;
}

} // namespace marvek
