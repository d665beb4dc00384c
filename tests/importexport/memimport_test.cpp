// Import from another MEM file: the other file read as File > Open reads it,
// banks of channels and ID lists copied store row for store row, and through
// kestractl import onto a base document.

#include "importexport/memimport.h"
#include "core/memfile.h"
#include "core/text.h"
#include "support/kestractl.h"

#include <gtest/gtest.h>

using namespace kestra;
using namespace kestra::test;

namespace {

Document otherDocument()
{
    Document doc;
    doc.clearstores();
    doc.memdata[2][7] = {"", "0155.4750", "Other", "0", "0", "2", "0", "0", "8", "1", "0", "2", "3", "note"};
    doc.trunkids[2][0] = {"1234", "Tenth", "1", "0", ""};
    doc.trunkids[2][1] = {"500", "First", "0", "1", ""};
    doc.memdata[9][10][col::freq] = "0460.0000";
    doc.banktags[2] = "Marine";
    return doc;
}

} // namespace

TEST(MemImport, BanksAndIdListsComeOverAsTheyStandInTheOtherFile)
{
    Settings settings;
    MemSource source = readMemSource("other.mem", memText(otherDocument(), settings));
    ASSERT_TRUE(source.ok()) << source.problem;
    EXPECT_EQ(source.doc.banktags[2], "Marine");

    Document doc;
    doc.clearstores();
    EXPECT_TRUE(destinationEmpty(doc, MemImportKind::Frequencies, 5));
    doc.memdata[5][100][col::freq] = "0400.0000";
    doc.memdata[5][7][col::comment] = "mine";
    EXPECT_FALSE(destinationEmpty(doc, MemImportKind::Frequencies, 5));
    applyMemBank(doc, source.doc, MemImportKind::Frequencies, 2, 5);
    EXPECT_EQ(doc.memdata[5][7][col::freq], "0155.4750");
    EXPECT_EQ(doc.memdata[5][7][col::step], "3");
    EXPECT_EQ(doc.memdata[5][7][col::comment], "mine");
    EXPECT_EQ(Val(doc.memdata[5][100][col::freq]), 0);
    EXPECT_TRUE(doc.dirty);

    EXPECT_TRUE(destinationEmpty(doc, MemImportKind::TrunkIds, 4));
    applyMemBank(doc, source.doc, MemImportKind::TrunkIds, 2, 4);
    EXPECT_EQ(doc.trunkids[4][0][1], "Tenth");
    EXPECT_EQ(doc.trunkids[4][1][0], "500");
    EXPECT_FALSE(destinationEmpty(doc, MemImportKind::TrunkIds, 4));

    applyMemEdge(doc, source.doc);
    EXPECT_EQ(doc.memdata[9][10][col::freq], "0460.0000");

    EXPECT_EQ(readMemSource("x.mem", "\"KESTRA MEM V1.03\"\r\n").problem, "File is not compatible.");
    EXPECT_EQ(readMemSource("x.mem", std::string(kMemHeader).substr(0, 20)).problem.empty(), false);
}

TEST(MemImport, KestractlTakesOneBankOntoABaseDocument)
{
    TempDir dir;
    Settings settings;
    writeBytes(dir.file("other.mem"), memText(otherDocument(), settings));
    Document base;
    base.clearstores();
    base.memdata[0][1] = {"", "0162.5500", "Weather", "0", "0", "2", "0", "0", "0", "0", "0", "0", "0", ""};
    writeBytes(dir.file("base.mem"), memText(base, settings));
    const CtlRun run = runKestractl(dir, "import '" + dir.file("other.mem") + "' '" + dir.file("out.mem") +
                                             "' --bank 3 --base '" + dir.file("base.mem") + "' --dir '" +
                                             dir.path().string() + "'");
    ASSERT_EQ(run.status, 0) << run.err;
    std::string bytes;
    ASSERT_TRUE(readFileBytes(dir.file("out.mem"), bytes));
    Document out;
    ASSERT_EQ(readMem(out, bytes, 0).status, MemLoadStatus::Loaded);
    EXPECT_EQ(out.memdata[0][1][col::tag], "Weather");
    EXPECT_EQ(out.memdata[2][7][col::tag], "Other");
    EXPECT_EQ(out.trunkids[2][0][1], "Tenth");
    EXPECT_TRUE(out.isEmpty(9, 10));   // only bank 3 was asked for
}
