#include "core/cellcodes.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace kestra;

TEST(FrequencyText, PadfreqGivesNineCharactersWithLeadingZerosAndTrimfreqDropsThem)
{
    const std::pair<const char*, const char*> padded[] = {
        {"155.1", "0155.1000"}, {"0155.1000", "0155.1000"}, {" 00155.1", "0155.1000"}, {".5", "0000.5000"},
        {"1300", "1300.0000"},  {"0", "0000.0000"},         {"", "0000.0000"},
        {"146.00625", "0146.0062"},  // cut to width + 1
        {"12345.6", "12345.600"},    // no room in front: nothing added
        {"Empty", "Empty.000"},      // text is kept, only padded
    };
    for (const auto& [in, out] : padded) EXPECT_EQ(padfreq(in, 8, 5), out) << in;
    const std::pair<const char*, const char*> trimmed[] = {
        {"0155.1000", "155.1000"}, {"155.1", "155.1000"},  {"0000.5000", ".5000"},        {".5", ".5000"},
        {"0", ".0000"},            {"1300", "1300.0000"},  {"146.00625", "146.00625"},
    };
    for (const auto& [in, out] : trimmed) EXPECT_EQ(trimfreq(in, 4), out) << in;
    EXPECT_EQ(formatFreq("155.1", 0), "0155.1000");
    EXPECT_EQ(formatFreq("0155.1", 1), "155.1000");
}

TEST(ToneCodes, StoreAndShowEveryToneBothWays)
{
    // The DCS codes rise, are octal and three digits long; the tones rise.
    const ToneTables& t = toneTables();
    for (int i = 0; i < 104; ++i) {
        ASSERT_EQ(t.dcs[i].size(), 3u);
        EXPECT_EQ(t.dcs[i].find_first_not_of("01234567"), std::string::npos) << t.dcs[i];
        if (i > 0) {
            EXPECT_LT(t.dcs[i - 1], t.dcs[i]);
        }
    }
    for (int i = 2; i <= 38; ++i) EXPECT_LT(std::stod(t.ctcss[i - 1]), std::stod(t.ctcss[i]));

    const std::pair<const char*, const char*> codes[] = {{"67.0", "1"},   {"250.3", "38"},   {"023", "39"},
                                                         {"754", "142"},  {"67.0-", "150"},  {"023-", "188"},
                                                         {"754-", "291"}, {"", "0"}};
    for (const auto& [text, code] : codes) EXPECT_EQ(toneCode(text), code) << text;
    EXPECT_EQ(toneCode("None"), std::nullopt);  // kept as it stands: value 0 all the same
    EXPECT_EQ(toneCode("66.9"), std::nullopt);
    for (int code = 0; code <= 291; ++code) {
        const std::string text = toneText(std::to_string(code));
        if (code >= 143 && code <= 149) {
            EXPECT_EQ(text, "") << code;
            continue;
        }
        ASSERT_FALSE(text.empty()) << code;
        if (code > 0) {
            EXPECT_EQ(toneCode(text), std::to_string(code)) << text;
        }
    }
    EXPECT_EQ(toneText("0"), "None");
    EXPECT_EQ(toneText("292"), "");
    EXPECT_EQ(toneText("None"), "None");
}

TEST(ToneCodes, TheOlderLFormIsRepaired)
{
    EXPECT_EQ(repairToneCode("12L"), "161");
    EXPECT_EQ(toneText(repairToneCode("12L")), "100.0-");
    EXPECT_EQ(repairToneCode("12"), "12");
}

TEST(DelayCodes, TheShortListCollapsesToNoneAndTwo)
{
    const char* texts785[] = {"None", "1", "2", "4", "Inf.", "-2", "-5", "-10"};
    for (int code = 0; code < 8; ++code) {
        EXPECT_EQ(delayText(std::to_string(code), 1), texts785[code]);
        EXPECT_EQ(delayCode(texts785[code], 1), std::to_string(code));
        EXPECT_EQ(delayText(std::to_string(code), 0), code == 0 ? "None" : "2");
        EXPECT_EQ(delayCode(texts785[code], 0), code == 0 ? "0" : "2");
    }
    EXPECT_EQ(delayCode("Off", 0), "0");
    EXPECT_EQ(delayCode("On", 0), "2");
    EXPECT_EQ(delayCode("Off", 1), std::nullopt);
    EXPECT_EQ(delayText("8", 1), "");
    EXPECT_EQ(delayText("", 1), "");
}

TEST(StepAndModeCodes, FollowTheirTables)
{
    EXPECT_EQ(stepCode("6.25", 1), "8");
    EXPECT_EQ(stepCode("6.25", 0), "0");
    EXPECT_EQ(stepCode("20.0", 0), "9");
    EXPECT_EQ(stepCode("Auto", 0), "7");
    EXPECT_EQ(stepCode("6", 1), std::nullopt);
    EXPECT_EQ(stepText("6"), "100.0");
    EXPECT_EQ(stepText("10"), "");
    EXPECT_EQ(modeText("3"), "NFM");
    EXPECT_EQ(modeCode("WFM"), "1");
    EXPECT_EQ(modeCode("fm"), std::nullopt);
    EXPECT_EQ(onOffText("1"), "On");
    EXPECT_EQ(onOffText(" "), "");
    EXPECT_EQ(onOffCode("Off"), "0");
}

TEST(ModelSwitches, NormaliseClampsAndTheUbc3300WinsOverTheOthers)
{
    ModelSwitches m{5, -3, 0};
    m.normalise();
    EXPECT_EQ(m, (ModelSwitches{1, 0, 0}));
    ModelSwitches u{1, 0, 1};
    u.normalise();
    EXPECT_EQ(u, (ModelSwitches{0, 1, 1}));
    for (Model model : {Model::BC250D, Model::BC785D, Model::BC296D, Model::BC796D, Model::UBC3300}) {
        EXPECT_EQ(ModelSwitches::of(model).model(), model);
        EXPECT_EQ(modelFromName(modelName(model)), model);
    }
    EXPECT_EQ(modelFromName("bc796d"), Model::BC796D);
    EXPECT_EQ(modelFromName("BC780"), std::nullopt);
}

TEST(GridLayouts, MapGridColumnsToStoreColumns)
{
    EXPECT_EQ(gridDataColumns(0), 10);
    EXPECT_EQ(gridDataColumns(1), 11);
    EXPECT_STREQ(gridColumn(0, 5).header, "Beep Alert");
    EXPECT_EQ(gridColumn(0, 5).storeColumn, col::beep);
    EXPECT_STREQ(gridColumn(1, 5).header, "Record");
    EXPECT_EQ(gridColumn(1, 5).storeColumn, col::record);
    EXPECT_EQ(gridColumn(1, 11).storeColumn, col::step);
    EXPECT_EQ(gridColumnOfStore(0, col::record), 0);
    EXPECT_EQ(gridColumnOfStore(0, col::recordHidden), 0);
    for (int bc = 0; bc <= 1; ++bc)
        for (int c = 1; c <= gridDataColumns(bc); ++c) EXPECT_EQ(gridColumnOfStore(bc, gridColumn(bc, c).storeColumn), c);
}
