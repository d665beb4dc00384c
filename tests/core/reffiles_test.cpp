#include "core/reffiles.h"
#include "support/testfiles.h"

#include <gtest/gtest.h>

#include <chrono>
#include <tuple>

using namespace kestra;
using kestra::test::readBytes;
using kestra::test::TempDir;
using kestra::test::writeBytes;

TEST(NamesFile, TagsComeBackWithSemicolonsForCommas)
{
    TempDir dir;
    Document doc;
    doc.banktags[0] = "Air, local";
    doc.banktags[10] = "Scratch";
    doc.banktags[11] = "Search is not kept here";
    ASSERT_EQ(writeNames(doc, dir.path()), "");
    EXPECT_EQ(kestra::test::crlfLines(readBytes(dir.path() / "names.dat")).size(), 11u);
    Document next;
    readNames(next, dir.path());
    EXPECT_EQ(next.banktags[0], "Air; local");
    EXPECT_EQ(next.banktags[1], "Bank: 2");
    EXPECT_EQ(next.banktags[10], "Scratch");
    EXPECT_EQ(next.banktags[11], "Search");
    // A short file leaves the later tags as they were; a missing one changes nothing.
    writeBytes(dir.path() / "names.dat", "Only one\n");
    readNames(next, dir.path());
    EXPECT_EQ(next.banktags[0], "Only one");
    EXPECT_EQ(next.banktags[10], "Scratch");
    TempDir empty;
    readNames(next, empty.path());
    EXPECT_EQ(next.banktags[0], "Only one");
}

TEST(NamesFile, AHugeLineIsCutToATagWhileItIsRead)
{
    TempDir dir;
    // Twelve megabytes on the first line, a comma in the part that is kept.
    writeBytes(dir.path() / "names.dat", "Air, local tags " + std::string(12'000'000, 'x') + "\r\nFire\r\n");
    Document doc;
    const auto start = std::chrono::steady_clock::now();
    readNames(doc, dir.path());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
    EXPECT_EQ(doc.banktags[0], "Air; local tags ");
    EXPECT_EQ(doc.banktags[1], "Fire");
    EXPECT_EQ(doc.banktags[2], "Bank: 3");
}

TEST(TrunkTypeFile, KeepsTheTypesOfTheTenBanks)
{
    TempDir dir;
    Document doc;
    doc.trunkset[3].trunktype = "2";
    doc.trunkset[4].trunktype = "x";
    ASSERT_EQ(writeTrunkTypes(doc, dir.path()), "");
    Document next;
    readTrunkTypes(next, dir.path());
    // No value reads as 0.
    EXPECT_EQ(std::tie(next.trunkset[0].trunktype, next.trunkset[3].trunktype, next.trunkset[4].trunktype),
              std::make_tuple("0", "2", "0"));
}

TEST(BandplanFile, ReadsFiftyRowsByTheirMarks)
{
    TempDir dir;
    std::string text;
    for (int i = 0; i < 60; ++i) {
        if (i == 3)
            text += "a comment line without marks\r\n";
        else
            text += "FR" + std::to_string(100 + i) + ".0000,MD" + std::to_string(i % 4) + ",ST" + std::to_string(i % 10) + "\r\n";
    }
    writeBytes(dir.path() / "bandplan.dat", text);
    Document doc;
    ASSERT_TRUE(readBandplan(doc, dir.path()));
    const auto& plan = doc.memdata[kBandplanBank];
    EXPECT_EQ(plan[0][1], "100.0000");
    EXPECT_EQ(plan[0][2], "0");
    EXPECT_EQ(plan[2][3], "2");
    EXPECT_EQ(plan[3][1], "");  // the passed-over line keeps its row
    EXPECT_EQ(plan[4][1], "104.0000");
    EXPECT_EQ(plan[49][1], "149.0000");
    EXPECT_EQ(plan[50][1], "");  // the 51st line is not read
    TempDir empty;
    EXPECT_FALSE(readBandplan(doc, empty.path()));

    // Marks in any order or cramped together do not break the reading.
    writeBytes(dir.path() / "bandplan.dat", "MD2 ST4 FR118.0000\r\nFRMDST\r\n");
    Document cramped;
    ASSERT_TRUE(readBandplan(cramped, dir.path()));
    const auto& rows = cramped.memdata[kBandplanBank];
    EXPECT_EQ(std::tie(rows[0][1], rows[0][2], rows[1][2]), std::make_tuple("", "2", "S"));
}

TEST(WindowFiles, PlaceAndWidthsComeBackAsWritten)
{
    TempDir dir;
    EXPECT_FALSE(readWindowPlace(dir.path()));
    ASSERT_EQ(writeWindowPlace({1200, 900, 12000, 9000, 2}, dir.path()), "");
    const auto place = readWindowPlace(dir.path());
    ASSERT_TRUE(place);
    EXPECT_EQ(place->width, 12000);
    EXPECT_EQ(place->state, 2);
    writeBytes(dir.path() / "window.dat", "1\r\n2\r\n");
    EXPECT_FALSE(readWindowPlace(dir.path()));

    const std::vector<int> widths{1200, 2400, 600, 900, 700, 800, 900, 1000, 700, 700, 800};
    ASSERT_EQ(writeColumnWidths(1, widths, dir.path()), "");
    EXPECT_EQ(readColumnWidths(1, dir.path()), widths);
    EXPECT_FALSE(readColumnWidths(0, dir.path()));  // the other layout has its own file
    writeBytes(dir.path() / "tabw250.ini", "100\r\n-5\r\nabc\r\n1e9\r\n5\r\n5\r\n5\r\n5\r\n5\r\n5\r\n");
    EXPECT_EQ(readColumnWidths(0, dir.path()), (std::vector<int>{100, 0, 0, 100000, 5, 5, 5, 5, 5, 5}));
}
