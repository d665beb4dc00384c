#include "sim/scannermemory.h"

#include "core/bandplan.h"

#include <cstdio>

namespace kestra::sim {

// ---- frequencies ------------------------------------------------------------

std::string freq8(Freq f)
{
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%08u", static_cast<unsigned>(f % 100000000u));
    return buffer;
}

std::string freqMhz(Freq f)
{
    const std::string digits = freq8(f);
    return digits.substr(0, 4) + "." + digits.substr(4);
}

std::optional<Freq> parseFreq8(std::string_view text)
{
    if (text.size() != 8) return std::nullopt;
    Freq f = 0;
    for (char c : text) {
        if (c < '0' || c > '9') return std::nullopt;
        f = f * 10 + static_cast<Freq>(c - '0');
    }
    return f;
}

bool inCoverage(Freq f)
{
    const Freq mhz = f / 10000;
    return (mhz >= 25 && mhz <= 512) || (mhz >= 806 && mhz <= 960) || (mhz >= 1240 && mhz <= 1300);
}

// ---- codes ------------------------------------------------------------------

namespace {
constexpr const char* kModulationWords[] = {"FM", "WFM", "AM", "NFM", "AUTO"};
constexpr const char* kStepWords[] = {"5K", "6.25K", "7.5K", "10K", "12.5K", "20K", "25K", "50K", "100K", "AUTO"};
constexpr int kStepHz[] = {5000, 6250, 7500, 10000, 12500, 20000, 25000, 50000, 100000, 0};
constexpr const char* kDelayWords[kDelayCodes] = {"F", "+1", "+2", "+4", "+-", "-2", "-5", "-10"};
constexpr const char* kTrunkWords[] = {"TYPE1", "E2-8", "E2-9", "E2-U", "E2-V", "EDCS W", "EDCS N", "EDCS S", "LT"};
} // namespace

const char* modulationWord(Modulation m) { return kModulationWords[static_cast<int>(m)]; }

std::optional<Modulation> modulationFromWord(std::string_view word)
{
    for (int i = 0; i < 5; ++i)
        if (word == kModulationWords[i]) return static_cast<Modulation>(i);
    return std::nullopt;
}

const char* stepWord(Step s) { return kStepWords[static_cast<int>(s)]; }

std::optional<Step> stepFromWord(std::string_view word)
{
    for (int i = 0; i < 10; ++i)
        if (word == kStepWords[i]) return static_cast<Step>(i);
    return std::nullopt;
}

int stepHz(Step s) { return kStepHz[static_cast<int>(s)]; }

const char* delayWord(int code) { return code >= 0 && code < kDelayCodes ? kDelayWords[code] : "F"; }

std::optional<int> delayFromWord(std::string_view word)
{
    for (int i = 1; i < kDelayCodes; ++i)
        if (word == kDelayWords[i]) return i;
    return std::nullopt;
}

const char* trunkWord(TrunkKind kind) { return kTrunkWords[static_cast<int>(kind) - 1]; }

bool isMotorola(TrunkKind kind) { return static_cast<int>(kind) <= static_cast<int>(TrunkKind::Type2_Vhf); }
bool isEdacs(TrunkKind kind)
{
    return kind == TrunkKind::EdacsWide || kind == TrunkKind::EdacsNarrow || kind == TrunkKind::EdacsSct;
}
bool hasBaseConfigs(TrunkKind kind) { return kind == TrunkKind::Type2_Uhf || kind == TrunkKind::Type2_Vhf; }

char trunkLetter(TrunkKind kind)
{
    if (isMotorola(kind)) return 'M';
    return isEdacs(kind) ? 'E' : 'L';
}

// ---- model ------------------------------------------------------------------

const ModelInfo& modelInfo(Model model)
{
    static const ModelInfo infos[] = {
        {Model::BC250D, ModelSwitches::of(Model::BC250D), "BC250D", "104", "VR1.00"},
        {Model::BC785D, ModelSwitches::of(Model::BC785D), "BC785D", "102", "VR1.02"},
        {Model::BC296D, ModelSwitches::of(Model::BC296D), "BC296D", "106", "VR1.06"},
        {Model::BC796D, ModelSwitches::of(Model::BC796D), "BC796D", "105", "VR1.05"},
        {Model::UBC3300, ModelSwitches::of(Model::UBC3300), "UBC3300", "100", "VR1.00"},
    };
    for (const ModelInfo& info : infos)
        if (info.model == model) return info;
    return infos[0];
}

bool longDelays(Model model) { return modelInfo(model).switches.bc785d == 1; }

bool channelStepAllowed(Model model, Step s)
{
    if (s == Step::k6_25 || s == Step::k20) return modelInfo(model).switches.x96 == 1;
    return true;
}

const std::vector<Step>& searchSteps(Model model)
{
    using enum Step;
    static const std::vector<Step> plain = {k5, k7_5, k10, k12_5, k25, k50, k100, Auto};
    static const std::vector<Step> x96 = {k5, k6_25, k7_5, k10, k12_5, k25, k50, k100, Auto};
    static const std::vector<Step> ubc = {k5, k6_25, k7_5, k10, k12_5, k20, k25, k50, k100, Auto};
    const ModelSwitches sw = modelInfo(model).switches;
    if (sw.ubc33 == 1) return ubc;
    return sw.x96 == 1 ? x96 : plain;
}

const std::vector<int>& baudRates(Model model)
{
    static const std::vector<int> three = {4800, 9600, 19200};
    static const std::vector<int> five = {4800, 9600, 19200, 38400, 57600};
    const ModelSwitches sw = modelInfo(model).switches;
    return sw.x96 == 1 && sw.ubc33 == 0 ? five : three;
}

std::optional<BandDefault> bandDefault(Freq f)
{
    // The receiver's built-in band table is the US plan.
    const auto row = findBand(builtinPlan(1), f / 10000.0);
    if (!row) return std::nullopt;
    static constexpr Modulation modes[] = {Modulation::FM, Modulation::WFM, Modulation::AM, Modulation::NFM};
    static constexpr Step steps[] = {Step::k5, Step::k7_5, Step::k10, Step::k12_5, Step::k25, Step::k50, Step::k100, Step::Auto};
    const int mode = row->mode.empty() ? 0 : row->mode[0] - '0';
    const int step = row->step.empty() ? 7 : row->step[0] - '0';
    if (mode < 0 || mode > 3 || step < 0 || step > 7) return std::nullopt;
    return BandDefault{modes[mode], steps[step]};
}

// ---- memory -----------------------------------------------------------------

ScannerMemory::ScannerMemory(Model m) : model(m) { factoryReset(); }

void ScannerMemory::factoryReset()
{
    channels.fill(Channel{});
    for (int b = 0; b < kBanks; ++b) {
        bankTags[b].clear();
        priority[b] = b * 100 + 1;
    }
    scanBanks.fill(true);
    searchRanges.fill(true);
    trunk.fill(TrunkBank{});
    for (auto& bank : ids) bank.fill(IdList{});
    search.fill(SearchRange{});
    general = GeneralParameters{};
    for (auto& code : fips) code.clear();
}

std::string scannerTag(std::string_view text) { return std::string(text.substr(0, kTagLength)); }

} // namespace kestra::sim
