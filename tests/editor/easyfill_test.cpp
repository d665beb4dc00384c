#include "editor/easyfill.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace kestra;

namespace {

struct Fill {
    Document doc;
    EasyFillValues values;

    explicit Fill(Model model = Model::BC250D) { doc.model = ModelSwitches::of(model); }
    void run(const char* from, const char* to, const char* start, const char* step)
    {
        values.from = from;
        values.to = to;
        values.start = start;
        values.step = step;
        easyFill(doc, values);
    }
    const std::string& freq(int channel) const
    {
        return doc.memdata[channelBank(channel)][channelRow(channel)][col::freq];
    }
    // The frequencies of a run of channels, first to last.
    std::vector<std::string> freqs(int first, int last) const
    {
        std::vector<std::string> out;
        for (int channel = first; channel <= last; ++channel) out.push_back(freq(channel));
        return out;
    }
    void choose(EasyField field, const char* text)
    {
        values.tick(field) = true;
        values.codeOf(field) = easyFieldCode(field, text, doc.model);
    }
};

} // namespace

TEST(EasyFillFrequencies, TheThirdOf25kHzAddsUpWithoutDrift)
{
    Fill f;
    f.run("1", "1100", "118.0000", "8.33");
    EXPECT_EQ(f.freqs(1, 4), (std::vector<std::string>{"0118.0000", "0118.0083", "0118.0167", "0118.0250"}));
    // Every third channel lands on the 25 kHz raster, however far the range goes.
    EXPECT_EQ(f.freq(100), "0118.8250");
    EXPECT_EQ(f.freq(101), "0118.8333");
    EXPECT_EQ(f.freq(1000), "0126.3250");
    EXPECT_EQ(f.freq(1099), "0127.1500");
}

TEST(EasyFillFrequencies, A625kHzStepLandsOnTheRasterTheEditorKnows)
{
    Fill f;
    f.run("1", "5", "150", "6.25");
    EXPECT_EQ(f.freqs(1, 5),
              (std::vector<std::string>{"0150.0000", "0150.0062", "0150.0125", "0150.0187", "0150.0250"}));
}

TEST(EasyFillRange, ReversedRangeIsSwappedAndOnlyItsChannelsChange)
{
    Fill f;
    f.run("150", "50", "100", "100");
    EXPECT_EQ(f.values.from, "50");
    EXPECT_EQ(f.values.to, "150");
    EXPECT_EQ(f.freq(49), "");
    EXPECT_EQ(f.freq(50), "0100.0000");
    EXPECT_EQ(f.doc.memdata[1][1][col::freq], "0105.1000");   // channel 101, bank 2 row 1
    EXPECT_EQ(f.freq(150), "0110.0000");
    EXPECT_EQ(f.freq(151), "");
}

TEST(EasyFillRange, OutOfRangeValuesAreClampedAndTheLastChannelIsTheDummyBanksRow100)
{
    Fill f;
    f.choose(EasyField::Mode, "AM");
    f.run("0", "5000", "100", "3");
    EXPECT_EQ(f.values.from, "1");
    EXPECT_EQ(f.values.to, "1100");
    EXPECT_EQ(f.values.step, "5");
    EXPECT_EQ(f.freq(2), "0100.0050");
    EXPECT_EQ(f.doc.memdata[kDummyBank][100][col::freq], "0105.4950");
    EXPECT_EQ(f.doc.memdata[kDummyBank][100][col::mode], "2");
    EXPECT_EQ(f.doc.memdata[kSearchBank][1][col::freq], "");

    f.run("3", "1", "100", "20000");
    EXPECT_EQ(f.values.step, "10000");
    EXPECT_EQ(f.freq(2), "0110.0000");
}

TEST(EasyFillFields, ChosenTextsGoIntoTheModelsColumnsAsStoreCodes)
{
    Fill wide(Model::BC796D);
    wide.values.tick(EasyField::Frequency) = false;
    wide.choose(EasyField::Record, "On");
    wide.choose(EasyField::Delay, "Inf.");
    wide.choose(EasyField::Step, "6.25");
    wide.choose(EasyField::Tone, "None");
    wide.run("201", "202", "", "");
    const auto& line = wide.doc.memdata[2][2];
    EXPECT_EQ(std::tie(line[col::record], line[col::delay], line[col::step], line[col::tone]), std::make_tuple("1", "4", "8", "0"));
    EXPECT_EQ(line[col::freq], "");   // not ticked: left as it was
    EXPECT_EQ(wide.doc.memdata[2][3][col::record], "");

    // Without a Record column the record flag is the hidden one the transfers use.
    Fill narrow(Model::BC250D);
    narrow.choose(EasyField::Record, "On");
    narrow.run("1", "1", "100", "5");
    EXPECT_EQ(narrow.doc.memdata[0][1][col::recordHidden], "1");
    EXPECT_EQ(narrow.doc.memdata[0][1][col::record], "");

    EXPECT_EQ(easyFieldChoices(EasyField::Step, ModelSwitches::of(Model::BC296D)),
              (std::vector<std::string>{"5.0", "6.25", "7.5", "10.0", "12.5", "20.0", "25.0", "50.0", "100.0", "Auto"}));
    EXPECT_EQ(easyFieldChoices(EasyField::Step, ModelSwitches::of(Model::BC785D)).size(), 8u);
    // The increments of "Step:" go on with the model's larger steps, without "Auto".
    EXPECT_EQ(easyStepChoices(ModelSwitches::of(Model::BC296D)),
              (std::vector<std::string>{"6.25", "10.0", "12.5", "15.0", "20.0", "25.0", "50.0", "100.0"}));
    EXPECT_EQ(easyFieldChoices(EasyField::Delay, ModelSwitches::of(Model::BC250D)),
              (std::vector<std::string>{"None", "2"}));
}

TEST(EasyFillFields, FillSeriesCountsTheTagAndToneIncreaseWalksTheToneList)
{
    Fill f;
    f.values.tick(EasyField::Frequency) = false;
    f.choose(EasyField::Tag, "Unit 9");
    f.choose(EasyField::Tone, "250.3");
    f.values.fillSeries = true;
    f.values.autoTone = true;
    f.run("99", "102", "", "");
    const auto cell = [&](int channel, int column) {
        return f.doc.memdata[channelBank(channel)][channelRow(channel)][column];
    };
    EXPECT_EQ(cell(99, col::tag), "Unit 9");
    EXPECT_EQ(cell(100, col::tag), "Unit 10");
    EXPECT_EQ(cell(102, col::tag), "Unit 12");
    EXPECT_EQ(toneText(cell(99, col::tone)), "250.3");
    EXPECT_EQ(toneText(cell(100, col::tone)), "023");   // the tones run on into the DCS codes
    EXPECT_EQ(toneText(cell(102, col::tone)), "026");

    // A tag without a final number is the same on every channel.
    f.choose(EasyField::Tag, "Fire");
    f.values.autoTone = false;
    f.run("5", "6", "", "");
    EXPECT_EQ(f.doc.memdata[0][6][col::tag], "Fire");
    EXPECT_EQ(toneText(f.doc.memdata[0][6][col::tone]), "250.3");

    // Past the last code the list starts again at the first tone; a locked-out
    // form stays locked out, and "None" grows into the first tone.
    EXPECT_EQ(toneText(nextToneCode(*toneCode("754"), 1)), "67.0");
    EXPECT_EQ(toneText(nextToneCode(*toneCode("754-"), 2)), "71.9-");
    EXPECT_EQ(toneText(nextToneCode(*toneCode("250.3-"), 1)), "023-");
    EXPECT_EQ(toneText(nextToneCode("0", 1)), "67.0");
}
