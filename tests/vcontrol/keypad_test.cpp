// The Virtual Control's keys by model and mode, the panel's lamps and
// captions, the knob, direct tuning, the active lists against the virtual
// scanner, and Auto Resume.

#include "sim/virtualscanner.h"
#include "vcontrol/keypad.h"

#include <gtest/gtest.h>

using namespace kestra;

namespace {

// The commands of an action, a wait of 0.1 s written "~" behind its command.
std::string sent(const KeyAction& action)
{
    std::string text;
    for (const KeyCommand& c : action.commands)
        text += (text.empty() ? "" : " ") + c.text + (c.waitAfter == 0.1 ? "~" : c.waitAfter > 0 ? "?" : "");
    return text;
}

DisplayState inMode(const std::string& mode)
{
    DisplayState s;
    s.modenumber = mode;
    return s;
}

const ModelSwitches kBc785d = ModelSwitches::of(Model::BC785D), kBc296d = ModelSwitches::of(Model::BC296D),
                    kUbc33 = ModelSwitches::of(Model::UBC3300), kBc250d = ModelSwitches::of(Model::BC250D);

} // namespace

TEST(VcKeypad, GroupsAAndBAndManualByMode)
{
    const char* const groupA[12] = {"KEY01", "KEY10", "KEY09", "KEY07", "KEY11", "KEY13",
                                    "KEY00", "KEY12", "KEY12H", "ATN", "KEY06", "KEY07"};
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(sent(groupAKey(i, inMode("Menu"), kBc250d, 0)), groupA[i]) << i;
        EXPECT_EQ(groupAKey(i, inMode("00"), kBc785d, 19).holdRecovery, i == 3 || i == 11) << i;
    }
    EXPECT_FALSE(groupAKey(3, inMode("00"), kBc785d, 18).holdRecovery);
    DisplayState att = inMode("00");
    att.lamps[kLampAtt] = true;
    EXPECT_EQ(sent(groupAKey(9, att, kBc785d, 0)), "ATF");
    EXPECT_EQ(sent(lockOutHold()), "KEY06H");
    EXPECT_EQ(sent(groupBKey(7)) + "," + sent(groupBKey(10)) + "," + sent(groupBKey(11)), "KEY02 7,KEY04,KEY03");

    // MANUAL: with bc785d 0, then 1.
    struct Manual {
        const char* mode;
        const char* plain;
        const char* bc785d;
    };
    for (const Manual& c : {Manual{"Menu", "KEY07", "KEY01~ KEY07"}, Manual{"01", "KEY07", "KEY07"},
                            Manual{"03", "KEY01~ KEY07~", "KEY01~ KEY07~"},
                            Manual{"09", "KEY13 KEY07", "KEY13 KEY01~ KEY07"}, Manual{"", "", ""}}) {
        EXPECT_EQ(sent(groupAKey(11, inMode(c.mode), kBc250d, 0)), c.plain) << c.mode;
        EXPECT_EQ(sent(groupAKey(11, inMode(c.mode), kBc785d, 0)), c.bc785d) << c.mode;
    }
}

TEST(VcKeypad, GroupCByModelColumn)
{
    struct Row {
        int index;
        const char* keys[4];  // BC785D and BC796D, BC296D, UBC3300, BC250D
    };
    const Row rows[] = {{0, {"KEY08", "KEY16", "KEY16", ""}},   {1, {"KEY05", "KEY05", "KEY05", "KEY05"}},
                        {2, {"KEY08", "KEY08", "KEY08", "KEY08"}}, {5, {"KEY07", "KEY15", "KEY15", ""}},
                        {6, {"", "", "", ""}},                  {7, {"KEY14", "KEY14H", "KEY07H", ""}},
                        {8, {"KEY15", "KEY15", "KEY15", "KEY15"}}, {9, {"KEY16", "KEY16", "KEY16", "KEY16"}}};
    const ModelSwitches models[4] = {ModelSwitches::of(Model::BC796D), kBc296d, kUbc33, kBc250d};
    for (const Row& r : rows)
        for (int m = 0; m < 4; ++m) {
            EXPECT_EQ(sent(groupCKey(r.index, false, inMode("00"), models[m])), r.keys[m]) << r.index << "/" << m;
            EXPECT_EQ(sent(groupCKey(r.index, true, inMode("00"), models[m])), r.index == 1 ? "KEY05H" : "");
        }
    EXPECT_EQ(sent(groupCKey(6, false, inMode("01"), kBc250d)), "KEY03~ KEY03");  // CLR in manual mode

    DisplayState s;
    for (const auto& [now, command] : {std::pair{"WFM", "RM FM"}, {"FM", "RM NFM"}, {"NFM", "RM AM"}, {"AM", "RM WFM"}}) {
        s.modulation = now;
        const KeyAction action = groupCKey(4, false, s, kUbc33);
        EXPECT_EQ(sent(action), command);
        EXPECT_TRUE(action.pausePolling);
    }
}

TEST(VcKeypad, PanelFollowsTheMode)
{
    for (const auto& [mode, lit] : {std::pair{"00", "1000000"}, {"01", "0000001"}, {"03", "0011000"}, {"05", "0101000"},
                                    {"10", "0010010"}, {"13", "1001010"}, {"16", "1000010"}, {"19", "0011010"},
                                    {"Menu", "0000100"}}) {
        DisplayState s = inMode(mode);
        s.lamps.fill(true);
        updatePanel(s, kBc785d);
        std::string on;
        for (int i : {0, 1, 2, 3, 4, 5, 11}) on += s.lamps[static_cast<std::size_t>(i)] ? '1' : '0';
        EXPECT_EQ(on, lit) << mode;
        EXPECT_TRUE(s.lamps[kLampMute] && s.lamps[kLampAtt] && s.lamps[kLampLockOut]);  // the decoder's own
    }
    const auto captions = [](const std::string& mode, const ModelSwitches& model) {
        DisplayState s = inMode(mode);
        const PanelLook look = updatePanel(s, model);
        std::string text;
        for (const auto& c : look.groupA) text += c + "|";
        text += look.groupB[11] + "|";
        for (const auto& c : look.groupC) text += c + "|";
        return text;
    };
    EXPECT_EQ(captions("00", kBc785d), "SCAN|SERVICE|SEARCH|HOLD|MENU|TRUNK|RESUME|TRANSFER|MUTE|ATT|Lock Out|MANUAL|.|"
                                       "DOWN|PRI|LIGHT||MODE|UP|CLR|CH/FREQ|V UP|V DOWN|");
    EXPECT_EQ(captions("16", kUbc33), "ID SCAN|AIR/STEP|ID SEARCH|ID HOLD|MENU|TRUNK|RESUME|TRANSFER|MUTE|ATT|Lock Out|"
                                      "MANUAL|bank/list|DOWN|PRI|LIGHT||MODE|UP|CLR|CH/FREQ|V UP|V DOWN|");
    // The menu counts as mode 0: SCAN and HOLD leave it and keep their captions.
    EXPECT_EQ(captions("Menu", kBc250d), "SCAN||SEARCH|HOLD|BACK|||||||EXIT MENU|.||||||||CH/FREQ|V UP|V DOWN|");
    EXPECT_EQ(captions("01", kBc250d).substr(captions("01", kBc250d).find(".|")), ".||PRI|LIGHT||MODE||CLR|CH/FREQ|V UP|V DOWN|");
}

TEST(VcKeypad, KnobAndDirectTune)
{
    std::vector<int> angles;
    for (int a = 0, i = 0; i < 3; ++i) angles.push_back(a = turnKnob(a, false));
    for (int a = 335, i = 0; i < 3; ++i) angles.push_back(a = turnKnob(a, true));
    EXPECT_EQ(angles, (std::vector<int>{360, 335, 310, 360, 0, 25}));
    EXPECT_NEAR(knobEnd(0, 200).y, -200, 1e-3);
    EXPECT_NEAR(knobEnd(450, 200).x, 200, 1e-3);

    std::string taken;
    for (int code = 0; code < 128; ++code)
        if (directTuneTakes(code)) taken += code > 31 ? static_cast<char>(code) : '^';
    EXPECT_EQ(taken, "^^^^^^^^^^-.0123456789");

    std::string text = kDirectTuneStart;
    EXPECT_EQ(directTune(text), (std::vector<KeyCommand>{{"MA999"}, {"RF04000000"}}));
    text = "155.5";
    EXPECT_EQ(directTune(text), (std::vector<KeyCommand>{{"MA999"}, {"RF01555000"}}));
    EXPECT_EQ(text, "0155.5000");
}

// What the Virtual Control sends, the virtual scanner takes; what it
// answers, the Virtual Control reads.
TEST(VcKeypad, ActiveListsAgreeWithTheScanner)
{
    sim::VirtualScanner scanner(Model::BC796D);
    std::array<bool, 10> lit{};
    lit[0] = lit[2] = lit[9] = true;
    for (ActiveList list : {ActiveList::SearchBanks, ActiveList::ScanBanks, ActiveList::IdLists}) {
        const std::string command = activeCommand(list, lit);
        EXPECT_EQ(scanner.command(command), "OK\r") << command;
        const std::string reply = scanner.command(command.substr(0, 2));
        EXPECT_EQ(activeFromReply(reply), lit) << reply;
        EXPECT_EQ(activeText(reply), " ACJ");
    }
    EXPECT_EQ(activeCommand(ActiveList::IdLists, lit), "IS ACJ");
    EXPECT_EQ(scanner.memory().scanBanks, lit);
    EXPECT_EQ(scanner.memory().searchRanges, lit);
    // A key's reply ahead of the poll's lights nothing of its own.
    EXPECT_EQ(activeFromReply("NG\rIS BJ\r"), activeFromReply("IS JB\r"));
    EXPECT_EQ(activeText("OK\rCB B\r"), " B");
}

TEST(VcAutoResume, CountsTheOpenSquelchAndResumes)
{
    AutoResume resume;
    DisplayState s = inMode("00");
    const auto at = [&](std::int64_t now, bool enabled, int limit) {
        const bool due = resume.tick(now, s, enabled, limit);
        return resume.label() + (due ? "!" : "");
    };
    EXPECT_EQ(at(1000, true, 5), "");
    s.busyshown = true;
    EXPECT_EQ(at(1000, true, 5), "0");
    s.busyshown = false;  // a pause of the same signal: the count goes on
    EXPECT_EQ(at(1004, true, 5), "4");
    EXPECT_EQ(at(1005, true, 5), "5!");
    EXPECT_EQ(at(1006, true, 5), "");  // the resume cleared the start

    s.busyshown = true;
    for (const char* mode : {"01", "Menu"}) {
        s.modenumber = mode;
        EXPECT_EQ(at(1990, true, 1), "");
    }
    s.modenumber = "05";
    EXPECT_EQ(at(2000, true, 1), "0");
    EXPECT_EQ(at(2099, true, 1), "99");
    EXPECT_EQ(at(2100, true, 1), "0");
    s.modenumber = "02";
    EXPECT_EQ(at(2101, false, 1), "1");
    EXPECT_EQ(at(2101, true, 1), "1!");

    at(3000, true, 60);
    s.busyshown = false;
    resume.clear();  // the scanner moved on
    EXPECT_EQ(at(3010, true, 60), "");
}
