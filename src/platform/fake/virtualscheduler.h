#pragma once
// A scheduler on a virtual clock, for the tests and for kestractl. Time stands
// still until someone waits or advances it; then every timer and posted event
// that falls due on the way runs in time order, with now() equal to its due
// time while it runs. A transfer that takes minutes of scanner time runs in a
// fraction of a second.

#include "platform/scheduler.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace kestra {

class VirtualScheduler : public Scheduler {
public:
    VirtualScheduler();
    ~VirtualScheduler() override;
    VirtualScheduler(const VirtualScheduler&) = delete;
    VirtualScheduler& operator=(const VirtualScheduler&) = delete;

    // Milliseconds of virtual time since the scheduler was made.
    std::int64_t now() const override;

    // Timers with an interval of 0 or less never fire, as a window timer with
    // interval 0 does not. A timer whose handler is still running (inside a
    // wait of its own) does not fire again until the handler returns.
    std::unique_ptr<Timer> createTimer() override;

    // Advances virtual time by the clamped number of seconds, running what
    // falls due on the way. May be called from inside a handler.
    void wait(double seconds) override;

    // Runs what is due at the present time, without moving the clock.
    void processEvents() override;

    // Moves the clock on without running anything.
    void pause(int ms) override;

    // Runs fn at virtual time atMs (at once, on the next run, when atMs is
    // already past). Events due at the same time run in the order they were
    // posted, and in order with timers that fall due at that time.
    void post(std::int64_t atMs, std::function<void()> fn);
    void postAfter(std::int64_t delayMs, std::function<void()> fn) { post(now() + delayMs, std::move(fn)); }

    // Like wait, without the five-second cap. Negative counts as zero.
    void advance(std::int64_t ms);

    // Runs timers and events in order until done() holds or limitMs of virtual
    // time have passed from now. Returns done(). When done() never holds, the
    // clock ends at now + limitMs.
    bool runUntil(const std::function<bool()>& done, std::int64_t limitMs);

    // When the next timer or event is due, if any.
    std::optional<std::int64_t> nextDue() const;

    // Posted events not yet run.
    std::size_t pendingEvents() const;

    struct Core;

private:
    // Runs the earliest timer or event that is due at or before limit.
    // Returns false when there is none.
    bool step(std::int64_t limit);

    std::shared_ptr<Core> core_;
};

} // namespace kestra
