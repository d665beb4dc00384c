#include "link/vocabulary.h"

#include <gtest/gtest.h>

using namespace kestra;
using namespace kestra::wire;

TEST(WireCommands, ChannelsBanksAndFrequenciesInTheirWireForms)
{
    EXPECT_EQ(channel3(1), "001");
    EXPECT_EQ(channel3(89), "089");
    EXPECT_EQ(channel3(1000), "000");
    EXPECT_EQ(bankLetter(0), 'A');
    EXPECT_EQ(bankLetter(9), 'J');
    EXPECT_EQ(freq8("0416.0000"), "04160000");
    EXPECT_EQ(freq8("155.1"), "01551000");
    EXPECT_EQ(selectChannel(1000), "MA000");
    EXPECT_EQ(programFrequency(89, false, "851.1625"), "PM089 08511625");
    EXPECT_EQ(programFrequency(1000, true, "0851.1625"), "PM000T08511625");
    EXPECT_EQ(clearChannel(5), "PM005 00000000");
    EXPECT_EQ(setTag(7, "PFO Tower"), "TA C 007 PFO Tower");
    EXPECT_EQ(setBeep(1000, true), "BAN C 000");
    EXPECT_EQ(setPriority(2, 201), "PC C201");
    EXPECT_EQ(setBankTag(0, "AVIATION"), "TA B A AVIATION");
    EXPECT_EQ(setLowerLimit(1, "118"), "LL01180000 B");
    EXPECT_EQ(readSearchTag(0), "TA S A");
}

TEST(WireCommands, SettingsOfTheCurrentChannel)
{
    EXPECT_EQ(setStep("12.5"), "ST 12.5K");
    EXPECT_EQ(setStep("Auto"), "ST AUTO");
    EXPECT_EQ(setStep("6.25"), "ST 6.25K");
    EXPECT_EQ(setStep("3"), std::nullopt);
    EXPECT_EQ(setMode("NFM"), "RM NFM");
    EXPECT_EQ(setDelay("0"), "DLF");
    EXPECT_EQ(setDelay("4"), "DLN +-");
    EXPECT_EQ(setDelay("7"), "DLN -10");
    EXPECT_EQ(setDelay("8"), std::nullopt);
    EXPECT_EQ(setSubtone(12), "CS012");
    EXPECT_EQ(setSubtone(142), "CS142");
    EXPECT_EQ(setSubtone(161), "CSL012");  // the locked-out form: code minus 149
    EXPECT_EQ(setSubtone(291), "CSL142");
}

TEST(WireCommands, TrunkKeysAndSystem)
{
    EXPECT_EQ(scannerTrunkType(1), 2);
    EXPECT_EQ(scannerTrunkType(2), 1);
    EXPECT_EQ(scannerTrunkType(3), 3);
    EXPECT_EQ(scannerTrunkType(8), 9);
    EXPECT_EQ(scannerTrunkType(9), 8);
    EXPECT_EQ(setTrunkType(0, "4 04160000 0125 381"), "TR A 4 04160000 0125 381");
    EXPECT_EQ(readTrunkId(0, 'A', 1), "TG A A1");
    EXPECT_EQ(setIdTag(9, 'J', 9, "Dispatch"), "TA I J J9 Dispatch");
    EXPECT_EQ(setIdBeep(2, 'B', 0, false), "BAF I C B0");
    EXPECT_EQ(readListTag(0, '0'), "TA L A 0");
    EXPECT_EQ(key(7), "KEY07");
    EXPECT_EQ(key(5, true), "KEY05H");
    EXPECT_EQ(digitKey(4), "KEY02 4");
    EXPECT_EQ(exitKey(0), "KEY07");
    EXPECT_EQ(exitKey(1), "KEY09");
    EXPECT_EQ(readDisplayLine(0), "LCD");
    EXPECT_EQ(readDisplayLine(3), "LCD3");
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
    EXPECT_EQ(decodeStep("ST 5K\r"), "5K");
    EXPECT_EQ(decodeStep("ST 6.25K\r"), "6.");
    EXPECT_EQ(decodeStep("ST 12.5K\r"), "12");
    EXPECT_EQ(decodeStep("ST 10K\r"), "10K");
    EXPECT_EQ(decodeStep("ST 100K\r"), "100K");
    EXPECT_EQ(decodeStep("ST AUTO\r"), std::nullopt);
    EXPECT_EQ(decodeMode("RM NFM\r"), "NF");
    EXPECT_EQ(decodeMode("RM WFM\r"), "WF");
    EXPECT_EQ(decodeDelay("DLF\r"), "F");
    EXPECT_EQ(decodeDelay("DLN+2\r"), "+2");
    EXPECT_EQ(decodeDelay("DLN-10\r"), "-1");  // the sign right behind the third character
    EXPECT_EQ(decodeBeep("BAN C 001\r"), 'N');
    EXPECT_EQ(decodeTag("TA C 001 PFO Tower Main\r"), "PFO Tower Main");
    EXPECT_EQ(decodeTag("TA C 002 \r"), "");
    EXPECT_EQ(decodeTag("TA C 003 two\rlines\r"), "two\rlines");  // up to the final carriage return
    EXPECT_EQ(decodeSubtone("CSL012\r"), "L012");
    EXPECT_EQ(decodePriority("PC C201\r", 2), 201);
    EXPECT_EQ(decodePriority("PC B201\r", 2), std::nullopt);
    EXPECT_EQ(decodeBankTag("TA B A AVIATION   \r", 0), "AVIATION");
    EXPECT_EQ(decodeBankTag("TA B A \r", 0), "");
    EXPECT_EQ(decodeBankTag("TA B B x\r", 0), std::nullopt);
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
