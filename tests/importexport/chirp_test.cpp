// CHIRP channel lists: what our export writes, our import reads back to the
// same channels, and a list of mixed content is taken or refused line by line
// with the reasons told.

#include "importexport/chirp.h"
#include "core/text.h"
#include "support/kestractl.h"
#include "support/tablerig.h"

#include <gtest/gtest.h>

using namespace kestra;
using namespace kestra::test;

namespace {

// The columns a channel carries through CHIRP.
std::vector<std::string> carried(const Document& doc, int bank, int row)
{
    const auto& l = doc.memdata[bank][row];
    return {l[col::freq], l[col::tag], l[col::tone], l[col::mode], l[col::step], l[col::lockout], l[col::comment]};
}

} // namespace

TEST(ChirpCsv, OurExportReadByOurImportGivesTheSameChannels)
{
    TableRig a(Model::BC785D);
    const struct { int bank, row; const char *freq, *tag, *tone, *mode, *step, *lock, *comment; } lines[] = {
        {0, 1, "0155.4750", "Sheriff, \"North\"", "8", "0", "3", "0", "dispatch"},
        {0, 7, "0460.0250", "Fire", "40", "3", "3", "1", " "},
        {3, 50, "0121.5000", "Guard \xE9", "0", "2", "6", "0", " "},
        {9, 100, "0851.0125", "Trunk 1234567890", "0", "0", "3", "0", " "},
    };
    for (const auto& l : lines) {
        auto& line = a.doc.memdata[l.bank][l.row];
        line[col::freq] = l.freq;
        line[col::tag] = l.tag;
        line[col::tone] = l.tone;
        line[col::mode] = l.mode;
        line[col::step] = l.step;
        line[col::lockout] = l.lock;
        line[col::comment] = l.comment;
    }
    a.table.fillgrid();
    a.table.createbank();   // the frequency texts as the program keeps them
    const std::string text = chirpExportText(a.doc, -1);
    EXPECT_TRUE(text.starts_with(std::string(kChirpHeader) + "\r\n0,\"Sheriff, \"\"North\"\"\",155.475000,,0.000000,TSQL,88.5,"
                                                              "88.5,023,NN,023,Tone->Tone,FM,12.50,,,dispatch,,,,\r\n"));
    EXPECT_NE(text.find("\r\n6,Fire,460.025000,,0.000000,DTCS,88.5,88.5,025,NN,025,Tone->Tone,NFM,12.50,S,,,,,,\r\n"),
              std::string::npos);
    EXPECT_NE(text.find("\r\n349,Guard \xC3\xA9,121.500000,"), std::string::npos);   // UTF-8 in the file

    TableRig b(Model::BC785D);
    const ChirpImport result = chirpImport(b.table, text, 0);
    EXPECT_EQ(result.taken, 4);
    EXPECT_EQ(result.refused, 0);
    EXPECT_TRUE(result.notes.empty()) << result.report();
    for (const auto& l : lines) {
        auto want = carried(a.doc, l.bank, l.row);
        if (trim(want.back()).empty()) want.back().clear();
        auto got = carried(b.doc, l.bank, l.row);
        if (trim(got.back()).empty()) got.back().clear();
        EXPECT_EQ(got, want) << l.bank << "/" << l.row;
    }
    EXPECT_TRUE(b.doc.dirty);
    EXPECT_EQ(b.doc.currentBank, 0);
    EXPECT_TRUE(b.doc.isEmpty(0, 2));
}

TEST(ChirpCsv, TwoHundredMixedLinesAreCountedTakenAndRefused)
{
    // Columns of a CHIRP subset in another order, a blank line, quoted names.
    std::string text = "Name,Frequency,Mode,Location,Tone,cToneFreq,Duplex,Offset,Skip,TStep\r\n";
    int wantRefused = 0, wantOffsets = 0;
    for (int i = 0; i < 200; ++i) {
        std::string freq = std::to_string(144 + i % 30) + ".0" + std::to_string(i % 8) + "00";
        std::string mode = "FM", duplex, offset = "0.000000";
        switch (i % 10) {
        case 3: freq = "14.200000"; ++wantRefused; break;            // below the coverage
        case 5: freq = "700.000000"; ++wantRefused; break;           // in the gap of 512 to 806
        case 7: mode = "USB"; ++wantRefused; break;                   // a mode the scanner lacks
        case 8: duplex = "+"; offset = "0.600000"; ++wantOffsets; break;
        default: break;
        }
        text += "\"Ch " + std::to_string(i) + ", long names here\"," + freq + "," + mode + "," + std::to_string(i) +
                ",TSQL,100.0," + duplex + "," + offset + "," + (i % 4 == 0 ? "S" : "") + ",12.50\r\n";
        if (i == 100) text += "\r\n";
    }
    TableRig t(Model::BC250D);
    const ChirpImport result = chirpImport(t.table, text, 2);
    EXPECT_EQ(result.taken, 200 - wantRefused);
    EXPECT_EQ(result.refused, wantRefused);
    EXPECT_EQ(static_cast<int>(result.notes.size()), wantRefused + wantOffsets);
    EXPECT_TRUE(result.report().starts_with("140 channels taken, 60 lines refused.\r\nLine 5: 14.200000 MHz is outside"))
        << result.report();
    EXPECT_NE(result.report().find("Line 10: duplex offset +0.600000 MHz not kept"), std::string::npos);
    // Location 0 is the first channel of bank 3, location 104 the fifth of bank 4.
    const auto& first = t.doc.memdata[2][1];
    EXPECT_EQ(Val(first[col::freq]), 144.0);
    EXPECT_EQ(first[col::tag], "Ch 0, long names");   // cut to 16
    EXPECT_EQ(first[col::tone], "12");                // 100.0 Hz
    EXPECT_EQ(first[col::lockout], "1");
    EXPECT_EQ(first[col::step], "3");
    EXPECT_TRUE(t.doc.isEmpty(2, 4));                  // location 3 was refused
    EXPECT_EQ(Val(t.doc.memdata[3][5][col::freq]), 144 + 104 % 30 + 0.0);

    TableRig none;
    EXPECT_FALSE(chirpImport(none.table, "Location,Name\r\n0,x\r\n", 0).readable);
}

TEST(ChirpCsv, KestractlImportsAChirpListIntoAMemFile)
{
    TempDir dir;
    writeBytes(dir.file("list.csv"), "Location,Name,Frequency,Mode\n0,Air,118.100000,AM\n1,Far,2000.0,FM\n");
    const CtlRun run = runKestractl(dir, "import '" + dir.file("list.csv") + "' '" + dir.file("out.mem") + "' --dir '" +
                                             dir.path().string() + "'");
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("1 channel taken, 1 line refused."), std::string::npos) << run.out;
    std::string bytes;
    ASSERT_TRUE(readFileBytes(dir.file("out.mem"), bytes));
    Document doc;
    ASSERT_EQ(readMem(doc, bytes, 0).status, MemLoadStatus::Loaded);
    EXPECT_EQ(Val(doc.memdata[0][1][col::freq]), 118.1);
    EXPECT_EQ(doc.memdata[0][1][col::tag], "Air");
    EXPECT_EQ(doc.memdata[0][1][col::mode], "2");
}
