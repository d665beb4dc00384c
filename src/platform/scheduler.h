#pragma once
// The one-thread timing model of the program: a clock, timer objects and the
// cooperative wait. Handlers never run on another thread; a timer or a port
// event may run inside someone else's wait, exactly as in an event loop.

#include <cstdint>
#include <functional>
#include <memory>

namespace kestra {

// A window-style timer: an interval in milliseconds, an enabled switch and a
// handler. Enabling a timer (or changing its interval while enabled) starts
// its countdown afresh. A repeating timer fires every interval until it is
// disabled; a single-shot timer disables itself before its handler runs.
class Timer {
public:
    virtual ~Timer() = default;
    virtual void setInterval(int ms) = 0;
    virtual int interval() const = 0;
    virtual void setEnabled(bool on) = 0;
    virtual bool enabled() const = 0;
    virtual void setSingleShot(bool single) = 0;
    virtual bool singleShot() const = 0;
    virtual void setHandler(std::function<void()> handler) = 0;
};

class Scheduler {
public:
    virtual ~Scheduler() = default;

    // Milliseconds since an arbitrary fixed origin.
    virtual std::int64_t now() const = 0;

    virtual std::unique_ptr<Timer> createTimer() = 0;

    // The program-wide cooperative delay. Zero or negative returns at once,
    // anything above 5 seconds is cut to 5. While it waits, due timers and
    // port events run (about ten times a second on a real clock).
    virtual void wait(double seconds) = 0;

    // Runs whatever events are due now, then returns (a "DoEvents").
    virtual void processEvents() = 0;

    // Lets time pass without running any handler: a busy wait that does not
    // yield, for code that must wait for a device right where it stands (the
    // rest of a reply line). What falls due meanwhile runs at the next yield.
    virtual void pause(int ms) = 0;

    // The longest a single wait lasts.
    static constexpr double maxWaitSeconds = 5.0;
    static double clampWait(double seconds)
    {
        if (!(seconds > 0)) return 0;
        return seconds > maxWaitSeconds ? maxWaitSeconds : seconds;
    }
};

// Convenience: a timer set up in one statement.
inline std::unique_ptr<Timer> makeTimer(Scheduler& scheduler, int intervalMs, bool singleShot,
                                        std::function<void()> handler)
{
    auto timer = scheduler.createTimer();
    timer->setInterval(intervalMs);
    timer->setSingleShot(singleShot);
    timer->setHandler(std::move(handler));
    return timer;
}

} // namespace kestra
