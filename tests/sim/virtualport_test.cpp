#include "sim/virtualport.h"

#include "platform/fake/virtualscheduler.h"

#include <gtest/gtest.h>

using namespace kestra;

namespace {

// A device that answers every whole line with "R:" and the line.
std::shared_ptr<VirtualDevice> echoDevice(int baud = 19200)
{
    auto device = std::make_shared<VirtualDevice>();
    auto partial = std::make_shared<std::string>();
    device->respond = [partial](std::string_view bytes) {
        std::string reply;
        for (char c : bytes) {
            if (c == '\n') continue;
            if (c == '\r') {
                reply += "R:" + *partial + "\r";
                partial->clear();
            } else {
                *partial += c;
            }
        }
        return reply;
    };
    device->baud = [baud] { return baud; };
    device->latencyMs = 5;
    return device;
}

} // namespace

TEST(VirtualPort, AReplyTakesItsWireTimeAndLatency)
{
    VirtualScheduler scheduler;
    auto device = echoDevice(9600);
    VirtualPort port(scheduler, device);
    port.setSettings("9600,n,8,1");
    ASSERT_EQ(port.open(), SerialPort::OpenResult::Ok);
    int events = 0;
    port.setOnReceive([&] { ++events; });
    port.setRThreshold(1);
    port.output("SI\r\n");  // 4 characters out, "R:SI\r" (5) back: 9 ms of wire at 9600 baud, 5 ms latency
    scheduler.advance(13);
    EXPECT_EQ(port.inBufferCount(), 0u);
    scheduler.advance(2);
    EXPECT_EQ(port.input(), "R:SI\r");
    EXPECT_EQ(events, 1);
    EXPECT_EQ(port.input(), "");
    // With the threshold at 0 the text is kept but no event comes.
    port.setRThreshold(0);
    port.output("A\r\n");
    scheduler.advance(100);
    EXPECT_EQ(events, 1);
    EXPECT_EQ(port.input(), "R:A\r");
}

TEST(VirtualPort, AnotherSpeedGivesGarbageAndOnlyOnePortHoldsTheDevice)
{
    VirtualScheduler scheduler;
    auto device = echoDevice(19200);
    VirtualPort port(scheduler, device);
    port.setSettings("4800,n,8,1");
    ASSERT_EQ(port.open(), SerialPort::OpenResult::Ok);
    port.output("SI\r\n");
    scheduler.advance(200);
    const std::string reply = port.input();
    EXPECT_EQ(reply.find("R:SI"), std::string::npos);

    VirtualPort second(scheduler, device);
    EXPECT_EQ(second.open(), SerialPort::OpenResult::InUse);
    port.close();
    EXPECT_EQ(second.open(), SerialPort::OpenResult::Ok);
    VirtualPort nowhere(scheduler, nullptr);
    EXPECT_EQ(nowhere.open(), SerialPort::OpenResult::NoSuchPort);
}

TEST(VirtualPort, FaultsAreDeterministicBySeed)
{
    auto run = [](const LineFaults& faults) {
        VirtualScheduler scheduler;
        auto device = echoDevice();
        device->faults = faults;
        VirtualPort port(scheduler, device);
        port.open();
        std::string all;
        int events = 0;
        port.setRThreshold(1);
        port.setOnReceive([&] { ++events; });
        for (int i = 0; i < 200; ++i) {
            port.output("LINE" + std::to_string(i) + "\r\n");
            scheduler.advance(300);
            all += port.input() + "|";
        }
        return std::pair{all, events};
    };
    const auto faults = LineFaults::parse("drop=0.1,split=0.5,garble=0.02,stray=0.05,delay=50,seed=7");
    ASSERT_TRUE(faults);
    const auto first = run(*faults);
    EXPECT_EQ(run(*faults), first);
    const auto clean = run(LineFaults{});
    EXPECT_EQ(clean.second, 200);
    EXPECT_NE(first.first, clean.first);
    // Lost replies leave empty slots; split replies raise more events than replies.
    std::size_t lost = 0, pos = 0;
    while ((pos = first.first.find("||", pos)) != std::string::npos) ++lost, ++pos;
    EXPECT_GT(lost, 5u);
    EXPECT_GT(first.second, 200 - static_cast<int>(lost));
}

TEST(VirtualPort, FaultTextsAreCheckedWordByWord)
{
    for (const char* refused : {"drop=2", "wobble=1", "drop", "drop=-1"}) EXPECT_FALSE(LineFaults::parse(refused)) << refused;
    const auto f = LineFaults::parse("split=0.3,delay=200");
    ASSERT_TRUE(f);
    EXPECT_DOUBLE_EQ(f->split, 0.3);
    EXPECT_EQ(f->delayMs, 200);
    EXPECT_TRUE(f->any());
    EXPECT_FALSE(LineFaults::parse("")->any());
}
