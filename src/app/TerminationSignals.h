#pragma once

#include <QObject>

#include <memory>

class QSocketNotifier;

namespace marvek {

// Turns SIGTERM, SIGHUP and SIGINT into a Qt signal on the event loop. The
// handler itself only writes the signal's number to a pipe, the one thing
// that is safe there; everything else runs later, as an ordinary event. One
// instance at a time (a second one stays silent); the former handlers come
// back when it goes.
class TerminationSignals final : public QObject {
    Q_OBJECT

public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

    // The status a program ends with after this signal, as a shell reports it.
    static int exitStatusFor(int signalNumber) noexcept { return 128 + signalNumber; }

signals:
    void received(int signalNumber);

private:
    void readPending();

    int readEnd_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace marvek
