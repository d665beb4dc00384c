#include "core/defaultdata.h"
#include "support/testfiles.h"

#include <gtest/gtest.h>

using namespace kestra;
using kestra::test::TempDir;
using kestra::test::writeBytes;

TEST(DefaultData, TheBuiltInDefaultsGiveTheSecondDelayOfEachLayout)
{
    const DefaultData d;
    EXPECT_EQ(d.gridText(DefaultData::Trunk, 0), "Off");
    EXPECT_EQ(d.gridText(DefaultData::Delay, 0), "2");
    EXPECT_EQ(d.gridText(DefaultData::Delay, 1), "1");
    EXPECT_EQ(d.gridText(DefaultData::Tone, 1), "");  // not enabled
    EXPECT_EQ(d.gridText(DefaultData::Lockout, 1), "Off");
    EXPECT_EQ(DefaultData::fieldList(DefaultData::Delay, 0), (std::vector<std::string>{"None", "2"}));
    EXPECT_EQ(DefaultData::fieldList(DefaultData::Delay, 1).size(), 8u);
    EXPECT_EQ(DefaultData::fieldList(DefaultData::Tone, 0)[39], "023");
}

TEST(DefaultData, RoundTripsThroughItsFileAndSurvivesBadOnes)
{
    TempDir dir;
    DefaultData d;
    d.enabled[DefaultData::Tone] = 1;
    d.value[DefaultData::Tone][0] = 12;
    d.value[DefaultData::Tone][1] = 40;
    d.value[DefaultData::Delay][1] = 7;
    ASSERT_EQ(writeDefaultData(d, dir.path()), "");
    DefaultData back;
    readDefaultData(back, dir.path());
    EXPECT_EQ(back.gridText(DefaultData::Tone, 0), "100.0");
    EXPECT_EQ(back.gridText(DefaultData::Tone, 1), "025");
    EXPECT_EQ(back.gridText(DefaultData::Delay, 1), "-10");

    // A short file keeps every built-in value; positions out of the list give no default.
    writeBytes(dir.path() / "defdata.ini", "0\r\n0\r\n");
    DefaultData kept;
    readDefaultData(kept, dir.path());
    EXPECT_EQ(kept.enabled, DefaultData{}.enabled);
    std::string text = defaultDataText(DefaultData{});
    text.replace(text.find("\r\n1\r\n1\r\n"), 8, "\r\n999\r\n-4\r\n");  // the delay values
    writeBytes(dir.path() / "defdata.ini", text);
    readDefaultData(kept, dir.path());
    EXPECT_EQ(kept.gridText(DefaultData::Delay, 0), "");
    EXPECT_EQ(kept.gridText(DefaultData::Delay, 1), "");
}
