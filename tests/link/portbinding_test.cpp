#include "link/portbinding.h"
#include "support/testfiles.h"

#include <gtest/gtest.h>

using namespace kestra;
using kestra::test::TempDir;
using kestra::test::writeBytes;

TEST(PortBinding, AFreshInstallHasTheVirtualScannerOnPortOne)
{
    TempDir dir;
    const PortBinding b = PortBinding::load(dir.path());
    EXPECT_TRUE(b.isVirtual(1));
    EXPECT_EQ(b.target(2), "");
}

TEST(PortBinding, KeepsItsNumbersThroughItsFile)
{
    TempDir dir;
    PortBinding b;
    b.bind(1, "/dev/ttyUSB0");
    b.bind(7, PortBinding::kVirtual);
    b.bind(20, "/dev/never");  // no such number
    b.bind(3, "/dev/pts/4");
    b.bind(3, "");  // unbound again
    ASSERT_EQ(b.save(dir.path()), "");
    const PortBinding back = PortBinding::load(dir.path());
    EXPECT_EQ(back.target(1), "/dev/ttyUSB0");
    EXPECT_TRUE(back.isVirtual(7));
    EXPECT_EQ(back.target(3), "");
    EXPECT_EQ(back.targets.size(), 2u);
    writeBytes(dir.path() / "ports.ini", "[ports]\r\n0=/dev/x\r\n19=/dev/ttyS3\r\n");
    EXPECT_EQ(PortBinding::load(dir.path()).target(19), "/dev/ttyS3");
    EXPECT_EQ(PortBinding::load(dir.path()).targets.size(), 1u);
}

TEST(PortBinding, FindsTheSerialDevicesOfAFolder)
{
    TempDir dir;
    for (const char* name : {"ttyUSB1", "ttyUSB0", "ttyACM0", "ttyS0", "tty1", "ttyS", "null"})
        writeBytes(dir.path() / name, "");
    const auto devices = serialDevices(dir.path());
    std::vector<std::string> names;
    for (const auto& d : devices) names.push_back(std::filesystem::path(d).filename().string());
    EXPECT_EQ(names, (std::vector<std::string>{"ttyACM0", "ttyS0", "ttyUSB0", "ttyUSB1"}));
}

TEST(PortBinding, OffersTheStableByIdNamesAndTheDevicesWithoutOne)
{
    TempDir dir;
    for (const char* name : {"ttyUSB0", "ttyUSB1", "ttyS0"}) writeBytes(dir.path() / name, "");
    const auto byId = dir.path() / "serial" / "by-id";
    std::filesystem::create_directories(byId);
    std::filesystem::create_symlink("../../ttyUSB1", byId / "usb-FTDI_FT232R_A1-if00-port0");
    std::filesystem::create_symlink(dir.path() / "ttyUSB0", byId / "usb-Prolific_PL2303-if00-port0");
    std::filesystem::create_symlink("../../ttyUSB7", byId / "usb-gone-if00-port0");   // unplugged
    std::vector<std::string> seen;
    for (const auto& choice : serialDeviceChoices(dir.path()))
        seen.push_back(std::filesystem::path(choice.path).lexically_relative(dir.path()).string() + " > " +
                       std::filesystem::path(choice.device).lexically_relative(dir.path()).string());
    EXPECT_EQ(seen, (std::vector<std::string>{"serial/by-id/usb-FTDI_FT232R_A1-if00-port0 > ttyUSB1",
                                              "serial/by-id/usb-Prolific_PL2303-if00-port0 > ttyUSB0",
                                              "ttyS0 > ttyS0"}));
}
