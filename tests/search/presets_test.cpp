#include "search/presets.h"
#include "support/testfiles.h"

#include <gtest/gtest.h>

using namespace kestra;

TEST(SearchPresets, ModeAndStepAreNormalisedByTheTextTheyContain)
{
    EXPECT_EQ(presetMode("NFM"), "NFM");  // "FM" first, then "NFM" wins
    EXPECT_EQ(presetMode("WFM"), "WFM");
    EXPECT_EQ(presetMode("am"), "am");    // no test matches: kept as it stands
    EXPECT_EQ(presetMode("AM/FM"), "AM");
    EXPECT_EQ(presetStep("12.5 kHz"), "12.5");
    EXPECT_EQ(presetStep("7.5"), "7.5");
    EXPECT_EQ(presetStep("25"), "25");
    EXPECT_EQ(presetStep("6.25"), "25");  // "25" wins over "5"; "2." is not there
    EXPECT_EQ(presetStep("100"), "100");
    EXPECT_EQ(presetStep("50"), "50");
    EXPECT_EQ(presetStep("auto"), "auto");
}

TEST(SearchPresets, SkipThreeLinesAndReadRowsOfSixFields)
{
    std::string text = "title\r\nline two\r\nline three\r\n";
    text += "118,137,AM,25 kHz,Air band,x\r\n";
    text += "\"156.05\",\"157.4\",\"NFM\",\"12.5\",\"Marine, VHF\",\"\"\r\n";
    for (int i = 0; i < 250; ++i) text += "400,401,FM,5,T" + std::to_string(i) + ",\r\n";
    const auto presets = parseSearchPresets(text);
    ASSERT_EQ(presets.size(), 200u);
    EXPECT_EQ(presets[0].start, "0118.0000");
    EXPECT_EQ(presets[0].end, "0137.0000");
    EXPECT_EQ(presets[0].mode, "AM");
    EXPECT_EQ(presets[0].step, "25");
    EXPECT_EQ(presets[0].tag, "Air band");
    EXPECT_EQ(presets[1].tag, "Marine, VHF");
    EXPECT_EQ(presets[1].step, "12.5");
    EXPECT_EQ(presets[199].tag, "T197");
    // A row cut short by the end of the file is not taken.
    EXPECT_EQ(parseSearchPresets("a\nb\nc\n1,2,FM,5,tag").size(), 0u);
    kestra::test::TempDir dir;
    EXPECT_TRUE(readSearchPresets(dir.path()).empty());
}
