// The frequency harvest of Advanced Data Import on inputs shaped like the
// pages and files users bring: what it takes, what it passes over, and the
// limits of its list and of the table it writes into.

#include "importexport/harvest.h"
#include "core/document.h"
#include "support/testfiles.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace kestra;
using namespace kestra::test;

namespace {

bool found(const FrequencyHarvest& h, const std::string& text)
{
    return std::find(h.items().begin(), h.items().end(), text) != h.items().end();
}

} // namespace

TEST(FrequencyHarvest, HtmlTablePageGivesTheFrequenciesNotTheOtherNumbers)
{
    const std::string page =
        "<html><head><title>County Radio - updated 2024-05-12</title></head><body>\n"
        "<p>Call 555-123-4567 or (03) 9876 5432. Rev.2 of the list, page .500 of 500.</p>\n"
        "<table><tr><th>Freq</th><th>Agency</th><th>PL</th><th>Since</th></tr>\n"
        "<tr><td>155.4750</td><td>Sheriff; Dispatch</td><td>CSQ</td><td>12/05/2024</td></tr>\n"
        "<tr><td><b>460.0250</b></td><td>Fire</td><td>0.0</td><td>2019</td></tr>\n"
        "<tr><td>146.52</td><td>Simplex, 146.520 calling</td><td>3.5</td><td>1998</td></tr>\n"
        "<tr><td>453.2500MHz</td><td>Roads</td><td>156.800-157.100</td><td>1.2.3</td></tr>\n"
        "</table><p>Site at 52.3702 N, price $12.99</p></body></html>";
    FrequencyHarvest h;
    h.scantext(page);
    const std::vector<std::string> expected = {"155.4750", "460.0250", "146.52", "146.520", "3.5",
                                               "453.2500", "156.800",  "157.100", "1.2.",   "52.3702", "12.99"};
    EXPECT_EQ(h.items(), expected);
    // Dates, phone numbers, years, a version, dots without a digit on one side
    // and a zero value are passed over.
    for (const char* absent : {"2024", "555", "4567", "9876", "2", "Rev.2", ".500", "500", "0.0", "12/05/2024", "1998"})
        EXPECT_FALSE(found(h, absent)) << absent;
}

TEST(FrequencyHarvest, TabSeparatedFileAndTextWithMhzAndKhzForms)
{
    TempDir dir;
    writeBytes(dir.file("list.tab"),
               "Frequency\tTag\tMode\r\n154.4300\tFire Dispatch\tFM\r\n154.4300\tagain\tFM\r\n"
               "121.500\tGuard\tAM\r\n\r\nTune 162.550 MHz or 162.400MHz; beacon 1520 kHz, NDB 7.125kHz\n"
               "last line without end 851.0125");
    FrequencyHarvest h;
    ASSERT_TRUE(h.scanfile(dir.file("list.tab")));
    const std::vector<std::string> expected = {"154.4300", "121.500", "162.550", "162.400", "7.125", "851.0125"};
    EXPECT_EQ(h.items(), expected);
    EXPECT_FALSE(h.scanfile(dir.file("missing.txt")));
}

TEST(FrequencyHarvest, ListStopsAtItsCapAndTokensAreCutTo15Characters)
{
    TempDir dir;
    std::string text;
    for (int i = 0; i < 1500; ++i) text += std::to_string(100 + i) + ".5\n";
    writeBytes(dir.file("many.txt"), text);
    FrequencyHarvest h;
    h.scanfile(dir.file("many.txt"));
    EXPECT_EQ(h.items().size(), FrequencyHarvest::kFull);
    h.scantext("999.9");
    EXPECT_EQ(h.items().size(), FrequencyHarvest::kFull);

    h.clear();
    h.scantext("1234567.123456789012");
    ASSERT_EQ(h.items().size(), 1u);
    EXPECT_EQ(h.items()[0], "1234567.1234567");
    // The clipboard path reads no further than its limit.
    h.clear();
    h.scanClipboard(std::string(FrequencyHarvest::kClipboardLimit - 3, ' ') + "146.520");
    EXPECT_TRUE(h.items().empty());
}

TEST(FrequencyHarvest, ExportToTableWritesOnlyTheFrequencyOfAtMost100Channels)
{
    Document doc;
    doc.memdata[2][5][col::tag] = "kept";
    std::vector<std::string> items;
    for (int i = 0; i < 120; ++i) items.push_back(std::to_string(400 + i) + ".125");
    EXPECT_EQ(exportToTable(doc, items, 2, 0), 100);
    EXPECT_TRUE(doc.dirty);
    EXPECT_EQ(doc.memdata[2][1][col::freq], "400.125");
    EXPECT_EQ(doc.memdata[2][5][col::freq], "404.125");
    EXPECT_EQ(doc.memdata[2][5][col::tag], "kept");
    EXPECT_EQ(doc.memdata[2][100][col::freq], "499.125");
    // From channel 50 the rows run past 100 up to the table's last row.
    Document late;
    EXPECT_EQ(exportToTable(late, items, 0, 50), kRows - 50);
    EXPECT_EQ(late.memdata[0][111][col::freq], "461.125");
    EXPECT_EQ(clipboardText({"1.5", "2.5", "3.5"}), "1.5\r\n2.5\r\n3.5");
}
