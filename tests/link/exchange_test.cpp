#include "link/exchange.h"
#include "link/vocabulary.h"

#include "sim/virtualport.h"
#include "support/tablerig.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace kestra;

namespace {

// A scanner that answers "MAnnn" with a channel line, "Xn" with "OK", and
// counts what it was asked.
struct FakeScanner {
    std::string partial;
    std::vector<std::string> lines;
    std::function<bool(const std::string&)> silent;  // lines it does not answer
    std::string respond(std::string_view bytes)
    {
        std::string reply;
        for (char c : bytes) {
            if (c == '\n') continue;
            if (c != '\r') {
                partial += c;
                continue;
            }
            const std::string line = partial;
            partial.clear();
            lines.push_back(line);
            if (line.empty() || (silent && silent(line))) continue;
            if (line.rfind("MA", 0) == 0)
                reply += "C" + line.substr(2) + " F01306250 TF DN LF AF RF N000\r";
            else
                reply += "OK\r";
        }
        return reply;
    }
};

// A channel of three exchanges on the engine: MA (state 1), X1 (state 2), X2 (state 7).
struct Rig {
    VirtualScheduler scheduler;
    ScriptedDialogs dialogs;
    Settings settings;
    FakeScanner scanner;
    std::shared_ptr<VirtualDevice> device = std::make_shared<VirtualDevice>();
    VirtualPort port{scheduler, device};
    ExchangeEngine engine{port, scheduler, dialogs, settings, 1, 19200, ExchangeEngine::Caption::ReadData};
    std::vector<int> finished;
    bool over = false, stopped = false;

    explicit Rig(const std::string& faults = "")
    {
        device->respond = [this](std::string_view b) { return scanner.respond(b); };
        device->baud = [] { return 19200; };
        device->faults = *LineFaults::parse(faults);
        engine.hooks.readStep = [this](int step) {
            engine.rxdata.clear();
            engine.commstate = step == 0 ? 2 : 7;
            engine.sendWatched(step == 0 ? "X1" : "X2");
        };
        engine.hooks.finishChannel = [this](int) { finished.push_back(engine.chanid); return true; };
        engine.hooks.runOver = [this] { over = true; };
        engine.hooks.stopped = [this] { stopped = true; };
    }
    void run(int first, int last)
    {
        engine.openport();
        port.setRThreshold(1);
        engine.startchan = first;
        engine.endchan = last;
        engine.chanid = first;
        engine.commstate = 1;
        engine.sendSelect();
        scheduler.runUntil([this] { return over || stopped; }, 3'600'000);
    }
    std::vector<std::string> messages() const { return test::messageTexts(dialogs); }
};

} // namespace

TEST(ExchangeEngine, RunsAChannelRangeStepByStep)
{
    Rig rig;
    rig.run(998, 1000);
    EXPECT_TRUE(rig.over);
    EXPECT_EQ(rig.finished, (std::vector<int>{998, 999, 1000}));
    EXPECT_EQ(rig.scanner.lines[0], "MA998");
    EXPECT_EQ(rig.scanner.lines[6], "MA000");  // channel 1000
    EXPECT_EQ(rig.engine.retrycount, 0);
    EXPECT_TRUE(rig.messages().empty());
    EXPECT_EQ(rig.port.rThreshold(), 0);
}

TEST(ExchangeEngine, EachStepWaitsOneDelayAfterTheReply)
{
    Rig rig;
    rig.settings.delay1 = 100;
    rig.run(1, 10);
    // Three exchanges a channel, two of them decoded one delay after their
    // reply (the last one finishes the channel at once): 2 s and a bit.
    EXPECT_GE(rig.scheduler.now(), 2000);
    EXPECT_LT(rig.scheduler.now(), 2600);
    Rig fast;
    fast.settings.delay1 = 25;
    fast.run(1, 10);
    EXPECT_LT(fast.scheduler.now(), 1000);
}

TEST(ExchangeEngine, AStrayCharacterAfterTheCarriageReturnGivesTheCrlfTimeout)
{
    Rig rig("stray=1,seed=3");
    rig.run(1, 5);
    EXPECT_TRUE(rig.stopped);
    EXPECT_EQ(rig.messages(), std::vector<std::string>{"CRLF timeout _ check baudrate / comport settings."});
    EXPECT_EQ(rig.engine.stopflag, 1);
}

TEST(ExchangeEngine, TheTenthLostReplyOfOneChannelEndsTheRun)
{
    Rig rig;
    rig.scanner.silent = [](const std::string& line) { return line == "MA003"; };
    rig.run(1, 10);
    EXPECT_TRUE(rig.stopped);
    EXPECT_FALSE(rig.over);
    EXPECT_EQ(rig.finished, (std::vector<int>{1, 2}));
    ASSERT_EQ(rig.messages(),
              std::vector<std::string>{"Communication Timeout. Please check if scanner is switched on/connected/in remote mode."});
    EXPECT_EQ(rig.dialogs.shown[0].title, "Error");
    // Nine retries came before: ten selections of channel 3 went out, each
    // after the reopen of the port and its two empty lines.
    const auto& lines = rig.scanner.lines;
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "MA003"), 10);
    const auto retry = std::find(lines.begin(), lines.end(), "MA003") + 1;
    EXPECT_EQ(std::vector<std::string>(retry, retry + 3), (std::vector<std::string>{"", "", "MA003"}));
}

TEST(ExchangeEngine, ErrorRepliesAreFlaggedAndTheRunGoesOn)
{
    Rig rig;
    rig.device->respond = [&rig](std::string_view b) {
        std::string r = rig.scanner.respond(b);
        return r == "OK\r" ? std::string("ERR\r") : r;
    };
    rig.run(1, 2);
    EXPECT_TRUE(rig.over);
    EXPECT_EQ(rig.finished.size(), 2u);
    EXPECT_EQ(rig.engine.status.text5, "???");
}

TEST(ExchangeEngine, DelaysFollowTheBaudRate)
{
    VirtualScheduler scheduler;
    ScriptedDialogs dialogs;
    Settings settings;
    auto device = std::make_shared<VirtualDevice>();
    VirtualPort port(scheduler, device);
    ExchangeEngine at4800(port, scheduler, dialogs, settings, 1, 4800, ExchangeEngine::Caption::ReadData);
    EXPECT_DOUBLE_EQ(at4800.commdelay(), 0.4);
    EXPECT_FALSE(at4800.sliderShown());
    ExchangeEngine at57600(port, scheduler, dialogs, settings, 1, 57600, ExchangeEngine::Caption::SendData);
    EXPECT_DOUBLE_EQ(at57600.commdelay(), 0.1);
    at57600.setDelay(10);
    EXPECT_EQ(settings.delay1, 25);
    at57600.setDelay(400);
    EXPECT_EQ(at57600.stepDelay(), 400);
    at57600.defaultDelay();
    EXPECT_EQ(settings.delay1, 100);
    EXPECT_TRUE(at57600.sliderShown());
}

TEST(ExchangeEngine, OpeningWakesTheScannerAndLearnsItsModel)
{
    Rig rig;
    rig.device->respond = [&rig](std::string_view b) {
        std::string r = rig.scanner.respond(b);
        if (!rig.scanner.lines.empty() && rig.scanner.lines.back() == "SI") return std::string("SI BC796D,0000000000,104\r");
        if (!rig.scanner.lines.empty() && rig.scanner.lines.back() == "VR") return std::string("VR1.00\r");
        return r;
    };
    const std::string word = rig.engine.openForm(1);
    EXPECT_EQ(rig.scanner.lines, (std::vector<std::string>{"KEY09", "MA001", "IDF", "CDF", "QUF", "MA001", "VR", "SI"}));
    EXPECT_EQ(word, "VR1.00\rSI BC796D,0000000000,104\r");
    EXPECT_EQ(wire::modelOfReply(word), Model::BC796D);

    // A port another program holds: the message, and the form goes on.
    Rig busy;
    busy.device->held = true;
    busy.engine.openForm(0);
    EXPECT_EQ(busy.messages(), std::vector<std::string>{"The selected comport is already in use or not available in your system!"});
}
