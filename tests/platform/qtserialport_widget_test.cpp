// The real QSerialPort on a pseudo-terminal: the test holds the other end.

#include "platform/qt/qtserialport.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

using namespace kestra;

namespace {

struct Pty {
    int master = -1;
    std::string slave;
    Pty()
    {
        master = posix_openpt(O_RDWR | O_NOCTTY);
        if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0) return;
        slave = ptsname(master);
        termios t{};
        tcgetattr(master, &t);
        cfmakeraw(&t);
        tcsetattr(master, TCSANOW, &t);
        fcntl(master, F_SETFL, O_NONBLOCK);
    }
    ~Pty()
    {
        if (master >= 0) ::close(master);
    }
    std::string readAll(int ms)
    {
        std::string got;
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < ms) {
            char buf[256];
            const ssize_t n = ::read(master, buf, sizeof buf);
            if (n > 0) got.append(buf, static_cast<std::size_t>(n));
            if (!got.empty() && got.back() == '\n') break;
            usleep(2000);
        }
        return got;
    }
    void write(const std::string& text) { (void)!::write(master, text.data(), text.size()); }
};

} // namespace

TEST(QtSerialPortTest, TalksToTheOtherEndOfAPseudoTerminal)
{
    Pty pty;
    ASSERT_FALSE(pty.slave.empty());
    QtSerialPort port(pty.slave);
    port.setSettings("19200,n,8,1");
    ASSERT_EQ(port.open(), SerialPort::OpenResult::Ok);
    port.output("SI\r\n");
    EXPECT_EQ(pty.readAll(1000), "SI\r\n");

    // Text that arrives while nobody yields is taken by input() all the same.
    pty.write("SI BC250D,0000000000,104\r");
    std::string got;
    QElapsedTimer clock;
    clock.start();
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
    Pty pty;
    QtSerialPort bad(pty.slave);
    bad.setSettings("fast,n,8,1");
    EXPECT_EQ(bad.open(), SerialPort::OpenResult::BadSettings);
}

TEST(QtSerialPortTest, APortHeldByAnotherProgramIsInUse)
{
    Pty pty;
    ASSERT_FALSE(pty.slave.empty());
    QtSerialPort first(pty.slave);
    ASSERT_EQ(first.open(), SerialPort::OpenResult::Ok);
    QtSerialPort second(pty.slave);
    EXPECT_EQ(second.open(), SerialPort::OpenResult::InUse);
    first.close();
    EXPECT_EQ(second.open(), SerialPort::OpenResult::Ok);
}
