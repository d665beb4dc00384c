#include "trunk/trunkconfig.h"

#include "core/cellcodes.h"
#include "core/text.h"

#include <cctype>

namespace kestra {

namespace {

// The list entry a stored value stands for: a whole number within the list,
// else no selection.
int entryOf(const std::string& value, int count)
{
    const std::string text = trim(value);
    if (text.empty()) return -1;
    const double v = Val(text);
    const long long whole = IntVal(text);
    if (v != static_cast<double>(whole) || whole < 0 || whole >= count) return -1;
    return static_cast<int>(whole);
}

bool ticked(const std::string& value) { return trim(value) == "1"; }
std::string flag(bool on) { return on ? "1" : "0"; }
std::string number(int index) { return std::to_string(index); }

// A block holds the size code `code` (an empty box holds none).
bool holdsCode(const std::string& block, int code) { return !trim(block).empty() && Val(block) == code; }

// The fleetmap's eight size codes as a scanner takes them: 14 fills the map,
// 12 takes two blocks from an even block, 13 four blocks from block 0 or 4,
// and nothing is above 14. The steps run in this order.
void normaliseFleetBlocks(std::array<std::string, 8>& blocks)
{
    if (holdsCode(blocks[0], 14))
        for (int n = 1; n < 8; ++n) blocks[n] = "14";
    for (int n = 0; n < 8; n += 2)
        if (holdsCode(blocks[n], 12)) blocks[n + 1] = "12";
    for (int n : {0, 4})
        if (holdsCode(blocks[n], 13))
            for (int k = 1; k <= 3; ++k) blocks[n + k] = "13";
    for (auto& block : blocks)
        if (Val(block) > 14) block = "14";
}

// The Base Configs of a Type 2 UHF or VHF bank into its blocks: a frequency
// pulled into the band, a step and an offset filled in or pulled into range,
// and no Base Config 3 without a Base Config 2.
void saveBaseConfigs(TrunkSystem& system, std::array<BaseConfigBoxes, 3>& configs, int type)
{
    const double low = type == trunktype::Type2_VHF ? 136 : 406;
    const double high = type == trunktype::Type2_VHF ? 174 : 512;
    if (Val(configs[1].frequency) == 0) configs[2].frequency.clear();
    for (int s = 0; s < 3; ++s) {
        BaseConfigBoxes& c = configs[s];
        auto& items = system.trunkblocks[s];
        const double v = Val(c.frequency);
        if (v > 0) {
            if (v < low) c.frequency = number(static_cast<int>(low));
            if (v > high) c.frequency = number(static_cast<int>(high));
            c.frequency = padfreq(c.frequency, 8, 5);
        } else {
            c.step.clear();
            c.offset.clear();
        }
        items[0] = c.frequency;

        const bool frequencySet = Val(c.frequency) > 0;
        if (frequencySet && Val(c.step) == 0) c.step = "12.5";
        if (Val(c.step) > 100) c.step = "100";
        // Three places before the point and one behind it, as the scanner holds a step.
        if (Val(c.step) > 0) c.step = padfreq(c.step, 4, 4);
        items[1] = c.step;

        if (frequencySet && Val(c.step) > 0 && Val(c.offset) == 0) c.offset = "380";
        const double offset = Val(c.offset);
        if (offset > 0 && offset < 380) c.offset = "380";
        if (offset > 758) c.offset = "758";
        items[2] = c.offset;
    }
}

} // namespace

const std::array<const char*, kTrunkTypeCount>& trunkTypeList()
{
    static const std::array<const char*, kTrunkTypeCount> list = {
        "Unknown",
        "Motorola Type 2 - 800 MHz",
        "Motorola Type 1 ",
        "Motorola Type 2 - 900 MHz",
        "Motorola Type 2 - UHF",
        "Motorola Type 2 - VHF",
        "Edacs Wide",
        "Edacs Narrow",
        "LT",
        "Edacs SCT",
    };
    return list;
}

TrunkGroup trunkGroupOf(int type)
{
    switch (type) {
    case trunktype::Type2_800:
    case trunktype::Type1:
    case trunktype::Type2_900: return TrunkGroup::Motorola;
    case trunktype::Type2_UHF:
    case trunktype::Type2_VHF: return TrunkGroup::BaseConfig;
    case trunktype::EdacsWide:
    case trunktype::EdacsNarrow: return TrunkGroup::Edacs;
    case trunktype::LT: return TrunkGroup::Lt;
    default: return TrunkGroup::None;
    }
}

const char* trunkGroupCaption(TrunkGroup group)
{
    switch (group) {
    case TrunkGroup::Motorola: return "Settings (T1 T2-800 T2-900):";
    case TrunkGroup::BaseConfig: return "Settings (T2 VHF T2-UHF)::";
    case TrunkGroup::Edacs: return "EDACS:";
    case TrunkGroup::Lt: return "LT:";
    case TrunkGroup::None: break;
    }
    return "";
}

TrunkArrangement trunkArrangementOf(int type)
{
    TrunkArrangement a;
    a.group = trunkGroupOf(type);
    a.controlChannelList = type == trunktype::Type2_800 || type == trunktype::Type1;
    a.controlChannelOnly = type == trunktype::Type2_900;
    a.fleetmap = type == trunktype::Type1;
    return a;
}

const std::vector<std::string>& controlChannelEntries()
{
    static const std::vector<std::string> list = {"Off", "Plan 1", "Plan 2", "Plan 3", "Plan 4"};
    return list;
}

const std::vector<std::string>& endCodeEntries()
{
    static const std::vector<std::string> list = {"Ignore", "Detect"};
    return list;
}

const std::vector<std::string>& icallEntries()
{
    static const std::vector<std::string> list = {"Off", "On", "Only"};
    return list;
}

const std::vector<std::string>& idFormatEntries()
{
    static const std::vector<std::string> list = {"AFS", "Decimal"};
    return list;
}

const std::vector<std::string>& trunkDelayEntries(int bc785d)
{
    static const std::vector<std::string> longList = {"None", "1", "2", "4", "Inf.", "-2", "-5", "-10"};
    static const std::vector<std::string> shortList = {"None", "2"};
    return bc785d == 1 ? longList : shortList;
}

const std::vector<std::string>& fleetmapEntries()
{
    static const std::vector<std::string> list = [] {
        std::vector<std::string> entries{"Custom"};
        for (int n = 1; n <= 16; ++n) entries.push_back("Preset " + std::to_string(n));
        entries.push_back("None");
        return entries;
    }();
    return list;
}

int trunkTypeOf(const TrunkSystem& system) { return static_cast<int>(IntVal(system.trunktype)); }

TrunkForm loadsettings(TrunkSystem& system, int bc785d)
{
    TrunkForm form;
    const int type = trunkTypeOf(system);
    const TrunkGroup group = trunkGroupOf(type);
    if (group == TrunkGroup::None) return form;
    auto& f = system.trunkfields;

    const auto& delays = trunkDelayEntries(bc785d);
    if (bc785d != 1 && Val(f[5]) > 0) f[5] = "1";
    form.delay = entryOf(f[5], static_cast<int>(delays.size()));
    form.record = ticked(f[6]);
    form.activityId = ticked(f[8]);
    if (group == TrunkGroup::Lt) return form;
    form.icall = entryOf(f[4], static_cast<int>(icallEntries().size()));

    if (group == TrunkGroup::Edacs) {
        form.emergencyAlt = ticked(f[9]);
        form.idFormat = entryOf(f[1], static_cast<int>(idFormatEntries().size()));
        return form;
    }
    form.statusBit = ticked(f[1]);
    form.endCode = entryOf(f[2], static_cast<int>(endCodeEntries().size()));

    if (group == TrunkGroup::BaseConfig) {
        for (int s = 0; s < 3; ++s) {
            const auto& items = system.trunkblocks[s];
            form.baseConfigs[s] = {items[0], items[1], items[2]};
        }
        return form;
    }
    // Types 1 to 3.
    form.controlChannel = entryOf(f[0], static_cast<int>(controlChannelEntries().size()));
    form.controlChannelOnly = trim(f[0]) == "1" || trim(f[0]) == "5";
    form.fleetmap = kFleetmapNone;
    if (!trim(f[7]).empty() && Val(f[7]) == 0) {
        form.fleetmap = kFleetmapCustom;
    } else {
        const int preset = entryOf(f[7], 17);
        if (preset >= 1) form.fleetmap = preset;
    }
    form.fleetBlocks = system.trunkblocks[0];
    return form;
}

void savesettings(TrunkSystem& system, TrunkForm& form)
{
    const int type = trunkTypeOf(system);
    const TrunkArrangement arrangement = trunkArrangementOf(type);
    auto& f = system.trunkfields;
    switch (arrangement.group) {
    case TrunkGroup::None: return;
    case TrunkGroup::Motorola:
        f[5] = number(form.delay);
        f[6] = flag(form.record);
        f[4] = number(form.icall);
        f[1] = flag(form.statusBit);
        f[2] = number(form.endCode);
        f[0] = flag(arrangement.controlChannelOnly && form.controlChannelOnly);
        if (arrangement.controlChannelList) f[0] = number(form.controlChannel);
        f[8] = flag(form.activityId);
        f[7] = number(form.fleetmap);
        normaliseFleetBlocks(form.fleetBlocks);
        system.trunkblocks[0] = form.fleetBlocks;
        form.controlChannel = form.endCode = form.icall = form.delay = form.fleetmap = -1;
        return;
    case TrunkGroup::BaseConfig:
        f[5] = number(form.delay);
        f[6] = flag(form.record);
        f[4] = number(form.icall);
        f[1] = flag(form.statusBit);
        f[2] = number(form.endCode);
        f[8] = flag(form.activityId);
        saveBaseConfigs(system, form.baseConfigs, type);
        form.endCode = form.icall = form.delay = -1;
        return;
    case TrunkGroup::Edacs:
        f[5] = number(form.delay);
        f[6] = flag(form.record);
        f[4] = number(form.icall);
        // Without a choice the ID format stays as it was.
        if (form.idFormat >= 0) f[1] = flag(form.idFormat == 1);
        f[8] = flag(form.activityId);
        f[9] = flag(form.emergencyAlt);
        form.idFormat = form.icall = form.delay = -1;
        return;
    case TrunkGroup::Lt:
        f[5] = number(form.delay);
        f[6] = flag(form.record);
        f[8] = flag(form.activityId);
        form.delay = -1;
        return;
    }
}

void chooseFleetmap(TrunkForm& form, int entry)
{
    form.fleetmap = entry;
    if (entry < 1 || entry > 16) return;
    const auto& codes = fleetmapPresets()[entry - 1];
    for (int n = 0; n < 8; ++n) form.fleetBlocks[n] = number(codes[n]);
}

void clearTrunkBank(TrunkSystem& system)
{
    for (int n = 0; n <= 7; ++n) system.trunkfields[n].clear();
    for (auto& slot : system.trunkblocks)
        for (auto& item : slot) item.clear();
}

void applyToAllBanks(std::array<TrunkSystem, kChannelBanks>& banks, AllButton button, int type,
                     const TrunkForm& form)
{
    const TrunkArrangement shown = trunkArrangementOf(type);
    for (TrunkSystem& bank : banks) {
        auto& f = bank.trunkfields;
        const int bankType = trunkTypeOf(bank);
        switch (button) {
        case AllButton::Delay: f[5] = number(form.delay); break;
        case AllButton::Icall: f[4] = number(form.icall); break;
        case AllButton::EndCode: f[2] = number(form.endCode); break;
        case AllButton::IdFormat:
            if (bankType == trunktype::EdacsWide || bankType == trunktype::EdacsNarrow) f[1] = number(form.idFormat);
            break;
        case AllButton::ControlChannel:
            if (shown.controlChannelList && (bankType == trunktype::Type2_800 || bankType == trunktype::Type1))
                f[0] = number(form.controlChannel);
            if (shown.controlChannelOnly && bankType == trunktype::Type2_900) f[0] = flag(form.controlChannelOnly);
            break;
        }
    }
}

bool trunkBoxAccepts(TrunkBox box, char key)
{
    const auto code = static_cast<unsigned char>(key);
    const bool digit = std::isdigit(code) != 0;
    switch (box) {
    case TrunkBox::Frequency:
    case TrunkBox::Step: return code < 26 || key == '-' || key == '.' || digit;
    case TrunkBox::Offset: return code < 26 || key == '/' || digit;
    case TrunkBox::FleetBlock: return code < 11 || key == '/' || digit;
    }
    return false;
}

} // namespace kestra
