#include "app/TerminationSignals.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace marvek {
namespace {

constexpr std::array<int, 3> handledSignals{SIGTERM, SIGHUP, SIGINT};

// Written only by the signal handler, which may use nothing but plain data.
volatile std::sig_atomic_t writeEnd = -1;
std::array<struct sigaction, handledSignals.size()> formerActions{};

extern "C" void onTerminationSignal(int signalNumber) {
    const int savedErrno = errno;
    const auto byte = static_cast<unsigned char>(signalNumber);
    // A full pipe already holds a signal the loop has yet to read.
    [[maybe_unused]] const auto written = ::write(writeEnd, &byte, 1);
    errno = savedErrno;
}

bool makePipe(int (&ends)[2]) {
    if (::pipe(ends) != 0) {
        return false;
    }
    for (const int end : ends) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, ::fcntl(end, F_GETFL) | O_NONBLOCK);
    }
    return true;
}

} // namespace

TerminationSignals::TerminationSignals(QObject* parent) : QObject(parent) {
    if (writeEnd != -1) {
        return; // another instance listens already
    }
    int ends[2] = {-1, -1};
    if (!makePipe(ends)) {
        return;
    }
    readEnd_ = ends[0];
    writeEnd = ends[1];
    struct sigaction action {};
    action.sa_handler = onTerminationSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (std::size_t i = 0; i < handledSignals.size(); ++i) {
        ::sigaction(handledSignals[i], &action, &formerActions[i]);
    }
    notifier_ = std::make_unique<QSocketNotifier>(readEnd_, QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &TerminationSignals::readPending);
}

TerminationSignals::~TerminationSignals() {
    if (readEnd_ == -1) {
        return;
    }
    for (std::size_t i = 0; i < handledSignals.size(); ++i) {
        ::sigaction(handledSignals[i], &formerActions[i], nullptr);
    }
    notifier_.reset();
    ::close(writeEnd);
    writeEnd = -1;
    ::close(readEnd_);
}

void TerminationSignals::readPending() {
    unsigned char byte = 0;
    while (::read(readEnd_, &byte, 1) == 1) {
        emit received(byte);
    }
}

} // namespace marvek
