#pragma once
// What a scanner keeps in its memory: 1000 channels in ten banks, bank tags
// and priority channels, the trunk system of each bank with its ID lists, ten
// search ranges, the active banks and lists, the system options of menu 3,
// FIPS codes and the selected baud rate. The values are held in the
// scanner's own terms (frequencies in 100 Hz units, codes as the scanner
// numbers them); the mapping to the program's document is documentmapping.h.

#include "core/cellcodes.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestra::sim {

inline constexpr int kChannels = 1000;
inline constexpr int kBanks = 10;
inline constexpr int kRanges = 10;
inline constexpr int kLists = 10;
inline constexpr int kSlots = 10;
inline constexpr int kFipsSlots = 15;
inline constexpr std::size_t kTagLength = 16;

// ---- frequencies ------------------------------------------------------------

using Freq = std::uint32_t;  // 100 Hz units: 1306250 is 130.6250 MHz; 0 is "none"

std::string freq8(Freq f);                             // "01306250"
std::string freqMhz(Freq f);                           // "0130.6250"
std::optional<Freq> parseFreq8(std::string_view text); // exactly eight digits
// Whole MHz in 25..512, 806..960 or 1240..1300: the bands the receiver tunes.
bool inCoverage(Freq f);

// ---- codes ------------------------------------------------------------------

enum class Modulation { FM, WFM, AM, NFM, Auto };
const char* modulationWord(Modulation m);              // "FM", "WFM", "AM", "NFM", "AUTO"
std::optional<Modulation> modulationFromWord(std::string_view word);

enum class Step { k5, k6_25, k7_5, k10, k12_5, k20, k25, k50, k100, Auto };
const char* stepWord(Step s);                          // "5K", "6.25K", ... "100K", "AUTO"
std::optional<Step> stepFromWord(std::string_view word);
int stepHz(Step s);                                    // 0 for Auto

// Delay codes, the same for channels and trunk banks: 0 none, 1 +1 s,
// 2 +2 s, 3 +4 s, 4 infinite, 5 -2 s, 6 -5 s, 7 -10 s. The BC2xx family has
// only off and on (2 s), kept as 0 and 2.
inline constexpr int kDelayCodes = 8;
const char* delayWord(int code);                       // "F", "+1", "+2", "+4", "+-", "-2", "-5", "-10"
std::optional<int> delayFromWord(std::string_view word);

// Trunk systems in the scanner's own numbering, the number "TR" carries.
enum class TrunkKind {
    Type1 = 1, Type2_800, Type2_900, Type2_Uhf, Type2_Vhf, EdacsWide, EdacsNarrow, EdacsSct, Ltr
};
const char* trunkWord(TrunkKind kind);                 // "TYPE1", "E2-8", ... "EDCS S", "LT"
char trunkLetter(TrunkKind kind);                      // 'M', 'E' or 'L' on the display
bool isMotorola(TrunkKind kind);
bool isEdacs(TrunkKind kind);
bool hasBaseConfigs(TrunkKind kind);                   // Type 2 UHF and VHF

// ---- model ------------------------------------------------------------------

struct ModelInfo {
    Model model;
    ModelSwitches switches;
    const char* name;      // "BC250D"
    const char* firmware;  // the number behind the name in "SI"
    const char* version;   // the reply to "VR"
};
const ModelInfo& modelInfo(Model model);

bool longDelays(Model model);                   // the eight delays of the BC7xx family
bool channelStepAllowed(Model model, Step s);   // 6.25 and 20 kHz only on the x96 models
// The steps of a search range in the order of the menu's list, by model.
const std::vector<Step>& searchSteps(Model model);
const std::vector<int>& baudRates(Model model);

// The receiver's default mode and step for a frequency: what "PM" gives a channel.
struct BandDefault {
    Modulation mode;
    Step step;
};
std::optional<BandDefault> bandDefault(Freq f);

// ---- memory -----------------------------------------------------------------

struct Channel {
    Freq freq = 0;  // 0: unprogrammed
    bool trunk = false;
    int delay = 0;
    bool record = false;
    bool beep = false;
    int tone = 0;   // 0 none, 1..38 CTCSS, 39..142 DCS, 150..291 the locked-out forms
    bool lockout = true;
    bool atten = false;
    Modulation mode = Modulation::FM;
    Step step = Step::Auto;
    std::string tag;
    bool empty() const { return freq == 0; }
};

struct BaseConfig {
    Freq freq = 0;
    int step = 0;    // in 100 Hz: 125 is 12.5 kHz
    int offset = 0;  // channel number of the offset
    bool empty() const { return freq == 0; }
};

struct TrunkBank {
    bool on = false;                  // the bank is a trunk bank
    TrunkKind kind = TrunkKind::Type2_800;
    int controlChannel = 0;           // 0 off, 1..4 plan (Motorola 800/900, Type 1), 1 on for the others
    bool statusBit = false;
    bool endCodeDetect = false;
    int idFormat = 0;                 // EDACS: 0 AFS, 1 decimal
    int icall = 0;                    // 0 off, 1 on, 2 only
    int delay = 0;                    // delay code
    bool record = false;
    bool activityId = false;
    bool emergencyAlt = false;
    std::array<BaseConfig, 3> base{};
    std::array<int, 8> fleet{};       // Type 1 block size codes 0..14
};

struct IdSlot {
    std::string id;  // "" for an empty slot
    std::string tag;
    bool beep = false;
    bool record = false;
    bool empty() const { return id.empty(); }
};

struct IdList {
    std::string tag;
    std::array<IdSlot, kSlots> idSlots{};  // by the slot digit: index 0 is the tenth
    bool active = true;                   // scanned in ID scan
};

struct SearchRange {
    Freq lower = 0, upper = 0;
    std::string tag;
    Modulation mode = Modulation::Auto;
    Step step = Step::Auto;
};

// Menu 3, "SYSTEM OPTION".
struct GeneralParameters {
    int dimmerLight = 0;   // 0 high, 1 medium
    int dimmerTime = 0;    // 0 15 seconds, 1 infinite
    bool screenMask = false;
    bool keyBeep = true;
    bool enterLock = false;
    bool dataSkip = false;
    int sqMode = 0;        // 0 CSQ, 1 tone squelch, 2 tone search
    int apcoCard = 0;      // 0 enable, 1 disable
    int clone = 0;         // 0 master, 1 slave
};

struct ScannerMemory {
    Model model = Model::BC785D;
    int baud = 19200;
    std::array<Channel, kChannels> channels{};      // channel n at index n - 1
    std::array<std::string, kBanks> bankTags;
    std::array<int, kBanks> priority{};             // channel number of each bank's priority channel
    std::array<bool, kBanks> scanBanks{};           // banks taking part in a scan
    std::array<bool, kRanges> searchRanges{};       // ranges taking part in a search
    std::array<TrunkBank, kBanks> trunk{};
    std::array<std::array<IdList, kLists>, kBanks> ids{};
    std::array<SearchRange, kRanges> search{};
    GeneralParameters general;
    std::array<std::string, kFipsSlots> fips;       // six digits, "" for none; slot n at index n - 1

    explicit ScannerMemory(Model m = Model::BC785D);

    Channel& channel(int number) { return channels[static_cast<std::size_t>(number - 1)]; }
    const Channel& channel(int number) const { return channels[static_cast<std::size_t>(number - 1)]; }

    // Everything back to the state of a new scanner; the model and the baud rate stay.
    void factoryReset();
};

// The bank (0..9) of a channel number 1..1000.
inline int bankOf(int channel) { return (channel - 1) / 100; }
// A tag as the scanner keeps it: at most sixteen characters.
std::string scannerTag(std::string_view text);

} // namespace kestra::sim
