// ICF files made here from the layout of the format: eight banks of fifty
// channels decode to the expected table, the edge forms of a line decode as
// the radio stores them, broken files are refused, and Apply writes a bank.

#include "importexport/icf.h"
#include "core/text.h"

#include <gtest/gtest.h>

#include <cstdio>

using namespace kestra;

namespace {

// One data line: address, frequency digits (first digit, three more, four
// decimals), position 15, offset, tone byte, duplex digit, step digit, name.
std::string icfLine(const std::string& mhz4, const std::string& dec4, const std::string& toneByte = "08",
                    char step = '3', const std::string& name = "414952FFFFFF")
{
    return "00A020" + mhz4 + dec4 + "0" + "000" + "6000" + toneByte + "0" + std::string(1, step) + name;
}

// A file whose bank b, channel c is 1(18+b).(c * 100 as four digits).
std::vector<std::string> icfLines()
{
    std::vector<std::string> lines = {"32720001", "#Comment=made by hand"};
    for (int b = 0; b < kIcfBanks; ++b)
        for (int c = 0; c < kIcfChannels; ++c) {
            char dec[8];
            std::snprintf(dec, sizeof dec, "%04d", c * 100);
            lines.push_back(icfLine("0" + std::to_string(118 + b), dec));
        }
    return lines;
}

std::string join(const std::vector<std::string>& lines)
{
    std::string text;
    for (const auto& l : lines) text += l + "\r\n";
    return text;
}

} // namespace

TEST(IcfFile, DecodesEightBanksOfFiftyChannelsAndTheEdgeFormsOfALine)
{
    std::vector<std::string> lines = icfLines();
    lines[2 + 0] = icfLine("FFF0", "0000");                       // empty channel
    lines[2 + 1] = icfLine("6162", "5500", "48");                 // first digit 6 reads as 2; mode digit 4
    lines[2 + 2] = icfLine("0146", "1235", "A0");                 // no extension after a 5; mode digit A
    lines[2 + 3] = icfLine("0146", "0006", "C0", '8');            // 6 gets 25; mode digit C leaves no mode
    lines[2 + 4] = icfLine("0AF0", "0000");                       // a 9 kHz channel when the setting is on
    lines[2 + 50 + 7] = icfLine("0119", "0700", "08", '3', "4B4553FFFF");   // a short name
    IcfData data;
    ASSERT_TRUE(decodeIcf(join(lines), 0, data));
    const auto& a = data.icfdata[0];
    EXPECT_EQ(a[0].freq, "");
    EXPECT_EQ(a[1].freq, "2162.550000");
    EXPECT_EQ(a[1].mode, "1");
    EXPECT_EQ(a[2].freq, "0146.1235");
    EXPECT_EQ(a[2].mode, "2");
    EXPECT_EQ(a[3].freq, "0146.000625");
    EXPECT_EQ(a[3].mode, "");
    EXPECT_EQ(a[3].step, "8");
    EXPECT_EQ(a[4].freq, "0AF0.000000");   // no number without the setting
    EXPECT_EQ(a[5].freq, "0118.050000");
    EXPECT_EQ(a[5].name, "AIR   ");
    EXPECT_EQ(a[5].mode, "0");
    EXPECT_EQ(a[5].tone, 8);
    EXPECT_EQ(a[5].offset, "000.6000");
    EXPECT_EQ(data.icfdata[1][7].name, "KES  ");
    EXPECT_EQ(data.icfdata[7][49].freq, "0125.490000");
    EXPECT_TRUE(data.icfdata[8][0].freq.empty());   // the edge rows are not in the file
    int filled = 0;
    for (int b = 0; b < kIcfBanks; ++b)
        for (int c = 0; c < kIcfChannels; ++c) filled += Val(data.icfdata[b][c].freq) > 0;
    EXPECT_EQ(filled, 400 - 2);

    IcfData nine;
    ASSERT_TRUE(decodeIcf(join(lines), 1, nine));
    EXPECT_EQ(nine.icfdata[0][4].freq, "0.58500");
    EXPECT_EQ(nine.icfdata[0][0].freq, "");
}

TEST(IcfFile, TruncatedOrCorruptedFilesAreNotValid)
{
    std::vector<std::string> lines = icfLines();
    IcfData data;
    std::vector<std::string> shortFile(lines.begin(), lines.end() - 1);
    EXPECT_FALSE(decodeIcf(join(shortFile), 0, data));
    EXPECT_FALSE(decodeIcf("", 0, data));
    std::vector<std::string> bad = lines;
    bad[100][12] = 'Z';
    EXPECT_FALSE(decodeIcf(join(bad), 0, data));
    // Short lines are no error: their fields are empty.
    std::vector<std::string> cut = lines;
    cut[10] = "00A0";
    ASSERT_TRUE(decodeIcf(join(cut), 0, data));
    EXPECT_EQ(data.icfdata[0][8].freq, "");
    EXPECT_EQ(data.icfdata[0][8].name, "");
}

TEST(IcfFile, ApplyWritesFiftyChannelsAndPerconCleanClosesUpDuplicates)
{
    std::vector<std::string> lines = icfLines();
    lines[2 + 50 * 2 + 3] = icfLine("0120", "0100", "08", '8');   // the same as channel 1 of bank C
    IcfData data;
    ASSERT_TRUE(decodeIcf(join(lines), 0, data));
    Document doc;
    doc.clearstores();
    EXPECT_TRUE(bankIsEmpty(doc, 4));
    doc.memdata[4][51][col::freq] = "0400.0000";
    doc.memdata[4][4][col::step] = "1";
    applyIcfBank(doc, data, 2, 4);
    EXPECT_FALSE(bankIsEmpty(doc, 4));
    EXPECT_EQ(doc.memdata[4][1][col::freq], "0120.000000");
    EXPECT_EQ(doc.memdata[4][1][col::tag], "AIR   ");
    EXPECT_EQ(doc.memdata[4][1][col::step], "3");
    EXPECT_EQ(doc.memdata[4][4][col::step], "5");
    EXPECT_EQ(doc.memdata[4][51][col::freq], "0400.0000");
    EXPECT_TRUE(doc.dirty);

    perconClean(data);
    const auto& c = data.icfdata[2];
    EXPECT_EQ(c[1].freq, "0120.010000");
    EXPECT_EQ(c[3].freq, "0120.040000");   // channel 3 was the duplicate: the rest moved up
    EXPECT_EQ(c[48].freq, "0120.490000");
    EXPECT_EQ(c[49].freq, "");
    EXPECT_EQ(data.icfdata[3][49].freq, "0121.490000");
}
