#include "core/bandplan.h"
#include "editor/freqrules.h"

#include "core/cellcodes.h"
#include "core/text.h"

#include <gtest/gtest.h>

#include <random>

using namespace kestra;

#ifndef KESTRA_SEED
#define KESTRA_SEED 7
#endif

namespace {

using u128 = unsigned __int128;

int bitLength(u128 v)
{
    int n = 0;
    while (v) {
        ++n;
        v >>= 1;
    }
    return n;
}

// Int(Val(text) * 10000) for the text of n / 10000, worked out with integers
// only: the double nearest to n / 10000, times 10000 rounded to a double
// (halves to even), then the whole part.
long long exactDoubleUnits(unsigned long long n)
{
    if (n == 0) return 0;
    // x = q * 2^-k with 2^52 <= q < 2^53, q the nearest to n * 2^k / 10000.
    int k = 0;
    while ((static_cast<u128>(n) << k) / 10000 < (static_cast<u128>(1) << 52)) ++k;
    while ((static_cast<u128>(n) << k) / 10000 >= (static_cast<u128>(1) << 53)) --k;
    const u128 scaled = static_cast<u128>(n) << k;
    u128 q = scaled / 10000;
    const u128 rem = scaled % 10000;
    if (rem * 2 > 10000 || (rem * 2 == 10000 && (q & 1))) ++q;
    if (q == (static_cast<u128>(1) << 53)) {
        q >>= 1;
        --k;
    }
    // The product q * 10000 * 2^-k, rounded to 53 bits.
    u128 m = q * 10000;
    int s = bitLength(m) - 53;
    if (s > 0) {
        const u128 lost = m & ((static_cast<u128>(1) << s) - 1);
        const u128 half = static_cast<u128>(1) << (s - 1);
        m >>= s;
        if (lost > half || (lost == half && (m & 1))) ++m;
        if (m == (static_cast<u128>(1) << 53)) {
            m >>= 1;
            ++s;
        }
    } else {
        s = 0;
    }
    const int exponent = s - k;
    return static_cast<long long>(exponent >= 0 ? m << exponent : m >> -exponent);
}

} // namespace

TEST(FrequencyUnits, AgreeWithBinaryDoublesForEveryFourDecimalText)
{
    // Every text of at most four decimals from 0 to 1300.0000 MHz. Many of them
    // land one unit low on doubles (0.0003 gives 2); that is the rule.
    char text[16];
    long long lowByOne = 0;
    for (unsigned long long n = 0; n <= 13'000'000; ++n) {
        const int len = std::snprintf(text, sizeof text, "%llu.%04llu", n / 10000, n % 10000);
        const long long units = freqUnits(std::string_view(text, static_cast<std::size_t>(len)));
        const long long expected = exactDoubleUnits(n);
        if (units != expected) {
            ADD_FAILURE() << text << ": " << units << " instead of " << expected;
            return;
        }
        lowByOne += expected != static_cast<long long>(n);
    }
    EXPECT_GT(lowByOne, 100000);  // the oracle really differs from plain decimals
    EXPECT_EQ(freqUnits("146.007"), 1460070);
    EXPECT_EQ(freqUnits("0.0003"), 2);
    EXPECT_EQ(freqUnits("  0146.0070 MHz"), 1460070);
}

TEST(FrequencyUnits, TextOfUnits)
{
    EXPECT_EQ(unitsText(1460000), "146");
    EXPECT_EQ(unitsText(1460050), "146.005");
    EXPECT_EQ(unitsText(5000), "0.5");
    EXPECT_EQ(unitsText(0), "0");
    EXPECT_EQ(unitsText(1550062), "155.0062");
}

TEST(CoverageLimits, TypedAndCheckedFrequenciesStopAtTheGaps)
{
    EXPECT_EQ(coverageLimit("24.9", LimitKind::Entry), "25");
    EXPECT_EQ(coverageLimit("700", LimitKind::Entry), "512");
    EXPECT_EQ(coverageLimit("1000", LimitKind::Entry), "960");
    EXPECT_EQ(coverageLimit("1000", LimitKind::Check), "956");
    EXPECT_EQ(coverageLimit("1301", LimitKind::Check), "1300");
    for (const char* inside : {"25", "512.9999", "806", "960.5", "1240", "1300.9"})
        EXPECT_EQ(coverageLimit(inside, LimitKind::Entry), std::nullopt) << inside;
}

TEST(Rasters, TheSpecialRangeAndThe625Raster)
{
    EXPECT_TRUE(on625Raster("155.0062"));
    EXPECT_TRUE(on625Raster("0155.0187"));
    EXPECT_TRUE(on625Raster("155.00125"));  // cut to four decimals first: 155.0012
    EXPECT_FALSE(on625Raster("155.0065"));
    EXPECT_FALSE(inSpecialRange(150.81));
    EXPECT_TRUE(inSpecialRange(150.8101));
    EXPECT_FALSE(inSpecialRange(154.6275));
    const Rasters r(freqUnits("151.4975"));
    EXPECT_EQ(r.d, 0);
    EXPECT_TRUE(r.good(true));
    EXPECT_FALSE(r.good(false));
    EXPECT_EQ(stepUnits("3"), 125);
    EXPECT_EQ(stepUnits("7"), 0);
    EXPECT_EQ(stepUnits("10"), 0);
}

TEST(Bandplans, LookupTakesTheLargestStartNotAboveTheFrequency)
{
    EXPECT_STREQ(bandplanName(5), "UBC3300 - plan 3 - Germany");
    EXPECT_STREQ(bandplanName(6), "Unknown");
    EXPECT_STREQ(bandplanName(-1), "Unknown");
    auto band = findBand(builtinPlan(1), 146.007);
    ASSERT_TRUE(band);
    EXPECT_EQ(band->start, "144");
    EXPECT_EQ(stepText(band->step), "5.0");
    EXPECT_EQ(modeText(findBand(builtinPlan(1), 462.5)->mode), "NFM");
    EXPECT_FALSE(findBand(builtinPlan(1), 24.99));
    EXPECT_EQ(modeText(findBand(builtinPlan(5), 440.0062)->mode), "FM");
    EXPECT_EQ(stepText(findBand(builtinPlan(5), 440.0062)->step), "7.5");
    EXPECT_EQ(stepText(findBand(builtinPlan(5), 440.0061)->step), "25.0");
    // Unsorted rows are fine.
    const std::vector<BandRow> unsorted{{"400", "3", "3"}, {"25", "2", "0"}, {"137", "0", "0"}};
    EXPECT_EQ(findBand(unsorted, 150)->start, "137");
}

TEST(Bandplans, TheCheckOfPlanOneOfTheUbc3300UsesPlan1b)
{
    Document doc;
    Settings s;
    s.bandplan = 3;
    EXPECT_EQ(findBand(planForEntry(doc, 3), 72)->start, "30");  // plan 3 for typing
    EXPECT_EQ(findBand(planForCheck(doc, 3), 72)->start, "70");  // plan 1b for the check
    EXPECT_TRUE(planForCheck(doc, 4).empty());
    EXPECT_TRUE(planForCheck(doc, 5).empty());
    doc.memdata[kBandplanBank][0] [1] = "100";
    doc.memdata[kBandplanBank][0][2] = "2";
    doc.memdata[kBandplanBank][0][3] = "4";
    doc.memdata[kBandplanBank][7][1] = "300";
    doc.memdata[kBandplanBank][7][2] = "1";
    doc.memdata[kBandplanBank][7][3] = "6";
    EXPECT_EQ(customPlan(doc).size(), 2u);
    EXPECT_EQ(findBand(planForCheck(doc, 2), 299)->mode, "2");
    EXPECT_EQ(findBand(planForEntry(doc, 2), 300)->mode, "1");
}

// ---- the table check ----

namespace {
using Cells = std::vector<std::pair<int, std::string>>;

// A document with one BC250D channel: the frequency, every code 0, then the cells given.
Document oneLine(const std::string& freq, const Cells& cells = {})
{
    Document doc;
    doc.clearstores();
    doc.model = ModelSwitches::of(Model::BC250D);
    auto& line = doc.memdata[0][1];
    line[col::freq] = freq;
    for (int c = col::trunk; c <= col::step; ++c) line[c] = "0";
    for (const auto& [c, text] : cells) line[c] = text;
    return doc;
}
std::string& cell(Document& doc, int column) { return doc.memdata[0][1][column]; }

// The channel of oneLine after the table check.
std::array<std::string, kCellColumns> checked(const std::string& freq, const Cells& cells = {}, const Settings& s = {},
                                              Model model = Model::BC250D)
{
    Document doc = oneLine(freq, cells);
    doc.model = ModelSwitches::of(model);
    checktable(doc, s);
    return doc.memdata[0][1];
}
} // namespace

TEST(Checktable, EmptiesAndGapsAreNormalised)
{
    Document doc = oneLine("Empty");
    checktable(doc, Settings{});
    EXPECT_EQ(cell(doc, col::freq), "0000.0000");
    EXPECT_EQ(doc.memdata[3][7][col::freq], "0000.0000");
    EXPECT_EQ(doc.memdata[kDummyBank][100][col::freq], "0000.0000");
    EXPECT_EQ(checked("1000")[col::freq], "0956.0000");
    EXPECT_EQ(checked("10.7")[col::freq], "0025.0000");
}

TEST(Checktable, CodesOutOfRangeAreReset)
{
    const auto line = checked("155.5", {{col::delay, "5"}, {col::tone, "301"}, {col::mode, "9"}, {col::step, ""},
                                        {col::trunk, "On"}, {col::tag, "A tag longer than sixteen"}});
    EXPECT_EQ(line[col::delay], "2");  // the BC250D layout knows no delay 5
    EXPECT_EQ(line[col::tone], "0");
    EXPECT_EQ(line[col::mode], "0");
    EXPECT_EQ(line[col::step], "0");
    EXPECT_EQ(line[col::trunk], "0");
    EXPECT_EQ(line[col::tag], "A tag longer tha");

    EXPECT_EQ(checked("155.5", {{col::delay, "5"}}, {}, Model::BC785D)[col::delay], "5");
    // "None" has the value 0 but four characters: kept on the long list only.
    EXPECT_EQ(checked("155.5", {{col::delay, "None"}}, {}, Model::BC785D)[col::delay], "None");
    EXPECT_EQ(checked("155.5", {{col::delay, "None"}})[col::delay], "2");
}

TEST(Checktable, WideAmLinesAndTrunkFlagsOutsideTheBanksTrunkRangeAreCleared)
{
    const auto wide = checked("854.5", {{col::mode, "1"}, {col::tone, "12"}, {col::trunk, "1"}});
    EXPECT_EQ(wide[col::tone], "0");
    EXPECT_EQ(wide[col::trunk], "0");
    EXPECT_EQ(checked("121.5", {{col::trunk, "1"}})[col::trunk], "0");  // below 136

    Settings s;
    Document doc = oneLine("460.5", {{col::trunk, "1"}});
    doc.trunkset[0].trunktype = "1";  // 806..960
    checktable(doc, s);
    EXPECT_EQ(cell(doc, col::trunk), "0");
    cell(doc, col::trunk) = "1";
    doc.trunkset[0].trunktype = "4";  // 406..512
    checktable(doc, s);
    EXPECT_EQ(cell(doc, col::trunk), "1");
    doc.trunkset[0].trunktype = "1";
    s.option5 = 1;  // the range check switched off
    checktable(doc, s);
    EXPECT_EQ(cell(doc, col::trunk), "1");
}

TEST(Checktable, StepLogicPutsFrequenciesOnARasterAndPicksTheirStep)
{
    Settings s;
    s.option12 = 1;
    struct Case {
        const char* freq;
        const char* step;  // before
        Model model;
        const char* wantFreq;  // nullptr: not looked at
        const char* wantStep;
    };
    const Case cases[] = {
        {"146.0071", "0", Model::BC250D, "0146.0050", "0"},  // on no raster: cut to 5 kHz
        {"151.4975", "0", Model::BC250D, "0151.4975", "1"},  // 7.5 kHz in the special range
        {"151.4975", "0", Model::UBC3300, nullptr, "0"},     // but not on the UBC3300
        {"460.0125", "0", Model::BC250D, nullptr, "3"},      // no multiple of 5 kHz, but of 12.5 kHz
        {"460.0125", "2", Model::BC250D, nullptr, "3"},      // no multiple of 10 kHz
        {"87.5869", "0", Model::BC250D, "0087.5800", nullptr},  // 87.5850 reads 875849 on doubles: on to 87.5800
        {"155.0062", "0", Model::BC250D, "0155.0062", nullptr}, // on the 6.25 raster: left alone
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.freq);
        const auto line = checked(c.freq, {{col::step, c.step}}, s, c.model);
        if (c.wantFreq) {
            EXPECT_EQ(line[col::freq], c.wantFreq);
        }
        if (c.wantStep) {
            EXPECT_EQ(line[col::step], c.wantStep);
        }
    }
    s.bandplan = 5;  // no step logic under plan 5
    EXPECT_EQ(checked("146.0071", {}, s)[col::freq], "0146.0071");
}

TEST(Checktable, AppliedTwiceGivesWhatItGaveOnce)
{
    // Random documents with all sorts of cells, every combination of the switches.
    std::mt19937 random(KESTRA_SEED);
    const char* texts[] = {"", " ", "0", "1", "2", "5", "7", "9", "12", "161", "300", "301", "-1", "On", "None",
                           "Empty", "abc", "1.5", "10"};
    auto pick = [&](auto& list) { return std::string(list[random() % std::size(list)]); };
    for (int round = 0; round < 200; ++round) {
        Document doc;
        doc.clearstores();
        doc.model = ModelSwitches::of(static_cast<Model>(round % 5));
        for (int b = 0; b < 10; ++b) doc.trunkset[b].trunktype = std::to_string(random() % 9);
        for (int b = 0; b <= kDummyBank; ++b)
            for (int r = 1; r <= 100; ++r) {
                auto& line = doc.memdata[b][r];
                const int kind = static_cast<int>(random() % 10);
                const double mhz = kind == 0 ? 0 : std::uniform_real_distribution<double>(0, 1500)(random);
                char buffer[32];
                std::snprintf(buffer, sizeof buffer, "%.*f", static_cast<int>(random() % 6), mhz);
                line[col::freq] = kind == 1 ? "Empty" : buffer;
                for (int c = 2; c <= 12; ++c) line[c] = pick(texts);
                if (random() % 3 == 0) line[col::tag] = "A rather long tag, longer than sixteen";
            }
        Settings s;
        s.option12 = static_cast<int>(random() % 2);
        s.option5 = static_cast<int>(random() % 2);
        s.bandplan = static_cast<int>(random() % 6);
        checktable(doc, s);
        const auto once = doc.memdata;
        checktable(doc, s);
        for (int b = 0; b <= kDummyBank; ++b)
            for (int r = 1; r <= 100; ++r)
                for (int c = 0; c < kCellColumns; ++c)
                    ASSERT_EQ(doc.memdata[b][r][c], once[b][r][c]) << "round " << round << " at " << b << "/" << r << "/" << c
                        << " freq " << once[b][r][1] << " step " << once[b][r][12] << " previous step " << once[b][r - 1][12];
        for (int b = 0; b <= kDummyBank; ++b)
            for (int r = 1; r <= 100; ++r) {
                const long long m = IntVal(doc.memdata[b][r][col::freq]);
                if (Val(doc.memdata[b][r][col::freq]) == 0) continue;
                EXPECT_TRUE((m >= 25 && m <= 512) || (m >= 806 && m <= 960) || (m >= 1240 && m <= 1300))
                    << doc.memdata[b][r][col::freq];
            }
    }
}

TEST(ApplyBandplan, FillsModeAndStepOfTheLinesWithAFrequency)
{
    Settings s;
    s.bandplan = 1;
    Document doc = oneLine("162.55");
    doc.memdata[0][2][col::freq] = "0";
    doc.memdata[0][2][col::mode] = "x";
    doc.memdata[0][3][col::freq] = "118.1";
    applybandplan(doc, s, 0, 1, 2);
    EXPECT_EQ(cell(doc, col::mode), "0");
    EXPECT_EQ(cell(doc, col::step), "3");
    EXPECT_EQ(doc.memdata[0][2][col::mode], "x");
    EXPECT_NE(doc.memdata[0][3][col::mode], "2");  // outside the range
    applybandplanall(doc, s);
    EXPECT_EQ(doc.memdata[0][3][col::mode], "2");
    s.bandplan = 4;  // plans 4 and 5 do nothing here
    doc.memdata[0][3][col::mode] = "y";
    applybandplanall(doc, s);
    EXPECT_EQ(doc.memdata[0][3][col::mode], "y");
}

TEST(SearchLimits, PlainValuesMovedIntoTheTunableBands)
{
    EXPECT_EQ(searchLimit("600"), "512");
    EXPECT_EQ(searchLimit("1000"), "956");
    EXPECT_EQ(searchLimit("1250"), "1250");       // inside the top band
    EXPECT_EQ(searchLimit("0958.5000"), "958.5");  // the table check's gap starts above 960
    EXPECT_EQ(searchLimit("20"), "25");
    EXPECT_EQ(searchLimit("1400.5"), "1300");
    EXPECT_EQ(searchLimit("0162.5500"), "162.55");
    EXPECT_EQ(searchLimit("0"), "0");             // no limit stays none
    EXPECT_EQ(searchLimit(""), "0");
    EXPECT_EQ(searchLimit("x"), "0");
}
