// The scanner's line on a pseudo-terminal: timing, speed, faults and the log
// on a clock of the test's own, then the terminal for real (its serving loop
// runs in kestractl sim, kestractlsim_test.cpp).

#include "sim/ptyline.h"

#include "sim/simprocess.h"

#include <gtest/gtest.h>

using namespace kestra;
using namespace kestra::sim;

namespace {

constexpr std::int64_t kMs = 1000;

// Everything that goes out up to a time, with the time it went.
std::vector<TimedBytes> drain(ScannerLine& line, std::int64_t untilUs)
{
    std::vector<TimedBytes> out;
    while (const auto due = line.nextDueUs()) {
        if (*due > untilUs) break;
        out.push_back({*due, line.takeDue(*due)});
    }
    return out;
}

std::string joined(const std::vector<TimedBytes>& pieces)
{
    std::string all;
    for (const auto& p : pieces) all += p.bytes;
    return all;
}

} // namespace

TEST(ScannerLine, ARepliesAfterLatencyAndWireTimeAndTheLogTellsBothWays)
{
    VirtualScanner scanner(Model::BC250D, 19200);
    ScannerLine line(scanner, 10, {});
    std::vector<std::string> log;
    line.log = [&](const std::string& text) { log.push_back(text); };

    line.received(1 * kMs, "SI\r\n", 19200);
    // The command is heard when its last character is through (3 at 520 us
    // each, as on a cable), then 10 ms latency, then 25 characters back.
    ASSERT_TRUE(line.nextDueUs());
    EXPECT_EQ(*line.nextDueUs(), 1 * kMs + 3 * 520 + 10 * kMs + 25 * 520);
    EXPECT_EQ(line.takeDue(*line.nextDueUs() - 1), "");
    EXPECT_EQ(line.takeDue(*line.nextDueUs()), "SI BC250D,0000000000,104\r");
    EXPECT_FALSE(line.nextDueUs());

    // A command in pieces, and two in one read: each answered once, in order,
    // the second reply behind the first on the wire.
    line.received(100 * kMs, "MA0", 19200);
    EXPECT_FALSE(line.nextDueUs());
    line.received(101 * kMs, "05\r\nVR\r\n", 19200);
    const auto out = drain(line, 1000 * kMs);
    ASSERT_EQ(out.size(), 2u);
    EXPECT_EQ(out[0].bytes, "C005 F00000000 TF DF LN AF RF N000\r");
    EXPECT_EQ(out[1].bytes, "VR1.00\r");
    EXPECT_EQ(out[1].atUs - out[0].atUs, 7 * 520);

    EXPECT_EQ(log, (std::vector<std::string>{"2 < SI", "25 > SI BC250D,0000000000,104", "103 < MA005", "105 < VR",
                                             "131 > C005 F00000000 TF DF LN AF RF N000", "134 > VR1.00"}));
}

TEST(ScannerLine, AClientAtAnotherSpeedHearsGarbageBothWays)
{
    VirtualScanner scanner(Model::BC250D, 19200);
    ScannerLine line(scanner, 0, {});
    std::vector<std::string> log;
    line.log = [&](const std::string& text) { log.push_back(text); };

    // At 9600 the scanner hears no command: nothing of "SI" reaches it.
    line.received(0, "SI\r\nSI\r\nSI\r\n", 9600);
    const std::string wrong = joined(drain(line, 1000 * kMs));
    EXPECT_EQ(wrong.find("BC250D"), std::string::npos);
    for (const std::string& l : log) EXPECT_EQ(l.find("< SI"), std::string::npos) << l;

    // The noise stays in the scanner's line until a line end: the next
    // command, at the right speed, comes out as an error.
    line.received(1500 * kMs, "KEY11\r", 19200);
    EXPECT_EQ(joined(drain(line, 1600 * kMs)), "ERR\r");

    // The speed chosen in menu 3 5 takes effect with the key that stores it:
    // that key is answered at the new speed already.
    for (const char* key : {"KEY11\r", "KEY02 3\r", "KEY02 5\r"}) {
        line.received(2000 * kMs, key, 19200);
        EXPECT_EQ(joined(drain(line, 3000 * kMs)), "OK\r");
    }
    line.received(4000 * kMs, "KEY02 2\r", 19200);
    EXPECT_EQ(scanner.baudRate(), 9600);
    const std::string answer = joined(drain(line, 5000 * kMs));
    EXPECT_EQ(answer.size(), 3u);
    EXPECT_NE(answer, "OK\r");
    line.received(6000 * kMs, "KEY07\r", 9600);  // leaves the menu, heard at the new speed
    EXPECT_EQ(joined(drain(line, 7000 * kMs)), "OK\r");
    line.received(8000 * kMs, "SI\r", 9600);
    const auto out = drain(line, 9000 * kMs);
    ASSERT_EQ(out.size(), 1u);
    EXPECT_EQ(out[0].bytes, "SI BC250D,0000000000,104\r");
    EXPECT_EQ(out[0].atUs - 8000 * kMs, (3 + 25) * 1041);  // paced at 9600 baud now, both ways

    // A client whose speed cannot be read is taken to be right.
    line.received(10000 * kMs, "VR\r", 0);
    EXPECT_EQ(joined(drain(line, 11000 * kMs)), "VR1.00\r");
}

TEST(ScannerLine, FaultsFollowTheSeedAndTheLogTellsALostReply)
{
    const auto run = [](const std::string& faults, std::vector<std::string>* log = nullptr) {
        VirtualScanner scanner(Model::BC785D, 19200);
        ScannerLine line(scanner, 5, *LineFaults::parse(faults));
        if (log) line.log = [log](const std::string& text) { log->push_back(text); };
        std::vector<TimedBytes> all;
        for (int i = 0; i < 150; ++i) {
            const std::int64_t t = i * 500 * kMs;
            line.received(t, "MA" + std::string(i < 10 ? "00" : i < 100 ? "0" : "") + std::to_string(i + 1) + "\r\n",
                          19200);
            for (auto& p : drain(line, t + 499 * kMs)) all.push_back(std::move(p));
        }
        return all;
    };
    const std::string knobs = "drop=0.1,split=0.4,garble=0.02,stray=0.05,delay=200,seed=7";
    const auto first = run(knobs);
    const auto again = run(knobs);
    ASSERT_EQ(first.size(), again.size());
    for (std::size_t i = 0; i < first.size(); ++i) {
        EXPECT_EQ(first[i].atUs, again[i].atUs) << i;
        EXPECT_EQ(first[i].bytes, again[i].bytes) << i;
    }
    const auto clean = run("");
    const auto otherSeed = run("drop=0.1,split=0.4,garble=0.02,stray=0.05,delay=200,seed=8");
    EXPECT_EQ(clean.size(), 150u);
    EXPECT_NE(joined(first), joined(clean));
    EXPECT_NE(joined(first), joined(otherSeed));
    // Split replies give more pieces than replies, lost ones fewer line ends.
    const std::string text = joined(first);
    EXPECT_LT(std::count(text.begin(), text.end(), '\r'), 145);
    EXPECT_GT(first.size(), 140u);

    std::vector<std::string> log;
    EXPECT_TRUE(run("drop=1", &log).empty());
    ASSERT_EQ(log.size(), 300u);
    EXPECT_EQ(log[1], "3 > [lost] C001 F00000000 TF DF LN AF RF N000");
}

TEST(ScannerLine, TheLogShowsControlCharactersAsEscapes)
{
    EXPECT_EQ(loggable("LCD1 [x]\rLCD2 [y]\r"), "LCD1 [x]\\rLCD2 [y]");
    EXPECT_EQ(loggable(std::string("A\x01\xE9\\\n", 5)), "A\\x01\\xE9\\\\\\n");
}

TEST(PseudoTerminal, SpeedCodesBothWays)
{
    for (int baud : {4800, 9600, 19200, 38400, 57600}) {
        const auto code = speedCodeOfBaud(baud);
        ASSERT_TRUE(code) << baud;
        EXPECT_EQ(baudOfSpeedCode(*code), baud);
    }
    EXPECT_FALSE(speedCodeOfBaud(12345));
    EXPECT_EQ(baudOfSpeedCode(B0), 0);
}

TEST(PseudoTerminal, TheMasterReadsTheSpeedTheClientSet)
{
    PseudoTerminal terminal(19200);
    ASSERT_TRUE(terminal.isOpen()) << terminal.error();
    EXPECT_EQ(terminal.clientBaud(), 19200);
    test::TerminalClient client(terminal.devicePath(), B4800);
    ASSERT_TRUE(client.isOpen());
    EXPECT_EQ(terminal.clientBaud(), 4800);
    ASSERT_TRUE(client.send("SI\r\n"));
    std::string got;
    for (int i = 0; i < 100 && got.size() < 4; ++i, ::usleep(5000)) got += terminal.read();
    EXPECT_EQ(got, "SI\r\n");
    EXPECT_EQ(terminal.write("OK\r"), 3u);
    EXPECT_EQ(client.readLine(), "OK\r");
}
