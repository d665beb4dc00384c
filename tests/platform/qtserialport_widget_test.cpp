// The real QSerialPort on a pseudo-terminal: the test holds the other end.

#include "sim/ptyline.h"

#include "platform/qt/qtserialport.h"

#include "core/settings.h"
#include "link/exchange.h"
#include "platform/fake/scripteddialogs.h"
#include "platform/fake/virtualscheduler.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
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

namespace {

// Opens device through the engine as the user meets it; 0 when the dialout
// message was shown, 1 when the port said something else, 2 when the
// message differed.
int openAndTell(const std::string& device)
{
    QtSerialPort port(device);
    VirtualScheduler scheduler;
    ScriptedDialogs dialogs;
    Settings settings;
    ExchangeEngine engine(port, scheduler, dialogs, settings, 1, 19200, ExchangeEngine::Caption::ReadData);
    if (engine.openport()) return 1;
    if (dialogs.shown.size() != 1 || dialogs.shown[0].text != kNoPermissionMessage) return 2;
    return 0;
}

} // namespace

TEST(QtSerialPortTest, ADeviceTheUserMayNotOpenGivesTheDialoutMessage)
{
    EXPECT_NE(std::string(kNoPermissionMessage).find("sudo usermod -aG dialout $USER"), std::string::npos);
    PseudoTerminal pty;
    ASSERT_TRUE(pty.isOpen()) << pty.error();
    std::string device = pty.devicePath();
    if (geteuid() != 0) {
        // The pseudo-terminal is the user's own; take its permissions away.
        ASSERT_EQ(chmod(device.c_str(), 0), 0);
        EXPECT_EQ(openAndTell(device), 0);
        chmod(device.c_str(), 0620);
        return;
    }
    // Root may open anything: the check runs as "nobody" in a child process,
    // on a device of root's (mode 0620, group tty).
    ASSERT_EQ(chmod(device.c_str(), 0660), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (setgroups(0, nullptr) != 0 || setgid(65534) != 0 || setuid(65534) != 0) _exit(3);
        _exit(openAndTell(device));
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);

    // The same device is opened by its owner.
    QtSerialPort port(device);
    port.setSettings("19200,n,8,1");
    EXPECT_EQ(port.open(), SerialPort::OpenResult::Ok);
}
