#pragma once

#include <chrono>
#include <functional>
#include <memory>

class QTimer;

namespace marvek {

// A timer that fires once after it is started; tests drive their own.
class SingleShotTimer {
public:
    virtual ~SingleShotTimer() = default;
    virtual void start(std::chrono::milliseconds delay) = 0;
    virtual void stop() = 0;
    virtual bool isActive() const = 0;
    // Called when a started timer runs out.
    virtual void onTimeout(std::function<void()> handler) = 0;

protected:
    SingleShotTimer() = default;
    SingleShotTimer(const SingleShotTimer&) = default;
    SingleShotTimer& operator=(const SingleShotTimer&) = default;
};

class QtSingleShotTimer final : public SingleShotTimer {
public:
    QtSingleShotTimer();
    ~QtSingleShotTimer() override;
    QtSingleShotTimer(const QtSingleShotTimer&) = delete;
    QtSingleShotTimer& operator=(const QtSingleShotTimer&) = delete;

    void start(std::chrono::milliseconds delay) override;
    void stop() override;
    bool isActive() const override;
    void onTimeout(std::function<void()> handler) override;

private:
    std::unique_ptr<QTimer> timer_;
};

// Keeps a recovery copy of unsaved work: the first change after the last
// copy starts one timer, and when it runs out the work is kept if it is
// still unsaved. Every change is so kept within one interval, without a
// write per edit.
class Autosave {
public:
    // Well inside the half minute of work a kill may cost.
    static constexpr std::chrono::seconds interval{10};

    struct Actions {
        std::function<bool()> hasUnsavedWork;
        // Writes the recovery copy.
        std::function<void()> keep;
    };

    Autosave(std::unique_ptr<SingleShotTimer> timer, Actions actions);

    // The work changed and is unsaved.
    void changed();
    // The work was saved or dropped: nothing is pending.
    void settled();

private:
    void timedOut();

    std::unique_ptr<SingleShotTimer> timer_;
    Actions actions_;
};

// Whether the recovery copy is being written, told to the user only when
// that changes: one box when writing starts to fail (a full disk, a folder
// made read-only or gone), one when it works again, none for each retry.
class RecoveryCopyHealth {
public:
    enum class Change { none, nowFailing, workingAgain };

    Change failed() noexcept;
    Change written() noexcept;
    bool failing() const noexcept { return failing_; }

private:
    bool failing_ = false;
};

} // namespace marvek
