#include "sim/scannermenu.h"

#include <algorithm>

namespace kestra::sim {

std::string lcdText(std::string_view text)
{
    std::string line(text.substr(0, 16));
    line.resize(16, ' ');
    return line;
}

namespace {

const std::vector<std::string> kOnOff = {"1:ON", "2:OFF"};
const std::vector<std::string> kLongDelays = {"1:NONE",      "2:1 SECOND",  "3:2 SECONDS",  "4:4 SECONDS",
                                              "5:INFINITE",  "6:-2 SECONDS", "7:-5 SECONDS", "8:-10 SECONDS"};

// The modes of a search range in the order of the menu's list.
constexpr Modulation kSearchModes[] = {Modulation::AM, Modulation::FM, Modulation::WFM, Modulation::NFM, Modulation::Auto};

// The number that picks an option: the digit in front of its colon, else its place.
int optionDigit(const std::string& label, int index)
{
    const auto first = label.find_first_not_of(' ');
    if (first != std::string::npos && first + 1 < label.size() && label[first] >= '0' && label[first] <= '9' &&
        label[first + 1] == ':')
        return label[first] - '0';
    return (index + 1) % 10;
}

std::string number(int n) { return std::to_string(n); }

const char* stepLabel(Step s)
{
    switch (s) {
    case Step::k5: return "5KHz";
    case Step::k6_25: return "6.25KHz";
    case Step::k7_5: return "7.5KHz";
    case Step::k10: return "10KHz";
    case Step::k12_5: return "12.5KHz";
    case Step::k20: return "20KHz";
    case Step::k25: return "25KHz";
    case Step::k50: return "50KHz";
    case Step::k100: return "100KHz";
    case Step::Auto: return "AUTO";
    }
    return "";
}

const char* systemName(const TrunkBank& t)
{
    if (!t.on) return "NOT TRUNK BANK";
    switch (t.kind) {
    case TrunkKind::Type1: return "MOT TYPE 1";
    case TrunkKind::Type2_800: return "MOT TYPE 2 800";
    case TrunkKind::Type2_900: return "MOT TYPE 2 900";
    case TrunkKind::Type2_Uhf: return "MOT TYPE 2 UHF";
    case TrunkKind::Type2_Vhf: return "MOT TYPE 2 VHF";
    case TrunkKind::EdacsWide: return "EDACS WIDE";
    case TrunkKind::EdacsNarrow: return "EDACS NARROW";
    case TrunkKind::EdacsSct: return "EDACS SCT";
    case TrunkKind::Ltr: return "LTR";
    }
    return "";
}

bool hasControlChannel(TrunkKind k)
{
    return k == TrunkKind::Type1 || k == TrunkKind::Type2_800 || k == TrunkKind::Type2_900;
}

// The label of a list entry, "n:TEXT"; no number for entries reached by UP and DOWN.
std::string entryLabel(int digit, const char* text) { return digit < 0 ? std::string(text) : number(digit) + ":" + text; }

} // namespace

void Menu::open(Start start)
{
    stack_.clear();
    Frame top;
    top.node = start == Start::Top ? Node::Top : Node::RangeSelect;
    stack_.push_back(top);
}

bool Menu::isList(Node node)
{
    switch (node) {
    case Node::Top: case Node::RangeSelect: case Node::RangeMenu: case Node::TrunkMenu: case Node::BankSelect:
    case Node::TrunkBank: case Node::IdSlot: case Node::SystemOption: case Node::Light:
        return true;
    default:
        return false;
    }
}

bool Menu::isOption(Node node) { return node >= Node::TrunkDelay; }

std::vector<Menu::Entry> Menu::entries(const Frame& frame) const
{
    std::vector<Entry> list;
    const auto add = [&](int digit, const char* text, Node node, int index = 0) {
        list.push_back(Entry{digit, entryLabel(digit, text), node, index});
    };
    const bool bc7 = longDelayList();
    switch (frame.node) {
    case Node::Top:
        add(1, "SEARCH", Node::RangeSelect);
        add(2, "TRUNK", Node::TrunkMenu);
        add(3, "SYSTEM OPTION", Node::SystemOption);
        break;
    case Node::RangeSelect:
        for (int r = 0; r < kRanges; ++r)
            list.push_back(Entry{(r + 1) % 10, number((r + 1) % 10) + ":RANGE " + number(r + 1), Node::RangeMenu, r});
        break;
    case Node::RangeMenu:
        add(1, "LIMIT", Node::SearchLimits);
        add(2, "STEP", Node::SearchStep);
        add(3, "MODE", Node::SearchMode);
        add(4, "ALPHA TAG", Node::SearchTag);
        break;
    case Node::TrunkMenu:
        add(2, "BANK SETUP", Node::BankSelect);
        break;
    case Node::BankSelect:
        for (int b = 0; b < kBanks; ++b)
            list.push_back(Entry{(b + 1) % 10, number((b + 1) % 10) + ":BANK " + number(b + 1), Node::TrunkBank, b});
        break;
    case Node::TrunkBank: {
        const TrunkBank& t = mem_.trunk[frame.bank];
        if (!t.on) break;
        const bool motorola = isMotorola(t.kind), edacs = isEdacs(t.kind), ltr = t.kind == TrunkKind::Ltr;
        if (hasBaseConfigs(t.kind)) add(1, "BASE/OFFSET", Node::BaseWalk);
        if (t.kind != TrunkKind::EdacsSct) add(3, "ID LIST", Node::IdEntry);
        add(4, "DELAY", Node::TrunkDelay);
        if (bc7) {
            add(5, "RECORD", Node::TrunkRecord);
            add(8, "ACTIVITY ID", Node::ActivityId);
            if (!ltr) add(9, "ICALL", Node::Icall);
            if (motorola) add(0, "STATUS BIT", Node::StatusBit);
            if (edacs) add(0, "EMERGENCY ALT", Node::EmergencyAlt);
            // Past the last number, reached by scrolling: UP from the top of
            // the list comes to these first.
            if (motorola) add(-1, "END CODE", Node::EndCode);
            if (edacs) add(-1, "ID FORMAT", Node::IdFormat);
            if (hasControlChannel(t.kind)) add(-1, "CONTROL CH", Node::ControlChannel);
        } else {
            add(7, "ACTIVITY ID", Node::ActivityId);
            if (!ltr) add(8, "ICALL", Node::Icall);
            if (motorola) add(9, "STATUS BIT", Node::StatusBit);
            if (edacs) add(9, "EMERGENCY ALT", Node::EmergencyAlt);
            if (motorola) add(0, "END CODE", Node::EndCode);
            if (edacs) add(0, "ID FORMAT", Node::IdFormat);
        }
        if (bankShift_ > 0 && !list.empty()) {
            for (Entry& e : list) {
                if (e.digit < 0) continue;
                const auto colon = e.label.find(':');
                e.digit = (e.digit + bankShift_) % 10;
                e.label = number(e.digit) + e.label.substr(colon);
            }
            const auto moved = static_cast<std::ptrdiff_t>(static_cast<std::size_t>(bankShift_) % list.size());
            std::rotate(list.begin(), list.begin() + moved, list.end());
        }
        break;
    }
    case Node::IdSlot:
        if (bc7) add(3, "RECORD", Node::IdRecord);
        add(4, "ALERT", Node::IdAlert);
        break;
    case Node::SystemOption:
        add(1, "LIGHT", Node::Light);
        add(2, "SCREEN MASK", Node::ScreenMask);
        add(3, "KEY BEEP", Node::KeyBeep);
        add(4, "ENTER LOCK", Node::EnterLock);
        add(5, "BAUD RATE", Node::BaudRate);
        add(6, "CLONE", Node::Clone);
        add(7, "DATA SKIP", Node::DataSkip);
        add(8, "SQ MODE", Node::SqMode);
        if (modelInfo(mem_.model).switches.x96 == 1) add(0, "APCO CARD", Node::ApcoCard);
        break;
    case Node::Light:
        add(1, "DIMMER", Node::DimmerLight);
        add(2, "DIMMER TIME", Node::DimmerTime);
        break;
    default:
        break;
    }
    return list;
}

std::vector<std::string> Menu::options(const Frame& frame) const
{
    switch (frame.node) {
    case Node::TrunkDelay: return longDelayList() ? kLongDelays : kOnOff;
    case Node::Icall: return {"1:ON", "2:OFF", "3:ONLY"};
    case Node::EndCode: return {"1:DETECT", "2:IGNORE"};
    case Node::IdFormat: return {"1:AFS", "2:DECIMAL"};
    case Node::ControlChannel:
        if (mem_.trunk[frame.bank].kind == TrunkKind::Type2_900) return kOnOff;
        return {"1:OFF", "2:PLAN 1", "3:PLAN 2", "4:PLAN 3", "5:PLAN 4"};
    case Node::DimmerLight: return {" 1:HIGH", " 2:MEDIUM"};
    case Node::DimmerTime: return {" 1:15SECONDS", " 2:INFINITE"};
    case Node::SqMode: return {" 1:CSQ", " 2:TONE SQ", " 3:TONE SEARCH"};
    case Node::ApcoCard: return {" 1:ENABLE", " 2:DISABLE"};
    case Node::Clone: return {"MASTER", "SLAVE"};
    case Node::BaudRate: {
        std::vector<std::string> list;
        const auto& rates = baudRates(mem_.model);
        for (std::size_t i = 0; i < rates.size(); ++i) list.push_back(number(static_cast<int>(i) + 1) + ":" + number(rates[i]));
        return list;
    }
    case Node::SearchMode: return {"1:AM", "2:FM", "3:WFM", "4:NFM", "5:AUTO"};
    case Node::SearchStep: {
        std::vector<std::string> list;
        const auto& steps = searchSteps(mem_.model);
        for (std::size_t i = 0; i < steps.size(); ++i)
            list.push_back(number(static_cast<int>(i + 1) % 10) + ":" + stepLabel(steps[i]));
        return list;
    }
    default: return kOnOff;  // the on/off items
    }
}

int Menu::currentOption(const Frame& frame) const
{
    const TrunkBank& t = mem_.trunk[frame.bank];
    const IdSlot& slot = mem_.ids[frame.bank][frame.list].idSlots[frame.slot];
    const GeneralParameters& g = mem_.general;
    const SearchRange& range = mem_.search[frame.range];
    const auto onOff = [](bool on) { return on ? 0 : 1; };
    switch (frame.node) {
    case Node::TrunkDelay: return longDelayList() ? t.delay : onOff(t.delay != 0);
    case Node::TrunkRecord: return onOff(t.record);
    case Node::ActivityId: return onOff(t.activityId);
    case Node::Icall: return t.icall == 1 ? 0 : t.icall == 2 ? 2 : 1;
    case Node::StatusBit: return onOff(t.statusBit);
    case Node::EmergencyAlt: return onOff(t.emergencyAlt);
    case Node::EndCode: return onOff(t.endCodeDetect);
    case Node::IdFormat: return t.idFormat;
    case Node::ControlChannel: return t.kind == TrunkKind::Type2_900 ? onOff(t.controlChannel != 0) : t.controlChannel;
    case Node::IdRecord: return onOff(slot.record);
    case Node::IdAlert: return onOff(slot.beep);
    case Node::DimmerLight: return g.dimmerLight;
    case Node::DimmerTime: return g.dimmerTime;
    case Node::ScreenMask: return onOff(g.screenMask);
    case Node::KeyBeep: return onOff(g.keyBeep);
    case Node::EnterLock: return onOff(g.enterLock);
    case Node::DataSkip: return onOff(g.dataSkip);
    case Node::SqMode: return g.sqMode;
    case Node::ApcoCard: return g.apcoCard;
    case Node::Clone: return g.clone;
    case Node::BaudRate: {
        const auto& rates = baudRates(mem_.model);
        const auto it = std::find(rates.begin(), rates.end(), mem_.baud);
        return it == rates.end() ? 0 : static_cast<int>(it - rates.begin());
    }
    case Node::SearchMode: {
        const auto it = std::find(std::begin(kSearchModes), std::end(kSearchModes), range.mode);
        return static_cast<int>(it - std::begin(kSearchModes)) % 5;
    }
    case Node::SearchStep: {
        const auto& steps = searchSteps(mem_.model);
        const auto it = std::find(steps.begin(), steps.end(), range.step);
        return it == steps.end() ? static_cast<int>(steps.size()) - 1 : static_cast<int>(it - steps.begin());
    }
    default: return 0;
    }
}

void Menu::applyOption(const Frame& frame, int index)
{
    TrunkBank& t = mem_.trunk[frame.bank];
    IdSlot& slot = mem_.ids[frame.bank][frame.list].idSlots[frame.slot];
    GeneralParameters& g = mem_.general;
    SearchRange& range = mem_.search[frame.range];
    const bool on = index == 0;
    switch (frame.node) {
    case Node::TrunkDelay: t.delay = longDelayList() ? index : (on ? 2 : 0); break;
    case Node::TrunkRecord: t.record = on; break;
    case Node::ActivityId: t.activityId = on; break;
    case Node::Icall: t.icall = index == 0 ? 1 : index == 2 ? 2 : 0; break;
    case Node::StatusBit: t.statusBit = on; break;
    case Node::EmergencyAlt: t.emergencyAlt = on; break;
    case Node::EndCode: t.endCodeDetect = on; break;
    case Node::IdFormat: t.idFormat = index; break;
    case Node::ControlChannel: t.controlChannel = t.kind == TrunkKind::Type2_900 ? (on ? 1 : 0) : index; break;
    case Node::IdRecord: slot.record = on; break;
    case Node::IdAlert: slot.beep = on; break;
    case Node::DimmerLight: g.dimmerLight = index; break;
    case Node::DimmerTime: g.dimmerTime = index; break;
    case Node::ScreenMask: g.screenMask = on; break;
    case Node::KeyBeep: g.keyBeep = on; break;
    case Node::EnterLock: g.enterLock = on; break;
    case Node::DataSkip: g.dataSkip = on; break;
    case Node::SqMode: g.sqMode = index; break;
    case Node::ApcoCard: g.apcoCard = index; break;
    case Node::Clone: g.clone = index; break;
    case Node::BaudRate: mem_.baud = baudRates(mem_.model)[static_cast<std::size_t>(index)]; break;
    case Node::SearchMode: range.mode = kSearchModes[index]; break;
    case Node::SearchStep: range.step = searchSteps(mem_.model)[static_cast<std::size_t>(index)]; break;
    default: break;
    }
}

void Menu::enter(const Entry& entry)
{
    Frame next = stack_.back();
    next.node = entry.node;
    next.cursor = 0;
    next.entry.clear();
    next.walk = 0;
    if (stack_.back().node == Node::BankSelect) next.bank = entry.index;
    if (stack_.back().node == Node::RangeSelect) next.range = entry.index;
    if (isOption(next.node)) next.cursor = currentOption(next);
    stack_.push_back(next);
}

void Menu::press(MenuKey key, int digit)
{
    if (stack_.empty()) return;
    Frame& frame = stack_.back();
    if (key == MenuKey::Back) {
        back();
        return;
    }
    if (isList(frame.node)) {
        const auto list = entries(frame);
        const int n = static_cast<int>(list.size());
        if (n == 0) return;
        frame.cursor = std::clamp(frame.cursor, 0, n - 1);
        switch (key) {
        case MenuKey::Digit:
            for (const Entry& e : list)
                if (e.digit == digit) {
                    enter(e);
                    return;
                }
            return;
        case MenuKey::Up: frame.cursor = (frame.cursor + n - 1) % n; return;
        case MenuKey::Down: frame.cursor = (frame.cursor + 1) % n; return;
        case MenuKey::Enter: enter(list[static_cast<std::size_t>(frame.cursor)]); return;
        default: return;
        }
    }
    if (isOption(frame.node)) {
        const auto list = options(frame);
        const int n = static_cast<int>(list.size());
        switch (key) {
        case MenuKey::Digit:
            for (int i = 0; i < n; ++i)
                if (optionDigit(list[static_cast<std::size_t>(i)], i) == digit) {
                    const Frame chosen = frame;
                    back();
                    applyOption(chosen, i);
                    return;
                }
            return;
        case MenuKey::Up: frame.cursor = (frame.cursor + n - 1) % n; return;
        case MenuKey::Down: frame.cursor = (frame.cursor + 1) % n; return;
        case MenuKey::Enter: {
            const Frame chosen = frame;
            back();
            applyOption(chosen, chosen.cursor);
            return;
        }
        default: return;
        }
    }
    switch (frame.node) {
    case Node::IdEntry: {
        // "l.s": a list digit, the point, a slot digit; a second point starts again.
        const auto point = frame.entry.find('.');
        if (key == MenuKey::Digit) {
            if (point == std::string::npos)
                frame.entry = number(digit);
            else
                frame.entry = frame.entry.substr(0, point + 1) + number(digit);
        } else if (key == MenuKey::Point) {
            if (point == std::string::npos && !frame.entry.empty())
                frame.entry += '.';
            else
                frame.entry.clear();
        } else if (key == MenuKey::Enter && frame.entry.size() == 3) {
            Frame slot = frame;
            slot.node = Node::IdSlot;
            slot.list = (frame.entry[0] - '0' + 9) % 10;  // digit 1 is list A, 0 the tenth
            slot.slot = frame.entry[2] - '0';
            slot.cursor = 0;
            slot.entry.clear();
            stack_.push_back(slot);
        }
        return;
    }
    case Node::BaseWalk:
        if (key == MenuKey::Enter && ++frame.walk >= 9) back();
        return;
    case Node::SearchLimits:
    case Node::SearchTag:
        if (key == MenuKey::Enter) back();
        return;
    default:
        return;
    }
}

std::string Menu::title(std::size_t depth) const
{
    // The nearest list that names a part of the menu.
    for (std::size_t i = depth + 1; i-- > 0;) {
        const Frame& f = stack_[i];
        switch (f.node) {
        case Node::Top: return "MENU";
        case Node::RangeSelect: return "SEARCH";
        case Node::RangeMenu: return "SEARCH RANGE " + number(f.range + 1);
        case Node::TrunkMenu: case Node::BankSelect: return "TRUNK";
        case Node::TrunkBank: case Node::IdEntry: case Node::IdSlot: return "TRUNK BANK " + number(f.bank + 1);
        case Node::SystemOption: case Node::Light: return "SYSTEM OPTION";
        default: break;
        }
    }
    return "";
}

std::string Menu::name(const Frame& frame) const
{
    switch (frame.node) {
    case Node::RangeSelect: return "SELECT RANGE";
    case Node::BankSelect: return "SELECT BANK";
    case Node::TrunkBank: return systemName(mem_.trunk[frame.bank]);
    case Node::IdEntry: return "ID LIST";
    case Node::IdSlot: {
        const IdSlot& slot = mem_.ids[frame.bank][frame.list].idSlots[frame.slot];
        return "ID " + number(frame.list + 1) + "-" + number(frame.slot == 0 ? 10 : frame.slot) + " " +
               (slot.empty() ? std::string("------") : slot.id);
    }
    case Node::Light: return "LIGHT";
    case Node::SearchLimits: return "LIMIT";
    case Node::SearchTag: return "ALPHA TAG";
    case Node::TrunkDelay: return "DELAY";
    case Node::TrunkRecord: case Node::IdRecord: return "RECORD";
    case Node::ActivityId: return "ACTIVITY ID";
    case Node::Icall: return "ICALL";
    case Node::StatusBit: return "STATUS BIT";
    case Node::EmergencyAlt: return "EMERGENCY ALT";
    case Node::EndCode: return "END CODE";
    case Node::IdFormat: return "ID FORMAT";
    case Node::ControlChannel: return "CONTROL CH";
    case Node::IdAlert: return "ALERT";
    case Node::DimmerLight: return "DIMMER";
    case Node::DimmerTime: return "DIMMER TIME";
    case Node::ScreenMask: return "SCREEN MASK";
    case Node::KeyBeep: return "KEY BEEP";
    case Node::EnterLock: return "ENTER LOCK";
    case Node::BaudRate: return "BAUD RATE";
    case Node::Clone: return "CLONE";
    case Node::DataSkip: return "DATA SKIP";
    case Node::SqMode: return "SQ MODE";
    case Node::ApcoCard: return "APCO CARD";
    case Node::SearchStep: return "STEP";
    case Node::SearchMode: return "MODE";
    default: return "";
    }
}

Screen Menu::screen() const
{
    Screen s;
    s.attr.fill(std::string(16, ' '));
    s.text.fill(std::string(16, ' '));
    if (stack_.empty()) return s;
    const Frame& frame = stack_.back();
    s.text[0] = lcdText(title(stack_.size() - 1));
    s.text[1] = lcdText(name(frame));

    std::vector<std::string> rows;
    int cursor = frame.cursor;
    if (isList(frame.node)) {
        for (const Entry& e : entries(frame)) rows.push_back(e.label);
    } else if (isOption(frame.node)) {
        rows = options(frame);
    } else if (frame.node == Node::IdEntry) {
        s.text[2] = lcdText("LIST.ID " + frame.entry);
    } else if (frame.node == Node::SearchLimits) {
        const SearchRange& range = mem_.search[frame.range];
        s.text[2] = lcdText("L " + freqMhz(range.lower));
        s.text[3] = lcdText("U " + freqMhz(range.upper));
    } else if (frame.node == Node::SearchTag) {
        s.text[2] = lcdText(mem_.search[frame.range].tag);
    } else if (frame.node == Node::BaseWalk) {
        // Base Config 1 to 3, each as frequency, step, offset; the value on line 2.
        const BaseConfig& base = mem_.trunk[frame.bank].base[static_cast<std::size_t>(frame.walk / 3)];
        const int part = frame.walk % 3;
        static constexpr const char* parts[] = {" FREQ", " STEP", " OFFSET"};
        s.text[0] = lcdText("BASE " + number(frame.walk / 3 + 1) + parts[part]);
        if (part == 0) {
            s.text[1] = lcdText(freqMhz(base.freq));
        } else if (part == 1) {
            const std::string tenths = number(base.step % 10);
            std::string whole = number(base.step / 10);
            whole.insert(0, whole.size() < 3 ? 3 - whole.size() : 0, '0');
            s.text[1] = lcdText(whole + "." + tenths);
        } else {
            std::string offset = number(base.offset);
            offset.insert(0, offset.size() < 3 ? 3 - offset.size() : 0, '0');
            s.text[1] = lcdText(offset);
        }
    }
    if (!rows.empty()) {
        const int n = static_cast<int>(rows.size());
        cursor = std::clamp(cursor, 0, n - 1);
        const int top = n <= 2 ? 0 : cursor;
        for (int line = 0; line < 2; ++line) {
            const int row = top + line;
            if (row >= n) break;
            s.text[2 + line] = lcdText(rows[static_cast<std::size_t>(row)]);
            if (row == cursor) s.attr[2 + line] = std::string(16, '*');
        }
        s.selected = rows[static_cast<std::size_t>(cursor)];
    }
    return s;
}

} // namespace kestra::sim
