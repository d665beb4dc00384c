#include "platform/fake/virtualscheduler.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>
#include <vector>

namespace kestra {

namespace {
class VirtualTimer;
}

// State shared by the scheduler and its timers, so that either may outlive
// the other.
struct VirtualScheduler::Core {
    std::int64_t now = 0;
    std::uint64_t sequence = 0;  // orders things that fall due at the same time
    std::vector<VirtualTimer*> timers;
    std::map<std::pair<std::int64_t, std::uint64_t>, std::function<void()>> events;
};

namespace {

class VirtualTimer : public Timer {
public:
    explicit VirtualTimer(std::shared_ptr<VirtualScheduler::Core> core) : core_(std::move(core))
    {
        core_->timers.push_back(this);
    }

    ~VirtualTimer() override
    {
        *alive_ = false;
        auto& timers = core_->timers;
        timers.erase(std::remove(timers.begin(), timers.end(), this), timers.end());
    }

    void setInterval(int ms) override
    {
        interval_ = ms;
        if (enabled_) restart();
    }
    int interval() const override { return interval_; }

    void setEnabled(bool on) override
    {
        enabled_ = on;
        if (on) restart();
    }
    bool enabled() const override { return enabled_; }

    void setSingleShot(bool single) override { singleShot_ = single; }
    bool singleShot() const override { return singleShot_; }

    void setHandler(std::function<void()> handler) override
    {
        handler_ = std::make_shared<const std::function<void()>>(std::move(handler));
    }

    // Whether the timer takes part in the run: on, with an interval, and not
    // in the middle of its own handler.
    bool armed() const { return enabled_ && interval_ > 0 && !firing_; }
    std::pair<std::int64_t, std::uint64_t> key() const { return {due_, sequence_}; }

    void fire()
    {
        Core& core = *core_;
        core.now = std::max(core.now, due_);
        if (singleShot_) {
            enabled_ = false;
        } else {
            restart();
        }
        // The handler may destroy this timer, or replace its handler: hold on
        // to both the handler and the news of our own end.
        const auto handler = handler_;
        const auto alive = alive_;
        firing_ = true;
        if (handler && *handler) (*handler)();
        if (*alive) firing_ = false;
    }

private:
    using Core = VirtualScheduler::Core;

    void restart()
    {
        due_ = core_->now + std::max(interval_, 0);
        sequence_ = ++core_->sequence;
    }

    std::shared_ptr<Core> core_;
    std::shared_ptr<const std::function<void()>> handler_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
    int interval_ = 0;
    bool enabled_ = false;
    bool singleShot_ = false;
    bool firing_ = false;
    std::int64_t due_ = 0;
    std::uint64_t sequence_ = 0;
};

VirtualTimer* earliestTimer(const VirtualScheduler::Core& core)
{
    VirtualTimer* best = nullptr;
    for (VirtualTimer* timer : core.timers) {
        if (timer->armed() && (!best || timer->key() < best->key())) best = timer;
    }
    return best;
}

} // namespace

VirtualScheduler::VirtualScheduler() : core_(std::make_shared<Core>()) {}

VirtualScheduler::~VirtualScheduler() = default;

void VirtualScheduler::pause(int ms) { core_->now += std::max(ms, 0); }

std::int64_t VirtualScheduler::now() const
{
    return core_->now;
}

std::unique_ptr<Timer> VirtualScheduler::createTimer()
{
    return std::make_unique<VirtualTimer>(core_);
}

void VirtualScheduler::wait(double seconds)
{
    const double clamped = clampWait(seconds);
    if (clamped <= 0) return;
    advance(std::llround(clamped * 1000.0));
}

void VirtualScheduler::processEvents()
{
    while (step(core_->now)) {
    }
}

void VirtualScheduler::post(std::int64_t atMs, std::function<void()> fn)
{
    const std::int64_t at = std::max(atMs, core_->now);
    core_->events.emplace(std::make_pair(at, ++core_->sequence), std::move(fn));
}

void VirtualScheduler::advance(std::int64_t ms)
{
    const std::int64_t target = core_->now + std::max<std::int64_t>(ms, 0);
    while (step(target)) {
    }
    // A handler's own wait may already have carried the clock past the target.
    core_->now = std::max(core_->now, target);
}

bool VirtualScheduler::runUntil(const std::function<bool()>& done, std::int64_t limitMs)
{
    const std::int64_t target = core_->now + std::max<std::int64_t>(limitMs, 0);
    while (!done()) {
        if (!step(target)) {
            core_->now = std::max(core_->now, target);
            break;
        }
    }
    return done();
}

std::optional<std::int64_t> VirtualScheduler::nextDue() const
{
    std::optional<std::int64_t> due;
    if (!core_->events.empty()) due = core_->events.begin()->first.first;
    if (const VirtualTimer* timer = earliestTimer(*core_)) {
        const std::int64_t at = timer->key().first;
        if (!due || at < *due) due = at;
    }
    // Something overdue (a timer held back by its own running handler) runs
    // at the present time, not in the past.
    if (due) due = std::max(*due, core_->now);
    return due;
}

std::size_t VirtualScheduler::pendingEvents() const
{
    return core_->events.size();
}

bool VirtualScheduler::step(std::int64_t limit)
{
    Core& core = *core_;
    VirtualTimer* timer = earliestTimer(core);
    const bool haveEvent = !core.events.empty();
    if (!timer && !haveEvent) return false;

    if (haveEvent && (!timer || core.events.begin()->first < timer->key())) {
        auto first = core.events.begin();
        if (first->first.first > limit) return false;
        core.now = std::max(core.now, first->first.first);
        std::function<void()> fn = std::move(first->second);
        core.events.erase(first);
        if (fn) fn();
        return true;
    }
    if (timer->key().first > limit) return false;
    timer->fire();
    return true;
}

} // namespace kestra
