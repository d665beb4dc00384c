// Reading the scanner's state from its display and its short replies: the
// display forms of real scanners and of the virtual scanner on every model,
// the trunk ID and subtone forms, and the status line.

#include "sim/virtualscanner.h"
#include "vcontrol/displaystate.h"

#include <gtest/gtest.h>

using namespace kestra;

namespace {

// The LCD reply as the scanner sends it: per line "LCDn [", 16 characters,
// "][", 16 attributes, "]" and CR.
std::string lcdReply(const std::array<std::string, 4>& text, const std::array<std::string, 4>& attr = {})
{
    std::string r;
    for (int n = 0; n < 4; ++n) {
        std::string t = text[n], a = attr[n];
        t.resize(16, ' ');
        a.resize(16, ' ');
        r += "LCD" + std::to_string(n + 1) + " [" + t + "][" + a + "]\r";
    }
    return r;
}

DisplayState parsed(std::string reply, DisplayState state = {})
{
    parselcd(state, reply);
    return state;
}

} // namespace

TEST(VcDisplay, RealScannerForms)
{
    std::string rx = "OK\r" + lcdReply({"     +   C 015", "  SCAN", "Bank  1--------0", ""}, {"", "", "      #", ""});
    DisplayState s;
    parselcd(s, rx);
    EXPECT_EQ(rx, lcdReply({"     +   C 015", "  SCAN", "Bank  1--------0", ""}, {"", "", "      #", ""}).substr(0, 167));
    EXPECT_EQ(s.lcdline[1], "SCANNING");
    EXPECT_EQ(s.lcdraw[2], "Bank  1--------0][      #         ");
    EXPECT_EQ(s.channeltext, " 015");
    EXPECT_EQ(s.curbank, 1);
    EXPECT_EQ(decidePollfast(s), 1);

    s = parsed(lcdReply({"SCAN +   C 020", " 167.3500  FM", "AMK OSL CH 2", "BLAALYS"}, {"####"}), s);
    EXPECT_EQ(s.freqtext, " 167.3500");
    EXPECT_EQ(s.curbank, 1);  // no bank row: it stands
    EXPECT_EQ(decidePollfast(s), 0);

    s = parsed(lcdReply({"         C 102", " 156.1000 NFM", "VHF Channel 2", "MARINE"}), s);
    EXPECT_EQ(s.freqtext, " 156.1000");
    takeMode(s, "MD01\r");
    EXPECT_EQ(s.statusline, "Manual Mode - Bank:2");
    EXPECT_EQ(s.opclass, 0);
}

// The virtual scanner's resting displays, decoded on each model as the
// control loop does: LCD, TB, MD.
TEST(VcDisplay, VirtualScannerDisplaysOnEveryModel)
{
    for (Model model : {Model::BC250D, Model::BC785D, Model::BC296D, Model::BC796D, Model::UBC3300}) {
        SCOPED_TRACE(modelName(model));
        sim::VirtualScanner scanner(model);
        DisplayState s;
        const auto look = [&](std::initializer_list<std::string_view> commands) {
            for (auto c : commands) scanner.command(c);
            std::string rx = scanner.command("LCD");
            parselcd(s, rx);
            takeTrunkBank(s, scanner.command("TB"));
            takeMode(s, scanner.command("MD"));
            return decidePollfast(s);
        };
        EXPECT_EQ(look({}), 1);
        EXPECT_EQ(s.statusline, "Scan Mode");

        // A locked-out Motorola trunk channel in manual mode, muted.
        EXPECT_EQ(look({"TR A 1", "PM002T08511625", "LON", "MA002", "KEY12H"}), 0);
        EXPECT_EQ(s.lcdline[0], "         M 002 L/O");
        EXPECT_TRUE(s.lamps[kLampLockOut] && s.lamps[kLampMute] && s.trunkflag);
        EXPECT_EQ(s.freqtext, " 851.1625");
        EXPECT_EQ(s.statusline, "Manual Mode - Motorola Trunk Channel - Bank:1");
        takeModulation(s, scanner.command("RM"));
        EXPECT_EQ(s.modulation, "NFM");

        // Motorola ID scan, then its hold with no ID: the squelch counts as shut.
        EXPECT_EQ(look({"KEY12H", "KEY13"}), 1);
        EXPECT_EQ(s.statusline, "Trunk - Motorola ID Scan - Bank: 1");
        EXPECT_EQ(look({"KEY07"}), 0);
        EXPECT_EQ(s.trunkmode, 1);
        EXPECT_EQ(s.idvalid, 0);
        takeSquelch(s, "+\r");
        EXPECT_FALSE(s.busyshown || s.busytwin);

        EXPECT_EQ(look({"KEY13", "LL01080000 C", "LU01370000 C", "SB C", "KEY09"}), 1);
        EXPECT_EQ(s.curbank, 3);
        EXPECT_EQ(s.trunkbank, 0);
        EXPECT_EQ(s.statusline, "Limit Search");
        EXPECT_EQ(look({"KEY10"}), 1);
        EXPECT_EQ(s.statusline, "Service Search");
        look({"KEY11"});
        EXPECT_EQ(s.statusline, "Menu mode");
        EXPECT_EQ(s.opclass, 3);  // the menu leaves the class as it was
    }
}

TEST(VcDisplay, TrunkIdAndSubtoneForms)
{
    struct Id {
        const char* line1;
        int trunkmode;
        const char* trunkid;
        int idvalid;
        const char* location;
    };
    for (const Id& c : {Id{"M ID:100-15", 1, "100-15", 1, "old"}, Id{"E ID:-----", 1, "----- ", 0, "old"},
                        Id{"L ID:1-01-234", 1, "1-01-234", 1, "old"}, Id{"L ID:--", 1, "--      ", 0, "old"},
                        Id{"PE3-7 01-023", 1, "01-023", 1, "3-7"}, Id{" L5-6 ---", 1, "---   ", 0, "5-6"},
                        Id{"ID SCAN  E", 1, "", 0, "old"}, Id{" M1 2 100-15", 0, "", 0, "old"},
                        Id{"SCAN M ID:12345", 0, "", 0, "old"}}) {
        DisplayState s;
        s.idlocation = "old";
        s = parsed(lcdReply({c.line1, "", "", ""}), s);
        EXPECT_EQ(s.trunkmode, c.trunkmode) << c.line1;
        EXPECT_EQ(s.trunkid, c.trunkid) << c.line1;
        EXPECT_EQ(s.idvalid, c.idvalid) << c.line1;
        EXPECT_EQ(s.idlocation, c.location) << c.line1;
    }
    EXPECT_EQ(parsed(lcdReply({"         E 115"})).systemname, "Edacs");
    EXPECT_EQ(parsed(lcdReply({"ID SRCH  L"})).systemname, "LTR");

    // An inverted value is a tone found; a plain " CTCSS " one being searched.
    struct Tone {
        const char* line3;
        const char* attr3;
        int state;
        const char* text;
    };
    for (const Tone& c : {Tone{"  CTCSS 123.0", "  ##### #####", 1, "123.0"}, Tone{"  CTCSS 67.0", "  ##### ####", 1, "67.0"},
                          Tone{"  CTCSS 67.0", "", 3, "67.0 "}, Tone{"  DCS   023", "  ###   ###", 2, "023"},
                          Tone{"  DCS   023", "", 0, "023"}, Tone{"FIRE DISPATCH", "", 0, "old"}}) {
        DisplayState s;
        s.subtonetext = "old";
        s = parsed(lcdReply({"", "", c.line3, ""}, {"", "", c.attr3, ""}), s);
        EXPECT_EQ(s.subtonestate, c.state) << c.line3;
        EXPECT_EQ(s.subtonetext, c.text) << c.line3;
    }
}

TEST(VcDisplay, LineMarksAndMotion)
{
    for (const char* line2 : {"  SCAN", "CAN      ", "     S"})
        EXPECT_EQ(parsed(lcdReply({"", line2, "", ""})).lcdline[1], "SCANNING") << line2;
    EXPECT_EQ(decidePollfast(parsed(lcdReply({"", "  SCAMP   S", "", ""}))), 0);
    EXPECT_EQ(decidePollfast(parsed(lcdReply({"SRVC +", "", "SERVICE SEARCH", ""}))), 1);
    EXPECT_EQ(decidePollfast(parsed(lcdReply({"HOLD", "", "SERVICE SEARCH", ""}))), 0);
    EXPECT_EQ(decidePollfast(parsed(lcdReply({"ID SRCH  M", "  SEARCH", "", ""}))), 1);
    EXPECT_EQ(parsed(lcdReply({"SRCH +", "", "Range 10", ""})).curbank, 10);
    EXPECT_EQ(parsed(lcdReply({"", "", "Bank  ---------0", ""}, {"", "", "               #", ""})).curbank, 10);

    DisplayState s = parsed(lcdReply({"SYSTEM OPTION", " 146.5200", "", "MUTE ON"}, {"", "****************"}));
    EXPECT_TRUE(s.optionOverlay && s.lamps[kLampMute]);
    EXPECT_EQ(s.lcdinv, (std::array<int, 4>{0, 1, 0, 0}));
    s = parsed(lcdReply({"         C 001", " 1:DIMMER", "", ""}), s);
    EXPECT_FALSE(s.optionOverlay || s.lamps[kLampMute]);
    EXPECT_EQ(s.freqtext, " 146.5200");  // a line without a point leaves it

    // A reply cut short anywhere is read as far as it goes.
    const std::string full = lcdReply({"L ID:1-01-234", " 851.1625 ENC", "  CTCSS 123.0", ""}, {"", "", "  ##### #####", ""});
    for (std::size_t n = 0; n <= full.size(); ++n) {
        std::string rx = full.substr(0, n);
        DisplayState cut;
        parselcd(cut, rx);
        takeSignal(cut, rx);
        takeStep(cut, rx);
        takeTrunkBank(cut, rx);
        refreshEncoded(cut);
        EXPECT_LE(rx.size(), 167u);
    }
    EXPECT_EQ(parsed("LCD1 [SCAN").lcdline[0], "SCAN");
}

TEST(VcStatus, ModeTable)
{
    struct Case {
        const char* reply;
        int subtone;
        const char* system;
        int trunkbank;
        const char* status;
        int opclass;
    };
    const Case cases[] = {
        {"MD00", 3, "", 0, "Scan Mode - searching subtone", 1},   {"MD00", 2, "", 0, "before", 1},
        {"MD01", 2, "", 0, "Manual Mode - DCS tone detected - Bank:10", 0},
        {"MD01", 3, "Edacs", 0, "Manual Mode - Edacs Trunk Channel - Bank:10", 0},
        {"MD02", 1, "", 0, "Limit Search - subtone detected", 3}, {"MD02", 3, "", 0, "before", 3},
        {"MD03", 0, "", 0, "Limit Search Hold", 3},               {"MD05", 0, "", 0, "Service Search Hold", 3},
        {"MD07", 0, "", 0, "--", 2},                              {"MD09", 0, "", 0, "VFO", 2},
        {"MD11", 0, "", 4, "Trunk - Motorola ID Search Hold - Bank: 4", 2},
        {"MD16", 0, "", 0, "Trunk - EDACS ID Scan", 2},           {"MD21", 0, "", 10, "Trunk - LTR ID Scan Hold - Bank: 10", 2},
        {"MD22", 0, "", 0, "Menu mode", 9},                       {"NG", 0, "", 0, "Menu mode", 9},
        {"OK\rMD04", 0, "", 0, "Service Search", 3},              {"MD23", 0, "", 0, "before", 2},
    };
    for (const Case& c : cases) {
        DisplayState s;
        s.statusline = "before";
        s.opclass = 9;
        s.channeltext = "1000";
        s.subtonestate = c.subtone;
        s.systemname = c.system;
        s.trunkbank = c.trunkbank;
        takeMode(s, std::string(c.reply) + "\r");
        EXPECT_EQ(s.statusline, c.status) << c.reply;
        EXPECT_EQ(s.opclass, c.opclass) << c.reply;
    }
}

TEST(VcStatus, ShortReplies)
{
    DisplayState s;
    takeStep(s, "ST 12.5K\r");
    takeStep(s, "ST AUTO\r");  // no "K": the step stands
    EXPECT_EQ(s.steptext, "12.5");
    for (const auto& [reply, value] : {std::pair{"S182 F08594375\r", 182}, {"SG 045\r", 45}, {"OK\rS255 F01560000\r", 255}}) {
        takeSignal(s, reply);
        EXPECT_EQ(s.signal, value) << reply;
    }
    EXPECT_TRUE(meterBarShown(224, 7));
    EXPECT_FALSE(meterBarShown(223, 7));
    for (const auto& [reply, modulation] : {std::pair{"RM WFM\r", "WFM"}, {"RM AM\r", "AM"}, {"RM AUTO\r", "AM"}}) {
        takeModulation(s, reply);
        EXPECT_EQ(s.modulation, modulation) << reply;
    }
    takeAttenuator(s, "ATN\r");
    EXPECT_TRUE(s.lamps[kLampAtt]);
    s.trunkmode = 1;
    takeTrunkBank(s, "TB J LT\r");
    EXPECT_EQ(s.trunkbank, 10);
    wipeReception(s);
    EXPECT_FALSE(s.lamps[kLampAtt]);

    // The squelch on a trunk ID display: only with an ID, only in the ID
    // search and scan modes, and never in the status window.
    struct Sq {
        const char* mode;
        int trunkmode, idvalid;
        bool busy, twin;
    };
    for (const Sq& q : {Sq{"00", 0, 0, true, true}, Sq{"20", 1, 1, true, false}, Sq{"13", 1, 1, false, false},
                        Sq{"12", 1, 0, false, false}}) {
        s.modenumber = q.mode;
        s.trunkmode = q.trunkmode;
        s.idvalid = q.idvalid;
        takeSquelch(s, "+\r");
        EXPECT_EQ(std::pair(s.busyshown, s.busytwin), std::pair(q.busy, q.twin)) << q.mode;
        takeSquelch(s, "-\r");
        EXPECT_FALSE(s.busyshown || s.busytwin);
    }

    // The encrypted voice skip: the exact word "ENC" in the chosen modes.
    s.lcdline[1] = " 851.1625 ENC";
    EXPECT_TRUE(refreshEncoded(s));
    EXPECT_FALSE(refreshEncoded(s));
    EncryptedSkip options;
    options.search = false;
    for (const auto& [mode, skips] : {std::pair{"10", 1}, {"12", 1}, {"00", 1}, {"02", 0}, {"11", 0}}) {
        s.modenumber = mode;
        EXPECT_EQ(encryptedSkips(s, options), skips) << mode;
    }
    s.encoded = "ENC ";
    EXPECT_EQ(encryptedSkips(s, options), 0);
}
