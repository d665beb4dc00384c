#include "editor/frequencyentry.h"

#include "core/text.h"
#include "support/tablerig.h"

#include <gtest/gtest.h>

using namespace kestra;

namespace {

struct Entry : test::TableRig {
    FrequencyEntry entry{table};

    using TableRig::TableRig;
    std::string type(const std::string& text, int row = 1)
    {
        entry.enterfreq(row, text);
        return shown(row, "Freq. (MHz)");
    }
};

} // namespace

TEST(Enterfreq, StopsAtTheCoverageLimitsInTheFormatOfZero)
{
    Entry e;
    EXPECT_EQ(e.type("1000"), "0960.0000");
    EXPECT_EQ(e.type("  1400"), "1300.0000");
    e.settings.zero = 1;
    EXPECT_EQ(e.type("700"), "512.0000");
}

TEST(Enterfreq, KeepsThe625RasterAndSetsItsStep)
{
    Entry e(Model::BC796D);
    EXPECT_EQ(e.type("155.0062"), "0155.0062");
    EXPECT_EQ(e.shown(1, "Step"), "6.25");
    EXPECT_EQ(e.shown(1, "Mode"), "");  // the bandplan is not asked on this raster
}

TEST(Enterfreq, RoundsToTheBandStepOfThePlan)
{
    Entry e;
    e.settings.bandplan = 1;
    e.settings.round = 1;
    EXPECT_EQ(e.type("146.007"), "0146.0050");
    EXPECT_EQ(e.entry.roundRemainder(), "40");
    EXPECT_EQ(e.shown(1, "Mode"), "FM");
    EXPECT_EQ(e.shown(1, "Step"), "5.0");
    EXPECT_EQ(e.type("146.0076", 2), "0146.0100");  // 52 hundredths: up
    EXPECT_EQ(e.type("162.556", 3), "0162.5500");   // 12.5 kHz band
    EXPECT_EQ(e.shown(3, "Step"), "12.5");
    // The special range is never rounded.
    EXPECT_EQ(e.type("151.4976", 4), "0151.4976");
}

TEST(Enterfreq, WithoutRoundingOffRasterFrequenciesAreCutToFiveKilohertz)
{
    Entry e;
    e.settings.round = 0;
    e.settings.bandplan = 0;
    e.settings.option11 = 1;
    EXPECT_EQ(e.type("151.4975"), "0151.4975");  // (f - 50) mod 75 = 0 inside the range
    EXPECT_EQ(e.shown(1, "Step"), "7.5");
    EXPECT_EQ(e.type("160.4975", 2), "0160.4950");  // the same pattern outside it
    EXPECT_EQ(e.type("146.4975", 3), "0146.4975");  // on the 7.5 kHz raster anyway
    e.settings.option11 = 0;
    EXPECT_EQ(e.type("151.4975", 4), "0151.4975");
    EXPECT_EQ(e.shown(4, "Step"), "");
}

TEST(Enterfreq, UnderPlanOneOfTheUbc3300TypingUsesPlanThree)
{
    Entry e(Model::UBC3300);
    e.settings.bandplan = 3;
    e.settings.round = 1;
    e.type("72.5");
    EXPECT_EQ(e.shown(1, "Step"), "25.0");  // plan 3: 30 MHz FM 25.0
    e.settings.bandplan = 2;
    e.doc.memdata[kBandplanBank][0][1] = "70";
    e.doc.memdata[kBandplanBank][0][2] = "2";
    e.doc.memdata[kBandplanBank][0][3] = "2";
    e.type("72.5", 2);
    EXPECT_EQ(e.shown(2, "Mode"), "AM");
    EXPECT_EQ(e.shown(2, "Step"), "10.0");
}

TEST(Enterfreq, ANewLineGetsTheDefaultData)
{
    Entry e(Model::BC785D);
    e.grid.setText(1, 3, "On");  // Trunk, already set: kept
    e.type("460.5");
    EXPECT_EQ(e.shown(1, "Trunk"), "On");
    EXPECT_EQ(e.shown(1, "Delay Time"), "1");
    EXPECT_EQ(e.shown(1, "Beep Alert"), "Off");
    EXPECT_EQ(e.shown(1, "PL/DPL"), "");  // not enabled by default
    EXPECT_EQ(e.shown(1, "Record"), "");
    e.table.defdata.enabled[DefaultData::Record] = 1;
    e.table.defdata.value[DefaultData::Record][1] = 1;
    e.type("460.5", 2);
    EXPECT_EQ(e.shown(2, "Record"), "On");
    Entry small(Model::BC250D);
    small.type("460.5");
    EXPECT_EQ(small.shown(1, "Delay Time"), "2");
}
