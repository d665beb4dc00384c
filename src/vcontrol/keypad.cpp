#include "vcontrol/keypad.h"

#include "core/text.h"

#include <cmath>

namespace kestra {

namespace {

KeyAction send(std::initializer_list<KeyCommand> commands)
{
    KeyAction action;
    action.commands = commands;
    return action;
}

constexpr double kKeyGap = 0.1;  // between two keys the scanner must see apart

bool modeIn(const std::string& mode, std::initializer_list<const char*> modes)
{
    for (const char* m : modes)
        if (mode == m) return true;
    return false;
}

// The model columns of group C: the BC785D and BC796D, the BC296D, the
// UBC3300, and the BC250D, which has no up and down keys.
enum class KeyColumn { Bc785d, X96, Ubc33, Plain };

KeyColumn keyColumn(const ModelSwitches& model)
{
    if (model.ubc33 == 1) return KeyColumn::Ubc33;
    if (model.bc785d == 1) return KeyColumn::Bc785d;
    return model.x96 == 1 ? KeyColumn::X96 : KeyColumn::Plain;
}

KeyAction manualKey(const DisplayState& state, const ModelSwitches& model)
{
    const std::string& mode = state.modenumber;
    KeyAction action;
    auto& c = action.commands;
    if (mode == "Menu") {
        if (model.bc785d == 1) c.push_back({"KEY01", kKeyGap});
        c.push_back({"KEY07"});
    }
    if (mode == "00" || mode == "01") c.push_back({"KEY07"});
    if (modeIn(mode, {"02", "03", "04", "05"})) {
        c.push_back({"KEY01", kKeyGap});
        c.push_back({"KEY07", kKeyGap});
    }
    if (Val(mode) > 5) {
        c.push_back({"KEY13"});
        if (model.bc785d == 1) c.push_back({"KEY01", kKeyGap});
        c.push_back({"KEY07"});
    }
    return action;
}

// MODE steps the modulation once round WFM, FM, NFM, AM.
KeyAction modeCycle(const DisplayState& state)
{
    KeyAction action;
    action.pausePolling = true;
    const std::string& m = state.modulation;
    if (m == "WFM") action.commands.push_back({"RM FM"});
    else if (m == "FM") action.commands.push_back({"RM NFM"});
    else if (m == "NFM") action.commands.push_back({"RM AM"});
    else if (m == "AM") action.commands.push_back({"RM WFM"});
    return action;
}

} // namespace

KeyAction groupAKey(int index, const DisplayState& state, const ModelSwitches& model, int retries)
{
    static const char* const kKeys[12] = {"KEY01", "KEY10", "KEY09", "KEY07", "KEY11", "KEY13",
                                          "KEY00", "KEY12", "KEY12H", nullptr, "KEY06", nullptr};
    if (index < 0 || index >= 12) return {};
    KeyAction action;
    if (index == 9) action = send({{state.lamps[kLampAtt] ? "ATF" : "ATN"}});
    else if (index == 11) action = manualKey(state, model);
    else action = send({{kKeys[index]}});
    action.holdRecovery = (index == 3 || index == 11) && retries >= 19;
    return action;
}

KeyAction lockOutHold() { return send({{"KEY06H"}}); }

KeyAction groupBKey(int index)
{
    if (index >= 0 && index <= 9) return send({{"KEY02 " + std::to_string(index)}});
    if (index == 10) return send({{"KEY04"}});
    if (index == 11) return send({{"KEY03"}});
    return {};
}

KeyAction groupCKey(int index, bool rightButton, const DisplayState& state, const ModelSwitches& model)
{
    if (rightButton) return index == 1 ? send({{"KEY05H"}}) : KeyAction{};
    const KeyColumn column = keyColumn(model);
    // DOWN, UP and CH/FREQ by model column; nothing where the model has no key.
    const auto byModel = [&](const char* bc785d, const char* x96, const char* ubc33) {
        switch (column) {
        case KeyColumn::Bc785d: return send({{bc785d}});
        case KeyColumn::X96: return send({{x96}});
        case KeyColumn::Ubc33: return send({{ubc33}});
        case KeyColumn::Plain: break;
        }
        return KeyAction{};
    };
    switch (index) {
    case 0: return byModel("KEY08", "KEY16", "KEY16");
    case 1: return send({{"KEY05"}});
    case 2: return send({{"KEY08"}});
    case 4: return modeCycle(state);
    case 5: return byModel("KEY07", "KEY15", "KEY15");
    case 6:
        // CLR: the point twice clears a half-keyed entry of manual mode.
        if (state.modenumber == "01") return send({{"KEY03", kKeyGap}, {"KEY03"}});
        return {};
    case 7: return byModel("KEY14", "KEY14H", "KEY07H");
    case 8: return send({{"KEY15"}});
    case 9: return send({{"KEY16"}});
    default: return {};
    }
}

PanelLook updatePanel(DisplayState& state, const ModelSwitches& model)
{
    const std::string& mode = state.modenumber;
    const double value = Val(mode);
    const bool menu = mode == "Menu";

    state.lamps[0] = modeIn(mode, {"21", "20", "17", "16", "13", "12", "00"});
    state.lamps[1] = modeIn(mode, {"05", "04"});
    state.lamps[2] = modeIn(mode, {"19", "18", "15", "14", "11", "10", "03", "02"});
    state.lamps[3] = modeIn(mode, {"21", "19", "17", "15", "13", "11", "05", "03"});
    state.lamps[4] = menu;
    state.lamps[5] = value > 9;
    state.lamps[11] = mode == "01";

    PanelLook look;
    look.groupA = {"ID SCAN", "SERVICE", "ID SEARCH", "ID HOLD", "MENU",   "TRUNK",
                   "RESUME",  "TRANSFER", "MUTE",    "ATT",     "Lock Out", "MANUAL"};
    for (int i = 0; i < 10; ++i) look.groupB[static_cast<std::size_t>(i)] = std::to_string(i);
    look.groupB[10] = "E";
    look.groupB[11] = modeIn(mode, {"20", "16", "12"}) ? "bank/list" : ".";
    const bool upDown = !(model.bc785d == 0 && model.x96 == 0);
    look.groupC = {upDown ? "DOWN" : "", "PRI", "LIGHT", "", "MODE", upDown ? "UP" : "", "CLR", "CH/FREQ",
                   "V UP", "V DOWN"};

    look.groupA[4] = menu ? "BACK" : "MENU";
    if (menu) {
        // The scanner's menu gives these keys no meaning of their own.
        look.groupA[11] = "EXIT MENU";
        for (int i : {0, 1, 2, 3, 5, 6, 7, 8, 9, 10}) look.groupA[static_cast<std::size_t>(i)].clear();
        for (int i : {0, 1, 2, 4, 5, 6}) look.groupC[static_cast<std::size_t>(i)].clear();
    }
    // SCAN, SEARCH and HOLD in every mode up to 9 (the menu counts as 0: its
    // SCAN and HOLD keys leave it), the ID forms in the trunk modes.
    const bool idModes = value > 9;
    look.groupA[0] = idModes ? "ID SCAN" : "SCAN";
    look.groupA[2] = idModes ? "ID SEARCH" : "SEARCH";
    look.groupA[3] = idModes ? "ID HOLD" : "HOLD";
    if (model.ubc33 == 1) look.groupA[1] = "AIR/STEP";
    return look;
}

int turnKnob(int angle, bool up)
{
    angle += up ? 25 : -25;
    if (angle < 0) angle = 360;
    if (angle > 360) angle = 0;
    return angle;
}

KnobEnd knobEnd(int angle, double radius)
{
    constexpr double kPi = 3.141593;
    const double a = (angle % 360) * kPi / 180;
    return {radius * std::sin(a), -radius * std::cos(a)};
}

bool directTuneTakes(int keyCode) { return (keyCode >= 45 && keyCode <= 57 && keyCode != 47) || keyCode <= 9; }

std::vector<KeyCommand> directTune(std::string& text)
{
    text = padfreq(text, 8, 5);
    // On the wire the frequency is its eight digits without the point.
    return {{"MA999"}, {"RF" + Mid(text, 1, 4) + Mid(text, 6)}};
}

std::string activeText(const std::string& rxbuf) { return Mid(replyLine(rxbuf), 3); }

std::array<bool, 10> activeFromReply(const std::string& rxbuf)
{
    const std::string text = activeText(rxbuf);
    std::array<bool, 10> lit{};
    for (int i = 0; i < 10; ++i)
        lit[static_cast<std::size_t>(i)] = text.find(static_cast<char>('A' + i)) != std::string::npos;
    return lit;
}

std::string activeCommand(ActiveList list, const std::array<bool, 10>& lit)
{
    std::string command = list == ActiveList::SearchBanks ? "SB " : list == ActiveList::ScanBanks ? "CB " : "IS ";
    for (int i = 0; i < 10; ++i)
        if (lit[static_cast<std::size_t>(i)]) command += static_cast<char>('A' + i);
    return command;
}

bool AutoResume::tick(std::int64_t nowSeconds, const DisplayState& state, bool enabled, int limitSeconds)
{
    const std::string& mode = state.modenumber;
    if (mode == "01" || mode == "Menu") return false;
    if (state.busyshown && !start_) start_ = nowSeconds;
    if (!start_) {
        label_.clear();
        return false;
    }
    std::int64_t open = nowSeconds - *start_;
    // The count never runs past 99 s; past midnight the time of day starts
    // again from 0, and the count with it.
    if (open > 99 || open < 0) {
        start_ = nowSeconds;
        open = 0;
    }
    label_ = std::to_string(open);
    if (enabled && open >= limitSeconds && (mode == "00" || mode == "02")) {
        start_.reset();
        return true;
    }
    return false;
}

} // namespace kestra
