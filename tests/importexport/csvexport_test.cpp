// The CSV export of File > Export CSV Data, byte for byte for a known
// document, and through kestractl export from a MEM file.

#include "importexport/csvexport.h"
#include "core/memfile.h"
#include "support/kestractl.h"

#include <gtest/gtest.h>

using namespace kestra;
using namespace kestra::test;

namespace {

int lineCount(const std::string& text)
{
    int n = 0;
    for (std::size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at + 2)) ++n;
    return n;
}

// Bank 2 with three channels, IDs of bank 1, two search ranges and a bandplan row.
Document knownDocument()
{
    Document doc;
    doc.clearstores();
    doc.model = ModelSwitches::of(Model::BC785D);
    auto& a = doc.memdata[1][1];
    a = {"", "0155.4750", "Sheriff,North;1\xE9", "0", "1", "3", "1", "1", "8", "0", "1", "2", "3", ""};
    auto& b = doc.memdata[1][3];
    b = {"", "0851.0125", "Trunk", "1", "0", "7", "1", "0", "40", "1", "0", "4", "9", ""};
    doc.memdata[1][2][col::freq] = "Empty";
    doc.trunkids[0][1] = {"1234", "Police", "1", "0", ""};
    doc.trunkids[0][10] = {"500", "Fire", "0", "0", ""};
    doc.trunkids[0][0] = {"999", "Row zero", "0", "0", ""};
    doc.srcdata[0] = {"118.0000", "136.9750", "1", "4", "Air", "", "", "", "", ""};
    doc.srcdata[3] = {"406.0", "420.0", "9", "8", "Fed", "", "", "", "", ""};
    doc.memdata[kDummyBank][1] = {"", "0030.0000", "0", "1", "0", "0.6", "", "", "", "", "", "", "", "VHF low"};
    doc.memdata[kDummyBank][2] = {"", "0144.0000", "2", "9", "3", "0.6", "", "", "", "", "", "", "", "2 m"};
    return doc;
}

} // namespace

TEST(CsvExport, EachKindInItsLayoutByteForByte)
{
    const Document doc = knownDocument();
    const std::string bank = csvExportText(doc, CsvExportKind::CurrentBank, 1);
    EXPECT_EQ(bank.substr(0, bank.find("Empty,,,,,,,,,,,\r\nEmpty")),
              "Bank,Channel,Frequency,Tag,Trunk,Delay Time,Record,Beep Alert,PL/DPL,Lockout,Attenuator,Mode,Step\r\n"
              "2,101,0155.4750,Sheriff North 1\xE9,Off,4,On,On,88.5,Off,On,AM,12.5\r\n"
              "Empty,,,,,,,,,,,\r\n"
              "2,103,0851.0125,Trunk,On,-10,Off,Off,025,On,Off,Auto,20.0\r\n");
    EXPECT_EQ(lineCount(bank), 101);
    EXPECT_EQ(lineCount(csvExportText(doc, CsvExportKind::AllBanks, 0)), 1001);

    const std::string search = csvExportText(doc, CsvExportKind::Search, 0);
    EXPECT_EQ(search, "Start,End,Tag,Mode,Step\r\n118.0000,136.9750,Air,AM,12.5\r\nEmpty,,,,\r\nEmpty,,,,\r\n"
                      "406.0,420.0,Fed,,Auto\r\nEmpty,,,,\r\nEmpty,,,,\r\nEmpty,,,,\r\nEmpty,,,,\r\nEmpty,,,,\r\n"
                      "Empty,,,,\r\n");

    const std::string plan = csvExportText(doc, CsvExportKind::Bandplan, 0);
    EXPECT_EQ(plan.substr(0, plan.find("Empty")), "Frequency,Mode,Step,Duplex,Offset,Comments\r\n0030.0000,FM,6.25,Off,0.6,VHF low\r\n"
                                   "0144.0000,AM,100.0,Dup+,0.6,2 m\r\n");
    EXPECT_EQ(lineCount(plan), 101);

    const std::string ids = csvExportText(doc, CsvExportKind::IdsCurrentBank, 0);
    EXPECT_TRUE(ids.starts_with("Index,ID,Tag\r\n1_1,1234,Police\r\n1_2,,\r\n1_3,,\r\n"));
    EXPECT_NE(ids.find("\r\n1_10,500,Fire\r\n2_1,,\r\n"), std::string::npos);
    EXPECT_EQ(ids.find("Row zero"), std::string::npos);
    EXPECT_EQ(lineCount(ids), 101);
    EXPECT_EQ(lineCount(csvExportText(doc, CsvExportKind::IdsAllBanks, 0)), 1001);

    EXPECT_EQ(csvExportName("list"), "list.CSV");
    EXPECT_EQ(csvExportName("list.csv"), "list.csv");
}

TEST(CsvExport, KestractlExportsTheBanksOfAMemFile)
{
    TempDir dir;
    Document doc = knownDocument();
    Settings settings;
    writeBytes(dir.file("in.mem"), memText(doc, settings));
    const std::string folder = " --dir '" + dir.path().string() + "'";
    CtlRun run = runKestractl(dir, "export '" + dir.file("in.mem") + "' '" + dir.file("b2.csv") + "' --bank 2" + folder);
    ASSERT_EQ(run.status, 0) << run.err;
    std::string bytes;
    ASSERT_TRUE(readFileBytes(dir.file("b2.csv"), bytes));
    EXPECT_NE(bytes.find("\r\n2,101,0155.4750,Sheriff North 1\xE9,Off,4,On,On,88.5,Off,On,AM,12.5\r\n"), std::string::npos);
    EXPECT_EQ(lineCount(bytes), 101);

    run = runKestractl(dir, "export '" + dir.file("in.mem") + "' '" + dir.file("x.csv") + "' --format nonsense" + folder);
    EXPECT_EQ(run.status, 2);
}
