// The virtual scanner's keypad and menus driven by the program's menu walks,
// written here as the key sequences the program sends: each walk must land on
// the display line the program compares, for both model families. Also the
// keyed frequency entry and the display forms the status decoder reads.

#include "sim/scannertalk.h"
#include "sim/virtualscanner.h"

#include <gtest/gtest.h>

#include <map>

using namespace kestra;
using namespace kestra::sim;
using kestra::test::expectReplies;
using kestra::test::sendAll;

namespace {

bool has(const std::string& text, std::string_view part) { return text.find(part) != std::string::npos; }

// An option line as the display shows the selected one: its text in the 16
// places of the line, then the inverted-line mask.
std::string opt(std::string_view text)
{
    std::string line = "[" + std::string(text);
    line.resize(17, ' ');
    return line + "][*****";
}

// An option recognised by its opening together with the inverted-line mask.
bool shortMatch(const std::string& text, std::string_view opening) { return has(text, opening) && has(text, "[*****"); }

// The program's menu routines, key for key.
class Walks {
public:
    explicit Walks(VirtualScanner& s) : s_(s) {}

    std::string exitkey() const { return s_.switches().bc785d == 1 ? "KEY09" : "KEY07"; }
    static std::string digit(int d) { return "KEY02 " + std::to_string(d); }
    // The bank (or range) digit: "KEY02 0" for the tenth.
    static int bankDigit(int index) { return (index + 1) % 10; }

    void key(const std::string& k) { EXPECT_EQ(s_.command(k), "OK\r") << k; }
    void keys(std::initializer_list<std::string> ks)
    {
        for (const std::string& k : ks) key(k);
    }
    void digits(std::initializer_list<int> ds)
    {
        for (int d : ds) key(digit(d));
    }

    // Line selector 1: "LCD3"; 2: "LCD" read from "LCD1 ["; 3: "LCD4". The text from the marker on.
    std::string askLine(int line)
    {
        const char* cmd = line == 1 ? "LCD3" : line == 2 ? "LCD" : "LCD4";
        const char* marker = line == 1 ? "LCD3 [" : line == 2 ? "LCD1 [" : "LCD4 [";
        const std::string reply = s_.command(cmd);
        const auto pos = reply.find(marker);
        return pos == std::string::npos ? std::string() : reply.substr(pos);
    }

    std::string readmenu3(int d1, int d2, int d3, int move, int line)
    {
        openMenu({d1, d2, d3}, move);
        return readAndExit(line);
    }
    void setmenu3(int d1, int d2, int d3, int move, int value) { openMenu({d1, d2, d3}, move); setAndExit(value); }
    std::string readmenu4(int d1, int d2, int d3, int d4, int line) { openMenu({d1, d2, d3, d4}); return readAndExit(line); }
    void setmenu5(int d1, int d2, int d3, int d4, int d5) { openMenu({d1, d2, d3, d4, d5}); key(exitkey()); }
    std::string readbankmenu(int bank, int d) { openSearchMenu(bank, d); return readAndExit(2); }
    void setbankmenu(int bank, int d, int value) { openSearchMenu(bank, d); setAndExit(value); }
    std::string readgen(int d1, int d2, bool third, int d3) { openGeneral(d1, d2, third, d3); return readAndExit(2); }
    void setgen(int d1, int d2, bool third, int d3, int value) { openGeneral(d1, d2, third, d3); setAndExit(value); }

    // The three-digit walks then scroll once (twice for move 1) and enter.
    void openMenu(std::initializer_list<int> ds, int move = -1)
    {
        keys({exitkey(), "KEY11"});
        digits(ds);
        if (move < 0) return;
        key("KEY07");
        if (move == 1) key("KEY07");
        key("KEY04");
    }

private:
    void openSearchMenu(int bank, int d)
    {
        keys({exitkey(), "KEY09H"});
        digits({bankDigit(bank), d});
    }
    void openGeneral(int d1, int d2, bool third, int d3)
    {
        s_.command("MA001");
        key("KEY11");
        digits({d1, d2});
        if (third) key(digit(d3));
    }
    std::string readAndExit(int line)
    {
        const std::string text = askLine(line);
        key(exitkey());
        return text;
    }
    void setAndExit(int value) { keys({digit(value), exitkey()}); }

    VirtualScanner& s_;
};

const char* const kDelays[] = {"NONE",     "1 SECOND",   "2 SECONDS",  "4 SECONDS",
                               "INFINITE", "-2 SECONDS", "-5 SECONDS", "-10 SECONDS"};

using Fields = std::map<int, std::string>;

// The trunk settings read of one bank, by the item table of its family.
Fields readTrunkBank(VirtualScanner& s, int bank, int type)
{
    Walks w(s);
    const int b = Walks::bankDigit(bank);
    const bool mot = type >= 1 && type <= 5, edacs = type == 6 || type == 7 || type == 9;
    Fields f;
    const auto onOff = [](const std::string& text) { return shortMatch(text, "[1:ON") ? "1" : "0"; };
    const auto icall = [](const std::string& text) {
        std::string v;
        if (has(text, opt("2:OFF"))) v = "0";
        if (has(text, opt("1:ON"))) v = "1";
        if (has(text, opt("3:ONLY"))) v = "2";
        return v;
    };
    if (s.switches().bc785d != 1) {
        if (mot) {
            f[1] = onOff(w.readmenu4(2, 2, b, 9, 1));
            f[2] = shortMatch(w.readmenu4(2, 2, b, 0, 1), "[1:DETECT") ? "1" : "0";
        }
        if (edacs) f[1] = shortMatch(w.readmenu4(2, 2, b, 0, 3), "[2:DECIMAL") ? "1" : "0";
        f[8] = onOff(w.readmenu4(2, 2, b, 7, 1));
        if (type != 8) f[4] = icall(w.readmenu4(2, 2, b, 8, 2));
        const bool delayOn = shortMatch(w.readmenu4(2, 2, b, 4, 1), "[1:ON");
        f[5] = delayOn ? (edacs ? "1" : "2") : "0";
        if (edacs) f[9] = onOff(w.readmenu4(2, 2, b, 9, 1));
        return f;
    }
    if (mot) {
        f[1] = onOff(w.readmenu4(2, 2, b, 0, 1));
        f[2] = shortMatch(w.readmenu3(2, 2, b, type <= 3 ? 1 : 0, 1), "[1:DETECT") ? "1" : "0";
    }
    if (edacs) {
        f[1] = shortMatch(w.readmenu3(2, 2, b, 0, 3), "[2:DECIMAL") ? "1" : "0";
        f[9] = onOff(w.readmenu4(2, 2, b, 0, 1));
    }
    f[6] = onOff(w.readmenu4(2, 2, b, 5, 1));
    f[8] = onOff(w.readmenu4(2, 2, b, 8, 1));
    if (type != 8) f[4] = icall(w.readmenu4(2, 2, b, 9, 2));
    // Eight delays: LTR by the short form on line 1, the others whole on line 2.
    f[5] = "0";
    const std::string text = w.readmenu4(2, 2, b, 4, type == 8 ? 1 : 2);
    for (int i = 0; i < 8; ++i) {
        const std::string line = opt(std::to_string(i + 1) + ":" + kDelays[i]);
        if (type == 8 ? shortMatch(text, line.substr(0, 4)) : has(text, line)) f[5] = std::to_string(i);
    }
    return f;
}

// The trunk settings send of one bank: each item's value digit, by family.
void sendTrunkBank(VirtualScanner& s, int bank, int type, const Fields& f)
{
    Walks w(s);
    const int b = Walks::bankDigit(bank);
    const bool mot = type >= 1 && type <= 5, edacs = type == 6 || type == 7 || type == 9;
    const auto onOff = [](const std::string& v) { return v == "1" ? 1 : 2; };
    const auto icall = [](const std::string& v) { return v == "1" ? 1 : v == "2" ? 3 : 2; };
    if (s.switches().bc785d != 1) {
        if (mot) {
            w.setmenu5(2, 2, b, 9, onOff(f.at(1)));
            w.setmenu5(2, 2, b, 0, onOff(f.at(2)));
        }
        if (edacs) {
            w.setmenu5(2, 2, b, 0, f.at(1) == "1" ? 2 : 1);
            w.setmenu5(2, 2, b, 9, onOff(f.at(9)));
        }
        w.setmenu5(2, 2, b, 7, onOff(f.at(8)));
        if (type != 8) w.setmenu5(2, 2, b, 8, icall(f.at(4)));
        if (f.at(5) == "0") w.setmenu5(2, 2, b, 4, 2);
        if (f.at(5) == "2") w.setmenu5(2, 2, b, 4, 1);  // any other value sends nothing
        return;
    }
    if (mot) {
        w.setmenu5(2, 2, b, 0, onOff(f.at(1)));
        w.setmenu3(2, 2, b, type <= 3 ? 1 : 0, onOff(f.at(2)));
    }
    if (edacs) {
        w.setmenu3(2, 2, b, 0, f.at(1) == "1" ? 2 : 1);
        w.setmenu5(2, 2, b, 0, onOff(f.at(9)));
    }
    w.setmenu5(2, 2, b, 5, onOff(f.at(6)));
    w.setmenu5(2, 2, b, 8, onOff(f.at(8)));
    if (type != 8) w.setmenu5(2, 2, b, 9, icall(f.at(4)));
    w.setmenu5(2, 2, b, 4, std::stoi(f.at(5)) + 1);
}

const Model kAllModels[] = {Model::BC250D, Model::BC785D, Model::BC296D, Model::BC796D, Model::UBC3300};

} // namespace

// ---- trunk settings -------------------------------------------------------------

struct TrunkWalkCase {
    Model model;
    int bank;
    const char* trCommand;  // sets the system of the bank
    int type;               // the program's type number
    Fields sent;
};

void PrintTo(const TrunkWalkCase& c, std::ostream* os) { *os << modelName(c.model) << " \"" << c.trCommand << "\""; }

class ScannerTrunkWalks : public ::testing::TestWithParam<TrunkWalkCase> {};

TEST_P(ScannerTrunkWalks, SettingsSentByMenuComeBackByMenu)
{
    const TrunkWalkCase& c = GetParam();
    VirtualScanner s(c.model);
    ASSERT_EQ(s.command("TBN " + std::string(1, static_cast<char>('A' + c.bank))), "OK\r");
    ASSERT_EQ(s.command(c.trCommand), "OK\r");
    sendTrunkBank(s, c.bank, c.type, c.sent);
    EXPECT_FALSE(s.inMenu());

    // What the walks stored, seen in the memory itself.
    const TrunkBank& t = s.memory().trunk[c.bank];
    const Fields& f = c.sent;
    if (f.count(1) && c.type <= 5) { EXPECT_EQ(t.statusBit, f.at(1) == "1"); }
    if (f.count(1) && c.type >= 6) { EXPECT_EQ(t.idFormat, std::stoi(f.at(1))); }
    if (f.count(2)) { EXPECT_EQ(t.endCodeDetect, f.at(2) == "1"); }
    if (f.count(4)) { EXPECT_EQ(t.icall, std::stoi(f.at(4))); }
    if (s.switches().bc785d == 1) { EXPECT_EQ(t.delay, std::stoi(f.at(5))); }
    if (s.switches().bc785d != 1) { EXPECT_EQ(t.delay != 0, f.at(5) != "0"); }
    if (f.count(6)) { EXPECT_EQ(t.record, f.at(6) == "1"); }
    EXPECT_EQ(t.activityId, f.at(8) == "1");
    if (f.count(9)) { EXPECT_EQ(t.emergencyAlt, f.at(9) == "1"); }

    EXPECT_EQ(readTrunkBank(s, c.bank, c.type), c.sent);
}

INSTANTIATE_TEST_SUITE_P(
    Families, ScannerTrunkWalks,
    ::testing::Values(
        // BC2xx family: fields 1, 2, 4, 5 ("2" is on), 8; EDACS 1, 4, 5 ("1" is on), 8, 9.
        TrunkWalkCase{Model::BC250D, 0, "TR A 2", 1, {{1, "1"}, {2, "1"}, {4, "2"}, {5, "2"}, {8, "1"}}},
        TrunkWalkCase{Model::BC250D, 3, "TR D 1", 2, {{1, "0"}, {2, "0"}, {4, "1"}, {5, "0"}, {8, "0"}}},
        TrunkWalkCase{Model::BC296D, 9, "TR J 4", 4, {{1, "1"}, {2, "0"}, {4, "0"}, {5, "2"}, {8, "1"}}},
        TrunkWalkCase{Model::UBC3300, 5, "TR F 6", 6, {{1, "1"}, {4, "2"}, {5, "0"}, {8, "1"}, {9, "1"}}},
        TrunkWalkCase{Model::BC250D, 6, "TR G 8", 9, {{1, "0"}, {4, "1"}, {5, "0"}, {8, "0"}, {9, "1"}}},
        TrunkWalkCase{Model::BC296D, 7, "TR H 9", 8, {{5, "2"}, {8, "1"}}},
        // BC7xx family: End Code and ID Format by scrolling; Record; eight delays.
        TrunkWalkCase{Model::BC785D, 0, "TR A 2", 1, {{1, "1"}, {2, "1"}, {4, "2"}, {5, "6"}, {6, "1"}, {8, "1"}}},
        TrunkWalkCase{Model::BC785D, 2, "TR C 3", 3, {{1, "0"}, {2, "1"}, {4, "1"}, {5, "3"}, {6, "0"}, {8, "1"}}},
        TrunkWalkCase{Model::BC796D, 9, "TR J 1", 2, {{1, "1"}, {2, "1"}, {4, "0"}, {5, "7"}, {6, "1"}, {8, "0"}}},
        TrunkWalkCase{Model::BC785D, 4, "TR E 5", 5, {{1, "1"}, {2, "1"}, {4, "1"}, {5, "4"}, {6, "1"}, {8, "0"}}},
        TrunkWalkCase{Model::BC796D, 1, "TR B 4", 4, {{1, "0"}, {2, "1"}, {4, "2"}, {5, "1"}, {6, "0"}, {8, "1"}}},
        TrunkWalkCase{Model::BC785D, 5, "TR F 7", 7, {{1, "1"}, {4, "1"}, {5, "5"}, {6, "1"}, {8, "1"}, {9, "1"}}},
        TrunkWalkCase{Model::BC796D, 6, "TR G 8", 9, {{1, "1"}, {4, "0"}, {5, "2"}, {6, "0"}, {8, "0"}, {9, "0"}}},
        TrunkWalkCase{Model::BC785D, 7, "TR H 9", 8, {{5, "5"}, {6, "1"}, {8, "1"}}},
        TrunkWalkCase{Model::BC796D, 8, "TR I 9", 8, {{5, "7"}, {6, "0"}, {8, "0"}}}),
    [](const ::testing::TestParamInfo<TrunkWalkCase>& info) {
        return std::string(modelName(info.param.model)) + "_Bank" + std::to_string(info.param.bank + 1) + "_Type" +
               std::to_string(info.param.type);
    });

TEST(ScannerTrunkWalksEdges, EdacsDelayOnTheBc2xxFamilyReadsOneAndIsNotSentBack)
{
    VirtualScanner s(Model::BC250D);
    s.command("TR A 6");
    Walks w(s);
    w.setmenu5(2, 2, 1, 4, 1);  // delay on
    Fields f = readTrunkBank(s, 0, 6);
    EXPECT_EQ(f[5], "1");
    w.setmenu5(2, 2, 1, 4, 2);  // the scanner is changed by hand meanwhile
    sendTrunkBank(s, 0, 6, f);   // "1" has no value digit: nothing is sent
    EXPECT_EQ(s.memory().trunk[0].delay, 0);
}

TEST(ScannerTrunkWalksEdges, AnOptionWithoutTheMaskDoesNotMatchTheShortForm)
{
    VirtualScanner s(Model::BC250D);
    s.command("TR A 2");
    Walks w(s);
    w.setmenu5(2, 2, 1, 0, 2);  // End Code: ignore
    const std::string line = w.readmenu4(2, 2, 1, 0, 1);
    EXPECT_EQ(line, "LCD3 [1:DETECT        ][                ]\r");
    EXPECT_FALSE(shortMatch(line, "[1:DETECT"));
    w.setmenu5(2, 2, 1, 0, 1);
    EXPECT_EQ(w.readmenu4(2, 2, 1, 0, 1), "LCD3 [1:DETECT        ][****************]\r");
}

TEST(ScannerTrunkWalksEdges, TheWrongExitKeyStaysInTheMenu)
{
    // KEY09 is nothing in a BC2xx menu; KEY07 scrolls in a BC7xx menu.
    VirtualScanner bc2(Model::BC296D);
    sendAll(bc2, {"KEY11", "KEY09"});
    EXPECT_TRUE(bc2.inMenu());
    bc2.command("KEY07");
    EXPECT_FALSE(bc2.inMenu());
    VirtualScanner bc7(Model::BC796D);
    sendAll(bc7, {"KEY11", "KEY07"});
    EXPECT_TRUE(bc7.inMenu());
    bc7.command("KEY09");
    EXPECT_FALSE(bc7.inMenu());
    // MENU inside a menu goes back one level, and out from the top.
    sendAll(bc7, {"KEY11", "KEY02 3", "KEY11"});
    EXPECT_TRUE(bc7.inMenu());
    bc7.command("KEY11");
    EXPECT_FALSE(bc7.inMenu());
}

TEST(ScannerTrunkWalksEdges, BaseConfigsStepByStepOnLineTwo)
{
    for (Model m : {Model::BC250D, Model::BC785D}) {
        VirtualScanner s(m);
        sendAll(s, {"TR C 4 04160000 0125 381 1", "TR C 4 04200000 0250 400 2"});
        Walks w(s);
        w.openMenu({2, 2, 3});
        std::vector<std::string> values;
        for (int press = 0; press < 9; ++press) {
            w.key("KEY04");
            const std::string reply = s.command("LCD2");
            ASSERT_EQ(reply.substr(0, 6), "LCD2 [");
            const std::string value = reply.substr(6, 16);
            values.push_back(value.substr(0, value.find(' ')));
            if (value.find("0000.0000") == 0) break;
        }
        w.key(w.exitkey());
        EXPECT_EQ(values, (std::vector<std::string>{"0416.0000", "012.5", "381", "0420.0000", "025.0", "400",
                                                    "0000.0000"}))
            << modelName(m);
        EXPECT_FALSE(s.inMenu());
    }
}

TEST(ScannerTrunkWalksEdges, IdRecordFlagByTheSlotWalk)
{
    VirtualScanner s(Model::BC785D);
    sendAll(s, {"TR J 2", "TG J C5 12345", "TG J J0 23456"});
    Walks w(s);
    const auto walkTo = [&](int list, int slot) {
        w.openMenu({2, 2, 0, 3, list % 10});
        w.keys({"KEY03", Walks::digit(slot % 10), "KEY04", Walks::digit(3)});
    };
    walkTo(3, 5);
    EXPECT_TRUE(has(s.command("LCD"), opt("2:OFF")));
    w.keys({Walks::digit(1), "KEY09"});
    EXPECT_TRUE(s.memory().ids[9][2].idSlots[5].record);
    walkTo(3, 5);
    EXPECT_TRUE(has(s.command("LCD"), opt("1:ON")));
    w.key("KEY09");
    // The tenth list and its tenth slot go as the digit 0.
    walkTo(10, 10);
    w.keys({Walks::digit(1), "KEY09"});
    EXPECT_TRUE(s.memory().ids[9][9].idSlots[0].record);
    EXPECT_FALSE(s.inMenu());
}

// ---- search ranges ------------------------------------------------------------------

TEST(ScannerSearchWalks, TagModeAndStepOfEachRange)
{
    for (Model m : kAllModels) {
        VirtualScanner s(m);
        Walks w(s);
        for (int r = 0; r < 10; ++r) {
            const std::string letter(1, static_cast<char>('A' + r));
            s.command("TA S " + letter + " RANGE TAG " + letter);
            const std::string tag = w.readbankmenu(r, 4);
            const auto pos = tag.find("LCD3 [");
            ASSERT_NE(pos, std::string::npos);
            EXPECT_EQ(tag.substr(pos + 6, 16), "RANGE TAG " + letter + "     ");
            w.setbankmenu(r, 3, r % 5 + 1);
        }
        const char* modes[] = {"1:AM", "2:FM", "3:WFM", "4:NFM", "5:AUTO"};
        for (int r = 0; r < 10; ++r) {
            const std::string text = w.readbankmenu(r, 3);
            for (int i = 0; i < 5; ++i) EXPECT_EQ(has(text, opt(modes[i])), i == r % 5) << modelName(m) << r << i;
        }
        EXPECT_EQ(s.memory().search[6].mode, Modulation::FM);
        EXPECT_FALSE(s.inMenu());
    }
}

TEST(ScannerSearchWalks, StepLinesByModelGroup)
{
    // The step lines of each group, in the order of the step codes 1..8, 9 (6.25), 10 (20).
    using Lines = std::vector<std::string_view>;
    const Lines plain = {"1:5KHz", "2:7.5KHz", "3:10KHz", "4:12.5KHz", "5:25KHz", "6:50KHz", "7:100KHz", "8:AUTO"};
    const Lines x96 = {"1:5KHz",  "3:7.5KHz", "4:10KHz", "5:12.5KHz", "6:25KHz",
                       "7:50KHz", "8:100KHz", "9:AUTO",  "2:6.25KHz"};
    const Lines ubc = {"1:5KHz",  "3:7.5KHz", "4:10KHz", "5:12.5KHz", "7:25KHz",
                       "8:50KHz", "9:100KHz", "0:AUTO",  "2:6.25KHz", "6:20KHz"};
    for (Model m : kAllModels) {
        VirtualScanner s(m);
        Walks w(s);
        const ModelSwitches sw = ModelSwitches::of(m);
        const Lines& lines = sw.ubc33 ? ubc : sw.x96 ? x96 : plain;
        for (std::string_view line : lines) {
            w.setbankmenu(9, 2, line[0] - '0');  // the digit of the line picks it
            const std::string text = w.readbankmenu(9, 2);
            for (std::string_view other : lines)
                EXPECT_EQ(has(text, opt(other)), other == line) << modelName(m) << line << other;
        }
    }
    // The program's long 6.25 kHz literal never matches a display line.
    VirtualScanner s(Model::BC796D);
    Walks w(s);
    w.setbankmenu(0, 2, 2);
    EXPECT_EQ(s.memory().search[0].step, Step::k6_25);
    EXPECT_FALSE(has(w.readbankmenu(0, 2), "[2:6.25KHz         ][*****"));
}

TEST(ScannerSearchWalks, SearchEventsWalkShowsTheItemOnLineThree)
{
    // KEY01; the exit key; KEY09H; the range digit; the item digit.
    for (Model m : {Model::BC250D, Model::BC785D}) {
        VirtualScanner s(m);
        Walks w(s);
        s.command("TA S C MARINE");
        const auto walkTo = [&](int item) {
            w.keys({"KEY01", w.exitkey(), "KEY09H"});
            w.digits({3, item});
        };
        walkTo(4);
        EXPECT_EQ(s.command("LCD3"), "LCD3 [MARINE          ][                ]\r");
        w.key(w.exitkey());
        walkTo(3);
        EXPECT_TRUE(has(s.command("LCD3"), opt("5:AUTO"))) << modelName(m);
        w.key(w.exitkey());
        EXPECT_FALSE(s.inMenu());
    }
}

// ---- general parameters -----------------------------------------------------------

TEST(ScannerGeneralWalks, EachOptionOfMenuThreeSetAndRead)
{
    struct Row {
        int d1, d2;
        bool third;
        int d3;
        std::vector<std::string_view> texts;
    };
    const std::vector<Row> rows = {
        {3, 1, true, 1, {" 1:HIGH", " 2:MEDIUM"}},
        {3, 1, true, 2, {" 1:15SECONDS", " 2:INFINITE"}},
        {3, 2, false, 0, {"1:ON", "2:OFF"}},
        {3, 3, false, 0, {"1:ON", "2:OFF"}},
        {3, 4, false, 0, {"1:ON", "2:OFF"}},
        {3, 7, false, 0, {"1:ON", "2:OFF"}},
        {3, 8, false, 0, {" 1:CSQ", " 2:TONE SQ", " 3:TONE SEARCH"}},
        {3, 0, false, 0, {" 1:ENABLE", " 2:DISABLE"}},
        {3, 6, false, 0, {"MASTER", "SLAVE"}},
    };
    for (Model m : kAllModels) {
        VirtualScanner s(m);
        Walks w(s);
        const bool apco = ModelSwitches::of(m).x96 == 1;
        for (const Row& row : rows) {
            const bool present = row.d2 != 0 || apco;
            for (std::size_t v = row.texts.size(); v-- > 0;) {
                w.setgen(row.d1, row.d2, row.third, row.d3, static_cast<int>(v) + 1);
                const std::string text = w.readgen(row.d1, row.d2, row.third, row.d3);
                for (std::size_t i = 0; i < row.texts.size(); ++i)
                    EXPECT_EQ(has(text, opt(row.texts[i])), present && i == v) << modelName(m) << " " << row.texts[i];
            }
        }
        EXPECT_FALSE(s.inMenu());
        // The last values set were the first options.
        const GeneralParameters& g = s.memory().general;
        EXPECT_EQ(g.dimmerLight, 0);
        EXPECT_TRUE(g.screenMask);
        EXPECT_TRUE(g.dataSkip);
        EXPECT_EQ(g.sqMode, 0);
        EXPECT_EQ(g.clone, 0);
        // The display of menu 3 names it for the panel.
        sendAll(s, {"KEY11", "KEY02 3"});
        EXPECT_EQ(s.command("LCD1"), "LCD1 [SYSTEM OPTION   ][                ]\r");
        s.command(w.exitkey());
    }
    VirtualScanner s(Model::BC785D);
    Walks w(s);
    w.setgen(3, 8, false, 0, 3);
    EXPECT_EQ(s.memory().general.sqMode, 2);
    w.setgen(3, 6, false, 0, 2);
    EXPECT_EQ(s.memory().general.clone, 1);
}

TEST(ScannerGeneralWalks, BaudRateChosenInMenuThreeFive)
{
    VirtualScanner s(Model::BC296D);
    sendAll(s, {"KEY11", "KEY02 3", "KEY02 5"});
    EXPECT_EQ(s.command("LCD LINE1"), "LCD LINE1 [~3:19200         ]\r");
    sendAll(s, {"KEY16", "KEY16"});  // DOWN
    EXPECT_EQ(s.command("LCD LINE1"), "LCD LINE1 [~5:57600         ]\r");
    EXPECT_EQ(s.baudRate(), 19200);
    s.command("KEY04");  // E stores the choice
    EXPECT_EQ(s.baudRate(), 57600);
    // The BC250D offers three rates; a digit picks one at once.
    VirtualScanner bc250(Model::BC250D);
    sendAll(bc250, {"KEY11", "KEY02 3", "KEY02 5", "KEY02 5"});
    EXPECT_EQ(bc250.baudRate(), 19200);
    bc250.command("KEY02 1");
    EXPECT_EQ(bc250.baudRate(), 4800);
}

TEST(ScannerGeneralWalks, LineOneMarksTheSelectedOption)
{
    VirtualScanner s(Model::BC250D);
    Walks w(s);
    w.setgen(3, 3, false, 0, 2);  // key beep off
    sendAll(s, {"KEY11", "KEY02 3", "KEY02 3"});
    expectReplies(s, {{"LCD LINE1", "LCD LINE1 [~2:OFF           ]"}, {"LCD3", "LCD3 [1:ON            ][                ]"},
                      {"LCD4", "LCD4 [2:OFF           ][****************]"}});
    s.command("KEY07");
    EXPECT_EQ(s.command("LCD LINE1").substr(0, 11), "LCD LINE1 [");
    EXPECT_EQ(s.command("LCD LINE1").find('~'), std::string::npos);
}

// ---- keypad: keyed frequency entry and manual mode -----------------------------------

TEST(ScannerKeypad, AnEmptyChannelThatGetsAKeyedFrequencyIsNoLongerLockedOut)
{
    VirtualScanner s;
    sendAll(s, {"MA007", "KEY02 1", "KEY02 0", "KEY02 0", "KEY03", "KEY04", "KEY04", "KEY14"});
    expectReplies(s, {{"MA007", "C007 F01000000 TF DF LF AF RF N000"}, {"MD", "MD01"}});
}

TEST(ScannerKeypad, EntryOnTheDisplayClearChannelNumbersAndRefusedFrequencies)
{
    VirtualScanner s;
    sendAll(s, {"MA001", "KEY02 1", "KEY02 5", "KEY02 5", "KEY03", "KEY02 1"});
    EXPECT_EQ(s.command("LCD2"), "LCD2 [    155.1       ][                ]\r");
    sendAll(s, {"KEY03", "KEY03"});  // the point again: CLR
    EXPECT_EQ(s.command("LCD2"), "LCD2 [   ----         ][                ]\r");
    sendAll(s, {"KEY02 2", "KEY02 5", "KEY02 0", "KEY04"});
    EXPECT_EQ(s.currentChannel(), 250);
    sendAll(s, {"KEY02 6", "KEY02 0", "KEY02 0", "KEY03", "KEY04"});  // 600 MHz
    EXPECT_TRUE(s.memory().channel(250).empty());
    sendAll(s, {"KEY02 1", "KEY02 2", "KEY07", "KEY04"});  // HOLD drops the entry
    EXPECT_EQ(s.currentChannel(), 250);
    s.command("KEY15");
    EXPECT_EQ(s.currentChannel(), 251);
    sendAll(s, {"KEY16", "KEY16"});
    EXPECT_EQ(s.currentChannel(), 249);
    sendAll(s, {"MA001", "KEY16"});
    EXPECT_EQ(s.currentChannel(), 1000);
}

TEST(ScannerKeypad, EasyProgramAndLockOutKeys)
{
    VirtualScanner s(Model::BC785D);
    sendAll(s, {"PM300 04500000", "MA300", "KEY13H"});  // trunk on
    EXPECT_TRUE(s.memory().channel(300).trunk);
    s.command("KEY13H");
    EXPECT_FALSE(s.memory().channel(300).trunk);
    expectReplies(s, {{"DLN +4", "OK"}, {"ARN", "OK"}, {"BAN C 300", "OK"}, {"LON", "OK"}, {"ATN", "OK"},
                      {"MA300", "C300 F04500000 TF DN LN AN RN N000"}, {"LCD1", "LCD1 [         C 300Lo][                ]"},
                      {"KEY06", "OK"}, {"LCD1", "LCD1 [         C 300  ][                ]"},  // LOCK OUT toggles
                      {"KEY12H", "OK"}, {"LCD4", "LCD4 [MUTE ON         ][                ]"},  // MUTE
                      {"KEY05", "OK"}, {"LCD1", "LCD1 [P        C 300  ][                ]"}});  // PRI
}

TEST(ScannerKeypad, DigitsSwitchBanksWhileScanning)
{
    VirtualScanner s;
    sendAll(s, {"CB ABC", "KEY01"});
    expectReplies(s, {{"KEY02 2", "OK"}, {"CB", "CB AC"}, {"KEY02 0", "OK"}, {"CB", "CB ACJ"}, {"CB A", "OK"},
                      {"KEY02 1", "OK"}, {"CB", "CB A"}});  // the last bank stays in
}

// ---- display forms -------------------------------------------------------------------

TEST(ScannerDisplay, ScanningWithBankOneTheActiveOne)
{
    VirtualScanner s;
    sendAll(s, {"CB AJ", "KEY01"});
    s.scanTo(15);
    EXPECT_EQ(s.command("LCD"), "LCD1 [     +   C 015  ][                ]\r"
                                "LCD2 [  SCAN          ][                ]\r"
                                "LCD3 [Bank  1--------0][      #         ]\r"
                                "LCD4 [                ][                ]\r");
}

TEST(ScannerDisplay, StoppedOnATransmission)
{
    VirtualScanner s;
    sendAll(s, {"PM020 01673500", "TA C 020 AMK OSL CH 2", "TA B A BLAALYS", "KEY01"});
    s.scanTo(20);
    s.setReception({true, 120, {}, {}});
    EXPECT_EQ(s.command("LCD"), "LCD1 [SCAN +   C 020  ][####            ]\r"
                                "LCD2 [ 167.3500  FM   ][                ]\r"
                                "LCD3 [AMK OSL CH 2    ][                ]\r"
                                "LCD4 [BLAALYS         ][                ]\r");
    expectReplies(s, {{"SQ", "+"}, {"SG", "S120 F01673500"}});
}

TEST(ScannerDisplay, RestingOnAChannelInManualMode)
{
    VirtualScanner s;
    sendAll(s, {"PM102 01561000", "RM NFM", "TA C 102 VHF Channel 2", "TA B B MARINE", "MA102"});
    EXPECT_EQ(s.command("LCD"), "LCD1 [         C 102  ][                ]\r"
                                "LCD2 [ 156.1000 NFM   ][                ]\r"
                                "LCD3 [VHF Channel 2   ][                ]\r"
                                "LCD4 [MARINE          ][                ]\r");
    expectReplies(s, {{"LCD2", "LCD2 [ 156.1000 NFM   ][                ]"}, {"LCD5", "ERR"}});
}

TEST(ScannerDisplay, SearchServiceAndTrunkForms)
{
    VirtualScanner s(Model::BC785D);
    sendAll(s, {"LL01080000 C", "LU01370000 C", "TA S C AIR", "SB C", "KEY09"});
    EXPECT_EQ(s.command("LCD"), "LCD1 [SRCH +          ][                ]\r"
                                "LCD2 [ 108.0000  AM   ][                ]\r"
                                "LCD3 [Range 03        ][                ]\r"
                                "LCD4 [AIR             ][                ]\r");
    sendAll(s, {"KEY07", "KEY07H"});  // one step up in the hold
    EXPECT_EQ(s.command("LCD2"), "LCD2 [ 108.0250  AM   ][                ]\r");
    s.command("KEY10");
    EXPECT_EQ(s.command("LCD3"), "LCD3 [SERVICE SEARCH  ][                ]\r");
    sendAll(s, {"TR D 2", "TA B D CITY", "MA301", "KEY13"});
    EXPECT_EQ(s.command("LCD"), "LCD1 [ID SCAN  M      ][                ]\r"
                                "LCD2 [  SCAN          ][                ]\r"
                                "LCD3 [List  1234567890][                ]\r"
                                "LCD4 [CITY            ][                ]\r");
    s.command("KEY07");
    EXPECT_EQ(s.command("LCD1"), "LCD1 [M ID:-----      ][                ]\r");
}
