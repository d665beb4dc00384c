// The Virtual Control's poll loop against the in-process virtual scanner in
// virtual time: the cycles, the watchdog and its message, option12, HOLD, and
// replies that are lost or never whole.

#include "vcontrol/controlloop.h"

#include "platform/fake/scripteddialogs.h"
#include "platform/fake/virtualscheduler.h"
#include "sim/virtualport.h"
#include "sim/traffic.h"
#include "sim/virtualscanner.h"
#include "support/testfiles.h"
#include "vcontrol/statereport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace kestra {
namespace {

struct LoopRig {
    VirtualScheduler scheduler;
    ScriptedDialogs dialogs;
    test::TempDir dir;
    sim::VirtualScanner scanner{Model::BC785D};
    std::shared_ptr<VirtualDevice> device = std::make_shared<VirtualDevice>();
    // What the scanner answers goes through here: tests cut it.
    std::function<std::string(const std::string& command, std::string reply)> line;
    std::vector<std::string> sent;
    std::vector<std::string> statuses;
    std::unique_ptr<ControlLoop> loop;
    std::string heard;

    explicit LoopRig(bool retryforever = false)
    {
        device->baud = [this] { return scanner.baudRate(); };
        device->respond = [this](std::string_view bytes) {
            std::string out;
            scanner.advanceTo(scheduler.now());
            for (char c : bytes) {
                heard += c;
                if (c != '\r') continue;
                std::string reply = scanner.receive(heard);
                const std::string command = heard.substr(0, heard.size() - 1);
                heard.clear();
                out += line ? line(command, reply) : reply;
            }
            return out;
        };
        LinkSettings settings;
        settings.retryforever = retryforever;
        loop = std::make_unique<ControlLoop>(scheduler, dialogs, std::make_unique<VirtualPort>(scheduler, device),
                                             settings);
        loop->onSend = [this](const std::string& c) { sent.push_back(c.substr(0, c.size() - 1)); };
        loop->hooks.status = [this](const std::string& s) { statuses.push_back(s); };
    }

    void open()
    {
        ModelSwitches model = ModelSwitches::of(Model::BC785D);
        loop->open(dir.path(), model);
    }
    void run(double seconds) { scheduler.advance(static_cast<std::int64_t>(seconds * 1000)); }
    void deafen() { line = [](const std::string&, std::string) { return std::string(); }; }
};

TEST(ControlLoop, PollsInItsCyclesAndReadsTheDisplay)
{
    LoopRig rig;
    rig.scanner.command("MA020");  // resting in manual mode: the long cycle
    rig.open();
    EXPECT_EQ(std::vector<std::string>(rig.sent.begin(), rig.sent.begin() + 5),
              (std::vector<std::string>{"IDF", "CDF", "QUF", "VR", "SI"}));
    rig.run(10);
    EXPECT_EQ(rig.loop->retries(), 0);
    EXPECT_EQ(rig.loop->pollfast(), 0);
    const std::vector<std::string> longCycle{"LCD", "ST", "SQ", "SG", "SQ", "MD", "RM", "SQ", "AT", "IS", "SB", "CB", "TB"};
    const auto first = std::find(rig.sent.begin(), rig.sent.end(), "LCD");
    ASSERT_GE(rig.sent.end() - first, 26);
    EXPECT_EQ(std::vector<std::string>(first, first + 13), longCycle);
    EXPECT_EQ(std::vector<std::string>(first + 13, first + 26), longCycle);
    EXPECT_NE(rig.loop->state().lcdline[0].find("C 020"), std::string::npos);
    EXPECT_EQ(rig.loop->state().modenumber, "01");
    EXPECT_TRUE(rig.dialogs.shown.empty());
    // The model reply went to version.ini.
    const std::string version = test::readBytes(rig.dir.path() / "version.ini");
    EXPECT_NE(version.find("SI BC785D,"), std::string::npos);
    EXPECT_EQ(version.find('\r'), version.size() - 2);

    // Scanning: the short cycle keeps the display fresh.
    rig.scanner.command("KEY01");
    rig.sent.clear();
    rig.run(5);
    EXPECT_EQ(rig.loop->pollfast(), 1);
    const auto lcd = std::find(rig.sent.begin(), rig.sent.end(), "LCD");
    ASSERT_GE(rig.sent.end() - lcd, 6);
    EXPECT_EQ(std::vector<std::string>(lcd, lcd + 6), (std::vector<std::string>{"LCD", "MD", "TB", "LCD", "MD", "TB"}));
}

TEST(ControlLoop, AScannerThatStopsAnsweringGivesTheMessageAfterTwentyOneFailuresAndHoldRestarts)
{
    LoopRig rig;
    rig.open();
    rig.run(3);
    ASSERT_EQ(rig.loop->retries(), 0);
    rig.deafen();

    // Each failure reopens the port; the message comes once, at the 21st.
    rig.scheduler.runUntil([&] { return rig.loop->retries() == ControlLoop::kHoldRetries; }, 120'000);
    EXPECT_TRUE(rig.dialogs.shown.empty());
    rig.scheduler.runUntil([&] { return !rig.dialogs.shown.empty(); }, 120'000);
    ASSERT_EQ(rig.dialogs.shown.size(), 1u);
    EXPECT_EQ(rig.dialogs.shown[0].text, ControlLoop::kNoCommunication);
    EXPECT_EQ(rig.loop->retries(), ControlLoop::kGiveUp);
    EXPECT_TRUE(rig.loop->lost());
    EXPECT_EQ(rig.statuses.back(), ControlLoop::kLostStatus);
    EXPECT_EQ(std::count_if(rig.statuses.begin(), rig.statuses.end(),
                            [](const std::string& s) { return s.rfind("Retry:", 0) == 0; }),
              ControlLoop::kGiveUp);
    // Then the display stands still: nothing more is sent.
    const auto sentAtLoss = rig.sent.size();
    rig.run(30);
    EXPECT_EQ(rig.sent.size(), sentAtLoss);
    EXPECT_EQ(rig.dialogs.shown.size(), 1u);

    // HOLD restarts the link from the outside once the scanner answers again.
    rig.line = nullptr;
    KeyAction hold = groupAKey(3, rig.loop->state(), ModelSwitches::of(Model::BC785D), rig.loop->retries());
    EXPECT_TRUE(hold.holdRecovery);
    rig.loop->run(hold);
    rig.run(3);
    EXPECT_EQ(rig.loop->retries(), 0);
    EXPECT_FALSE(rig.loop->lost());
}

TEST(ControlLoop, WithOption12TheRetriesGoOnForEverAndNoMessageComes)
{
    LoopRig rig(true);
    rig.deafen();
    rig.open();
    rig.run(150);
    EXPECT_GT(rig.loop->retries(), ControlLoop::kGiveUp + 10);
    EXPECT_TRUE(rig.dialogs.shown.empty());
    EXPECT_FALSE(rig.loop->lost());
    // It still reopens the port and polls from the top.
    rig.line = nullptr;
    rig.run(5);
    EXPECT_EQ(rig.loop->retries(), 0);
}

TEST(ControlLoop, AnLcdReplyWithoutItsFourthLineIsNeverWholeAndCountsAsAFailure)
{
    LoopRig rig;
    rig.line = [](const std::string& command, std::string reply) {
        if (command == "LCD") reply = reply.substr(0, reply.find("LCD4"));
        return reply;
    };
    rig.open();
    rig.run(12);
    // The other polls were never reached after the first LCD: it waits for the watchdog.
    EXPECT_GE(rig.loop->retries(), 3);
    EXPECT_EQ(rig.loop->state().lcdline[0], std::string(16, ' '));
}

TEST(ControlLoop, OneLostReplyInFiftyCostsNoStateChange)
{
    // A live scan over three channels with three calls; the states the loop
    // passes through, each once in a row, with and without the lost replies.
    // The signal is left out of the comparison: it is a reading of the meter,
    // taken once a cycle, so its values depend on where the cycle stands.
    const auto states = [](bool lossy) {
        LoopRig rig;
        int replies = 0;
        if (lossy)
            rig.line = [&replies](const std::string&, std::string reply) {
                return ++replies % 50 == 0 ? std::string() : reply;
            };
        for (const char* c : {"PM005 01550000", "PM017 01554750", "DLN +2", "PM040 04625625", "KEY01"})
            rig.scanner.command(c);
        std::string error;
        rig.scanner.setTraffic(sim::Traffic::scripted(
            *sim::parseTrafficScript("5000,9000,ch=17\n25000,9000,ch=40\n45000,9000,ch=5\n", error)));
        std::vector<std::string> seen;
        int signalled = 0;  // states with the squelch open and a signal read
        const auto note = [&] {
            std::string now = stateReport(rig.loop->state(), rig.loop->pollfast());
            if (now.ends_with(" SQ+") && rig.loop->state().signal > 0) ++signalled;
            const auto squelch = now.rfind(' ');
            const auto signal = now.rfind(' ', squelch - 1);
            now.erase(signal, squelch - signal);
            if (seen.empty() || seen.back() != now) seen.push_back(now);
        };
        rig.loop->hooks.displayChanged = note;
        rig.loop->hooks.replyTaken = [&](int, const std::string&) { note(); };
        rig.open();
        rig.run(70);
        EXPECT_LE(rig.loop->retries(), 1);
        EXPECT_TRUE(rig.dialogs.shown.empty());
        EXPECT_GT(signalled, 0);
        if (lossy) {
            EXPECT_GE(replies, 200);
        }
        return seen;
    };
    const auto clean = states(false);
    // Every call was seen once, on its channel with the squelch open.
    for (const char* call : {"00 1/017 155.4750 \"\" - SQ+", "00 1/040 462.5625 \"\" - SQ+", "00 1/005 155.0000 \"\" - SQ+"})
        EXPECT_EQ(std::count(clean.begin(), clean.end(), call), 1) << call;
    EXPECT_EQ(states(true), clean);
}

TEST(ControlLoop, ClosingInAWaitEndsItAndLeavesThePortClosedWithNoTimerRunning)
{
    LoopRig rig;
    rig.open();
    rig.run(2);
    bool told = false;
    rig.loop->hooks.closedDuringWait = [&] { told = true; };
    // The watchdog tells the retry, then reopens the port with two waits of
    // 0.3 s: the window closes inside the first.
    rig.loop->hooks.status = [&](const std::string&) { rig.scheduler.postAfter(100, [&] { rig.loop->close(); }); };
    rig.deafen();
    rig.run(5);
    EXPECT_TRUE(told);
    EXPECT_FALSE(rig.loop->waiting());
    EXPECT_FALSE(rig.loop->portOpen());
    EXPECT_FALSE(rig.scheduler.nextDue().has_value());
}

} // namespace
} // namespace kestra
