#include "vcontrol/vfoini.h"

#include "core/memfile.h"
#include "support/testfiles.h"
#include "vcontrol/statereport.h"

#include <gtest/gtest.h>

namespace kestra {
namespace {

TEST(VfoIni, ReadsWhatItWritesForcesTheSpeedsAndIgnoresTheFirstLine)
{
    test::TempDir dir;
    const VfoIni fresh = VfoIni::load(dir.path());
    EXPECT_EQ(fresh.filename, (dir.path() / "log.csv").string());
    EXPECT_EQ(fresh.audiopath, "c:\\");
    EXPECT_FALSE(fresh.retryforever());

    // A hand-edited file: a section name on the title line counts for nothing,
    // the speeds are set to 25, a custom of 7 reads as 0, option12 is kept.
    writeFileAtomic(dir.path() / "vfo.ini",
                    "[options]\r\n[statuswindow]\r\nleft=300\r\ntop=-2\r\ncustom=7\r\n[setup]\r\nspeed=90\r\n"
                    "speed2=3\r\ncentertune2=4\r\n[log]\r\nfilename = /home/u/hits.csv\r\n[options]\r\n"
                    "option12= 1\r\noption3 = 5\r\n");
    VfoIni v = VfoIni::load(dir.path());
    EXPECT_EQ(v.statusLeft, 300);
    EXPECT_EQ(v.statusTop, -2);
    EXPECT_EQ(v.statusCustom, 0);
    EXPECT_EQ(v.speed, 25);
    EXPECT_EQ(v.speed2, 25);
    EXPECT_EQ(v.centertune[1], 4);
    EXPECT_EQ(v.filename, "/home/u/hits.csv");
    EXPECT_TRUE(v.retryforever());
    EXPECT_EQ(v.option[2], 5);

    v.left = "1200";
    v.custom = 1;
    ASSERT_EQ(v.save(dir.path()), "");
    const std::string text = test::readBytes(dir.path() / "vfo.ini");
    EXPECT_EQ(text.substr(0, 43), "KESTRA-VFO ini data v1.01\r\n[statuswindow]\r\n");
    EXPECT_NE(text.find("\r\ncustom= 1\r\n"), std::string::npos);
    EXPECT_NE(text.find("\r\noption9 = 0\r\noption10= 0\r\n"), std::string::npos);
    const VfoIni again = VfoIni::load(dir.path());
    EXPECT_EQ(again.text(), v.text());
}

TEST(StateReport, OneLineOfModeChannelFrequencyTagIdSignalAndSquelch)
{
    DisplayState s;
    s.modenumber = "00";
    s.curbank = 1;
    s.channeltext = " 020";
    s.freqtext = " 167.35";
    s.lcdline[2] = "AMK OSL CH 2    ";
    s.signal = 182;
    s.busyshown = true;
    EXPECT_EQ(stateReport(s, 0), "00 1/020 167.3500 \"AMK OSL CH 2\" - S182 SQ+");
    // Moving: the place changes at every poll, only the mode counts.
    s.trunkid = "01234";
    EXPECT_EQ(stateReport(s, 1), "00 -/- - \"\" 01234 S- SQ-");
}

} // namespace
} // namespace kestra
