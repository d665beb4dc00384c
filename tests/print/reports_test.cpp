// The reports on a printer that records what it is told: the page form, the
// tab positions of every report, the page breaks and totals, the decoded
// values, and a printer that fails on the way.

#include "print/reports.h"

#include "platform/fake/recordingprinter.h"
#include "support/reportdocument.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kestra {
namespace {

using test::reportDocument;

const std::string kTitle = "1:Kestra Console for Uniden BC250/296/785/796 - 2026-11-23";

std::vector<std::string> texts(const std::vector<std::vector<PrintPiece>>& page)
{
    std::vector<std::string> lines;
    for (const auto& line : page) lines.push_back(RecordingPrinter::lineText(line));
    return lines;
}

RecordingPrinter run(const Document& doc, PrintItem item, int bank = 0)
{
    RecordingPrinter printer;
    ReportJob job{item, bank, "2026-11-23", "scanner.mem"};
    EXPECT_EQ(printReport(printer, doc, job), 0);
    return printer;
}

TEST(ReportsTest, ActiveBankPrintsTwoPagesOfFiftyChannelsWithTheFixedForm)
{
    const Document doc = reportDocument();
    const RecordingPrinter p = run(doc, PrintItem::ActiveBank, 9);

    ASSERT_GE(p.calls.size(), 2u);
    EXPECT_EQ(p.calls[0], "font Arial 8.25");
    EXPECT_EQ(p.calls[1], "origin -800 -500");
    EXPECT_EQ(p.calls.back(), "enddoc");
    ASSERT_EQ(p.pages.size(), 2u);

    const std::vector<std::string> heads = {
        kTitle, "", "1:Bank: 10", "1:Bankname: Bank tag 10", "1:Filename: scanner.mem", "",
        "7:Frequency|21:Tag|52:Trunk|60:Delay|70:Record|79:Beep|88:PL/DPL|97:L.out|105:ATT|111:Mode|118:Step"};
    for (int page = 0; page < 2; ++page) {
        const auto lines = texts(p.pages[page]);
        // Heads, 50 rows with a blank line after every tenth, the footer.
        ASSERT_EQ(lines.size(), heads.size() + 55 + 1) << page;
        EXPECT_TRUE(std::equal(heads.begin(), heads.end(), lines.begin())) << page;
        for (int blank = 0; blank < 5; ++blank) EXPECT_EQ(lines[heads.size() + blank * 11 + 10], "");
        EXPECT_EQ(lines.back(), "1:Printed with Kestra Console - scanner memory in a table|0:   ---   Page "
                                    + std::to_string(page + 1) + " / 2");
    }
    const auto first = texts(p.pages[0]), second = texts(p.pages[1]);
    // Channel 912: every column decoded; record from column 4 on a BC785D.
    EXPECT_EQ(first[heads.size() + 11 + 1],
              "1:912: |7:208.3000|21:Tag 10-12|52:Off|60:Inf.|70:On|79:On|88:100.0|97:Off|105:Off|111:FM|118:10.0");
    // Channel 981 on the second page: a DCS code, WFM.
    EXPECT_EQ(second[heads.size() + 30 + 3],
              "1:981: |7:210.0250|21:Tag 10-81|52:On|60:1|70:On|79:Off|88:025|97:Off|105:Off|111:WFM|118:7.5");
    EXPECT_EQ(first[heads.size() + 53].substr(0, 8), "1:950: |");
    EXPECT_EQ(second[heads.size()].substr(0, 8), "1:951: |");
    // The footer stands at a fixed distance from the bottom.
    const auto footerAt = std::find(p.calls.begin(), p.calls.end(), "y 15538");
    ASSERT_NE(footerAt, p.calls.end());
    EXPECT_EQ(footerAt[1].substr(0, 7), "line 1:");
}

TEST(ReportsTest, AllBanksRunTheirPagesInTurnWithTheirTotals)
{
    Document doc = reportDocument();
    doc.model = ModelSwitches::of(Model::BC250D);
    doc.memdata[0][3][col::recordHidden] = "1";
    doc.memdata[0][3][col::record] = "0";

    const RecordingPrinter all = run(doc, PrintItem::AllBanks);
    ASSERT_EQ(all.pages.size(), 22u);
    EXPECT_EQ(texts(all.pages[21])[2], "1:Bank: Dummy");
    EXPECT_EQ(texts(all.pages[20])[2], "1:Bank: Dummy");
    EXPECT_EQ(texts(all.pages[18])[2], "1:Bank: 10");
    EXPECT_EQ(texts(all.pages[21]).back().substr(texts(all.pages[21]).back().find("|0:")), "|0:   ---   Page 22 / 22");
    // The Dummy bank holds nothing from a file: two pages of "Empty".
    EXPECT_EQ(texts(all.pages[21])[7], "1:1051: |8:Empty");
    // A model without a Record column shows its hidden record flag.
    EXPECT_NE(texts(all.pages[0])[7 + 2].find("|70:On|"), std::string::npos);
    // Bank 5's gap of empty channels.
    EXPECT_EQ(texts(all.pages[8])[7 + 40 + 4], "1:441: |8:Empty");
    EXPECT_EQ(texts(all.pages[9])[7 + 9], "1:460: |8:Empty");

    const RecordingPrinter both = run(doc, PrintItem::MemoryAndSearch);
    ASSERT_EQ(both.pages.size(), 23u);
    for (int page = 0; page < 22; ++page) {
        const std::string footer = texts(both.pages[page]).back();
        EXPECT_EQ(footer.substr(footer.find("|0:")), "|0:   ---   Page " + std::to_string(page + 1) + " / 12");
    }
    const auto search = texts(both.pages[22]);
    EXPECT_EQ(search[2], "1:Search / Edge data.");
    EXPECT_EQ(search.back(), "1:Printed with Kestra Console - scanner memory in a table");
}

TEST(ReportsTest, SearchAndBandplanReportsDecodeTheirCodes)
{
    Document doc = reportDocument();
    const auto search = texts(run(doc, PrintItem::SearchData).pages.at(0));
    const std::vector<std::string> expected = {
        kTitle, "", "1:Search / Edge data.", "1:Filename: scanner.mem", "",
        "6:Start|22:End|38:Mode|48:Step|60:Comments",
        "1:1: |6:130.0000|22:135.0000|38:-|48:5|60:Range 1",
        "1:2: |6:140.0000|22:145.0000|38:AM|48:7.5|60:Range 2",
        "1:3: |6:150.0000|22:155.0000|38:FM|48:10|60:Range 3",
        "1:4: |6:160.0000|22:165.0000|38:WFM|48:12.5|60:Range 4",
        "1:5: |6:170.0000|22:175.0000|38:NFM|48:25|60:Range 5",
        "1:6: |6:180.0000|22:185.0000|38:Auto|48:50|60:Range 6",
        "1:7: |6:190.0000|22:195.0000|38:-|48:100|60:Range 7",
        "1:8: |8:Empty", "1:9: |8:Empty", "1:10: |8:Empty", "",
        "1:Printed with Kestra Console - scanner memory in a table"};
    EXPECT_EQ(search, expected);

    // The bandplan table is read from the Dummy bank's rows.
    auto& row = doc.memdata[kDummyBank];
    row[1][1] = "25.0000", row[1][2] = "2", row[1][3] = "3", row[1][4] = "0", row[1][5] = "0", row[1][13] = "Low band";
    row[12][1] = "144.0000", row[12][2] = "0", row[12][3] = "9", row[12][4] = "3", row[12][5] = "0.6",
    row[12][13] = "Repeaters";
    const RecordingPrinter plan = run(doc, PrintItem::Bandplan);
    EXPECT_EQ(plan.calls[1], "origin -800 -500");
    const auto lines = texts(plan.pages.at(0));
    EXPECT_EQ(lines[0], "1:Kestra Console for Uniden BC250/296/785/796/UBC3300 - 2026-11-23");
    EXPECT_EQ(lines[2], "1:Bandplan");
    EXPECT_EQ(lines[4], "6:Frequency|22:Mode|32:Step|41:Duplex|51:Offset|63:Comments");
    EXPECT_EQ(lines[5], "1:1: |6:25.0000|22:AM|32:12.5|41:Off|51:0|63:Low band");
    EXPECT_EQ(lines[6], "1:2: |8:Empty");
    EXPECT_EQ(lines[15], "");   // after row 9 counted from 0
    EXPECT_EQ(lines[5 + 12], "1:12: |6:144.0000|22:FM|32:100.0|41:Dup+|51:0.6|63:Repeaters");
    // 50 rows, five blank lines, the footer.
    EXPECT_EQ(lines.size(), 5u + 55 + 1);
}

TEST(ReportsTest, TrunkListsComeInPairsThroughTheScannersNumbering)
{
    const Document doc = reportDocument();
    const RecordingPrinter p = run(doc, PrintItem::TrunkIds, 2);
    EXPECT_EQ(p.calls[1], "origin -1000 -500");
    const auto lines = texts(p.pages.at(0));
    EXPECT_EQ(lines[2], "1:Bank: 3");
    EXPECT_EQ(lines[6], "8:ID|22:Tag|68:ID|82:Tag");
    EXPECT_EQ(lines[7], "1:List 1|60:List 2");
    EXPECT_EQ(lines[8], "1:1-1: |8:1001|22:Group 1.1|60:2-1: |68:1101|82:Group 2.1");
    // The tenth of each list is the store's first row of the list.
    EXPECT_EQ(lines[17], "1:1-10: |8:1010|22:Group 1.10|60:2-10: |68:1110|82:Group 2.10");
    EXPECT_EQ(lines[18], "");
    // Lists without IDs print their labels with empty columns.
    EXPECT_EQ(lines[19], "1:|60:");
    EXPECT_EQ(lines[20], "1:3-1: |8:|22:|60:4-1: |68:|82:");
    EXPECT_EQ(lines[7 + 5 * 12 - 2], "1:9-10: |8:|22:|60:10-10: |68:|82:");

    const RecordingPrinter all = run(doc, PrintItem::AllTrunkIds);
    ASSERT_EQ(all.pages.size(), 10u);
    EXPECT_EQ(texts(all.pages[9])[2], "1:Bank: 10");
}

TEST(ReportsTest, APrinterThatFailsStopsTheReportWithItsNumber)
{
    RecordingPrinter printer;
    printer.failAtLine = 100;
    const Document doc = reportDocument();
    const int error = printReport(printer, doc, {PrintItem::AllBanks, 0, "2026-11-23", "x.mem"});
    EXPECT_EQ(error, kPrinterError);
    EXPECT_EQ(printerFailureMessage(error), "Problem in printerroutine #1 Err = 482");
    EXPECT_EQ(printer.pages.size(), 2u);
    EXPECT_EQ(std::count(printer.calls.begin(), printer.calls.end(), "enddoc"), 0);

    EXPECT_EQ(initialPrintItem(3), PrintItem::ActiveBank);
    EXPECT_EQ(initialPrintItem(kSearchBank), PrintItem::SearchData);
    EXPECT_EQ(initialPrintItem(kBandplanBank), PrintItem::Bandplan);
}

} // namespace
} // namespace kestra
