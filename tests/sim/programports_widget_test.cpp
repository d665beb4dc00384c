#include "platform/qt/qtserialport.h"
#include "sim/programports.h"

#include "platform/fake/virtualscheduler.h"
#include "sim/virtualscanner.h"
#include "support/testfiles.h"

#include <gtest/gtest.h>

using namespace kestra;

namespace {
std::string ask(SerialPort& port, VirtualScheduler& scheduler, const std::string& line)
{
    port.output(line + "\r\n");
    scheduler.advance(100);
    return port.input();
}
} // namespace

TEST(ProgramPorts, PortOneIsTheVirtualScannerAndItsMemoryOutlivesTheRun)
{
    kestra::test::TempDir dir;
    VirtualScheduler scheduler;
    {
        ProgramPorts ports(scheduler, dir.path(), &QtSerialPort::openDevice);
        auto port = ports.port(1, Model::BC796D);
        ASSERT_TRUE(port);
        ASSERT_EQ(port->open(), SerialPort::OpenResult::Ok);
        EXPECT_NE(ask(*port, scheduler, "SI").find("BC796D"), std::string::npos);
        EXPECT_EQ(ask(*port, scheduler, "PM005 04625625"), "OK\r");
        // One port at a time holds the scanner.
        auto second = ports.port(1, Model::BC796D);
        EXPECT_EQ(second->open(), SerialPort::OpenResult::InUse);
        EXPECT_FALSE(ports.port(2, Model::BC796D));
    }
    ProgramPorts again(scheduler, dir.path(), &QtSerialPort::openDevice);
    auto port = again.port(1, Model::BC250D);  // another model keeps the memory too
    ASSERT_EQ(port->open(), SerialPort::OpenResult::Ok);
    EXPECT_EQ(ask(*port, scheduler, "MA005").substr(0, 14), "C005 F04625625");
    EXPECT_NE(ask(*port, scheduler, "SI").find("BC250D"), std::string::npos);
}

TEST(ProgramPorts, ABoundDeviceIsARealPort)
{
    kestra::test::TempDir dir;
    VirtualScheduler scheduler;
    ProgramPorts ports(scheduler, dir.path(), &QtSerialPort::openDevice);
    ports.binding.bind(4, "/dev/kestra-no-such-device");
    auto port = ports.port(4, Model::BC250D);
    ASSERT_TRUE(port);
    EXPECT_EQ(port->commPort(), 4);
    EXPECT_EQ(port->open(), SerialPort::OpenResult::NoSuchPort);
}

TEST(ProgramPorts, TheSpeedChosenInTheScannersMenuOutlivesTheRun)
{
    kestra::test::TempDir dir;
    VirtualScheduler scheduler;
    {
        ProgramPorts ports(scheduler, dir.path(), &QtSerialPort::openDevice);
        auto port = ports.port(1, Model::BC250D);
        ASSERT_EQ(port->open(), SerialPort::OpenResult::Ok);
        // Menu 3 5, then the second rate of the list: 9600.
        for (const char* key : {"KEY11", "KEY02 3", "KEY02 5", "KEY02 2"}) ask(*port, scheduler, key);
        EXPECT_EQ(ports.virtualScanner(Model::BC250D).baudRate(), 9600);
    }
    ProgramPorts again(scheduler, dir.path(), &QtSerialPort::openDevice);
    auto port = again.port(1, Model::BC250D);
    port->setSettings("9600,n,8,1");
    ASSERT_EQ(port->open(), SerialPort::OpenResult::Ok);
    EXPECT_EQ(ask(*port, scheduler, "SI"), "SI BC250D,0000000000,104\r");
    port->close();
    port->setSettings("19200,n,8,1");
    ASSERT_EQ(port->open(), SerialPort::OpenResult::Ok);
    EXPECT_EQ(ask(*port, scheduler, "SI").find("BC250D"), std::string::npos);
}
