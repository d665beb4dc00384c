// The virtual scanner's memory: frequency forms and the receiver's bands, and
// the crossing to the program's document — a MEM file fills the scanner and
// the scanner's memory comes back as the same MEM file, field for field.

#include "sim/documentmapping.h"
#include "sim/scannertalk.h"
#include "sim/virtualscanner.h"

#include "core/settings.h"
#include "core/text.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cmath>

using namespace kestra;
using namespace kestra::sim;
using kestra::test::expectReplies;

namespace {

void setChannel(Document& doc, int number, std::initializer_list<std::pair<int, const char*>> cells)
{
    auto& row = doc.memdata[(number - 1) / 100][(number - 1) % 100 + 1];
    for (const auto& [column, text] : cells) row[column] = text;
}

// A document that uses every store the scanner keeps.
Document richDocument(Model model)
{
    Document doc;
    doc.clearstores();
    doc.model = ModelSwitches::of(model);
    const bool bc7 = doc.model.bc785d == 1;
    const int rec = bc7 ? col::record : col::recordHidden;
    setChannel(doc, 1, {{col::freq, "0130.6250"}, {col::tag, "PFO Tower Main"}, {col::delay, "2"}, {col::mode, "2"},
                        {col::step, "4"}, {col::tone, "0"}, {col::trunk, "0"}, {rec, "1"}, {col::beep, "1"},
                        {col::lockout, "0"}, {col::atten, "1"}});
    setChannel(doc, 102, {{col::freq, "0156.1000"}, {col::tag, "VHF Channel 2"}, {col::mode, "3"}, {col::step, "0"},
                          {col::tone, "12"}, {col::delay, bc7 ? "7" : "0"}, {col::lockout, "1"}});
    setChannel(doc, 250, {{col::freq, "0851.1625"}, {col::trunk, "1"}, {col::mode, "0"}, {col::step, "3"},
                          {col::tone, "161"}, {col::tag, "TRUNKED"}});
    setChannel(doc, 999, {{col::freq, "1295.0050"}, {col::mode, "1"}, {col::step, "7"}, {col::tone, "200"}});
    setChannel(doc, 1000, {{col::freq, "0446.0062"}, {col::mode, "3"}, {col::step, bc7 ? "6" : "5"}, {col::tone, "45"},
                           {col::tag, "LAST"}});
    for (int b = 0; b < 10; ++b) {
        doc.banktags[b] = "BANK TAG " + std::to_string(b + 1);
        doc.priochan[b] = static_cast<std::int16_t>(b * 100 + 1 + b);
        doc.banklockm[b] = static_cast<std::int16_t>(b % 3 == 0);
        doc.banklocks[b] = static_cast<std::int16_t>(b % 2);
    }
    // Trunk systems: Type 2 800 MHz, Type 1 with a fleetmap, Type 2 UHF with
    // Base Configs, EDACS, LTR, EDACS SCT.
    doc.trunkset[0].trunktype = "1";
    doc.trunkset[0].trunkfields = {"3", "1", "1", "", "2", bc7 ? "6" : "1", bc7 ? "1" : "", "", "1", ""};
    doc.trunkset[1].trunktype = "2";
    doc.trunkset[1].trunkfields = {"1", "0", "1", "", "1", "0", bc7 ? "0" : "", "3", "0", ""};
    doc.trunkset[1].trunkblocks[0] = {"4", "4", "4", "4", "4", "4", "12", "12"};
    doc.trunkset[3].trunktype = "4";
    doc.trunkset[3].trunkfields = {"", "1", "0", "", "0", "1", bc7 ? "1" : "", "", "1", ""};
    doc.trunkset[3].trunkblocks[0] = {"0416.0000", "012.5", "381", "", "", "", "", ""};
    doc.trunkset[3].trunkblocks[1] = {"0420.0000", "025.0", "400", "", "", "", "", ""};
    doc.trunkset[5].trunktype = "6";
    doc.trunkset[5].trunkfields = {"", "1", "", "", "1", "0", bc7 ? "1" : "", "", "0", "1"};
    doc.trunkset[7].trunktype = "8";
    doc.trunkset[7].trunkfields = {"", "", "", "", "", bc7 ? "4" : "1", bc7 ? "1" : "", "", "1", ""};
    doc.trunkset[8].trunktype = "9";
    doc.trunkset[8].trunkfields = {"", "0", "", "", "2", "0", bc7 ? "0" : "", "", "0", "0"};
    for (int b = 2; b <= 9; b += 7) doc.trunkset[b].trunktype = "0";
    // ID lists: list A slot 1, list C slot 5, list J's tenth slot (row 90).
    doc.trunkids[0][1] = {"12345", "FIRE DISPATCH", "1", "0", ""};
    doc.trunkids[0][25] = {"54321", "POLICE", "0", "1", ""};
    doc.trunkids[0][90] = {"i01234", "", "1", "1", ""};
    doc.trunkids[5][3] = {"05-123", "EDACS GROUP", "0", "0", ""};
    for (int l = 0; l < 10; ++l) doc.trunklisttags[0][l] = "LIST " + std::to_string(l + 1);
    // Search ranges: limits, mode index, step index (by the model's list), tag.
    doc.srcdata[0] = {"0108.0000", "0137.0000", "1", "1", "AIR", "", "", "", "", ""};
    doc.srcdata[4] = {"0406.0000", "0512.0000", "4", "4", "UHF", "", "", "", "", ""};
    doc.srcdata[9] = {"0025.0000", "0030.0000", "5", "8", "TEN METERS", "", "", "", "", ""};
    doc.fipscodes[1] = "012345";
    doc.fipscodes[15] = "543210";
    return doc;
}

std::string memBytes(const Document& doc) { return memText(doc, Settings{}); }

Document readBack(const std::string& bytes)
{
    Document doc;
    doc.clearstores();
    EXPECT_EQ(readMem(doc, bytes, 0).status, MemLoadStatus::Loaded);
    return doc;
}

// The value of a cell: numbers compare by their value (a blank is 0), texts
// without their padding blanks.
std::string valueOf(const std::string& cell)
{
    const std::string t = trim(cell);
    if (t.empty() || std::isdigit(static_cast<unsigned char>(t[0])) || t[0] == '.') return numText(std::llround(Val(t) * 10000));
    return t;
}

} // namespace

// ---- frequencies and bands -----------------------------------------------------------

TEST(SimMemoryFrequencies, TextFormsCoverageAndTheReceiversBands)
{
    EXPECT_EQ(freq8(1306250), "01306250");
    EXPECT_EQ(freqMhz(1306250), "0130.6250");
    EXPECT_EQ(freqMhz(0), "0000.0000");
    EXPECT_EQ(parseFreq8("08511625"), 8511625u);
    EXPECT_FALSE(parseFreq8("0851162"));
    EXPECT_FALSE(parseFreq8("0851162x"));
    // 25..512, 806..960, 1240..1300 whole MHz.
    const std::pair<Freq, bool> coverage[] = {{249999, false},  {250000, true},  {5129999, true},
                                              {5130000, false}, {8059999, false}, {9609999, true},
                                              {9610000, false}, {13009999, true}, {13010000, false}};
    for (const auto& [f, in] : coverage) EXPECT_EQ(inCoverage(f), in) << f;
    // The band a "PM" frequency takes its mode and step from.
    EXPECT_EQ(bandDefault(1180000)->mode, Modulation::AM);
    EXPECT_EQ(bandDefault(1180000)->step, Step::k25);
    EXPECT_EQ(bandDefault(1621000)->step, Step::k12_5);
    EXPECT_EQ(bandDefault(8511625)->mode, Modulation::NFM);
    EXPECT_EQ(bandDefault(980000)->mode, Modulation::WFM);
    EXPECT_FALSE(bandDefault(200000));
}

// ---- MEM file -> scanner -> MEM file ---------------------------------------------------

class SimMemoryRoundTrip : public ::testing::TestWithParam<Model> {};

TEST_P(SimMemoryRoundTrip, EveryFieldTheScannerKeepsComesBackAsItWent)
{
    const Model model = GetParam();
    const Document doc = richDocument(model);
    ScannerMemory memory(model);
    FillReport report;
    ASSERT_EQ(loadMemFile(memory, memBytes(doc), &report).status, MemLoadStatus::Loaded);
    EXPECT_TRUE(report.refusedChannels.empty());
    const Document back = readBack(memFileText(memory));

    const bool bc7 = ModelSwitches::of(model).bc785d == 1;
    for (int b = 0; b < 10; ++b) {
        for (int r = 1; r <= 100; ++r) {
            const auto& in = doc.memdata[b][r];
            const auto& out = back.memdata[b][r];
            EXPECT_EQ(Val(out[col::freq]), Val(in[col::freq])) << b << "/" << r;
            if (Val(in[col::freq]) == 0) continue;
            EXPECT_EQ(trim(out[col::tag]), trim(in[col::tag]));
            for (int c : {col::trunk, col::beep, col::tone, col::lockout, col::atten, col::mode, col::step,
                          bc7 ? col::record : col::recordHidden})
                EXPECT_EQ(valueOf(out[c]), valueOf(in[c])) << b << "/" << r << " column " << c;
            EXPECT_EQ(Val(out[col::delay]) != 0, Val(in[col::delay]) != 0) << b << "/" << r;
            if (bc7) {
                EXPECT_EQ(Val(out[col::delay]), Val(in[col::delay])) << b << "/" << r;
            }
        }
        EXPECT_EQ(back.banktags[b], doc.banktags[b]);
        EXPECT_EQ(back.priochan[b], doc.priochan[b]);
        EXPECT_EQ(back.banklockm[b], doc.banklockm[b]);
        EXPECT_EQ(back.banklocks[b], doc.banklocks[b]);
        EXPECT_EQ(Val(back.trunkset[b].trunktype), Val(doc.trunkset[b].trunktype));
        for (int f = 0; f < 10; ++f) {
            if (!doc.trunkset[b].trunkfields[f].empty()) {
                EXPECT_EQ(back.trunkset[b].trunkfields[f], doc.trunkset[b].trunkfields[f]) << "bank " << b << " field " << f;
            }
        }
        for (int row = 0; row < 100; ++row)
            for (int c = 0; c < 4; ++c) EXPECT_EQ(back.trunkids[b][row][c], doc.trunkids[b][row][c]) << b << "/" << row << "/" << c;
        for (int l = 0; l < 10; ++l) EXPECT_EQ(back.trunklisttags[b][l], doc.trunklisttags[b][l]);
    }
    EXPECT_EQ(back.trunkset[1].trunkblocks[0], doc.trunkset[1].trunkblocks[0]);
    EXPECT_EQ(back.trunkset[3].trunkblocks[0], doc.trunkset[3].trunkblocks[0]);
    EXPECT_EQ(back.trunkset[3].trunkblocks[1], doc.trunkset[3].trunkblocks[1]);
    for (int r = 0; r < 10; ++r)
        for (int f = 0; f < 4; ++f) EXPECT_EQ(Val(back.srcdata[r][f]), Val(doc.srcdata[r][f])) << r << "/" << f;
    for (int r = 0; r < 10; ++r) EXPECT_EQ(back.srcdata[r][4], doc.srcdata[r][4]) << r;
    for (int n = 1; n <= 15; ++n) EXPECT_EQ(back.fipscodes[n], doc.fipscodes[n]) << n;
}

INSTANTIATE_TEST_SUITE_P(AllModels, SimMemoryRoundTrip,
                         ::testing::Values(Model::BC250D, Model::BC785D, Model::BC296D, Model::BC796D, Model::UBC3300),
                         [](const ::testing::TestParamInfo<Model>& info) { return std::string(modelName(info.param)); });

// ---- what the wire shows of a MEM file ----------------------------------------------------

TEST(SimMemoryMapping, ALoadedFileAnswersOnTheWire)
{
    VirtualScanner s(Model::BC785D);
    ASSERT_EQ(loadMemFile(s.memory(), memBytes(richDocument(Model::BC785D))).status, MemLoadStatus::Loaded);
    // The program's trunk type 1 is the scanner's 2 (and 2 its 1, 8 its 9, 9 its 8).
    expectReplies(s, {{"MA001", "C001 F01306250 TF DN LF AN RN N000"}, {"TA C 001", "TA C 001 PFO Tower Main"},
                      {"RM", "RM AM"}, {"ST", "ST 25K"}, {"DL", "DLN+2"}, {"BA C 001", "BAN C 001"},
                      {"MA250", "C250 F08511625 TN DF LF AF RF N161"}, {"CS", "CS012L"},  // the locked-out form of tone 12
                      {"PM000", "C000 F04460062 TF DF LF AF RF N045"}, {"TB A", "TB A E2-8"}, {"TB B", "TB B TYPE1"},
                      {"TB D", "TB D E2-U"}, {"TB F", "TB F EDCS W"}, {"TB H", "TB H LT"}, {"TB I", "TB I EDCS S"},
                      {"TB C", "TB C OFF"}, {"TC A", "TCN A P3"}, {"FB B 6", "FB B 6 12"}, {"TG A C5", "TG A C5 54321 "},
                      {"TG A J0", "TG A J0 i01234"}, {"BA I A C5", "BAN I A C5"}, {"TA L A J", "TA L A J LIST 10"},
                      {"PC C", "PC C203"}, {"CB", "CB ADGJ"}, {"SB", "SB BDFHJ"}, {"LL E", "LL04060000 E"},
                      {"TA S J", "TA S J TEN METERS"}, {"FP 15", "FP 15 543210"}});
    EXPECT_EQ(s.memory().search[4].step, Step::k12_5);  // index 4 of the BC785D's list
    EXPECT_EQ(s.memory().search[9].mode, Modulation::Auto);
}

TEST(SimMemoryMapping, WhatTheModelCannotKeep)
{
    Document doc;
    doc.clearstores();
    setChannel(doc, 5, {{col::freq, "0155.0062"}, {col::step, "8"}, {col::delay, "5"}, {col::mode, "0"},
                        {col::tag, "A TAG LONGER THAN SIXTEEN"}, {col::tone, "12L"}, {col::comment, "not kept"}});
    setChannel(doc, 6, {{col::freq, "0600.0000"}});  // in the gap above 512 MHz
    setChannel(doc, 7, {{col::freq, "0446.0000"}, {col::step, "9"}});

    ScannerMemory bc250(Model::BC250D);
    const FillReport report = fillFromDocument(bc250, doc);
    EXPECT_EQ(report.refusedChannels, std::vector<int>{6});
    EXPECT_TRUE(bc250.channel(6).empty());
    EXPECT_EQ(bc250.channel(5).step, Step::k5);      // no 6.25 kHz: the band's step
    EXPECT_EQ(bc250.channel(7).step, Step::k12_5);   // no 20 kHz either
    EXPECT_EQ(bc250.channel(5).delay, 2);            // one delay: on
    EXPECT_EQ(bc250.channel(5).tag, "A TAG LONGER THA");
    EXPECT_EQ(bc250.channel(5).tone, 161);           // "12L" is the older form of 161
    const Document back = documentOf(bc250);
    EXPECT_EQ(back.memdata[0][5][col::delay], "2");
    EXPECT_EQ(back.memdata[0][5][col::comment], " ");
    EXPECT_EQ(back.memdata[0][6][col::freq], "0000.0000");

    ScannerMemory bc796(Model::BC796D);
    fillFromDocument(bc796, doc);
    EXPECT_EQ(bc796.channel(5).step, Step::k6_25);
    EXPECT_EQ(bc796.channel(7).step, Step::k20);
    EXPECT_EQ(bc796.channel(5).delay, 5);
}

TEST(SimMemoryMapping, NoBankMarkedMeansAllTakePartAndPresetsFillTheFleetmap)
{
    Document doc;
    doc.clearstores();
    doc.trunkset[2].trunktype = "2";
    doc.trunkset[2].trunkfields[7] = "6";  // preset 6, blocks left empty
    ScannerMemory memory;
    fillFromDocument(memory, doc);
    for (int b = 0; b < 10; ++b) {
        EXPECT_TRUE(memory.scanBanks[b]);
        EXPECT_TRUE(memory.searchRanges[b]);
    }
    EXPECT_EQ(memory.trunk[2].fleet, (std::array<int, 8>{3, 10, 4, 4, 12, 12, 12, 12}));
    EXPECT_EQ(documentOf(memory).trunkset[2].trunkfields[7], "6");
    memory.trunk[2].fleet[0] = 4;
    EXPECT_EQ(documentOf(memory).trunkset[2].trunkfields[7], "0");  // custom
}

TEST(SimMemoryMapping, ARefusedFileLeavesTheMemoryAlone)
{
    ScannerMemory memory;
    memory.channel(1).freq = 1306250;
    EXPECT_EQ(loadMemFile(memory, "NOT A MEM FILE\r\n").status, MemLoadStatus::NotCompatible);
    EXPECT_EQ(memory.channel(1).freq, 1306250u);
    const std::string whole = memBytes(richDocument(Model::BC785D));
    EXPECT_EQ(loadMemFile(memory, whole.substr(0, whole.size() / 10)).status, MemLoadStatus::Invalid);
    EXPECT_EQ(memory.channel(1).freq, 1306250u);
}
