#include "platform/fake/virtualscheduler.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace kestra {
namespace {

using Log = std::vector<std::pair<std::string, std::int64_t>>;

TEST(VirtualScheduler, TimersAndEventsRunInTimeOrderWithTiesInOrderOfScheduling)
{
    VirtualScheduler s;
    Log log;
    auto note = [&](std::string name) { return [&log, &s, name] { log.emplace_back(name, s.now()); }; };

    s.post(200, note("early-post@200"));
    auto repeating = makeTimer(s, 300, false, note("repeat"));
    auto single = makeTimer(s, 200, true, note("single"));
    repeating->setEnabled(true);
    single->setEnabled(true);
    s.post(250, note("post@250"));
    s.post(200, note("late-post@200"));
    s.post(-5, note("past"));

    s.advance(700);

    const Log expected{{"past", 0},           {"early-post@200", 200}, {"single", 200}, {"late-post@200", 200},
                       {"post@250", 250},     {"repeat", 300},         {"repeat", 600}};
    EXPECT_EQ(log, expected);
    EXPECT_EQ(s.now(), 700);
    EXPECT_FALSE(single->enabled());
    EXPECT_TRUE(repeating->enabled());
    EXPECT_EQ(s.nextDue(), 900);
}

TEST(VirtualScheduler, SingleShotDisablesItselfBeforeItsHandlerAndMayReenable)
{
    VirtualScheduler s;
    std::vector<std::int64_t> times;
    std::unique_ptr<Timer> t = s.createTimer();
    t->setInterval(100);
    t->setSingleShot(true);
    t->setHandler([&] {
        EXPECT_FALSE(t->enabled());
        times.push_back(s.now());
        if (times.size() < 3) t->setEnabled(true);
    });
    t->setEnabled(true);
    s.advance(1000);
    EXPECT_EQ(times, (std::vector<std::int64_t>{100, 200, 300}));
}

TEST(VirtualScheduler, EnablingOrSettingTheIntervalRestartsTheCountdown)
{
    VirtualScheduler s;
    std::vector<std::int64_t> fired;
    auto t = makeTimer(s, 1000, true, [&] { fired.push_back(s.now()); });
    t->setEnabled(true);
    s.advance(600);
    t->setEnabled(true);  // already on: the countdown starts again
    s.advance(900);
    EXPECT_TRUE(fired.empty());
    s.advance(100);
    EXPECT_EQ(fired, (std::vector<std::int64_t>{1600}));

    t->setEnabled(true);
    s.advance(400);
    t->setInterval(300);
    s.advance(1000);
    EXPECT_EQ(fired, (std::vector<std::int64_t>{1600, 2300}));

    // A change of interval while off starts nothing.
    t->setInterval(50);
    s.advance(500);
    EXPECT_EQ(fired.size(), 2u);

    // Disabling forgets the pending firing.
    t->setEnabled(true);
    s.advance(20);
    t->setEnabled(false);
    s.advance(500);
    EXPECT_EQ(fired.size(), 2u);
    EXPECT_FALSE(s.nextDue().has_value());
}

TEST(VirtualScheduler, WaitIsClampedAndZeroOrLessReturnsAtOnce)
{
    VirtualScheduler s;
    bool ran = false;
    s.post(0, [&] { ran = true; });
    s.wait(0);
    s.wait(-1);
    s.wait(std::nan(""));
    EXPECT_EQ(s.now(), 0);
    EXPECT_FALSE(ran);

    s.wait(7);
    EXPECT_EQ(s.now(), 5000);
    EXPECT_TRUE(ran);

    s.wait(0.25);
    EXPECT_EQ(s.now(), 5250);
    s.advance(7000);  // the test's own clock has no cap
    EXPECT_EQ(s.now(), 12250);
}

TEST(VirtualScheduler, HandlersMayWaitAndOtherTimersRunInsideThatWait)
{
    VirtualScheduler s;
    Log log;
    auto ticker = makeTimer(s, 300, false, [&] { log.emplace_back("tick", s.now()); });
    auto waiter = makeTimer(s, 100, true, [&] {
        log.emplace_back("wait-begin", s.now());
        s.wait(1);
        log.emplace_back("wait-end", s.now());
    });
    ticker->setEnabled(true);
    waiter->setEnabled(true);

    s.wait(2);

    const Log expected{{"wait-begin", 100}, {"tick", 300},  {"tick", 600},  {"tick", 900},
                       {"wait-end", 1100},  {"tick", 1200}, {"tick", 1500}, {"tick", 1800}};
    EXPECT_EQ(log, expected);
    EXPECT_EQ(s.now(), 2000);

    // A wait inside a handler that outlasts the outer wait carries the clock
    // past the outer end; time never runs back.
    s.post(s.now() + 100, [&] { s.wait(1); });
    s.wait(0.5);
    EXPECT_EQ(s.now(), 3100);
}

TEST(VirtualScheduler, RepeatingTimerDoesNotReenterItsOwnHandler)
{
    VirtualScheduler s;
    std::vector<std::int64_t> times;
    int depth = 0;
    auto t = makeTimer(s, 100, false, [&] {
        ++depth;
        EXPECT_EQ(depth, 1);
        times.push_back(s.now());
        if (times.size() == 1) s.wait(0.35);
        --depth;
    });
    t->setEnabled(true);
    s.advance(700);
    // Held back during its own wait, it fires once on return, then keeps step.
    EXPECT_EQ(times, (std::vector<std::int64_t>{100, 450, 550, 650}));
}

TEST(VirtualScheduler, TimersMayBeDestroyedOrCreatedByHandlers)
{
    VirtualScheduler s;
    Log log;
    std::unique_ptr<Timer> self, victim, born;
    self = makeTimer(s, 100, false, [&] {
        log.emplace_back("self", s.now());
        self.reset();
    });
    auto killer = makeTimer(s, 200, true, [&] {
        log.emplace_back("killer", s.now());
        victim.reset();
        born = makeTimer(s, 50, true, [&] { log.emplace_back("born", s.now()); });
        born->setEnabled(true);
    });
    victim = makeTimer(s, 200, false, [&] { log.emplace_back("victim", s.now()); });
    self->setEnabled(true);
    killer->setEnabled(true);
    victim->setEnabled(true);

    s.advance(1000);

    const Log expected{{"self", 100}, {"killer", 200}, {"born", 250}};
    EXPECT_EQ(log, expected);
    EXPECT_EQ(self, nullptr);

    // A timer may outlive its scheduler.
    auto orphan = std::make_unique<VirtualScheduler>();
    auto left = makeTimer(*orphan, 10, false, [] {});
    left->setEnabled(true);
    orphan.reset();
    left->setEnabled(false);
    left.reset();
}

TEST(VirtualScheduler, TimersWithoutIntervalNeverFireAndDoNotHang)
{
    VirtualScheduler s;
    int fired = 0;
    auto zero = makeTimer(s, 0, false, [&] { ++fired; });
    auto negative = makeTimer(s, -5, false, [&] { ++fired; });
    zero->setEnabled(true);
    negative->setEnabled(true);
    s.processEvents();
    s.wait(5);
    EXPECT_EQ(fired, 0);
    EXPECT_TRUE(zero->enabled());
    EXPECT_FALSE(s.nextDue().has_value());

    EXPECT_FALSE(s.runUntil([&] { return fired > 0; }, 10000));
    EXPECT_EQ(s.now(), 15000);

    // Given an interval, the enabled timer starts counting from then.
    zero->setInterval(40);
    s.advance(100);
    EXPECT_EQ(fired, 2);
}

TEST(VirtualScheduler, RunUntilStopsAtTheEventThatSatisfiesIt)
{
    VirtualScheduler s;
    int count = 0;
    auto t = makeTimer(s, 70, false, [&] { ++count; });
    t->setEnabled(true);
    EXPECT_TRUE(s.runUntil([&] { return count == 3; }, 10000));
    EXPECT_EQ(s.now(), 210);

    // Already true: nothing runs.
    EXPECT_TRUE(s.runUntil([] { return true; }, 10000));
    EXPECT_EQ(s.now(), 210);
    EXPECT_EQ(count, 3);
}

TEST(VirtualScheduler, ProcessEventsRunsOnlyWhatIsDueNow)
{
    VirtualScheduler s;
    s.advance(500);
    std::vector<std::string> ran;
    s.post(500, [&] {
        ran.push_back("now");
        s.post(s.now(), [&] { ran.push_back("chained"); });
    });
    s.post(501, [&] { ran.push_back("later"); });
    EXPECT_EQ(s.pendingEvents(), 2u);
    s.processEvents();
    EXPECT_EQ(ran, (std::vector<std::string>{"now", "chained"}));
    EXPECT_EQ(s.now(), 500);
    EXPECT_EQ(s.pendingEvents(), 1u);
    EXPECT_EQ(s.nextDue(), 501);
}

} // namespace
} // namespace kestra
