#include "sim/documentmapping.h"

#include "core/settings.h"
#include "core/text.h"
#include "trunk/trunkconfig.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace kestra::sim {

namespace {

// Store codes of the channel columns.
constexpr Modulation kModeOfCode[] = {Modulation::FM, Modulation::WFM, Modulation::AM, Modulation::NFM};
constexpr Step kStepOfCode[] = {Step::k5,  Step::k7_5, Step::k10,  Step::k12_5, Step::k25,
                                Step::k50, Step::k100, Step::Auto, Step::k6_25, Step::k20};
// Search mode field: 1 AM, 2 FM, 3 WFM, 4 NFM, 5 AUTO.
constexpr Modulation kSearchModeOfIndex[] = {Modulation::AM, Modulation::FM, Modulation::WFM, Modulation::NFM,
                                             Modulation::Auto};

std::string modeCodeOf(Modulation m)
{
    for (int i = 0; i < 4; ++i)
        if (kModeOfCode[i] == m) return numText(i);
    return "0";
}

std::string stepCodeOf(Step s)
{
    for (int i = 0; i < 10; ++i)
        if (kStepOfCode[i] == s) return numText(i);
    return "7";
}

std::string flag(bool on) { return on ? "1" : "0"; }
bool isOn(std::string_view cell) { return cell == "1"; }

Freq freqOfText(std::string_view text)
{
    const double mhz = Val(text);
    if (!(mhz > 0) || mhz >= 10000) return 0;
    return static_cast<Freq>(std::llround(mhz * 10000));
}

int clampInt(long long v, int lo, int hi) { return static_cast<int>(std::clamp<long long>(v, lo, hi)); }

// A tag of blanks only is no tag.
std::string tagOfCell(std::string_view cell)
{
    if (trim(cell).empty()) return {};
    return scannerTag(cell);
}
std::string cellOfTag(const std::string& tag) { return tag.empty() ? " " : tag; }

// Step of a Base Config: the store holds kHz ("012.5"), the scanner 100 Hz units.
std::string baseStepText(int step)
{
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%03d.%d", step / 10, step % 10);
    return buffer;
}

bool validTone(long long code) { return (code >= 0 && code <= 142) || (code >= 150 && code <= 291); }

} // namespace

int programTrunkType(TrunkKind kind)
{
    switch (kind) {
    case TrunkKind::Type1: return 2;
    case TrunkKind::Type2_800: return 1;
    case TrunkKind::EdacsSct: return 9;
    case TrunkKind::Ltr: return 8;
    default: return static_cast<int>(kind);
    }
}

std::optional<TrunkKind> trunkKindOfProgramType(int type)
{
    for (int k = 1; k <= 9; ++k)
        if (programTrunkType(static_cast<TrunkKind>(k)) == type) return static_cast<TrunkKind>(k);
    return std::nullopt;
}

// ---- document -> memory ------------------------------------------------------

namespace {

void fillChannel(Channel& ch, const std::array<std::string, kCellColumns>& cells, Model model, int number,
                 FillReport& report)
{
    ch = Channel{};
    const Freq f = freqOfText(cells[col::freq]);
    if (f == 0) return;
    if (!inCoverage(f)) {
        report.refusedChannels.push_back(number);
        return;
    }
    const bool bc7 = longDelays(model);
    ch.freq = f;
    ch.lockout = isOn(cells[col::lockout]);
    ch.tag = tagOfCell(cells[col::tag]);
    ch.trunk = isOn(cells[col::trunk]);
    ch.record = isOn(cells[bc7 ? col::record : col::recordHidden]);
    const long long delay = IntVal(cells[col::delay]);
    ch.delay = bc7 ? clampInt(delay, 0, 7) : (delay > 0 && delay <= 7 ? 2 : 0);
    ch.beep = isOn(cells[col::beep]);
    const long long tone = IntVal(repairToneCode(cells[col::tone]));
    ch.tone = validTone(tone) ? static_cast<int>(tone) : 0;
    ch.atten = isOn(cells[col::atten]);
    const long long mode = IntVal(cells[col::mode]);
    ch.mode = mode >= 0 && mode <= 3 ? kModeOfCode[mode] : Modulation::FM;
    const auto band = bandDefault(f);
    const long long step = IntVal(cells[col::step]);
    const bool stepGiven = !trim(cells[col::step]).empty() && step >= 0 && step <= 9;
    if (stepGiven && channelStepAllowed(model, kStepOfCode[step]))
        ch.step = kStepOfCode[step];
    else
        ch.step = band ? band->step : Step::Auto;
}

void fillTrunk(TrunkBank& t, const kestra::TrunkSystem& sys, Model model)
{
    const long long type = IntVal(sys.trunktype);
    const auto kind = trunkKindOfProgramType(static_cast<int>(type));
    if (!kind) {
        t.on = false;
        return;
    }
    t.on = true;
    t.kind = *kind;
    const auto& f = sys.trunkfields;
    const auto field = [&](int i) { return IntVal(f[i]); };
    if (type >= 1 && type <= 3) t.controlChannel = type == 3 ? (field(0) >= 1 ? 1 : 0) : clampInt(field(0), 0, 4);
    if (type >= 1 && type <= 5) {
        t.statusBit = field(1) == 1;
        t.endCodeDetect = field(2) == 1;
    }
    if (type == 6 || type == 7 || type == 9) {
        t.idFormat = field(1) == 1 ? 1 : 0;
        t.emergencyAlt = field(9) == 1;
    }
    if (type != 8) t.icall = clampInt(field(4), 0, 2);
    t.delay = longDelays(model) ? clampInt(field(5), 0, 7) : (field(5) > 0 ? 2 : 0);
    t.record = field(6) == 1;
    t.activityId = field(8) == 1;
    if (type == 2) {
        const auto& slot = sys.trunkblocks[0];
        const bool given = std::any_of(slot.begin(), slot.end(), [](const std::string& s) { return !trim(s).empty(); });
        const long long preset = field(7);
        for (int n = 0; n < 8; ++n) {
            if (given)
                t.fleet[n] = clampInt(IntVal(slot[n]), 0, 14);
            else if (preset >= 1 && preset <= 16)
                t.fleet[n] = fleetmapPresets()[preset - 1][n];
        }
    }
    if (type == 4 || type == 5) {
        for (int s = 0; s < 3; ++s) {
            const auto& items = sys.trunkblocks[s];
            BaseConfig base;
            base.freq = freqOfText(items[0]);
            if (base.freq != 0) {
                base.step = static_cast<int>(std::llround(std::max(0.0, Val(items[1])) * 10));
                base.offset = clampInt(IntVal(items[2]), 0, 999);
            }
            t.base[s] = base;
        }
    }
}

} // namespace

FillReport fillFromDocument(ScannerMemory& memory, const Document& doc)
{
    FillReport report;
    const Model model = memory.model;
    for (int b = 0; b < kBanks; ++b) {
        for (int r = 1; r <= 100; ++r) {
            const int number = b * 100 + r;
            fillChannel(memory.channel(number), doc.memdata[b][r], model, number, report);
        }
        memory.bankTags[b] = tagOfCell(doc.banktags[b]);
        const int prio = doc.priochan[b];
        memory.priority[b] = prio >= b * 100 + 1 && prio <= b * 100 + 100 ? prio : b * 100 + 1;
    }
    // No bank marked at all means the choice was never made: all take part.
    const bool anyScan = std::any_of(doc.banklockm.begin(), doc.banklockm.end(), [](auto v) { return v == 1; });
    const bool anySearch = std::any_of(doc.banklocks.begin(), doc.banklocks.end(), [](auto v) { return v == 1; });
    for (int b = 0; b < kBanks; ++b) {
        memory.scanBanks[b] = !anyScan || doc.banklockm[b] == 1;
        memory.searchRanges[b] = !anySearch || doc.banklocks[b] == 1;
    }

    for (int b = 0; b < kBanks; ++b) {
        fillTrunk(memory.trunk[b], doc.trunkset[b], model);
        for (int l = 0; l < kLists; ++l) {
            IdList& list = memory.ids[b][l];
            list.tag = tagOfCell(doc.trunklisttags[b][l]);
            for (int d = 0; d < kSlots; ++d) {
                const auto& row = doc.trunkids[b][l * 10 + d];
                IdSlot slot;
                const std::string id = trim(row[0]);
                if (!id.empty() && id[0] != '-') {
                    slot.id = id.substr(0, 7);
                    slot.tag = tagOfCell(row[1]);
                    slot.record = isOn(row[2]);
                    slot.beep = isOn(row[3]);
                }
                list.idSlots[d] = slot;
            }
        }
    }

    const auto& steps = searchSteps(model);
    for (int r = 0; r < kRanges; ++r) {
        const auto& fields = doc.srcdata[r];
        SearchRange range;
        range.lower = freqOfText(fields[0]);
        range.upper = freqOfText(fields[1]);
        const long long mode = IntVal(fields[2]);
        if (mode >= 1 && mode <= 5) range.mode = kSearchModeOfIndex[mode - 1];
        const long long step = IntVal(fields[3]);
        if (step >= 1 && step <= static_cast<long long>(steps.size())) range.step = steps[step - 1];
        range.tag = tagOfCell(fields[4]);
        memory.search[r] = range;
    }

    for (int n = 1; n <= kFipsSlots; ++n) {
        const std::string code = trim(doc.fipscodes[n]);
        const bool digits = code.size() == 6 && code.find_first_not_of("0123456789") == std::string::npos;
        memory.fips[n - 1] = digits && code != "000000" ? code : "";
    }
    return report;
}

// ---- memory -> document ------------------------------------------------------

void writeToDocument(const ScannerMemory& memory, Document& doc)
{
    const bool bc7 = longDelays(memory.model);
    for (int b = 0; b < kBanks; ++b) {
        for (int r = 1; r <= 100; ++r) {
            const Channel& ch = memory.channel(b * 100 + r);
            auto& cells = doc.memdata[b][r];
            if (ch.empty()) {
                cells[col::freq] = "0000.0000";
                for (int c = col::tag; c <= col::step; ++c) cells[c] = " ";
                continue;
            }
            cells[col::freq] = freqMhz(ch.freq);
            cells[col::tag] = cellOfTag(ch.tag);
            cells[col::trunk] = flag(ch.trunk);
            cells[col::record] = flag(bc7 && ch.record);
            cells[col::recordHidden] = flag(!bc7 && ch.record);
            cells[col::delay] = numText(ch.delay);
            cells[col::beep] = flag(ch.beep);
            cells[col::tone] = numText(ch.tone);
            cells[col::lockout] = flag(ch.lockout);
            cells[col::atten] = flag(ch.atten);
            cells[col::mode] = modeCodeOf(ch.mode);
            cells[col::step] = stepCodeOf(ch.step);
        }
        doc.banktags[b] = cellOfTag(memory.bankTags[b]);
        doc.priochan[b] = static_cast<std::int16_t>(memory.priority[b]);
        doc.banklockm[b] = memory.scanBanks[b] ? 1 : 0;
        doc.banklocks[b] = memory.searchRanges[b] ? 1 : 0;
    }

    for (int b = 0; b < kBanks; ++b) {
        const TrunkBank& t = memory.trunk[b];
        kestra::TrunkSystem& sys = doc.trunkset[b];
        if (!t.on) {
            sys.trunktype = "0";
        } else {
            const int type = programTrunkType(t.kind);
            sys.trunktype = numText(type);
            auto& f = sys.trunkfields;
            if (type >= 1 && type <= 3) f[0] = numText(type == 3 ? std::min(t.controlChannel, 1) : t.controlChannel);
            if (type >= 1 && type <= 5) {
                f[1] = flag(t.statusBit);
                f[2] = flag(t.endCodeDetect);
            }
            if (type == 6 || type == 7 || type == 9) {
                f[1] = numText(t.idFormat);
                f[9] = flag(t.emergencyAlt);
            }
            if (type != 8) f[4] = numText(t.icall);
            // The BC2xx family's delay list is "None", "2": index 1 is on.
            f[5] = bc7 ? numText(t.delay) : flag(t.delay != 0);
            if (bc7) f[6] = flag(t.record);
            f[8] = flag(t.activityId);
            if (type == 2) {
                f[7] = "0";
                const auto& presets = fleetmapPresets();
                for (int p = 0; p < 16; ++p)
                    if (presets[p] == t.fleet) {
                        f[7] = numText(p + 1);
                        break;
                    }
                for (int n = 0; n < 8; ++n) sys.trunkblocks[0][n] = numText(t.fleet[n]);
            }
            if (type == 4 || type == 5) {
                for (int s = 0; s < 3; ++s) {
                    const BaseConfig& base = t.base[s];
                    auto& items = sys.trunkblocks[s];
                    items[0] = base.empty() ? "" : freqMhz(base.freq);
                    items[1] = base.empty() ? "" : baseStepText(base.step);
                    items[2] = base.empty() ? "" : numText(base.offset);
                }
            }
        }
        for (int l = 0; l < kLists; ++l) {
            const IdList& list = memory.ids[b][l];
            doc.trunklisttags[b][l] = list.tag;
            for (int d = 0; d < kSlots; ++d) {
                const IdSlot& slot = list.idSlots[d];
                auto& row = doc.trunkids[b][l * 10 + d];
                row[0] = slot.id;
                row[1] = slot.empty() ? "" : slot.tag;
                row[2] = slot.empty() ? "" : flag(slot.record);
                row[3] = slot.empty() ? "" : flag(slot.beep);
            }
        }
    }

    const auto& steps = searchSteps(memory.model);
    for (int r = 0; r < kRanges; ++r) {
        const SearchRange& range = memory.search[r];
        auto& fields = doc.srcdata[r];
        fields[0] = freqMhz(range.lower);
        fields[1] = freqMhz(range.upper);
        // A range without limits is not in use: its mode and step are no choice ("-").
        const bool used = range.lower != 0 || range.upper != 0;
        fields[2] = "0";
        for (int i = 0; i < 5 && used; ++i)
            if (kSearchModeOfIndex[i] == range.mode) fields[2] = numText(i + 1);
        fields[3] = "0";
        for (std::size_t i = 0; i < steps.size() && used; ++i)
            if (steps[i] == range.step) fields[3] = numText(static_cast<long long>(i) + 1);
        fields[4] = range.tag;
    }

    for (int n = 1; n <= kFipsSlots; ++n) doc.fipscodes[n] = memory.fips[n - 1];
}

Document documentOf(const ScannerMemory& memory)
{
    Document doc;
    doc.clearstores();
    doc.model = modelInfo(memory.model).switches;
    writeToDocument(memory, doc);
    return doc;
}

MemLoadResult loadMemFile(ScannerMemory& memory, std::string_view bytes, FillReport* report)
{
    Document doc;
    doc.clearstores();
    const MemLoadResult result = readMem(doc, bytes, 0);
    if (result.status != MemLoadStatus::Loaded) return result;
    const FillReport filled = fillFromDocument(memory, doc);
    if (report) *report = filled;
    return result;
}

std::string memFileText(const ScannerMemory& memory) { return memText(documentOf(memory), Settings{}); }

} // namespace kestra::sim
