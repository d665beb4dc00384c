// The virtual scanner's command language: framing, every command family in
// both directions, the model differences, and the reply forms recorded from
// real scanners, reproduced character for character.

#include "sim/scannertalk.h"
#include "sim/virtualscanner.h"

#include <gtest/gtest.h>

using namespace kestra;
using namespace kestra::sim;
using kestra::test::expectReplies;
using kestra::test::sendAll;

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
    // ERR: lower case, a channel not of three digits (channel 1000 is "000"), a
    // digit key without one digit, "TBN" without its blank.
    expectReplies(s, {{"XYZ", "ERR"}, {"", "ERR"}, {"si", "ERR"}, {"MA1", "ERR"}, {"MA0012", "ERR"}, {"KEY17", "ERR"},
                      {"KEY02", "ERR"}, {"KEY02 10", "ERR"}, {"TBNA", "ERR"}, {"BAF C 1000", "ERR"}});
    // NG: a known command with a value refused (a step, 600 MHz, a channel not of bank 1).
    expectReplies(s, {{"ST 3K", "NG"}, {"PM001 06000000", "NG"}, {"PC A150", "NG"}});
    // The command line with its end works through command() too.
    expectReplies(s, {{"VR\r\n", "VR1.02"}});
}

// ---- the recorded replies --------------------------------------------------------

TEST(VirtualScannerReplies, EachModelNamesItselfAsTheModelCheckExpects)
{
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
    expectReplies(s, {{"PM001 01306250", "OK"}, {"DLN +2", "OK"}, {"TA C 001 PFO Tower Main", "OK"},
                      {"MA001", "C001 F01306250 TF DN LF AF RF N000"}, {"MA010", "C010 F00000000 TF DF LN AF RF N000"},
                      {"TA C 001", "TA C 001 PFO Tower Main"}, {"TA B A AVIATION", "OK"}, {"TA B A", "TA B A AVIATION"},
                      {"TA S A", "TA S A "}});
}

TEST(VirtualScannerReplies, PmWithANumberReadsWithoutSelecting)
{
    VirtualScanner s;
    expectReplies(s, {{"PM089T08511625", "OK"}, {"DLN +2", "OK"}, {"MA005", "C005 F00000000 TF DF LN AF RF N000"},
                      {"PM089", "C089 F08511625 TN DN LF AF RF N000"}});
    EXPECT_EQ(s.currentChannel(), 5);
    // The blank programs a channel without trunk.
    expectReplies(s, {{"PM089 08511625", "OK"}, {"MA089", "C089 F08511625 TF DN LF AF RF N000"}});
    EXPECT_EQ(s.currentChannel(), 89);
}

TEST(VirtualScannerReplies, MaAloneStopsOnTheChannelTheScanIsOn)
{
    VirtualScanner s;
    EXPECT_EQ(s.command("PM042 01543000"), "OK\r");
    s.scanTo(42);
    expectReplies(s, {{"MD", "MD00"}, {"MA", "C042 F01543000 TF DF LF AF RF N000"}, {"MD", "MD01"}});
    EXPECT_EQ(s.currentChannel(), 42);
}

TEST(VirtualScannerReplies, ModeAttenuatorSquelchSignalAndFrequency)
{
    VirtualScanner s;
    sendAll(s, {"MA001", "PM001 08594375"});
    for (const char* mode : {"FM", "NFM", "WFM", "AM"}) {
        const std::string rm = std::string("RM ") + mode;
        expectReplies(s, {{rm, "OK"}, {"RM", rm}});
    }
    expectReplies(s, {{"ATN", "OK"}, {"AT", "ATN"}, {"ATF", "OK"}, {"AT", "ATF"}, {"SQ", "-"}});
    s.setReception({true, 182, {}, {}});
    expectReplies(s, {{"SQ", "+"}, {"SG", "S182 F08594375"}, {"RF01560000", "OK"}, {"RF", "RF01560000"}});
    EXPECT_EQ(ask(s, "MA001").substr(0, 14), "C001 F01560000");
}

// ---- channel settings on the current channel ------------------------------------

TEST(VirtualScannerChannels, SettingsActOnTheCurrentChannel)
{
    VirtualScanner s(Model::BC785D);
    sendAll(s, {"MA101", "PM102 01561000"});  // programming makes 102 current
    expectReplies(s, {{"LON", "OK"}, {"ATN", "OK"}, {"ARN", "OK"}, {"DLN -10", "OK"}, {"CS012", "OK"}, {"ST 12.5K", "OK"},
                      {"RM NFM", "OK"}, {"MA102", "C102 F01561000 TF DN LN AN RN N012"}, {"DL", "DLN-10"},
                      {"CS", "CS0012"}, {"ST", "ST 12.5K"}, {"RM", "RM NFM"},
                      {"MA101", "C101 F00000000 TF DF LN AF RF N000"}});
    // The flags go off again, one by one.
    sendAll(s, {"MA102", "LOF", "ATF", "ARF", "DLF"});
    expectReplies(s, {{"MA102", "C102 F01561000 TF DF LF AF RF N012"}});
}

TEST(VirtualScannerChannels, DelayListsByFamily)
{
    VirtualScanner bc7(Model::BC785D);
    bc7.command("MA001");
    for (const char* d : {"+1", "+2", "+4", "+-", "-2", "-5", "-10"})
        expectReplies(bc7, {{std::string("DLN ") + d, "OK"}, {"DL", std::string("DLN") + d}});
    // The BC2xx family has one delay, two seconds: any delay switches it on.
    VirtualScanner bc2(Model::BC250D);
    bc2.command("MA001");
    expectReplies(bc2, {{"DLN -5", "OK"}, {"DL", "DLN+2"}, {"DLF", "OK"}, {"DL", "DLF"}, {"DLN +3", "NG"}, {"DLX", "ERR"}});
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
    sendAll(s, {"MA001", "ST 5K", "RM AM", "PM001 04161250"});  // UHF: NFM, 12.5 kHz by the receiver's band table
    expectReplies(s, {{"ST", "ST 12.5K"}, {"RM", "RM NFM"}});
    s.command("PM001 01180000");  // airband: AM, 25 kHz
    expectReplies(s, {{"ST", "ST 25K"}, {"RM", "RM AM"}});
    sendAll(s, {"TA C 001 TOWER", "BAN C 001"});
    expectReplies(s, {{"PM001 00000000", "OK"}, {"MA001", "C001 F00000000 TF DF LN AF RF N000"}, {"TA C 001", "TA C 001 "},
                      {"BA C 001", "BAF C 001"}});
    // Channel 1000 is "000" everywhere.
    EXPECT_EQ(s.command("PM000T08600000"), "OK\r");
    EXPECT_EQ(s.currentChannel(), 1000);
    EXPECT_EQ(ask(s, "MA000").substr(0, 16), "C000 F08600000 T");
    expectReplies(s, {{"BAN C 000", "OK"}, {"BA C 000", "BAN C 000"}, {"TA C 000 LAST ONE", "OK"},
                      {"TA C 000", "TA C 000 LAST ONE"}});
}

TEST(VirtualScannerChannels, SubtoneCodesAndTheirLockedOutForms)
{
    VirtualScanner s;
    s.command("MA001");
    // 143..149 are no code. "CSL001" is 150, tone 1 locked out (1 + 149): it
    // reads back as the code with "L".
    expectReplies(s, {{"CS149", "NG"}, {"CS142", "OK"}, {"CS", "CS0142"}, {"CSL001", "OK"}, {"CS", "CS001L"},
                      {"CSL142", "OK"}, {"CS", "CS142L"}, {"CSL000", "NG"}, {"CS12", "ERR"}, {"CS000", "OK"},
                      {"CS", "CS0000"}});
}

TEST(VirtualScannerChannels, TagsKeepSixteenCharacters)
{
    VirtualScanner s;
    expectReplies(s, {{"TA C 005 ABCDEFGHIJKLMNOPQRST", "OK"}, {"TA C 005", "TA C 005 ABCDEFGHIJKLMNOP"},
                      {"TA C 005 A \"quoted\" tag", "OK"}, {"TA C 005", "TA C 005 A \"quoted\" tag"},  // kept as sent
                      {"TA C 005 ", "OK"}, {"TA C 005", "TA C 005 "},                                    // an empty tag
                      {"TA X 005", "ERR"}, {"TA B K", "NG"}});  // there is no eleventh bank
}

// ---- banks ------------------------------------------------------------------------

TEST(VirtualScannerBanks, PriorityChannels)
{
    VirtualScanner s;
    // The program's form has three digits; with a blank, and unpadded for channel 1000, too.
    expectReplies(s, {{"PC A", "PC A001"}, {"PC J", "PC J901"}, {"PC C250", "OK"}, {"PC C", "PC C250"},
                      {"PC B 150", "OK"}, {"PC B", "PC B150"}, {"PC J1000", "OK"}, {"PC J", "PC J000"},
                      {"PC D250", "NG"}, {"PC D0", "NG"}});
}

TEST(VirtualScannerBanks, ActiveBanksRangesAndListsAreSetAsAWhole)
{
    VirtualScanner s;
    // The scan banks do not follow the search ranges; a refused set keeps the last.
    expectReplies(s, {{"CB", "CB ABCDEFGHIJ"}, {"SB", "SB ABCDEFGHIJ"}, {"CB ACJ", "OK"}, {"CB", "CB ACJ"},
                      {"SB J", "OK"}, {"SB", "SB J"}, {"CB", "CB ACJ"}, {"CB AK", "NG"}, {"CB ", "NG"}, {"CB", "CB ACJ"}});
    // ID lists of the bank on the display.
    s.command("MA250");
    expectReplies(s, {{"IS BD", "OK"}, {"IS", "IS BD"}});
    EXPECT_FALSE(s.memory().ids[2][0].active);
    EXPECT_TRUE(s.memory().ids[2][1].active);
    EXPECT_TRUE(s.memory().ids[0][0].active);
}

// ---- trunk ------------------------------------------------------------------------

TEST(VirtualScannerTrunk, TypesInTheScannersNumberingAndWords)
{
    VirtualScanner s;
    // A new trunk bank is Motorola Type 2, 800 MHz.
    expectReplies(s, {{"TB A", "TB A OFF"}, {"TBN A", "OK"}, {"TB A", "TB A E2-8"}});
    const std::pair<const char*, const char*> words[] = {{"1", "TYPE1"}, {"2", "E2-8"},   {"3", "E2-9"},
                                                         {"4", "E2-U"},  {"5", "E2-V"},   {"6", "EDCS W"},
                                                         {"7", "EDCS N"}, {"8", "EDCS S"}, {"9", "LT"}};
    for (const auto& [code, word] : words)
        expectReplies(s, {{std::string("TR C ") + code, "OK"}, {"TB C", std::string("TB C ") + word}});
    expectReplies(s, {{"TR C 0", "NG"}, {"TBF C", "OK"}, {"TB C", "TB C OFF"}});
    // "TB" alone answers for the bank of the current channel.
    s.command("MA001");
    expectReplies(s, {{"TB", "TB A E2-8"}});
}

TEST(VirtualScannerTrunk, BaseConfigsOfTheTypeTwoUhfAndVhfSystems)
{
    VirtualScanner s;
    expectReplies(s, {{"TR B 4 04160000 0125 381 1", "OK"}, {"TR B 4 04200000 0250 400 2", "OK"},
                      {"TR B 4 00000000 0000 000 3", "OK"}});
    const TrunkBank& t = s.memory().trunk[1];
    EXPECT_TRUE(t.on);
    EXPECT_EQ(t.kind, TrunkKind::Type2_Uhf);
    EXPECT_EQ(t.base[0].freq, 4160000u);
    EXPECT_EQ(t.base[0].step, 125);
    EXPECT_EQ(t.base[0].offset, 381);
    EXPECT_EQ(t.base[1].offset, 400);
    EXPECT_TRUE(t.base[2].empty());
    EXPECT_EQ(s.command("TR B 4 00000000 0000 000 1"), "OK\r");  // the zero line empties one
    EXPECT_TRUE(t.base[0].empty());
    EXPECT_EQ(s.command("TR B 5 01360000 0125 381 1"), "OK\r");
    EXPECT_EQ(t.kind, TrunkKind::Type2_Vhf);
    // Type 2 800 has no Base Config.
    expectReplies(s, {{"TR B 4 04160000 0125 381 4", "NG"}, {"TR B 2 04160000 0125 381 1", "NG"},
                      {"TR B 4 0416000 0125 381 1", "ERR"}});
}

TEST(VirtualScannerTrunk, ControlChannelOption)
{
    VirtualScanner s;
    s.command("TR A 2");
    expectReplies(s, {{"TC A", "TCF A"}, {"TCN A P3", "OK"}, {"TC A", "TCN A P3"}, {"TCN A", "OK"}, {"TC A", "TCN A P1"},
                      {"TCN A P5", "NG"}, {"TCF A", "OK"}, {"TC A", "TCF A"}});
    // Type 2 900 MHz has "control channel only", on or off, without a plan.
    sendAll(s, {"TR B 3", "TCN B"});
    expectReplies(s, {{"TC B", "TCN B"}});
}

TEST(VirtualScannerTrunk, FleetmapBlocks)
{
    VirtualScanner s;
    s.command("TR A 1");
    EXPECT_EQ(s.command("FB A 04 04 04 04 04 04 12"), "OK\r");  // 12 in block 6 takes block 7 too
    const char* expected[] = {"04", "04", "04", "04", "04", "04", "12", "12"};
    for (int n = 0; n < 8; ++n) EXPECT_EQ(ask(s, "FB A " + std::to_string(n)), "FB A " + std::to_string(n) + " " + expected[n]);
    // 14 in block 0 fills the map.
    expectReplies(s, {{"FB A 14", "OK"}, {"FB A 7", "FB A 7 14"}, {"FB A 15", "NG"}, {"FB A 8", "NG"}, {"FB A 4 4", "ERR"}});
}

TEST(VirtualScannerTrunk, IdListsSlotsTagsAndAlerts)
{
    VirtualScanner s;
    s.command("TR A 2");
    // "Q0" opens the reading of the lists; an ID has six places; "J0" is the tenth slot of list J.
    expectReplies(s, {{"TG A Q0", "OK"}, {"TG A A1", "TG A A1 ------"}, {"TG A A1 12345", "OK"},
                      {"TG A A1", "TG A A1 12345 "}, {"TG A J0 i01234", "OK"}, {"TG A J0", "TG A J0 i01234"}});
    EXPECT_EQ(s.memory().ids[0][9].idSlots[0].id, "i01234");
    // A slot without an ID has no tag and no alert.
    expectReplies(s, {{"TA I A A1 FIRE DISPATCH", "OK"}, {"TA I A A1", "TA I A A1 FIRE DISPATCH"}, {"TA I A A2", "TA I A A2 --"},
                      {"TA I A A2 NOTHING", "NG"}, {"BA I A A1", "BAF I A A1"}, {"BAN I A A1", "OK"},
                      {"BA I A A1", "BAN I A A1"}, {"BAN I A A2", "NG"}});
    // "TA L A 0" opens the reading of the list tags.
    expectReplies(s, {{"TA L A 0", "OK"}, {"TA L A B", "TA L A B "}, {"TA L A B FIRE", "OK"}, {"TA L A B", "TA L A B FIRE"}});
    // Emptying a slot empties its tag.
    expectReplies(s, {{"TG A A1 ------", "OK"}, {"TG A A1", "TG A A1 ------"}, {"TA I A A1", "TA I A A1 --"},
                      {"TG A A1 12345678", "NG"}, {"TG A K1", "NG"}});
}

// ---- search -------------------------------------------------------------------------

TEST(VirtualScannerSearch, LimitsAndTags)
{
    VirtualScanner s;
    expectReplies(s, {{"LL A", "LL00000000 A"}, {"LL01080000 A", "OK"}, {"LU01370000 A", "OK"}, {"LL A", "LL01080000 A"},
                      {"LU A", "LU01370000 A"}, {"LL06000000 B", "NG"}, {"LL0108000 B", "ERR"},
                      {"TA S J EXTENDED", "OK"}, {"TA S J", "TA S J EXTENDED"}});
}

TEST(VirtualScannerSearch, ModeAndStepActOnTheSearchWhileSearching)
{
    VirtualScanner s(Model::BC250D);
    sendAll(s, {"LL01080000 C", "LU01370000 C", "SB C", "MA001", "KEY09"});  // KEY09: SEARCH
    EXPECT_EQ(s.command("MD"), "MD02\r");
    EXPECT_EQ(s.currentRange(), 2);
    expectReplies(s, {{"RM AUTO", "OK"}, {"RM", "RM AUTO"}, {"ST 50K", "OK"}});
    EXPECT_EQ(s.memory().search[2].step, Step::k50);
    expectReplies(s, {{"ST 6.25K", "NG"}, {"RF", "RF01080000"}, {"RF01200000", "OK"}, {"RF", "RF01200000"}});
    // The channel was not touched, and has no automatic mode.
    EXPECT_EQ(s.memory().channel(1).step, Step::Auto);
    s.command("MA001");
    expectReplies(s, {{"RM AUTO", "NG"}});
}

// ---- system ---------------------------------------------------------------------

TEST(VirtualScannerSystem, FipsCodes)
{
    VirtualScanner s;
    expectReplies(s, {{"FP 01", "FP 01 000000"}, {"FP 01 012345", "OK"}, {"FP 01", "FP 01 012345"}, {"FP 1", "FP 01 012345"},
                      {"FP 15 543210", "OK"}, {"FP 15", "FP 15 543210"}});
    EXPECT_EQ(s.memory().fips[14], "543210");
    expectReplies(s, {{"FP 16 543210", "NG"}, {"FP 02 12345", "NG"}, {"FP 15 000000", "OK"}});
    EXPECT_EQ(s.memory().fips[14], "");
}

TEST(VirtualScannerSystem, WakeUpAndFactoryReset)
{
    VirtualScanner s(Model::BC796D, 57600);
    expectReplies(s, {{"IDF", "OK"}, {"CDF", "OK"}, {"QUF", "OK"}});
    sendAll(s, {"PM500 04500000", "TA B E SOMETHING", "TR E 6", "FP 03 111111", "KEY11"});
    expectReplies(s, {{"AC", "OK"}, {"MA500", "C500 F00000000 TF DF LN AF RF N000"}, {"TA B E", "TA B E "},
                      {"TB E", "TB E OFF"}, {"FP 03", "FP 03 000000"}});
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
    const auto modeAfter = [&](std::initializer_list<std::string_view> commands, std::string_view md) {
        sendAll(s, commands);
        EXPECT_EQ(ask(s, "MD"), md) << (commands.size() ? commands.end()[-1] : "");
    };
    modeAfter({}, "MD00");         // a scanner switched on scans
    modeAfter({"KEY07"}, "MD01");  // on the BC7xx family KEY07 is HOLD outside a menu
    modeAfter({"KEY10"}, "MD04");
    modeAfter({"KEY07"}, "MD05");
    modeAfter({"KEY09"}, "MD02");
    modeAfter({"KEY07"}, "MD03");
    modeAfter({"KEY00"}, "MD02");
    modeAfter({"KEY11"}, "MD22");
    modeAfter({"KEY09"}, "MD02");  // leaves the menu to where it was
    // Trunk ID modes, by the system of the bank.
    modeAfter({"TR B 6", "MA150", "KEY13"}, "MD16");  // EDACS ID scan
    modeAfter({"KEY07"}, "MD17");
    modeAfter({"KEY09"}, "MD14");
    expectReplies(s, {{"TB", "TB B EDCS W"}});
    modeAfter({"KEY13"}, "MD00");                     // back to conventional scanning
    modeAfter({"TR C 9", "MA201", "KEY13"}, "MD20");  // LTR ID scan
    modeAfter({"TR D 1", "MA301"}, "MD01");           // "MA" leaves a trunk mode for the channel
    modeAfter({"KEY13", "KEY09"}, "MD10");            // Motorola ID search
}
