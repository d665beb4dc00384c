#include "link/vocabulary.h"

#include <gtest/gtest.h>

using namespace kestra;
using namespace kestra::wire;

namespace {
using Wire = std::optional<std::string>;

// Each text made or read as the wire has it, against the text wanted.
void expectWire(std::initializer_list<std::pair<Wire, Wire>> pairs)
{
    for (const auto& [made, wanted] : pairs) EXPECT_EQ(made, wanted);
}
} // namespace

TEST(WireCommands, EveryCommandInItsWireForm)
{
    EXPECT_EQ(bankLetter(0), 'A');
    EXPECT_EQ(bankLetter(9), 'J');
    expectWire({
        {channel3(1), "001"}, {channel3(89), "089"}, {channel3(1000), "000"}, {freq8("0416.0000"), "04160000"},
        {freq8("155.1"), "01551000"}, {selectChannel(1000), "MA000"},
        {programFrequency(89, false, "851.1625"), "PM089 08511625"},
        {programFrequency(1000, true, "0851.1625"), "PM000T08511625"}, {clearChannel(5), "PM005 00000000"},
        {setTag(7, "PFO Tower"), "TA C 007 PFO Tower"}, {setBeep(1000, true), "BAN C 000"},
        {setPriority(2, 201), "PC C201"}, {setBankTag(0, "AVIATION"), "TA B A AVIATION"},
        {setLowerLimit(1, "118"), "LL01180000 B"}, {readSearchTag(0), "TA S A"},
        // Settings of the current channel; the locked-out subtone is the code minus 149.
        {setStep("12.5"), "ST 12.5K"}, {setStep("Auto"), "ST AUTO"}, {setStep("6.25"), "ST 6.25K"},
        {setStep("3"), std::nullopt}, {setMode("NFM"), "RM NFM"}, {setDelay("0"), "DLF"}, {setDelay("4"), "DLN +-"},
        {setDelay("7"), "DLN -10"}, {setDelay("8"), std::nullopt}, {setSubtone(12), "CS012"},
        {setSubtone(142), "CS142"}, {setSubtone(161), "CSL012"}, {setSubtone(291), "CSL142"},
        // Trunk systems and keys.
        {setTrunkType(0, "4 04160000 0125 381"), "TR A 4 04160000 0125 381"}, {readTrunkId(0, 'A', 1), "TG A A1"},
        {setIdTag(9, 'J', 9, "Dispatch"), "TA I J J9 Dispatch"}, {setIdBeep(2, 'B', 0, false), "BAF I C B0"},
        {readListTag(0, '0'), "TA L A 0"}, {key(7), "KEY07"}, {key(5, true), "KEY05H"}, {digitKey(4), "KEY02 4"},
        {exitKey(0), "KEY07"}, {exitKey(1), "KEY09"}, {readDisplayLine(0), "LCD"}, {readDisplayLine(3), "LCD3"},
    });
    const std::pair<int, int> trunkTypes[] = {{1, 2}, {2, 1}, {3, 3}, {8, 9}, {9, 8}};
    for (const auto& [program, scanner] : trunkTypes) EXPECT_EQ(scannerTrunkType(program), scanner) << program;
    EXPECT_EQ(modelOfReply("SI BC250D,0000000000,104\r"), Model::BC250D);
    EXPECT_EQ(modelOfReply("\x7f garbage SI UBC3300,0000000000,100\r"), Model::UBC3300);
    EXPECT_EQ(modelOfReply("ERR\r"), std::nullopt);
}

TEST(WireReplies, AChannelReplyIsReadByItsMarkers)
{
    const ChannelReply r = decodeChannel("C001 F01306250 TF DN LF AF RF N000\r", 1);
    EXPECT_EQ(r.freq8, "01306250");
    EXPECT_EQ(r.trunk, 'F');
    EXPECT_EQ(r.delay, 'N');
    EXPECT_EQ(r.lockout, 'F');
    EXPECT_EQ(r.record, 'F');
    EXPECT_EQ(r.tone, "000");
    EXPECT_FALSE(r.empty());
    EXPECT_TRUE(decodeChannel("C010 F00000000 TF DF LN AF RF N000\r", 10).empty());
    // An echo or noise in front does no harm; channel 1000 is C000.
    const ChannelReply echoed = decodeChannel("MA000\rC000 F08511625 TN DN LF AN RN N161\r", 1000);
    EXPECT_EQ(echoed.freq8, "08511625");
    EXPECT_EQ(echoed.atten, 'N');
    EXPECT_EQ(echoed.tone, "161");
    // Without markers, nothing is found.
    const ChannelReply nothing = decodeChannel("ERR\r", 3);
    EXPECT_FALSE(nothing.freq8);
    EXPECT_FALSE(nothing.trunk);
}

TEST(WireReplies, FieldRepliesTakeFixedCharactersBehindTheirMarkers)
{
    expectWire({
        {decodeStep("ST 5K\r"), "5K"}, {decodeStep("ST 6.25K\r"), "6."}, {decodeStep("ST 12.5K\r"), "12"},
        {decodeStep("ST 10K\r"), "10K"}, {decodeStep("ST 100K\r"), "100K"}, {decodeStep("ST AUTO\r"), "AUTO"},
        {decodeMode("RM NFM\r"), "NF"}, {decodeMode("RM WFM\r"), "WF"}, {decodeDelay("DLF\r"), "F"},
        {decodeDelay("DLN+2\r"), "+2"},
        {decodeDelay("DLN-10\r"), "-1"},  // the sign right behind the third character
        {decodeTag("TA C 001 PFO Tower Main\r"), "PFO Tower Main"}, {decodeTag("TA C 002 \r"), ""},
        {decodeTag("TA C 003 two\rlines\r"), "two\rlines"},  // up to the final carriage return
        {decodeSubtone("CSL012\r"), "L012"}, {decodeBankTag("TA B A AVIATION   \r", 0), "AVIATION"},
        {decodeBankTag("TA B A \r", 0), ""}, {decodeBankTag("TA B B x\r", 0), std::nullopt},
    });
    EXPECT_EQ(decodeBeep("BAN C 001\r"), 'N');
    EXPECT_EQ(decodePriority("PC C201\r", 2), 201);
    EXPECT_EQ(decodePriority("PC B201\r", 2), std::nullopt);
}

TEST(WireMenuLines, AreTwentyFourCharactersButTheOneThatNeverMatches)
{
    for (const auto* list : {&menu::kModes, &menu::kSteps, &menu::kDelays, &menu::kGeneral})
        for (const std::string& line : *list) {
            EXPECT_EQ(line.size(), 24u) << line;
            EXPECT_EQ(line.substr(17), "][*****") << line;
        }
    for (const char* line : {menu::kOn, menu::kOff, menu::kOnly}) EXPECT_EQ(std::string(line).size(), 24u);
    EXPECT_EQ(std::string(menu::kStep625Long).size(), 26u);
}
