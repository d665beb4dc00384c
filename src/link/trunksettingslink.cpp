#include "link/trunksettingslink.h"

#include "link/menuwalk.h"
#include "link/vocabulary.h"

#include "core/cellcodes.h"
#include "core/text.h"
#include "core/trunkcodes.h"

#include <algorithm>
#include <cstdio>

namespace kestra {

namespace {

// The items of a bank's trunk menu, in the order of the menu positions (the
// order a send takes them in).
enum class Item { Delay, Record, ActivityId, Icall, StatusBit, EmergencyAlt, EndCode, IdFormat };

// Where an item stands in the menu of a family and how it is read.
struct Place {
    int field;         // of trunkfields
    int digit;         // the digit behind MENU 2 2 bank; -1: reached by UP from the top
    int move;          // for an item reached by UP: 0 one press, 1 two
    int line;          // MenuWalk line read for the value
    const char* name;  // how line 2 of the display names the item
};

// Entries of a bank menu a repair looks through before it gives up.
constexpr int kListSteps = 12;

bool edacs(int type)
{
    return type == trunktype::EdacsWide || type == trunktype::EdacsNarrow || type == trunktype::EdacsSCT;
}
bool motorola(int type) { return type >= trunktype::Type2_800 && type <= trunktype::Type2_VHF; }
bool controlChannel(int type) { return type >= trunktype::Type2_800 && type <= trunktype::Type2_900; }

Place placeOf(Item item, int type, int bc785d)
{
    const bool bc7 = bc785d == 1;
    switch (item) {
    case Item::Delay:
        return {5, 4, 0, bc7 && type != trunktype::LT ? MenuWalk::All : MenuWalk::Line3, "DELAY"};
    case Item::Record: return {6, 5, 0, MenuWalk::Line3, "RECORD"};
    case Item::ActivityId: return {8, bc7 ? 8 : 7, 0, MenuWalk::Line3, "ACTIVITY ID"};
    case Item::Icall: return {4, bc7 ? 9 : 8, 0, MenuWalk::All, "ICALL"};
    case Item::StatusBit: return {1, bc7 ? 0 : 9, 0, MenuWalk::Line3, "STATUS BIT"};
    case Item::EmergencyAlt: return {9, bc7 ? 0 : 9, 0, MenuWalk::Line3, "EMERGENCY ALT"};
    case Item::EndCode: return {2, bc7 ? -1 : 0, controlChannel(type) ? 1 : 0, MenuWalk::Line3, "END CODE"};
    case Item::IdFormat: return {1, bc7 ? -1 : 0, 0, MenuWalk::Line4, "ID FORMAT"};
    }
    return {};
}

// The items of a type in the order of reading.
std::vector<Item> itemsOf(int type, int bc785d)
{
    const bool bc7 = bc785d == 1;
    std::vector<Item> items;
    if (motorola(type)) {
        items = {Item::StatusBit, Item::EndCode, Item::ActivityId, Item::Icall, Item::Delay};
        if (bc7) items.push_back(Item::Record);
    } else if (edacs(type)) {
        items = {Item::IdFormat, Item::Icall, Item::Delay};
        if (bc7) items.push_back(Item::Record);
        items.push_back(Item::ActivityId);
        items.push_back(Item::EmergencyAlt);
    } else if (type == trunktype::LT) {
        items = {Item::Delay, Item::ActivityId};
        if (bc7) items.push_back(Item::Record);
    }
    return items;
}

bool onOffItem(Item item)
{
    return item == Item::Record || item == Item::ActivityId || item == Item::StatusBit || item == Item::EmergencyAlt;
}

// The value of an item as the display shows it; nothing leaves the field as it is.
std::optional<std::string> valueShown(Item item, std::string_view text, int type, int bc785d)
{
    if (onOffItem(item)) return MenuWalk::showsShort(text, "[1:ON") ? "1" : "0";
    switch (item) {
    case Item::Delay:
        if (bc785d == 0) return MenuWalk::showsShort(text, "[1:ON") ? (edacs(type) ? "1" : "2") : "0";
        if (type == trunktype::LT) {
            std::string value = "0";
            static constexpr const char* openings[] = {"[1:N", "[2:1", "[3:2", "[4:4", "[5:I", "[6:-", "[7:-", "[8:-"};
            for (int i = 0; i < 8; ++i)
                if (MenuWalk::showsShort(text, openings[i])) value = std::to_string(i);
            return value;
        } else {
            std::string value = "0";
            for (std::size_t i = 0; i < wire::menu::kDelays.size(); ++i)
                if (MenuWalk::shows(text, wire::menu::kDelays[i])) value = std::to_string(i);
            return value;
        }
    case Item::Icall:
        if (MenuWalk::shows(text, wire::menu::kOff)) return "0";
        if (MenuWalk::shows(text, wire::menu::kOn)) return "1";
        if (MenuWalk::shows(text, wire::menu::kOnly)) return "2";
        return std::nullopt;
    case Item::EndCode: return MenuWalk::showsShort(text, "[1:DETECT") ? "1" : "0";
    case Item::IdFormat: return MenuWalk::showsShort(text, "[2:DECIMAL") ? "1" : "0";
    default: return std::nullopt;
    }
}

// The digit that picks a field's value in the item's list; nothing sends nothing.
std::optional<int> valueDigit(Item item, const std::string& stored, int bc785d)
{
    const std::string v = trim(stored);
    const auto pick = [&](std::initializer_list<std::pair<const char*, int>> rows) -> std::optional<int> {
        for (const auto& [value, digit] : rows)
            if (v == value) return digit;
        return std::nullopt;
    };
    if (onOffItem(item)) return pick({{"0", 2}, {"1", 1}});
    switch (item) {
    case Item::Delay:
        if (bc785d == 0) return pick({{"0", 2}, {"2", 1}});
        return pick({{"0", 1}, {"1", 2}, {"2", 3}, {"3", 4}, {"4", 5}, {"5", 6}, {"6", 7}, {"7", 8}});
    case Item::Icall: return pick({{"0", 2}, {"1", 1}, {"2", 3}});
    case Item::EndCode: return pick({{"0", 2}, {"1", 1}});
    case Item::IdFormat: return pick({{"0", 1}, {"1", 2}});
    default: return std::nullopt;
    }
}

bool allDigitsAt(std::string_view text, std::initializer_list<std::size_t> at)
{
    return std::all_of(at.begin(), at.end(), [&](std::size_t i) { return i < text.size() && text[i] >= '0' && text[i] <= '9'; });
}

// The three values of a Base Config as the walk shows them on line 2:
// "0406.1250", "012.5", "380".
bool baseValueForm(int part, std::string_view v)
{
    if (part == 0) return v.size() == 9 && v[4] == '.' && allDigitsAt(v, {0, 1, 2, 3, 5, 6, 7, 8});
    if (part == 1) return v.size() == 5 && v[3] == '.' && allDigitsAt(v, {0, 1, 2, 4});
    return v.size() == 3 && allDigitsAt(v, {0, 1, 2});
}

constexpr const char* kZeroFrequency = "0000.0000";

std::string bankText(int bank) { return std::to_string(bank + 1); }

} // namespace

TrunkSettingsLink::TrunkSettingsLink(ExchangeEngine& engine, Document& doc) : engine_(engine), doc_(doc) {}

MenuWalk TrunkSettingsLink::walker()
{
    return MenuWalk(engine_.port(), [this](double s) { return engine_.wait(s); }, doc_.model.bc785d,
                    engine_.commdelay());
}

int TrunkSettingsLink::typeOf(int bank) const
{
    return static_cast<int>(IntVal(doc_.trunkset[static_cast<std::size_t>(bank)].trunktype));
}

void TrunkSettingsLink::fail(int bank, const std::string& why)
{
    if (std::find(failed_.begin(), failed_.end(), bank) == failed_.end()) failed_.push_back(bank);
    message_ = why;
    engine_.status.text3 = "Bank " + bankText(bank) + ": " + why;
}

std::string TrunkSettingsLink::failedText(const char* what) const
{
    std::string banks;
    for (int b : failed_) banks += (banks.empty() ? "" : ", ") + bankText(b);
    return "Trunk settings of bank " + banks + " not " + what + " completely: " + message_;
}

// MENU 2 2 and the bank: the bank's trunk menu.
std::vector<std::string> TrunkSettingsLink::bankMenuKeys(const MenuWalk& walk, int bank) const
{
    return {walk.exitKey(), MenuWalk::menuKey(), wire::digitKey(2), wire::digitKey(2), MenuWalk::numberKey(bank + 1)};
}

// Opens an item's list: its digit, or UP from the top of the bank menu and E.
// Then line 2 must name it (the whole display of an item read that way holds
// line 2 already); when it does not, the bank menu is opened anew and looked
// through by name. `shown` receives the whole display when that was read.
TrunkSettingsLink::Walked TrunkSettingsLink::openItem(MenuWalk& walk, int bank, int placeDigit, int move,
                                                      const char* name, bool wholeDisplay, std::string& shown)
{
    std::vector<std::string> keys = bankMenuKeys(walk, bank);
    if (placeDigit >= 0) {
        keys.push_back(wire::digitKey(placeDigit));
    } else {
        keys.push_back(walk.upKey());
        if (move == 1) keys.push_back(walk.upKey());
        keys.push_back(MenuWalk::enterKey());
    }
    if (!walk.press(keys)) return Walked::Stopped;
    shown = wholeDisplay ? walk.look(MenuWalk::All) : std::string();
    if (walk.onItem(name, shown)) return Walked::Done;
    ++repairs_;
    if (!walk.press(bankMenuKeys(walk, bank))) return Walked::Stopped;
    if (walk.enterEntry(name, kListSteps)) {
        shown = wholeDisplay ? walk.look(MenuWalk::All) : std::string();
        if (walk.onItem(name, shown)) return Walked::Done;
    }
    if (engine_.stopflag) return Walked::Stopped;
    walk.exit();
    fail(bank, std::string("the scanner's menu did not show ") + name);
    return Walked::Lost;
}

bool TrunkSettingsLink::read(const std::vector<int>& banks)
{
    failed_.clear();
    message_.clear();
    const int bc785d = doc_.model.bc785d;
    SerialPort& port = engine_.port();
    port.setRThreshold(0);
    for (int bank : banks) {
        const int type = typeOf(bank);
        if (type < 1 || type > 9) continue;  // not a trunk bank: nothing to read
        TrunkSystem work = doc_.trunkset[static_cast<std::size_t>(bank)];
        engine_.sendline(wire::trunkBank(bank));
        if (!engine_.wait(engine_.commdelay())) return false;
        port.input();
        engine_.status.text3 = "Reading Trunk Settings Bank:" + bankText(bank);

        if (controlChannel(type)) {
            engine_.sendline(wire::readTrunkChannelOption(bank));
            if (!engine_.wait(engine_.commdelay())) return false;
            const std::string reply = engine_.collect(1);
            if (contains(reply, "TCF")) work.trunkfields[0] = "0";
            else if (contains(reply, "TCN") && !contains(reply, "P")) work.trunkfields[0] = "1";
            for (int p = 1; p <= 4; ++p)
                if (contains(reply, "P" + std::to_string(p))) work.trunkfields[0] = std::to_string(p);
        }

        MenuWalk walk = walker();
        bool whole = true;
        for (Item item : itemsOf(type, bc785d)) {
            const Place place = placeOf(item, type, bc785d);
            std::string shown;
            const Walked opened =
                openItem(walk, bank, place.digit, place.move, place.name, place.line == MenuWalk::All, shown);
            if (opened == Walked::Stopped) return false;
            if (opened == Walked::Lost) {
                whole = false;
                break;
            }
            const std::string text = place.line == MenuWalk::All ? shown : walk.look(place.line);
            if (!walk.exit()) return false;
            if (const auto value = valueShown(item, text, type, bc785d)) work.trunkfields[place.field] = *value;
        }
        // A bank is taken whole or not at all: a value from the wrong item never lands.
        if (whole) doc_.trunkset[static_cast<std::size_t>(bank)] = work;
    }
    engine_.status.text3 = "Reading Trunk Settings Ok";
    for (int bank : banks) {
        const int type = typeOf(bank);
        if (type != trunktype::Type2_UHF && type != trunktype::Type2_VHF) continue;
        engine_.status.text3 = "Reading Base/Offset: " + bankText(bank);
        if (!readbase(bank) && engine_.stopflag) return false;
    }
    for (int bank : banks) {
        if (typeOf(bank) != trunktype::Type1) continue;
        engine_.status.text3 = "Reading fleetmap: " + bankText(bank);
        if (!readfleet(bank)) return false;
    }
    MenuWalk walk = walker();
    if (!walk.exit()) return false;
    if (bc785d == 1 && !walk.press({wire::key(1)})) return false;
    if (!failed_.empty()) {
        engine_.status.text3 = failedText("read");
        return false;
    }
    return true;
}

bool TrunkSettingsLink::readbase(int bank)
{
    MenuWalk walk = walker();
    std::array<std::array<std::string, 8>, 3> blocks = doc_.trunkset[static_cast<std::size_t>(bank)].trunkblocks;
    if (!walk.press(bankMenuKeys(walk, bank))) return false;
    // Each press of E shows the next value on line 2: frequency, step and
    // offset of Base Config 1, then of 2 and 3.
    for (int slot = 0; slot < 3; ++slot) {
        bool zero = false;
        for (int part = 0; part < 3; ++part) {
            if (zero && slot == 2) break;  // nothing further to read
            if (!walk.press({MenuWalk::enterKey()})) return false;
            if (zero) continue;            // past the step and offset of an empty config
            std::string value = MenuWalk::lineText(walk.look(MenuWalk::Line2), 2).value_or("");
            if (!baseValueForm(part, value) && slot == 0 && part == 0) {
                // The first press opened something else: find the entry by name.
                ++repairs_;
                if (!walk.press(bankMenuKeys(walk, bank))) return false;
                if (walk.enterEntry("BASE/OFFSET", kListSteps))
                    value = MenuWalk::lineText(walk.look(MenuWalk::Line2), 2).value_or("");
            }
            if (!baseValueForm(part, value)) {
                if (engine_.stopflag) return false;
                walk.exit();
                fail(bank, "the scanner's menu did not show the Base Configs");
                return false;
            }
            blocks[slot][part] = value;
            if (part == 0 && value == kZeroFrequency) {
                zero = true;
                blocks[slot][1].clear();
                blocks[slot][2].clear();
            }
        }
    }
    if (!walk.exit()) return false;
    doc_.trunkset[static_cast<std::size_t>(bank)].trunkblocks = blocks;
    return true;
}

bool TrunkSettingsLink::readfleet(int bank)
{
    TrunkSystem& system = doc_.trunkset[static_cast<std::size_t>(bank)];
    system.trunkfields[7] = "0";
    auto& codes = system.trunkblocks[0];
    for (int n = 0; n < 8; ++n) {
        engine_.port().input();
        const std::string command = "FB " + std::string(1, wire::bankLetter(bank)) + " " + std::to_string(n);
        engine_.sendline(command);
        if (!engine_.wait(engine_.commdelay())) return false;
        const std::string reply = engine_.collect(1);
        // "FB A 3 04": the code behind the command and a blank.
        const auto at = reply.find(command + " ");
        if (at == std::string::npos) continue;
        const std::string code = reply.substr(at + command.size() + 1, 2);
        if (allDigitsAt(code, {0, 1})) codes[n] = code;
    }
    const auto& presets = fleetmapPresets();
    for (std::size_t p = 0; p < presets.size(); ++p) {
        bool same = true;
        for (int n = 0; n < 8 && same; ++n)
            same = !trim(codes[n]).empty() && IntVal(codes[n]) == presets[p][static_cast<std::size_t>(n)];
        if (same) {
            system.trunkfields[7] = std::to_string(p + 1);
            break;
        }
    }
    return true;
}

bool TrunkSettingsLink::sendfleet(int bank)
{
    auto& codes = doc_.trunkset[static_cast<std::size_t>(bank)].trunkblocks[0];
    std::string line = "FB " + std::string(1, wire::bankLetter(bank));
    for (int n = 0; n < 8; ++n) {
        std::string code = trim(codes[n]);
        if (code.size() == 1) codes[n] = code = "0" + code;
        line += " " + (code.empty() ? std::string("00") : code);
        if (fleetBlockFillsRest(n, static_cast<int>(IntVal(code)))) break;
    }
    MenuWalk walk = walker();
    const bool ok = walk.press({line});
    engine_.port().input();
    return ok;
}

// The TR lines of a bank: its type, and for Type 2 UHF and VHF one line for
// each Base Config. The frequency goes back into the store in its padded form.
std::vector<std::string> TrunkSettingsLink::typeLines(int bank)
{
    const int type = typeOf(bank);
    if (type != trunktype::Type2_UHF && type != trunktype::Type2_VHF)
        return {wire::setTrunkType(bank, std::to_string(wire::scannerTrunkType(type)))};
    std::vector<std::string> lines;
    auto& blocks = doc_.trunkset[static_cast<std::size_t>(bank)].trunkblocks;
    for (int j = 0; j < 3; ++j) {
        auto& items = blocks[static_cast<std::size_t>(j)];
        items[0] = padfreq(items[0], 8, 5);
        const std::string slot = " " + std::to_string(j + 1);
        if (type == trunktype::Type2_UHF && items[0] == kZeroFrequency) {
            lines.push_back(wire::setTrunkType(bank, "4 00000000 0000 000" + slot));
            continue;
        }
        std::string step = padfreq(items[1], 4, 4);
        step.erase(std::remove(step.begin(), step.end(), '.'), step.end());
        char offset[8];
        std::snprintf(offset, sizeof offset, "%03d", static_cast<int>(std::clamp(IntVal(items[2]), 0LL, 999LL)));
        lines.push_back(wire::setTrunkType(bank, std::to_string(type) + " " + wire::freq8(items[0]) + " " + step + " " +
                                                     offset + slot));
    }
    return lines;
}

bool TrunkSettingsLink::send(const std::vector<int>& banks)
{
    failed_.clear();
    message_.clear();
    const int bc785d = doc_.model.bc785d;
    SerialPort& port = engine_.port();
    port.setRThreshold(0);
    for (int bank : banks) {
        const int type = typeOf(bank);
        if (type < 1 || type > 9) continue;  // not a trunk bank: nothing to send
        const std::string head = " Sending Trunk settings bank: " + bankText(bank) + " - ";
        const char letter = wire::bankLetter(bank);
        MenuWalk walk = walker();

        engine_.status.text3 = head + "trunk type";
        if (bc785d == 1 && !walk.press({wire::selectChannel(1)})) return false;
        if (!walk.press({walk.exitKey(), wire::trunkBank(bank)})) return false;
        port.input();
        if (!walk.press(typeLines(bank))) return false;
        if (bc785d == 0 && !walk.press({std::string("TBN") + letter})) return false;
        if (type == trunktype::Type1) {
            engine_.status.text3 = head + "fleetmap";
            if (!sendfleet(bank)) return false;
        }

        engine_.status.text3 = head + "menu settings";
        auto items = itemsOf(type, bc785d);
        std::sort(items.begin(), items.end());
        bool whole = true;
        for (Item item : items) {
            const Place place = placeOf(item, type, bc785d);
            const auto digit = valueDigit(item, doc_.trunkset[static_cast<std::size_t>(bank)].trunkfields[place.field], bc785d);
            if (!digit) continue;
            if (!engine_.wait(walk.keydelay())) return false;
            std::string shown;
            const Walked opened = openItem(walk, bank, place.digit, place.move, place.name, false, shown);
            if (opened == Walked::Stopped) return false;
            if (opened == Walked::Lost) {
                whole = false;
                break;
            }
            if (!walk.press({wire::digitKey(*digit), walk.exitKey()})) return false;
        }
        port.input();
        if (!whole) continue;  // the bank stays unfinished; the next one follows

        if (controlChannel(type)) {
            engine_.status.text3 = head + "control channel";
            const std::string stored = trim(doc_.trunkset[static_cast<std::size_t>(bank)].trunkfields[0]);
            const long long plan = IntVal(stored);
            std::string line;
            if (stored == "0") line = std::string("TCF ") + letter;
            else if (type == trunktype::Type2_900 && plan >= 1) line = std::string("TCN ") + letter;
            else if (plan >= 1 && plan <= 4 && stored.size() == 1) line = std::string("TCN ") + letter + " P" + stored;
            if (!line.empty() && !walk.press({line})) return false;
        }
        if (!walk.exit()) return false;
        port.input();
    }
    if (!failed_.empty()) {
        engine_.status.text3 = failedText("written");
        return false;
    }
    return true;
}

} // namespace kestra
