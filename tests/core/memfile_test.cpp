#include "core/memfile.h"
#include "core/text.h"
#include "support/testfiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace kestra;
using namespace kestra::test;
using Texts = std::vector<std::string>;

namespace {

// The cells of a store line but its number.
Texts cellsOf(const std::array<std::string, kCellColumns>& line) { return {line.begin() + 1, line.end()}; }

// A document with something in every store the file carries.
Document fullDocument()
{
    Document doc;
    doc.clearstores();
    for (int b = 0; b < 10; ++b)
        for (int r = 1; r <= 100; r += 7) {
            auto& line = doc.memdata[b][r];
            line[col::freq] = padfreq(std::to_string(140 + b) + "." + std::to_string(1000 + r), 8, 5);
            line[col::tag] = "Tag, " + std::to_string(b) + "/" + std::to_string(r) + " \xe9";  // a comma and an e-acute
            line[col::trunk] = "1";
            line[col::delay] = std::to_string(r % 8);
            line[col::tone] = std::to_string(r % 292);
            line[col::step] = std::to_string(r % 10);
            line[col::comment] = "comment " + std::to_string(r);
        }
    for (int b = 0; b < 12; ++b) doc.banktags[b] = "Tag of " + std::to_string(b);
    for (int b = 0; b < 10; ++b) {
        doc.banklockm[b] = static_cast<std::int16_t>(b % 2);
        doc.banklocks[b] = static_cast<std::int16_t>((b + 1) % 2);
        doc.priochan[b] = static_cast<std::int16_t>(b * 100 + 50);
        doc.trunkset[b].trunktype = std::to_string(b % 4);
        for (int f = 0; f < 10; ++f) doc.trunkset[b].trunkfields[f] = std::to_string(b * 10 + f);
        for (int k = 0; k < 3; ++k)
            for (int f = 0; f < 8; ++f) doc.trunkset[b].trunkblocks[k][f] = "S" + std::to_string(k * 8 + f);
        for (int i = 0; i < 100; i += 9) doc.trunkids[b][i] = {"1" + std::to_string(i), "ID " + std::to_string(i), "1", "0", "x"};
        for (int l = 0; l < 10; ++l) doc.trunklisttags[b][l] = "List " + std::to_string(l);
    }
    for (int n = 0; n < 10; ++n)
        for (int c = 0; c < 5; ++c) doc.srcdata[n][c] = "s" + std::to_string(n * 10 + c);
    for (int i = 0; i < 16; ++i) doc.fipscodes[i] = std::to_string(1000 + i);
    return doc;
}

// The lines a LORVEN file of a version has, channels 1..50 of each bank filled.
std::string lorvenText(int version, const std::string& header)
{
    std::vector<std::string> lines{header};
    for (int b = 0; b < 10; ++b)
        for (int r = 1; r <= 50; ++r) {
            std::string line = std::to_string(b * 50 + r) + ",\"" + std::to_string(150 + b) + "." + std::to_string(1000 + r) +
                               "\",\"L" + std::to_string(b) + "-" + std::to_string(r) + "\",\"0\",\"0\",\"1\",\"0\",\"0\",\"5\",\"0\",\"0\",\"3\",\"2\"";
            if (version == 7) line += ",\"note " + std::to_string(r) + "\"";
            lines.push_back(line);
        }
    if (version >= 2) {
        lines.push_back(" ");
        for (int i = 0; i < 12; ++i) lines.push_back("#$BT" + std::to_string(i) + " Lorven " + std::to_string(i));
    }
    if (version >= 3) {
        for (int i = 0; i < 10; ++i) lines.push_back("SR" + std::to_string(i) + " ,\"\",\"\",\"\",\"\",\"\"");
        for (int i = 0; i < 1000; ++i) lines.push_back("TD" + std::to_string(i) + " ,\"" + std::to_string(i) + "\",\"t\",\"\",\"\",\"\"");
        for (int i = 0; i < 10; ++i) lines.push_back("TID" + std::to_string(i) + " ,\"a\",\"b\",\"c\",\"d\",\"e\",\"f\",\"g\",\"h\",\"i\",\"j\"");
    }
    if (version >= 4) {
        for (int i = 0; i < 10; ++i) lines.push_back("TSI" + std::to_string(i) + " ,\"1\",\"2\",\"3\",\"4\",\"5\",\"6\",\"7\",\"8\",\"9\",\"10\"");
        for (int i = 0; i < 10; ++i) lines.push_back("#$TT" + std::to_string(i) + " 2");
        for (int i = 0; i < 30; ++i) {
            std::string line = "#$TBS" + std::to_string(i / 3);
            for (int f = 0; f < (version == 4 ? 3 : 8); ++f) line += ",\"B" + std::to_string(f) + "\"";
            lines.push_back(line);
        }
    }
    if (version >= 6)
        for (int i = 0; i < 10; ++i) lines.push_back("#$SD" + std::to_string(i) + ",\"1\",\"2\",\"3\",\"4\",\"5\",\"6\",\"7\",\"8\",\"9\",\"10\"");
    if (version >= 7) {
        lines.push_back("#$LKM,\"1\",\"1\",\"1\",\"1\",\"1\",\"1\",\"1\",\"1\",\"1\",\"1\"");
        lines.push_back("#$LKS,\"1\",\"0\",\"1\",\"0\",\"1\",\"0\",\"1\",\"0\",\"1\",\"0\"");
    }
    return joinCrlf(lines);
}

} // namespace

// ---- the writer ----

TEST(MemWriter, WritesEveryLineOfTheFormatInOrder)
{
    const auto lines = crlfLines(memText(fullDocument(), Settings{}));
    ASSERT_EQ(lines.size(), 2107u);
    EXPECT_EQ(lines[0].rfind("KESTRA MEM V1.02 - IMPORTANT: KESTRA MEM file format", 0), 0u);
    EXPECT_EQ(lines[0].find(','), std::string::npos);
    const std::pair<int, std::string> whole[] = {
        {1000, "1000,\"0\",\" \",\" \",\" \",\" \",\" \",\" \",\" \",\" \",\" \",\" \",\" \",\" \""},
        {1001, " "}, {1002, "#$BT0 Tag of 0"}, {1013, "#$BT11 Tag of 11"},
        {1014, "SR0 ,\"\",\"\",\"\",\"\",\"\""}, {1023, "SR9 ,\"\",\"\",\"\",\"\",\"\""},
        {1024, "TD0 ,\"10\",\"ID 0\",\"1\",\"0\",\"x\""}, {2022, "TD998 ,\"\",\"\",\"\",\"\",\"\""},
        {2023, "TD999 ,\"199\",\"ID 99\",\"1\",\"0\",\"x\""},
        {2024, "TID0 ,\"List 0\",\"List 1\",\"List 2\",\"List 3\",\"List 4\",\"List 5\",\"List 6\",\"List 7\",\"List 8\",\"List 9\""},
        {2034, "TSI0 ,\"0\",\"1\",\"2\",\"3\",\"4\",\"5\",\"6\",\"7\",\"8\",\"9\""}, {2044, "#$TT0 0"},
        {2054, "#$TBS0,\"S0\",\"S1\",\"S2\",\"S3\",\"S4\",\"S5\",\"S6\",\"S7\""},
        {2084, "#$SD0,\"s0\",\"s1\",\"s2\",\"s3\",\"s4\",\"\",\"\",\"\",\"\",\"\""},
        {2094, "#$LKM,\"0\",\"1\",\"0\",\"1\",\"0\",\"1\",\"0\",\"1\",\"0\",\"1\""},
        {2095, "#$LKS,\"1\",\"0\",\"1\",\"0\",\"1\",\"0\",\"1\",\"0\",\"1\",\"0\""},
        {2097, "PRCH0 50"}, {2106, "PRCH9 950"},
    };
    for (const auto& [at, text] : whole) EXPECT_EQ(lines[at], text) << at;
    const std::pair<int, std::string> starts[] = {{1, "1,\"0140.1001\",\"Ta"}, {2083, "#$TBS9,\"S16"}, {2096, "FIPS,\"1000\","}};
    for (const auto& [at, text] : starts) EXPECT_EQ(lines[at].substr(0, text.size()), text) << at;
}

TEST(MemWriter, AFreshDocumentHasTheFreshEmptyLine)
{
    Document doc;
    doc.clearstores();
    const auto lines = crlfLines(memText(doc, Settings{}));
    EXPECT_EQ(lines[1], "1,\"0\",\" \",\" \",\" \",\" \",\" \",\" \",\" \",\" \",\" \",\" \",\" \",\" \"");
    EXPECT_EQ(lines[2097], "PRCH0 1");
    EXPECT_EQ(lines[2106], "PRCH9 901");
}

TEST(MemWriter, WithoutSavenamesEveryBankTagIsNone)
{
    Settings settings;
    settings.savenames = 0;
    const std::string text = memText(fullDocument(), settings);
    const auto lines = crlfLines(text);
    for (int i = 0; i < 12; ++i) EXPECT_EQ(lines[1002 + i], "#$BT" + std::to_string(i) + " None");
    Document back;
    ASSERT_EQ(readMem(back, text, 0).status, MemLoadStatus::Loaded);
    for (const auto& tag : back.banktags) EXPECT_EQ(tag, "None");
}

TEST(MemWriter, AnExtensionAloneGetsAName)
{
    EXPECT_EQ(memSavePath(".mem"), "bc250.mem");
    EXPECT_EQ(memSavePath(".MEM"), "bc250.MEM");
    EXPECT_EQ(memSavePath("a.mem"), "a.mem");
    EXPECT_EQ(memSavePath(".meme"), ".meme");
}

// ---- round trip ----

TEST(MemRoundTrip, SaveLoadSaveGivesTheSameBytesAndStoresButSearchColumnsFiveToNine)
{
    Document doc = fullDocument();
    const std::string first = memText(doc, Settings{});
    Document back;
    const MemLoadResult result = readMem(back, first, 1);
    ASSERT_EQ(result.status, MemLoadStatus::Loaded) << result.message();
    EXPECT_EQ(result.version, 2);
    EXPECT_EQ(memText(back, Settings{}), first);
    for (int b = 0; b < 10; ++b)
        for (int r = 1; r <= 100; ++r)
            for (int c = 1; c < kCellColumns; ++c) ASSERT_EQ(back.memdata[b][r][c], doc.memdata[b][r][c]) << b << "/" << r << "/" << c;
    EXPECT_EQ(back.banktags, doc.banktags);
    EXPECT_EQ(back.priochan, doc.priochan);
    EXPECT_EQ(back.fipscodes, doc.fipscodes);
    EXPECT_EQ(back.trunkids, doc.trunkids);
    EXPECT_EQ(back.banklockm, doc.banklockm);
    // Reading with option9 fills the Easy Tag lists: 15 tagged rows a bank, all different.
    EXPECT_EQ(back.easytags.size(), 150u);
    EXPECT_EQ(back.banktaglist[4].size(), 15u);
    doc.srcdata[3][7] = "lost";
    Document quiet;
    ASSERT_EQ(readMem(quiet, memText(doc, Settings{}), 0).status, MemLoadStatus::Loaded);
    EXPECT_TRUE(quiet.easytags.empty());
    EXPECT_EQ(quiet.srcdata[3][2], doc.srcdata[3][2]);
    EXPECT_EQ(quiet.srcdata[3][7], "");
}

TEST(MemRoundTrip, EveryCharacterComesBackButTheDoubleQuoteWhichBecomesAnApostrophe)
{
    std::string all;
    for (int c = 32; c <= 255; ++c) all += static_cast<char>(c);
    std::string expected = all;
    std::replace(expected.begin(), expected.end(), '"', '\'');

    // Every text field the file carries holds every character, and the fields
    // behind each keep their place.
    Document doc = fullDocument();
    doc.memdata[0][1][col::tag] = all;
    doc.memdata[0][1][col::comment] = all;
    doc.memdata[3][50][col::mode] = all;
    doc.banktags[0] = all;
    doc.banktags[11] = all;
    doc.trunkids[2][7][1] = all;
    doc.trunklisttags[4][3] = all;
    doc.trunkset[5].trunktype = all;
    doc.trunkset[5].trunkfields[2] = all;
    doc.trunkset[6].trunkblocks[1][4] = all;
    doc.srcdata[8][4] = all;
    doc.fipscodes[3] = all;
    const std::string text = memText(doc, Settings{});
    EXPECT_EQ(crlfLines(text).size(), 2107u);

    Document back;
    ASSERT_EQ(readMem(back, text, 0).status, MemLoadStatus::Loaded);
    for (const std::string* field :
         {&back.memdata[0][1][col::tag], &back.memdata[0][1][col::comment], &back.memdata[3][50][col::mode],
          &back.banktags[0], &back.banktags[11], &back.trunkids[2][7][1], &back.trunklisttags[4][3],
          &back.trunkset[5].trunktype, &back.trunkset[5].trunkfields[2], &back.trunkset[6].trunkblocks[1][4],
          &back.srcdata[8][4], &back.fipscodes[3]})
        EXPECT_EQ(*field, expected);
    EXPECT_EQ(cellsOf(back.memdata[0][8]), cellsOf(doc.memdata[0][8]));
    EXPECT_EQ(cellsOf(back.memdata[9][100]), cellsOf(doc.memdata[9][100]));
    EXPECT_EQ(back.banktags[1], doc.banktags[1]);
    EXPECT_EQ(back.trunkids[9], doc.trunkids[9]);
    EXPECT_EQ(back.priochan, doc.priochan);
}

// ---- headers and versions ----

TEST(MemReader, TheVersionMarkMayStandAnywhereInTheFirstFieldAndAnyOtherLeavesTheStores)
{
    HandMadeMem file;
    file.header = "junk before KESTRA MEM V1.02 and after";
    Document doc;
    EXPECT_EQ(readMem(doc, file.text(), 0).status, MemLoadStatus::Loaded);
    file.header = "\"KESTRA MEM V1.01\"";
    EXPECT_EQ(readMem(doc, file.text(), 0).version, 2);

    doc = fullDocument();
    const std::string before = memText(doc, Settings{});
    for (std::string header : {"KESTRA MEM V1.03", "KESTRA, MEM V1.00", "", "\x01\x02\xff binary"}) {
        file.header = header;
        const MemLoadResult r = readMem(doc, file.text(), 0);
        EXPECT_EQ(r.status, MemLoadStatus::NotCompatible) << header;
        EXPECT_EQ(r.message(), "File is not compatible with this version.");
    }
    EXPECT_EQ(readMem(doc, "", 0).status, MemLoadStatus::NotCompatible);
    EXPECT_EQ(memText(doc, Settings{}), before);
}

TEST(MemReader, AVersionOneFileKeepsFipsAndPriorityChannels)
{
    HandMadeMem file;
    file.header = "KESTRA MEM V1.00";
    file.withFips = false;
    file.channels = {{5, channelLine(5, {"0146.5200", "Repeater", "0", "0", "2", "0", "1", "12", "0", "1", "3", "0"}, "old file")}};
    Document doc;
    doc.fipscodes[0] = "06001";
    doc.priochan[3] = 355;
    const MemLoadResult r = readMem(doc, file.text(), 0);
    ASSERT_EQ(r.status, MemLoadStatus::Loaded) << r.message();
    EXPECT_EQ(r.version, 1);
    EXPECT_EQ(doc.fipscodes[0], "06001");
    EXPECT_EQ(doc.priochan[3], 355);
    EXPECT_EQ(cellsOf(doc.memdata[0][5]), (Texts{"0146.5200", "Repeater", "0", "0", "2", "0", "1", "12", "0", "1", "3", "0", "old file"}));
    EXPECT_EQ(doc.memdata[0][5][col::line], "5");
}

TEST(MemReader, BankTagLinesFollowTheirLengthRules)
{
    HandMadeMem file;
    file.bankTags = {"Police", "", "x", "A, B", "", "", "", "", "", "", "Scratch", "Edges"};
    std::string text = file.text();
    // "#$BT1 " has length 6: an empty tag. Make line 4 exactly "#$BT4" (5 characters): it keeps the old tag.
    const auto at = text.find("#$BT4 \r\n");
    ASSERT_NE(at, std::string::npos);
    text.replace(at, 8, "#$BT4\r\n");
    Document doc;
    doc.banktags[4] = "Old four";
    ASSERT_EQ(readMem(doc, text, 0).status, MemLoadStatus::Loaded);
    EXPECT_EQ(doc.banktags, (std::array<std::string, 12>{"Police", "", "x", "A, B", "Old four", "", "", "", "", "", "Scratch", "Edges"}));
}

TEST(MemReader, MissingPriorityLinesKeepTheirOldValues)
{
    HandMadeMem file;
    auto lines = crlfLines(file.text());
    lines.resize(lines.size() - 3);  // PRCH7..PRCH9 gone
    Document doc;
    doc.priochan[8] = 888;
    const MemLoadResult r = readMem(doc, joinCrlf(lines), 0);
    EXPECT_EQ(r.status, MemLoadStatus::Loaded);
    EXPECT_EQ(doc.priochan[6], 601);
    EXPECT_EQ(doc.priochan[8], 888);
}

// ---- failures ----

TEST(MemReader, AFileCutShortInAReadSectionNamesThePlace)
{
    HandMadeMem file;
    const auto lines = crlfLines(file.text());
    struct Cut {
        std::size_t keep;  // lines kept
        int bank, row, column;
    };
    // Channel 250 is bank 2 row 50: cut after channel 249, nothing of it is there.
    const Cut cuts[] = {
        {250, 2, 50, 0},     // in the channels
        {1, 0, 1, 0},        // header only
        {1024, 0, 0, 0},     // channels, blank, tags, search lines: the first TD key is missing
        {1524, 5, 0, 0},     // half the TD lines
        {2024, 0, 0, 0},     // the TID lines missing
        {2034, 0, 0, 0},     // the TSI lines missing
    };
    for (const Cut& cut : cuts) {
        std::vector<std::string> kept(lines.begin(), lines.begin() + static_cast<long>(cut.keep));
        Document doc;
        const MemLoadResult r = readMem(doc, joinCrlf(kept), 0);
        EXPECT_EQ(r.status, MemLoadStatus::Invalid) << cut.keep;
        EXPECT_EQ(r.error, 62);
        EXPECT_EQ(r.message(), "Not a valid file! Line: " + std::to_string(cut.bank) + " / " + std::to_string(cut.row) +
                                   " / " + std::to_string(cut.column) + " Error: 62")
            << cut.keep;
    }
}

TEST(MemReader, AFileCutShortInTheLaterSectionsEndsQuietlyWithWhatWasRead)
{
    Document full = fullDocument();
    const auto lines = crlfLines(memText(full, Settings{}));
    for (std::size_t keep : {2044u, 2050u, 2060u, 2090u, 2095u, 2097u, 2100u}) {
        std::vector<std::string> kept(lines.begin(), lines.begin() + static_cast<long>(keep));
        Document doc;
        const MemLoadResult r = readMem(doc, joinCrlf(kept), 0);
        EXPECT_EQ(r.status, MemLoadStatus::Loaded) << keep;
        EXPECT_EQ(doc.trunkset[9].trunkfields, full.trunkset[9].trunkfields);
        EXPECT_EQ(doc.trunkset[0].trunktype, keep > 2044 ? full.trunkset[0].trunktype : "");
    }
}

TEST(MemReader, HostileInputNeverCrashesOrHangs)
{
    const std::string good = memText(fullDocument(), Settings{});
    std::mt19937 random(42);
    // Cut at random places, flip random bytes, drop quotes.
    for (int i = 0; i < 60; ++i) {
        std::string bytes = good.substr(0, random() % good.size());
        for (int f = 0; f < 20 && !bytes.empty(); ++f) bytes[random() % bytes.size()] ^= static_cast<char>(random());
        Document doc;
        const MemLoadResult r = readMem(doc, bytes, 1);
        EXPECT_TRUE(r.status == MemLoadStatus::Loaded || r.status == MemLoadStatus::Invalid ||
                    r.status == MemLoadStatus::NotCompatible);
        read780(doc, bytes, 1);
        readSpecial(doc, bytes, 1);
    }
    // Lines of 100 000 characters, in a cell and as the header.
    HandMadeMem file;
    file.channels = {{1, channelLine(1, {std::string(100000, '7'), std::string(100000, 'x')})}};
    Document doc;
    ASSERT_EQ(readMem(doc, file.text(), 1).status, MemLoadStatus::Loaded);
    EXPECT_EQ(doc.memdata[0][1][col::tag].size(), 100000u);
    EXPECT_EQ(doc.easytags.size(), 1u);
    file.header = "KESTRA MEM V1.02" + std::string(100000, ' ');
    EXPECT_EQ(readMem(doc, file.text(), 0).status, MemLoadStatus::Loaded);
    // A quote that never closes swallows the rest of the file, line ends and all.
    const auto lines = crlfLines(HandMadeMem{}.text());
    const std::string open = joinCrlf({lines.begin(), lines.begin() + 501}) + "501,\"0146.0000\",\"never closed\r\n\r\n";
    const MemLoadResult swallowed = readMem(doc, open, 0);
    EXPECT_EQ(swallowed.status, MemLoadStatus::Invalid);
    EXPECT_EQ(swallowed.message(), "Not a valid file! Line: 5 / 1 / 3 Error: 62");
}

TEST(MemReader, LineEndsMayBeLfAlone)
{
    std::string text = memText(fullDocument(), Settings{});
    std::string lf;
    for (char c : text)
        if (c != '\r') lf += c;
    Document doc;
    ASSERT_EQ(readMem(doc, lf, 0).status, MemLoadStatus::Loaded);
    EXPECT_EQ(memText(doc, Settings{}), text);
}

// ---- LORVEN files ----

TEST(LorvenReader, ReadsAVersionFourFile)
{
    Document doc;
    doc.trunkset[2].trunkblocks[1][5] = "untouched";
    const MemLoadResult r = read780(doc, lorvenText(4, "LORVEN 780 MEM V1.04"), 0);
    ASSERT_EQ(r.status, MemLoadStatus::Loaded) << r.message();
    EXPECT_EQ(r.version, 4);
    EXPECT_EQ(cellsOf(doc.memdata[1][50]), (Texts{"151.1050", "L1-50", "0", "0", "1", "0", "0", "5", "0", "0", "3", "2", ""}));
    EXPECT_EQ(doc.memdata[1][51][col::freq], "0");  // only fifty channels a bank
    EXPECT_EQ(doc.banktags[11], "Lorven 11");
    EXPECT_EQ(doc.trunkids[3][7][0], "307");
    EXPECT_EQ(doc.trunklisttags[9][9], "j");
    EXPECT_EQ(doc.trunkset[2].trunkfields[9], "10");
    EXPECT_EQ(doc.trunkset[2].trunktype, "2");
    EXPECT_EQ(doc.trunkset[2].trunkblocks[1][2], "B2");
    EXPECT_EQ(doc.trunkset[2].trunkblocks[1][5], "untouched");  // version 4 has three block fields
}

TEST(LorvenReader, ReadsAVersionSevenFileWithCommentsAndLockouts)
{
    Document doc;
    const MemLoadResult r = read780(doc, lorvenText(7, "LORVEN 780 V1.00 V1.07"), 0);  // the highest version wins
    ASSERT_EQ(r.status, MemLoadStatus::Loaded) << r.message();
    EXPECT_EQ(r.version, 7);
    EXPECT_EQ(doc.memdata[0][3][col::comment], "note 3");
    EXPECT_EQ(doc.trunkset[0].trunkblocks[2][7], "B7");
    EXPECT_EQ(doc.srcdata[4][4], "5");
    EXPECT_EQ(doc.banklockm[9], 1);
    EXPECT_EQ(doc.banklocks[1], 0);
    EXPECT_EQ(doc.banklocks[2], 1);
}

TEST(LorvenReader, OlderVersionsEndAfterTheirLastSection)
{
    Document doc;
    doc.banktags[0] = "mine";
    ASSERT_EQ(read780(doc, lorvenText(1, "780 V1.00"), 0).status, MemLoadStatus::Loaded);
    EXPECT_EQ(doc.banktags[0], "mine");
    EXPECT_EQ(doc.memdata[9][50][col::tag], "L9-50");
    ASSERT_EQ(read780(doc, lorvenText(2, "780 V1.02"), 0).status, MemLoadStatus::Loaded);
    EXPECT_EQ(doc.banktags[0], "Lorven 0");
}

TEST(LorvenReader, RefusesFilesOfOtherKinds)
{
    Document doc;
    const MemLoadResult kestra = read780(doc, memText(fullDocument(), Settings{}), 0);
    EXPECT_EQ(kestra.status, MemLoadStatus::NotLorven);
    EXPECT_EQ(kestra.message(), "This is not an LORVEN file! For KESTRA mem files select FILE _ OPEN");
    EXPECT_EQ(read780(doc, lorvenText(4, "LORVEN 780 V2.00"), 0).status, MemLoadStatus::LorvenNoVersion);
    EXPECT_EQ(read780(doc, "", 0).status, MemLoadStatus::NotLorven);
    // Cut in the channels: the place is named.
    const auto lines = crlfLines(lorvenText(4, "780 V1.04"));
    const std::vector<std::string> kept(lines.begin(), lines.begin() + 120);
    const MemLoadResult r = read780(doc, joinCrlf(kept), 0);
    EXPECT_EQ(r.status, MemLoadStatus::Invalid);
    EXPECT_EQ(r.message(), "Not a valid file! Line: 2 / 20 / 0 Error: 62");
}

// ---- Open Special ----

TEST(SpecialReader, TakesTagsFrequenciesAndIds)
{
    std::vector<std::string> lines{"title", "columns"};
    for (int b = 0; b < 10; ++b) {
        lines.push_back("Bank " + std::to_string(b));
        for (int r = 1; r <= 50; ++r)
            lines.push_back("x,y,\"S" + std::to_string(b) + "-" + std::to_string(r) + "\"," + std::to_string(400 + b) + ".5,z");
    }
    for (int i = 0; i < 149; ++i) lines.push_back("a,b,c,Name " + std::to_string(i) + "," + std::to_string(i % 3 == 0 ? 0 : 1000 + i));
    Document doc;
    doc.memdata[0][60][col::freq] = "155.0000";
    readSpecial(doc, joinCrlf(lines), 1);
    EXPECT_EQ(doc.memdata[3][50][col::tag], "S3-50");
    EXPECT_EQ(doc.memdata[3][50][col::freq], "403.5");
    EXPECT_EQ(doc.memdata[0][60][col::freq], "0");  // cleared like any load
    EXPECT_EQ(doc.trunkids[0][1][1], "Name 1");
    EXPECT_EQ(doc.trunkids[0][1][0], "1001");
    EXPECT_EQ(doc.trunkids[0][3][0], "");  // a zero ID reads as nothing
    EXPECT_EQ(doc.trunkids[1][1][1], "Name 148");  // entry 101 takes all the later ones
    EXPECT_EQ(doc.easytags.size(), 500u);
}
