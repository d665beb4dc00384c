// The real QSerialPort on the pseudo-terminal of a running `kestractl sim`:
// the path a user takes to try a serial program against the virtual scanner.

#include "platform/qt/qtserialport.h"
#include "sim/documentmapping.h"
#include "sim/simprocess.h"
#include "support/testfiles.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <gtest/gtest.h>

using namespace kestra;
using kestra::test::readBytes;
using kestra::test::SimProcess;
using kestra::test::TempDir;

namespace {

// What comes in within the time, with the event loop running as it does in
// the program; with toLineEnd, up to the first carriage return.
std::string gather(QtSerialPort& port, int ms, bool toLineEnd)
{
    std::string got;
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < ms && !(toLineEnd && !got.empty() && got.back() == '\r')) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        got += port.input();
    }
    return got;
}

std::string exchange(QtSerialPort& port, const std::string& command)
{
    port.output(command + "\r\n");
    return gather(port, 3000, true);
}

} // namespace

TEST(SimThroughQSerialPort, OnlyTheScannersSpeedReadsAndWritesAndTheDumpKeepsTheWrite)
{
    TempDir dir;
    sim::ScannerMemory memory(Model::BC250D);
    memory.channel(1).freq = 1306250;
    memory.channel(1).lockout = false;
    memory.channel(1).tag = "PFO Tower Main";
    test::writeBytes(dir.path() / "in.mem", sim::memFileText(memory));

    SimProcess sim({"--model", "BC250D", "--load", dir.file("in.mem"), "--dump", dir.file("out.mem")}, dir.file("err.txt"));
    ASSERT_FALSE(sim.device().empty()) << readBytes(dir.path() / "err.txt");
    {
        // At 4800 the scanner hears no command it knows and says nothing readable.
        QtSerialPort slow(sim.device());
        slow.setSettings("4800,n,8,1");
        ASSERT_EQ(slow.open(), SerialPort::OpenResult::Ok);
        slow.output("SI\r\nSI\r\n");
        EXPECT_EQ(gather(slow, 500, false).find("BC250D"), std::string::npos);
    }
    {
        QtSerialPort port(sim.device());
        port.setSettings("19200,n,8,1");
        ASSERT_EQ(port.open(), SerialPort::OpenResult::Ok);
        // The noise of the wrong speed waits in the scanner's line: a line end alone answers it.
        EXPECT_EQ(exchange(port, ""), "ERR\r");
        EXPECT_EQ(exchange(port, "SI"), "SI BC250D,0000000000,104\r");
        EXPECT_EQ(exchange(port, "MA001"), "C001 F01306250 TF DF LF AF RF N000\r");
        EXPECT_EQ(exchange(port, "PM042 08511625"), "OK\r");
        EXPECT_EQ(exchange(port, "PM042").substr(0, 14), "C042 F08511625");
    }
    ASSERT_EQ(sim.stop(SIGTERM), 0);
    sim::ScannerMemory back(Model::BC250D);
    ASSERT_EQ(sim::loadMemFile(back, readBytes(dir.path() / "out.mem")).status, MemLoadStatus::Loaded);
    EXPECT_EQ(back.channel(42).freq, 8511625u);
    EXPECT_EQ(back.channel(1).tag, "PFO Tower Main");
}
