#pragma once
// The rules of the trunk configuration window (trunkconfig) over the trunkset
// store: which settings a trunk type has, how the window's controls are filled
// from a bank (loadsettings) and how they go back into it with their
// coercions (savesettings), the fleetmap presets, "Clear This Bank" and the
// "All" buttons. The window keeps the controls; everything it decides is here.
//
// The controls of a bank are held as plain values in a TrunkForm: a list as
// its index (-1 without selection), a check box as a bool, a text box as its
// text.

#include "core/document.h"
#include "core/trunkcodes.h"

#include <array>
#include <string>
#include <vector>

namespace kestra {


// The texts of the Trunk Type list, code 0 to 9 ("Motorola Type 1 " has its
// trailing blank).
const std::array<const char*, kTrunkTypeCount>& trunkTypeList();

// The four groups of settings; a type shows at most one of them.
enum class TrunkGroup { None, Motorola, BaseConfig, Edacs, Lt };
TrunkGroup trunkGroupOf(int type);
const char* trunkGroupCaption(TrunkGroup group);   // "" for None

// Which controls a type shows beside its group.
struct TrunkArrangement {
    TrunkGroup group = TrunkGroup::None;
    bool controlChannelList = false;   // "Control Channel:" and its list (types 1, 2)
    bool controlChannelOnly = false;   // "Control Channel Only" (type 3)
    bool fleetmap = false;             // "Fleetmap:", and Custom with its eight boxes (type 2)
};
TrunkArrangement trunkArrangementOf(int type);

// The lists of the window.
const std::vector<std::string>& controlChannelEntries();   // "Off", "Plan 1".."Plan 4"
const std::vector<std::string>& endCodeEntries();          // "Ignore", "Detect"
const std::vector<std::string>& icallEntries();            // "Off", "On", "Only"
const std::vector<std::string>& idFormatEntries();         // "AFS", "Decimal"
// The Delay list of the model family: eight entries on the BC785D family,
// "None" and "2" on the BC250D family. The store keeps the index.
const std::vector<std::string>& trunkDelayEntries(int bc785d);
// "Custom", "Preset 1".."Preset 16", "None".
const std::vector<std::string>& fleetmapEntries();
inline constexpr int kFleetmapCustom = 0;
inline constexpr int kFleetmapNone = 17;

// Base Config n (0..2) of a Type 2 UHF or VHF bank, as its three boxes show it.
struct BaseConfigBoxes {
    std::string frequency;   // MHz
    std::string step;        // kHz
    std::string offset;      // channel number
    bool operator==(const BaseConfigBoxes&) const = default;
};

struct TrunkForm {
    int controlChannel = -1;
    bool controlChannelOnly = false;
    bool statusBit = false;
    int endCode = -1;
    int icall = -1;
    int delay = -1;
    bool record = false;
    int fleetmap = -1;
    std::array<std::string, 8> fleetBlocks;   // the eight Custom boxes
    bool activityId = false;
    bool emergencyAlt = false;
    int idFormat = -1;
    std::array<BaseConfigBoxes, 3> baseConfigs;
    bool operator==(const TrunkForm&) const = default;
};

// The type code of a bank: the value of trunktype.
int trunkTypeOf(const TrunkSystem& system);

// The controls of a bank, by its type. On the BC250D family (bc785d 0) a
// delay above 0 is rewritten to "1" in the store first, the one non-zero entry
// of the short list, so the bank stays what it shows.
TrunkForm loadsettings(TrunkSystem& system, int bc785d);

// The controls back into the bank, by its type, with the coercions of the
// fleetmap codes and the Base Configs. The form receives the final texts, and
// the lists of the saved group lose their selection. Types 0, 9 and unknown
// codes store nothing.
void savesettings(TrunkSystem& system, TrunkForm& form);

// Choosing a Fleetmap entry: a preset writes its eight codes into the boxes;
// Custom and None write nothing.
void chooseFleetmap(TrunkForm& form, int entry);
// Whether the "Custom:" label and "clr" show for a Fleetmap entry (Custom, or
// no selection), on a type that shows the fleetmap.
inline bool customFleetmapShown(int entry) { return entry == kFleetmapCustom || entry < 0; }

// "Clear This Bank": fields 0 to 7 and every block cell empty. The type, the
// Activity ID (field 8) and the Emergency ALT (field 9) stay.
void clearTrunkBank(TrunkSystem& system);

// The "All" buttons: a list's value of the bank on view copied to banks 0..9.
enum class AllButton { Delay, Icall, EndCode, IdFormat, ControlChannel };
// type is the type of the bank on view, which decides whether the
// Control Channel value comes from the list (types 1, 2) or the box (type 3).
void applyToAllBanks(std::array<TrunkSystem, kChannelBanks>& banks, AllButton button, int type,
                     const TrunkForm& form);

// Keys the boxes take while typing; other characters are dropped.
enum class TrunkBox { Frequency, Step, Offset, FleetBlock };
bool trunkBoxAccepts(TrunkBox box, char key);

} // namespace kestra
