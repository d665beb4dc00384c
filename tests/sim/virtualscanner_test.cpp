// The virtual scanner's command language: framing, every command family in
// both directions, the model differences, and the reply forms recorded from
// real scanners, reproduced character for character.

#include "sim/virtualscanner.h"

#include <gtest/gtest.h>

using namespace kestra;
using namespace kestra::sim;

namespace {

// A reply without its final carriage return (one-line replies).
std::string ask(VirtualScanner& s, std::string_view line)
{
    std::string r = s.command(line);
    EXPECT_FALSE(r.empty());
    if (!r.empty() && r.back() == '\r') r.pop_back();
    return r;
}

} // namespace

// ---- framing ------------------------------------------------------------------

TEST(VirtualScannerFraming, LinesEndWithCarriageReturnLineFeedIsNothing)
{
    VirtualScanner s(Model::BC250D);
    EXPECT_EQ(s.receive("SI\r\nVR\r\n"), "SI BC250D,0000000000,104\rVR1.00\r");
    // A line that arrives in pieces is answered when its CR comes.
    EXPECT_EQ(s.receive("S"), "");
    EXPECT_EQ(s.receive("I"), "");
    EXPECT_EQ(s.receive("\r"), "SI BC250D,0000000000,104\r");
    // The LF of the last line arrives with the next command.
    EXPECT_EQ(s.receive("\nMD\r"), "MD00\r");
}

TEST(VirtualScannerFraming, OverlongLineOverrunsAndTheNextLineIsClean)
{
    VirtualScanner s;
    std::string junk(VirtualScanner::kLineLimit + 10, 'X');
    EXPECT_EQ(s.receive(junk + "\r"), "ORER\r");
    EXPECT_EQ(s.receive("VR\r"), "VR1.02\r");
}

TEST(VirtualScannerFraming, UnknownMalformedAndRefusedCommands)
{
    VirtualScanner s;
    EXPECT_EQ(s.command("XYZ"), "ERR\r");
    EXPECT_EQ(s.command(""), "ERR\r");
    EXPECT_EQ(s.command("si"), "ERR\r");         // the language is upper case
    EXPECT_EQ(s.command("MA1"), "ERR\r");        // a channel is three digits
    EXPECT_EQ(s.command("MA0012"), "ERR\r");
    EXPECT_EQ(s.command("KEY17"), "ERR\r");
    EXPECT_EQ(s.command("KEY02"), "ERR\r");      // a digit key needs its digit
    EXPECT_EQ(s.command("KEY02 10"), "ERR\r");
    EXPECT_EQ(s.command("TBNA"), "ERR\r");       // without its blank
    EXPECT_EQ(s.command("BAF C 1000"), "ERR\r"); // four digits for channel 1000
    EXPECT_EQ(s.command("ST 3K"), "NG\r");       // known command, value refused
    EXPECT_EQ(s.command("PM001 06000000"), "NG\r");  // 600 MHz is not tuned
    EXPECT_EQ(s.command("PC A150"), "NG\r");     // not a channel of bank 1
    // The command line without its end works through command() too.
    EXPECT_EQ(s.command("VR\r\n"), "VR1.02\r");
}

// ---- the recorded replies --------------------------------------------------------

TEST(VirtualScannerReplies, ModelAndVersion)
{
    VirtualScanner bc250(Model::BC250D);
    EXPECT_EQ(bc250.command("SI"), "SI BC250D,0000000000,104\r");
    EXPECT_EQ(bc250.command("VR"), "VR1.00\r");
    // Each model names itself as the model check expects.
    for (Model m : {Model::BC250D, Model::BC785D, Model::BC296D, Model::BC796D, Model::UBC3300}) {
        VirtualScanner s(m);
        const std::string si = ask(s, "SI");
        EXPECT_EQ(si.rfind(std::string("SI ") + modelName(m) + ",0000000000,", 0), 0u) << si;
        EXPECT_EQ(si.size(), 3 + std::string(modelName(m)).size() + 15);
        EXPECT_EQ(ask(s, "VR").substr(0, 3), "VR1");
    }
}

TEST(VirtualScannerReplies, ChannelReadsAndTags)
{
    VirtualScanner s;
    EXPECT_EQ(s.command("PM001 01306250"), "OK\r");
    EXPECT_EQ(s.command("DLN +2"), "OK\r");
    EXPECT_EQ(s.command("TA C 001 PFO Tower Main"), "OK\r");
    EXPECT_EQ(s.command("MA001"), "C001 F01306250 TF DN LF AF RF N000\r");
    EXPECT_EQ(s.command("MA010"), "C010 F00000000 TF DF LN AF RF N000\r");
    EXPECT_EQ(s.command("TA C 001"), "TA C 001 PFO Tower Main\r");
    EXPECT_EQ(s.command("TA B A AVIATION"), "OK\r");
    EXPECT_EQ(s.command("TA B A"), "TA B A AVIATION\r");
    EXPECT_EQ(s.command("TA S A"), "TA S A \r");
}

TEST(VirtualScannerReplies, PmWithANumberReadsWithoutSelecting)
{
    VirtualScanner s;
    EXPECT_EQ(s.command("PM089T08511625"), "OK\r");
    EXPECT_EQ(s.command("DLN +2"), "OK\r");
    EXPECT_EQ(s.command("MA005"), "C005 F00000000 TF DF LN AF RF N000\r");
    EXPECT_EQ(s.command("PM089"), "C089 F08511625 TN DN LF AF RF N000\r");
    EXPECT_EQ(s.currentChannel(), 5);
    EXPECT_EQ(s.command("PM089 08511625"), "OK\r");  // the blank programs a channel without trunk
    EXPECT_EQ(s.command("MA089"), "C089 F08511625 TF DN LF AF RF N000\r");
    EXPECT_EQ(s.currentChannel(), 89);
}

TEST(VirtualScannerReplies, MaAloneStopsOnTheChannelTheScanIsOn)
{
    VirtualScanner s;
    EXPECT_EQ(s.command("PM042 01543000"), "OK\r");
    s.scanTo(42);
    EXPECT_EQ(s.command("MD"), "MD00\r");
    EXPECT_EQ(s.command("MA"), "C042 F01543000 TF DF LF AF RF N000\r");
    EXPECT_EQ(s.command("MD"), "MD01\r");
    EXPECT_EQ(s.currentChannel(), 42);
}

TEST(VirtualScannerReplies, ModeAttenuatorSquelchSignalAndFrequency)
{
    VirtualScanner s;
    s.command("MA001");
    s.command("PM001 08594375");
    for (const char* mode : {"FM", "NFM", "WFM", "AM"}) {
        EXPECT_EQ(s.command(std::string("RM ") + mode), "OK\r");
        EXPECT_EQ(ask(s, "RM"), std::string("RM ") + mode);
    }
    EXPECT_EQ(s.command("ATN"), "OK\r");
    EXPECT_EQ(s.command("AT"), "ATN\r");
    EXPECT_EQ(s.command("ATF"), "OK\r");
    EXPECT_EQ(s.command("AT"), "ATF\r");
    EXPECT_EQ(s.command("SQ"), "-\r");
    s.setReception({true, 182});
    EXPECT_EQ(s.command("SQ"), "+\r");
    EXPECT_EQ(s.command("SG"), "S182 F08594375\r");
    EXPECT_EQ(s.command("RF01560000"), "OK\r");
    EXPECT_EQ(s.command("RF"), "RF01560000\r");
    EXPECT_EQ(ask(s, "MA001").substr(0, 14), "C001 F01560000");
}

// ---- channel settings on the current channel ------------------------------------

TEST(VirtualScannerChannels, SettingsActOnTheCurrentChannel)
{
    VirtualScanner s(Model::BC785D);
    s.command("MA101");
    s.command("PM102 01561000");  // programming makes 102 current
    for (const char* cmd : {"LON", "ATN", "ARN", "DLN -10", "CS012", "ST 12.5K", "RM NFM"})
        EXPECT_EQ(s.command(cmd), "OK\r") << cmd;
    EXPECT_EQ(s.command("MA102"), "C102 F01561000 TF DN LN AN RN N012\r");
    EXPECT_EQ(s.command("DL"), "DLN-10\r");
    EXPECT_EQ(s.command("CS"), "CS0012\r");
    EXPECT_EQ(s.command("ST"), "ST 12.5K\r");
    EXPECT_EQ(s.command("RM"), "RM NFM\r");
    EXPECT_EQ(s.command("MA101"), "C101 F00000000 TF DF LN AF RF N000\r");
    // The flags go off again, one by one.
    s.command("MA102");
    for (const char* cmd : {"LOF", "ATF", "ARF", "DLF"}) s.command(cmd);
    EXPECT_EQ(s.command("MA102"), "C102 F01561000 TF DF LF AF RF N012\r");
}

TEST(VirtualScannerChannels, DelayListsByFamily)
{
    VirtualScanner bc7(Model::BC785D);
    bc7.command("MA001");
    for (const char* d : {"+1", "+2", "+4", "+-", "-2", "-5", "-10"}) {
        EXPECT_EQ(bc7.command(std::string("DLN ") + d), "OK\r");
        EXPECT_EQ(ask(bc7, "DL"), std::string("DLN") + d);
    }
    // The BC2xx family has one delay, two seconds: any delay switches it on.
    VirtualScanner bc2(Model::BC250D);
    bc2.command("MA001");
    EXPECT_EQ(bc2.command("DLN -5"), "OK\r");
    EXPECT_EQ(ask(bc2, "DL"), "DLN+2");
    EXPECT_EQ(bc2.command("DLF"), "OK\r");
    EXPECT_EQ(ask(bc2, "DL"), "DLF");
    EXPECT_EQ(bc2.command("DLN +3"), "NG\r");
    EXPECT_EQ(bc2.command("DLX"), "ERR\r");
}

TEST(VirtualScannerChannels, StepsByModel)
{
    for (Model m : {Model::BC250D, Model::BC785D, Model::BC296D, Model::BC796D, Model::UBC3300}) {
        VirtualScanner s(m);
        s.command("MA001");
        const bool x96 = ModelSwitches::of(m).x96 == 1;
        for (const char* step : {"5K", "7.5K", "10K", "12.5K", "25K", "50K", "100K", "AUTO"}) {
            EXPECT_EQ(s.command(std::string("ST ") + step), "OK\r") << step;
            EXPECT_EQ(ask(s, "ST"), std::string("ST ") + step);
        }
        for (const char* step : {"6.25K", "20K"})
            EXPECT_EQ(s.command(std::string("ST ") + step), x96 ? "OK\r" : "NG\r") << modelName(m) << step;
    }
}

TEST(VirtualScannerChannels, ProgrammingTakesTheBandsModeAndStepAndClearingEmpties)
{
    VirtualScanner s;
    s.command("MA001");
    s.command("ST 5K");
    s.command("RM AM");
    s.command("PM001 04161250");  // UHF: NFM, 12.5 kHz by the receiver's band table
    EXPECT_EQ(ask(s, "ST"), "ST 12.5K");
    EXPECT_EQ(ask(s, "RM"), "RM NFM");
    s.command("PM001 01180000");  // airband: AM, 25 kHz
    EXPECT_EQ(ask(s, "ST"), "ST 25K");
    EXPECT_EQ(ask(s, "RM"), "RM AM");
    s.command("TA C 001 TOWER");
    s.command("BAN C 001");
    EXPECT_EQ(s.command("PM001 00000000"), "OK\r");
    EXPECT_EQ(s.command("MA001"), "C001 F00000000 TF DF LN AF RF N000\r");
    EXPECT_EQ(s.command("TA C 001"), "TA C 001 \r");
    EXPECT_EQ(s.command("BA C 001"), "BAF C 001\r");
    // Channel 1000 is "000" everywhere.
    EXPECT_EQ(s.command("PM000T08600000"), "OK\r");
    EXPECT_EQ(s.currentChannel(), 1000);
    EXPECT_EQ(ask(s, "MA000").substr(0, 16), "C000 F08600000 T");
    EXPECT_EQ(s.command("BAN C 000"), "OK\r");
    EXPECT_EQ(s.command("BA C 000"), "BAN C 000\r");
    EXPECT_EQ(s.command("TA C 000 LAST ONE"), "OK\r");
    EXPECT_EQ(s.command("TA C 000"), "TA C 000 LAST ONE\r");
}

TEST(VirtualScannerChannels, SubtoneCodesAndTheirLockedOutForms)
{
    VirtualScanner s;
    s.command("MA001");
    EXPECT_EQ(s.command("CS149"), "NG\r");   // 143..149 are no code
    EXPECT_EQ(s.command("CS142"), "OK\r");
    EXPECT_EQ(s.command("CS"), "CS0142\r");
    EXPECT_EQ(s.command("CSL001"), "OK\r");  // 150: tone 1 locked out
    EXPECT_EQ(s.command("CS"), "CS001L\r");  // reads back as a code with "L", 1 + 149
    EXPECT_EQ(s.command("CSL142"), "OK\r");
    EXPECT_EQ(s.command("CS"), "CS142L\r");
    EXPECT_EQ(s.command("CSL000"), "NG\r");
    EXPECT_EQ(s.command("CS12"), "ERR\r");
    EXPECT_EQ(s.command("CS000"), "OK\r");
    EXPECT_EQ(s.command("CS"), "CS0000\r");
}

TEST(VirtualScannerChannels, TagsKeepSixteenCharacters)
{
    VirtualScanner s;
    EXPECT_EQ(s.command("TA C 005 ABCDEFGHIJKLMNOPQRST"), "OK\r");
    EXPECT_EQ(s.command("TA C 005"), "TA C 005 ABCDEFGHIJKLMNOP\r");
    EXPECT_EQ(s.command("TA C 005 A \"quoted\" tag"), "OK\r");  // kept as sent
    EXPECT_EQ(s.command("TA C 005"), "TA C 005 A \"quoted\" tag\r");
    EXPECT_EQ(s.command("TA C 005 "), "OK\r");  // an empty tag
    EXPECT_EQ(s.command("TA C 005"), "TA C 005 \r");
    EXPECT_EQ(s.command("TA X 005"), "ERR\r");
    EXPECT_EQ(s.command("TA B K"), "NG\r");     // there is no eleventh bank
}

// ---- banks ------------------------------------------------------------------------

TEST(VirtualScannerBanks, PriorityChannels)
{
    VirtualScanner s;
    EXPECT_EQ(s.command("PC A"), "PC A001\r");
    EXPECT_EQ(s.command("PC J"), "PC J901\r");
    EXPECT_EQ(s.command("PC C250"), "OK\r");     // the program's form, three digits
    EXPECT_EQ(s.command("PC C"), "PC C250\r");
    EXPECT_EQ(s.command("PC B 150"), "OK\r");    // with a blank
    EXPECT_EQ(s.command("PC B"), "PC B150\r");
    EXPECT_EQ(s.command("PC J1000"), "OK\r");    // unpadded, channel 1000
    EXPECT_EQ(s.command("PC J"), "PC J000\r");
    EXPECT_EQ(s.command("PC D250"), "NG\r");
    EXPECT_EQ(s.command("PC D0"), "NG\r");
}

TEST(VirtualScannerBanks, ActiveBanksRangesAndListsAreSetAsAWhole)
{
    VirtualScanner s;
    EXPECT_EQ(s.command("CB"), "CB ABCDEFGHIJ\r");
    EXPECT_EQ(s.command("SB"), "SB ABCDEFGHIJ\r");
    EXPECT_EQ(s.command("CB ACJ"), "OK\r");
    EXPECT_EQ(s.command("CB"), "CB ACJ\r");
    EXPECT_EQ(s.command("SB J"), "OK\r");
    EXPECT_EQ(s.command("SB"), "SB J\r");
    EXPECT_EQ(s.command("CB"), "CB ACJ\r");  // independent of the search ranges
    EXPECT_EQ(s.command("CB AK"), "NG\r");
    EXPECT_EQ(s.command("CB "), "NG\r");
    EXPECT_EQ(s.command("CB"), "CB ACJ\r");
    // ID lists of the bank on the display.
    s.command("MA250");
    EXPECT_EQ(s.command("IS BD"), "OK\r");
    EXPECT_EQ(s.command("IS"), "IS BD\r");
    EXPECT_FALSE(s.memory().ids[2][0].active);
    EXPECT_TRUE(s.memory().ids[2][1].active);
    EXPECT_TRUE(s.memory().ids[0][0].active);
}

// ---- trunk ------------------------------------------------------------------------

TEST(VirtualScannerTrunk, TypesInTheScannersNumberingAndWords)
{
    VirtualScanner s;
    EXPECT_EQ(s.command("TB A"), "TB A OFF\r");
    EXPECT_EQ(s.command("TBN A"), "OK\r");
    EXPECT_EQ(s.command("TB A"), "TB A E2-8\r");  // a new trunk bank is Motorola Type 2, 800 MHz
    const std::pair<const char*, const char*> words[] = {{"1", "TYPE1"}, {"2", "E2-8"},   {"3", "E2-9"},
                                                         {"4", "E2-U"},  {"5", "E2-V"},   {"6", "EDCS W"},
                                                         {"7", "EDCS N"}, {"8", "EDCS S"}, {"9", "LT"}};
    for (const auto& [code, word] : words) {
        EXPECT_EQ(s.command(std::string("TR C ") + code), "OK\r");
        EXPECT_EQ(ask(s, "TB C"), std::string("TB C ") + word);
    }
    EXPECT_EQ(s.command("TR C 0"), "NG\r");
    EXPECT_EQ(s.command("TBF C"), "OK\r");
    EXPECT_EQ(s.command("TB C"), "TB C OFF\r");
    // "TB" alone answers for the bank of the current channel.
    s.command("MA001");
    EXPECT_EQ(s.command("TB"), "TB A E2-8\r");
}

TEST(VirtualScannerTrunk, BaseConfigsOfTheTypeTwoUhfAndVhfSystems)
{
    VirtualScanner s;
    EXPECT_EQ(s.command("TR B 4 04160000 0125 381 1"), "OK\r");
    EXPECT_EQ(s.command("TR B 4 04200000 0250 400 2"), "OK\r");
    EXPECT_EQ(s.command("TR B 4 00000000 0000 000 3"), "OK\r");
    const TrunkBank& t = s.memory().trunk[1];
    EXPECT_TRUE(t.on);
    EXPECT_EQ(t.kind, TrunkKind::Type2_Uhf);
    EXPECT_EQ(t.base[0].freq, 4160000u);
    EXPECT_EQ(t.base[0].step, 125);
    EXPECT_EQ(t.base[0].offset, 381);
    EXPECT_EQ(t.base[1].offset, 400);
    EXPECT_TRUE(t.base[2].empty());
    EXPECT_EQ(s.command("TR B 4 00000000 0000 000 1"), "OK\r");  // the zero line empties one
    EXPECT_TRUE(s.memory().trunk[1].base[0].empty());
    EXPECT_EQ(s.command("TR B 5 01360000 0125 381 1"), "OK\r");
    EXPECT_EQ(s.memory().trunk[1].kind, TrunkKind::Type2_Vhf);
    EXPECT_EQ(s.command("TR B 4 04160000 0125 381 4"), "NG\r");
    EXPECT_EQ(s.command("TR B 2 04160000 0125 381 1"), "NG\r");  // Type 2 800 has no Base Config
    EXPECT_EQ(s.command("TR B 4 0416000 0125 381 1"), "ERR\r");
}

TEST(VirtualScannerTrunk, ControlChannelOption)
{
    VirtualScanner s;
    s.command("TR A 2");
    EXPECT_EQ(s.command("TC A"), "TCF A\r");
    EXPECT_EQ(s.command("TCN A P3"), "OK\r");
    EXPECT_EQ(s.command("TC A"), "TCN A P3\r");
    EXPECT_EQ(s.command("TCN A"), "OK\r");
    EXPECT_EQ(s.command("TC A"), "TCN A P1\r");
    EXPECT_EQ(s.command("TCN A P5"), "NG\r");
    EXPECT_EQ(s.command("TCF A"), "OK\r");
    EXPECT_EQ(s.command("TC A"), "TCF A\r");
    // Type 2 900 MHz has "control channel only", on or off, without a plan.
    s.command("TR B 3");
    s.command("TCN B");
    EXPECT_EQ(s.command("TC B"), "TCN B\r");
}

TEST(VirtualScannerTrunk, FleetmapBlocks)
{
    VirtualScanner s;
    s.command("TR A 1");
    EXPECT_EQ(s.command("FB A 04 04 04 04 04 04 12"), "OK\r");  // 12 in block 6 takes block 7 too
    const char* expected[] = {"04", "04", "04", "04", "04", "04", "12", "12"};
    for (int n = 0; n < 8; ++n) EXPECT_EQ(ask(s, "FB A " + std::to_string(n)), "FB A " + std::to_string(n) + " " + expected[n]);
    EXPECT_EQ(s.command("FB A 14"), "OK\r");  // 14 in block 0 fills the map
    EXPECT_EQ(s.command("FB A 7"), "FB A 7 14\r");
    EXPECT_EQ(s.command("FB A 15"), "NG\r");
    EXPECT_EQ(s.command("FB A 8"), "NG\r");
    EXPECT_EQ(s.command("FB A 4 4"), "ERR\r");
}

TEST(VirtualScannerTrunk, IdListsSlotsTagsAndAlerts)
{
    VirtualScanner s;
    s.command("TR A 2");
    EXPECT_EQ(s.command("TG A Q0"), "OK\r");   // opens the reading of the lists
    EXPECT_EQ(s.command("TG A A1"), "TG A A1 ------\r");
    EXPECT_EQ(s.command("TG A A1 12345"), "OK\r");
    EXPECT_EQ(s.command("TG A A1"), "TG A A1 12345 \r");  // six places
    EXPECT_EQ(s.command("TG A J0 i01234"), "OK\r");
    EXPECT_EQ(s.command("TG A J0"), "TG A J0 i01234\r");
    EXPECT_EQ(s.memory().ids[0][9].idSlots[0].id, "i01234");  // "J0": the tenth slot of list J
    EXPECT_EQ(s.command("TA I A A1 FIRE DISPATCH"), "OK\r");
    EXPECT_EQ(s.command("TA I A A1"), "TA I A A1 FIRE DISPATCH\r");
    EXPECT_EQ(s.command("TA I A A2"), "TA I A A2 --\r");  // no ID, no tag
    EXPECT_EQ(s.command("TA I A A2 NOTHING"), "NG\r");
    EXPECT_EQ(s.command("BA I A A1"), "BAF I A A1\r");
    EXPECT_EQ(s.command("BAN I A A1"), "OK\r");
    EXPECT_EQ(s.command("BA I A A1"), "BAN I A A1\r");
    EXPECT_EQ(s.command("BAN I A A2"), "NG\r");
    EXPECT_EQ(s.command("TA L A 0"), "OK\r");  // opens the reading of the list tags
    EXPECT_EQ(s.command("TA L A B"), "TA L A B \r");
    EXPECT_EQ(s.command("TA L A B FIRE"), "OK\r");
    EXPECT_EQ(s.command("TA L A B"), "TA L A B FIRE\r");
    EXPECT_EQ(s.command("TG A A1 ------"), "OK\r");  // empties the slot with its tag
    EXPECT_EQ(s.command("TG A A1"), "TG A A1 ------\r");
    EXPECT_EQ(s.command("TA I A A1"), "TA I A A1 --\r");
    EXPECT_EQ(s.command("TG A A1 12345678"), "NG\r");
    EXPECT_EQ(s.command("TG A K1"), "NG\r");
}

// ---- search -------------------------------------------------------------------------

TEST(VirtualScannerSearch, LimitsAndTags)
{
    VirtualScanner s;
    EXPECT_EQ(s.command("LL A"), "LL00000000 A\r");
    EXPECT_EQ(s.command("LL01080000 A"), "OK\r");
    EXPECT_EQ(s.command("LU01370000 A"), "OK\r");
    EXPECT_EQ(s.command("LL A"), "LL01080000 A\r");
    EXPECT_EQ(s.command("LU A"), "LU01370000 A\r");
    EXPECT_EQ(s.command("LL06000000 B"), "NG\r");
    EXPECT_EQ(s.command("LL0108000 B"), "ERR\r");
    EXPECT_EQ(s.command("TA S J EXTENDED"), "OK\r");
    EXPECT_EQ(s.command("TA S J"), "TA S J EXTENDED\r");
}

TEST(VirtualScannerSearch, ModeAndStepActOnTheSearchWhileSearching)
{
    VirtualScanner s(Model::BC250D);
    s.command("LL01080000 C");
    s.command("LU01370000 C");
    s.command("SB C");
    s.command("MA001");
    s.command("KEY09");  // SEARCH
    EXPECT_EQ(s.command("MD"), "MD02\r");
    EXPECT_EQ(s.currentRange(), 2);
    EXPECT_EQ(s.command("RM AUTO"), "OK\r");
    EXPECT_EQ(s.command("RM"), "RM AUTO\r");
    EXPECT_EQ(s.command("ST 50K"), "OK\r");
    EXPECT_EQ(s.memory().search[2].step, Step::k50);
    EXPECT_EQ(s.command("ST 6.25K"), "NG\r");
    EXPECT_EQ(s.command("RF"), "RF01080000\r");
    EXPECT_EQ(s.command("RF01200000"), "OK\r");
    EXPECT_EQ(s.command("RF"), "RF01200000\r");
    // The channel was not touched.
    EXPECT_EQ(s.memory().channel(1).step, Step::Auto);
    s.command("MA001");
    EXPECT_EQ(s.command("RM AUTO"), "NG\r");  // a channel has no automatic mode
}

// ---- system ---------------------------------------------------------------------

TEST(VirtualScannerSystem, FipsCodes)
{
    VirtualScanner s;
    EXPECT_EQ(s.command("FP 01"), "FP 01 000000\r");
    EXPECT_EQ(s.command("FP 01 012345"), "OK\r");
    EXPECT_EQ(s.command("FP 01"), "FP 01 012345\r");
    EXPECT_EQ(s.command("FP 1"), "FP 01 012345\r");
    EXPECT_EQ(s.command("FP 15 543210"), "OK\r");
    EXPECT_EQ(s.command("FP 15"), "FP 15 543210\r");
    EXPECT_EQ(s.memory().fips[14], "543210");
    EXPECT_EQ(s.command("FP 16 543210"), "NG\r");
    EXPECT_EQ(s.command("FP 02 12345"), "NG\r");
    EXPECT_EQ(s.command("FP 15 000000"), "OK\r");
    EXPECT_EQ(s.memory().fips[14], "");
}

TEST(VirtualScannerSystem, WakeUpAndFactoryReset)
{
    VirtualScanner s(Model::BC796D, 57600);
    for (const char* cmd : {"IDF", "CDF", "QUF"}) EXPECT_EQ(s.command(cmd), "OK\r");
    s.command("PM500 04500000");
    s.command("TA B E SOMETHING");
    s.command("TR E 6");
    s.command("FP 03 111111");
    s.command("KEY11");
    EXPECT_EQ(s.command("AC"), "OK\r");
    EXPECT_EQ(s.command("MA500"), "C500 F00000000 TF DF LN AF RF N000\r");
    EXPECT_EQ(s.command("TA B E"), "TA B E \r");
    EXPECT_EQ(s.command("TB E"), "TB E OFF\r");
    EXPECT_EQ(s.command("FP 03"), "FP 03 000000\r");
    EXPECT_FALSE(s.inMenu());
    EXPECT_EQ(s.baudRate(), 57600);  // the link stays up
    EXPECT_EQ(s.model(), Model::BC796D);
}

TEST(VirtualScannerSystem, BaudRatesByModel)
{
    VirtualScanner bc296(Model::BC296D, 57600);
    EXPECT_EQ(bc296.baudRate(), 57600);
    VirtualScanner ubc(Model::UBC3300, 38400);  // the UBC3300 stops at 19200
    EXPECT_EQ(ubc.baudRate(), 19200);
    VirtualScanner bc250(Model::BC250D, 4800);
    EXPECT_EQ(bc250.baudRate(), 4800);
    EXPECT_FALSE(bc250.setBaudRate(38400));
    EXPECT_TRUE(bc250.setBaudRate(9600));
    EXPECT_EQ(bc250.baudRate(), 9600);
}

// ---- polling ----------------------------------------------------------------------

TEST(VirtualScannerPolling, ModeNumbers)
{
    VirtualScanner s(Model::BC785D);
    EXPECT_EQ(s.command("MD"), "MD00\r");  // a scanner switched on scans
    s.command("KEY07");                    // on the BC7xx family KEY07 is HOLD outside a menu
    EXPECT_EQ(s.command("MD"), "MD01\r");
    s.command("KEY10");
    EXPECT_EQ(s.command("MD"), "MD04\r");
    s.command("KEY07");
    EXPECT_EQ(s.command("MD"), "MD05\r");
    s.command("KEY09");
    EXPECT_EQ(s.command("MD"), "MD02\r");
    s.command("KEY07");
    EXPECT_EQ(s.command("MD"), "MD03\r");
    s.command("KEY00");
    EXPECT_EQ(s.command("MD"), "MD02\r");
    s.command("KEY11");
    EXPECT_EQ(s.command("MD"), "MD22\r");
    s.command("KEY09");                    // leaves the menu to where it was
    EXPECT_EQ(s.command("MD"), "MD02\r");
    // Trunk ID modes, by the system of the bank.
    s.command("TR B 6");
    s.command("MA150");
    s.command("KEY13");
    EXPECT_EQ(s.command("MD"), "MD16\r");  // EDACS ID scan
    s.command("KEY07");
    EXPECT_EQ(s.command("MD"), "MD17\r");
    s.command("KEY09");
    EXPECT_EQ(s.command("MD"), "MD14\r");
    EXPECT_EQ(s.command("TB"), "TB B EDCS W\r");
    s.command("KEY13");                    // back to conventional scanning
    EXPECT_EQ(s.command("MD"), "MD00\r");
    s.command("TR C 9");
    s.command("MA201");
    s.command("KEY13");
    EXPECT_EQ(s.command("MD"), "MD20\r");  // LTR ID scan
    s.command("TR D 1");
    s.command("MA301");
    EXPECT_EQ(s.command("MD"), "MD01\r");  // "MA" leaves a trunk mode for the channel
    s.command("KEY13");
    s.command("KEY09");
    EXPECT_EQ(s.command("MD"), "MD10\r");  // Motorola ID search
}
