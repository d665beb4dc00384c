#pragma once
// The scheduler of the desktop program: the monotonic clock, QTimer timers and
// a wait that keeps the event loop running while it waits.

#include "platform/scheduler.h"

#include <QElapsedTimer>

namespace kestra {

class QtScheduler : public Scheduler {
public:
    QtScheduler();

    // Milliseconds since the scheduler was made, from a monotonic clock.
    std::int64_t now() const override;

    // Timers with an interval of 0 or less never fire, like a window timer
    // with interval 0 (a QTimer with 0 would fire whenever the loop is idle).
    std::unique_ptr<Timer> createTimer() override;

    // Runs the event loop until the clamped time has passed. Timers, port
    // events and user input are handled throughout; a handler that runs here
    // may wait in turn.
    void wait(double seconds) override;

    void processEvents() override;
    void pause(int ms) override;

private:
    QElapsedTimer clock_;
};

} // namespace kestra
