// The real QSerialPort on a pseudo-terminal: the test holds the other end.

#include "sim/ptyline.h"

#include "platform/qt/qtserialport.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <unistd.h>

using namespace kestra;
using sim::PseudoTerminal;

TEST(QtSerialPortTest, TalksToTheOtherEndOfAPseudoTerminal)
{
    PseudoTerminal pty;
    ASSERT_TRUE(pty.isOpen()) << pty.error();
    QtSerialPort port(pty.devicePath());
    port.setSettings("19200,n,8,1");
    ASSERT_EQ(port.open(), SerialPort::OpenResult::Ok);
    port.output("SI\r\n");
    std::string sent;
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < 1000 && sent.find('\n') == std::string::npos) {
        sent += pty.read();
        usleep(2000);
    }
    EXPECT_EQ(sent, "SI\r\n");

    // Text that arrives while nobody yields is taken by input() all the same.
    pty.write("SI BC250D,0000000000,104\r");
    std::string got;
    clock.restart();
    while (clock.elapsed() < 1000 && got.find('\r') == std::string::npos) {
        got += port.input();
        usleep(1000);
    }
    EXPECT_EQ(got, "SI BC250D,0000000000,104\r");

    // With the threshold at 1 the receive event comes through the event loop.
    int events = 0;
    port.setOnReceive([&] { ++events; });
    port.setRThreshold(1);
    pty.write("OK\r");
    clock.restart();
    while (clock.elapsed() < 1000 && events == 0) QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    EXPECT_GE(events, 1);
    EXPECT_EQ(port.input(), "OK\r");
    port.close();
    EXPECT_FALSE(port.isOpen());
}

TEST(QtSerialPortTest, MissingDevicesAndBadSettingsAreTold)
{
    QtSerialPort missing("/dev/kestra-no-such-device");
    EXPECT_EQ(missing.open(), SerialPort::OpenResult::NoSuchPort);
    PseudoTerminal pty;
    QtSerialPort bad(pty.devicePath());
    bad.setSettings("fast,n,8,1");
    EXPECT_EQ(bad.open(), SerialPort::OpenResult::BadSettings);
}

TEST(QtSerialPortTest, APortHeldByAnotherProgramIsInUse)
{
    PseudoTerminal pty;
    ASSERT_TRUE(pty.isOpen()) << pty.error();
    QtSerialPort first(pty.devicePath());
    ASSERT_EQ(first.open(), SerialPort::OpenResult::Ok);
    QtSerialPort second(pty.devicePath());
    EXPECT_EQ(second.open(), SerialPort::OpenResult::InUse);
    first.close();
    EXPECT_EQ(second.open(), SerialPort::OpenResult::Ok);
}
