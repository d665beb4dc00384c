#include "core/inifile.h"
#include "core/setupfile.h"
#include "support/testfiles.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace kestra;
using kestra::test::readBytes;
using kestra::test::TempDir;
using kestra::test::writeBytes;

namespace {
Settings readFrom(const std::string& text, int usbc = 0)
{
    TempDir dir;
    writeBytes(dir.path() / "setup.ini", text);
    Settings s;
    readSetup(s, dir.path(), usbc);
    return s;
}
} // namespace

TEST(IniFile, ReadsLikeTheSystemsProfileCall)
{
    const IniFile ini = IniFile::parse("; note\r\n[Setup]\r\n Zero = 1 \r\nzero=0\r\nname=\"a b\"\r\n\r\n[com]\nport=3\n" +
                                       std::string("long=") + std::string(1'000'000, '9') + "\n");
    EXPECT_EQ(ini.get("setup", "zero", "x"), "1");  // the first of two wins, case and blanks do not count
    EXPECT_EQ(ini.get("SETUP", "name", "x"), "a b");
    EXPECT_EQ(ini.get("com", "port", "x"), "3");
    EXPECT_EQ(ini.get("com", "missing", "dflt"), "dflt");
    EXPECT_EQ(ini.get("none", "port", "dflt"), "dflt");
    EXPECT_EQ(ini.get("com", "long", "").size(), IniFile::kMaxValue);
    EXPECT_EQ(IniFile::parse("port=1\n").get("com", "port", "none"), "none");  // a key before any section
}

TEST(SetupFile, AMissingFileGivesTheDefaults)
{
    TempDir dir;
    Settings s;
    s.zero = 1;
    readSetup(s, dir.path(), 0);
    EXPECT_EQ(setupText(s), setupText(Settings{}));
}

TEST(SetupFile, ClampsTheDelaysAndTheBackupAndResetsOddValues)
{
    Settings s = readFrom("[setup]\r\ndelay1=5\r\ndelay2=5000\r\ndelay3=-7\r\ndelay4=49\r\nbackupdelay=0\r\n9khz=1\r\n"
                          "[cputune]\r\nval2=5000\r\n");
    EXPECT_EQ(std::tie(s.delay1, s.delay2, s.delay3, s.delay4), std::make_tuple(25, 1000, 200, 50));
    EXPECT_EQ(std::tie(s.backupdelay, s.val2, s.khz9), std::make_tuple(1, 200, 0));
    EXPECT_EQ(readFrom("[setup]\r\nbackupdelay=150\r\n").backupdelay, 99);
    EXPECT_EQ(readFrom("[cputune]\r\nval2=99\r\n").val2, 200);
    EXPECT_EQ(readFrom("[cputune]\r\nval2=1000\r\n").val2, 1000);
}

TEST(SetupFile, AUsbConverterRaisesTheDelaysWhateverWasRead)
{
    Settings s = readFrom("[setup]\r\ndelay1=30\r\ndelay2=900\r\ndelay3=250\r\ndelay4=70\r\n", 1);
    EXPECT_EQ(std::tie(s.delay1, s.delay2, s.delay3, s.delay4), std::make_tuple(200, 200, 400, 70));
}

TEST(SetupFile, AbsurdValuesAreReadByTheirLeadingNumber)
{
    Settings s = readFrom("[setup]\r\nzero=yes\r\nmodel=2abc\r\nalign=99999999999\r\nbandplan=-4\r\nsmart=\r\n"
                          "delay1=" + std::string(1'000'000, '7') + "\r\n");
    // An empty smart= reads as 0, not as the default.
    EXPECT_EQ(std::tie(s.zero, s.model, s.align, s.bandplan, s.smart, s.delay1), std::make_tuple(0, 2, 32767, -4, 0, 1000));
    EXPECT_NE(setupText(s).find("\r\nbandplan=0\r\n"), std::string::npos);  // a negative plan is written as 0
}

TEST(SetupFile, FlagsAreWrittenAsZeroOrOneOnly)
{
    Settings s = readFrom("[setup]\r\noption7=7\r\nexpert=1\r\nmodel=2\r\n");
    EXPECT_EQ(s.option7, 7);
    const Settings back = readFrom(setupText(s));
    EXPECT_EQ(std::tie(back.option7, back.expert, back.model), std::make_tuple(0, 1, 2));
}

TEST(SetupFile, ARoundTripKeepsEveryKey)
{
    // Give every key a value other than its default, within its range.
    Settings s;
    for (const SettingKey& key : settingKeys()) {
        int& v = s.*key.member;
        if (key.flag)
            v = v == 1 ? 0 : 1;
        else
            v = 0;
    }
    std::tie(s.model, s.bandplan, s.align, s.backupdelay, s.val2) = std::make_tuple(2, 3, 2, 17, 333);
    std::tie(s.delay1, s.delay2, s.delay3, s.delay4) = std::make_tuple(900, 800, 700, 600);
    s.khz9 = 0;  // never kept over a start
    const std::string text = setupText(s);
    EXPECT_EQ(text.substr(0, 17), "[setup]\r\nffont=0\r");
    EXPECT_NE(text.find("\r\n[cputune]\r\nval2=333\r\nval3=0\r\n"), std::string::npos);
    EXPECT_EQ(text.find("remtrunk"), std::string::npos);
    TempDir dir;
    ASSERT_EQ(writeSetup(s, dir.path()), "");
    Settings back;
    readSetup(back, dir.path(), 0);
    EXPECT_EQ(setupText(back), text);
}

TEST(SetupFile, RemtrunkIsReadButNeverWritten)
{
    EXPECT_EQ(readFrom("[setup]\r\nremtrunk=0\r\n").remtrunk, 0);
    EXPECT_EQ(readFrom("").remtrunk, 1);
}

TEST(Com250, GivesPortBaudAndConverter)
{
    TempDir dir;
    ComSettings c = readCom250(dir.path());
    EXPECT_EQ(std::tie(c.port, c.baud), std::make_tuple(1, 19200));
    writeBytes(dir.path() / "com250.ini", "[com]\r\nport=4\r\nbaud=9600\r\nusbc=1\r\n");
    c = readCom250(dir.path());
    EXPECT_EQ(std::tie(c.port, c.baud, c.usbc), std::make_tuple(4, 9600, 1));
}
