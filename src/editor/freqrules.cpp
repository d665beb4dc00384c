#include "freqrules.h"

#include "core/bandplan.h"

#include "core/cellcodes.h"
#include "core/memtable.h"
#include "core/text.h"

#include <cmath>

namespace kestra {

long long freqUnits(std::string_view text)
{
    const double v = std::floor(Val(text) * 10000.0);
    if (!(v > -9e15)) return -9'000'000'000'000'000LL;
    if (!(v < 9e15)) return 9'000'000'000'000'000LL;
    return static_cast<long long>(v);
}

std::string unitsText(long long f)
{
    const bool negative = f < 0;
    const unsigned long long u = negative ? 0ULL - static_cast<unsigned long long>(f) : static_cast<unsigned long long>(f);
    std::string text = std::to_string(u / 10000);
    unsigned long long frac = u % 10000;
    if (frac != 0) {
        std::string digits = std::to_string(frac);
        digits.insert(0, 4 - digits.size(), '0');
        while (digits.back() == '0') digits.pop_back();
        text += "." + digits;
    }
    return negative ? "-" + text : text;
}

int stepUnits(std::string_view code)
{
    static constexpr int sizes[7] = {50, 75, 100, 125, 250, 500, 1000};
    if (code.size() != 1 || code[0] < '0' || code[0] > '6') return 0;
    return sizes[code[0] - '0'];
}

bool inSpecialRange(double mhz) { return mhz > 150.81 && mhz < 154.6275; }

bool on625Raster(std::string_view text)
{
    const std::string s = padfreq(text, 8, 5);
    const std::string decimals = Mid(s, 8, 2);
    return decimals == "62" || decimals == "87" || decimals == "12" || decimals == "37";
}

std::optional<std::string> coverageLimit(std::string_view text, LimitKind kind)
{
    const long long m = IntVal(text);
    if (m < 25) return "25";
    if (m > 1300) return "1300";
    if (m > 512 && m < 806) return "512";
    if (m > 960 && m < 1240) return kind == LimitKind::Entry ? "960" : "956";
    return std::nullopt;
}

std::string searchLimit(std::string_view text)
{
    const long long units = freqUnits(text);
    if (units == 0) return "0";
    const std::string plain = unitsText(units);
    return coverageLimit(plain, LimitKind::Check).value_or(plain);
}

std::optional<std::pair<int, int>> trunkRange(int type)
{
    switch (type) {
    case 1: return std::pair{806, 960};
    case 2: return std::pair{851, 960};
    case 3: return std::pair{806, 960};
    case 4: return std::pair{406, 512};
    case 5: return std::pair{136, 174};
    case 6: return std::pair{137, 960};
    case 7: return std::pair{137, 960};
    default: return std::nullopt;
    }
}

namespace {

bool isEmptyOrLong(const std::string& text, std::size_t length) { return text.empty() || text.size() >= length; }

void checkLine(std::array<std::string, kCellColumns>& line, const Settings& settings, const ModelSwitches& model,
               int trunkType, int& stepSize)
{
    auto& freq = line[col::freq];
    if (Val(freq) == 0) {
        freq = "0000.0000";
        return;
    }
    freq = padfreq(freq, 8, 5);
    if (auto limited = coverageLimit(freq, LimitKind::Check)) freq = padfreq(*limited, 8, 5);

    auto& delay = line[col::delay];
    const double delayValue = Val(delay);
    if (model.bc785d == 1) {
        if (delayValue < 0 || delayValue > 7 || (delayValue == 0 && isEmptyOrLong(delay, 6))) delay = "2";
    } else {
        if (delayValue < 0 || delayValue > 2 || (delayValue == 0 && isEmptyOrLong(delay, 3))) delay = "2";
    }
    auto& tone = line[col::tone];
    if (Val(tone) < 1 || Val(tone) > 300 || tone.empty()) tone = "0";
    auto& mode = line[col::mode];
    if (Val(mode) < 1 || Val(mode) > 3 || mode.empty()) mode = "0";
    auto& step = line[col::step];
    if (Val(step) < 1 || Val(step) > 9 || step.empty()) step = "0";

    if (const int size = stepUnits(step); size > 0) stepSize = size;

    if (settings.option12 == 1 && settings.bandplan < 5 && !on625Raster(freq)) {
        long long f = freqUnits(freq);
        bool special = inSpecialRange(Val(freq));
        Rasters r(f);
        // Down to the 5 kHz raster. The text of a cut frequency can read back one
        // unit low on doubles (87.5850 reads 875849), and the cut can move it
        // into the special range: judge the new text again until it is on a
        // raster, so that the next check finds nothing to do.
        while (!r.good(special)) {
            f = (f / 50) * 50;
            freq = padfreq(unitsText(f), 8, 5);
            f = freqUnits(freq);
            special = inSpecialRange(Val(freq));
            r = Rasters(f);
        }
        if (special && r.d == 0 && model.ubc33 == 0) {
            step = "1";
        } else if (stepSize > 0 && f % stepSize != 0) {
            if (r.a == 0)
                step = "3";
            else if (r.b == 0)
                step = "1";
            else if (r.c == 0)
                step = "0";
        }
        // A line without a step size of its own takes the size of the line
        // before as that line stands after its check.
        if (const int size = stepUnits(step); size > 0) stepSize = size;
    }

    for (int c : {col::trunk, col::record, col::recordHidden, col::beep, col::lockout, col::atten})
        if (line[c] != "0" && line[c] != "1") line[c] = "0";
    auto& tag = line[col::tag];
    if (tag.size() > 16) tag.resize(16);
    if (mode == "2" || mode == "1") {
        tone = "0";
        line[col::trunk] = "0";
    }
    const double mhz = Val(freq);
    if (mhz < 136) line[col::trunk] = "0";
    if (settings.option5 == 0) {
        if (auto range = trunkRange(trunkType)) {
            const long long m = IntVal(freq);
            if (m < range->first || m > range->second) line[col::trunk] = "0";
        }
    }
}

} // namespace

void checktable(Document& doc, const Settings& settings)
{
    int stepSize = 0;  // none known before the first line with a sized step
    for (int b = 0; b <= kDummyBank; ++b) {
        const int trunkType = b < 10 ? static_cast<int>(IntVal(doc.trunkset[b].trunktype)) : 0;
        for (int r = 1; r <= kChannelRows; ++r) checkLine(doc.memdata[b][r], settings, doc.model, trunkType, stepSize);
    }
}

void installTableCheck(MemTable& table)
{
    table.saveCheck = [&table] {
        checktable(table.doc(), table.settings());
        table.fillgrid();
    };
}

void applybandplan(Document& doc, const Settings& settings, int bank, int firstRow, int lastRow)
{
    if (bank < 0 || bank > kDummyBank) return;
    const std::vector<BandRow> plan = planForCheck(doc, settings.bandplan);
    if (plan.empty()) return;
    for (int r = std::max(firstRow, 1); r <= std::min(lastRow, kChannelRows); ++r) {
        auto& line = doc.memdata[bank][r];
        const double mhz = Val(line[col::freq]);
        if (mhz == 0) continue;
        if (auto band = findBand(plan, mhz)) {
            line[col::mode] = band->mode;
            line[col::step] = band->step;
        }
    }
}

void applybandplanall(Document& doc, const Settings& settings)
{
    for (int b = 0; b <= kDummyBank; ++b) applybandplan(doc, settings, b, 1, kChannelRows);
}

} // namespace kestra
