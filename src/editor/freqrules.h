#pragma once
// The tuning rules every frequency of a bank passes: the 100 Hz integer form,
// the coverage gaps of the scanners, the 6.25 kHz raster, the special VHF
// range of 7.5 kHz channels, and the table check that runs before a save.

#include "core/document.h"
#include "core/settings.h"

#include <optional>
#include <string>
#include <string_view>

namespace kestra {

// A frequency in units of 100 Hz: Int(Val(text) * 10000) on binary doubles,
// the form every rule below was settled on.
long long freqUnits(std::string_view text);
// f / 10000 as the plain text of its value ("146", "146.005").
std::string unitsText(long long f);

// The step size of a step code in 100 Hz units: 0 for the codes without a
// size ("Auto", "6.25", "20.0", and anything unknown).
int stepUnits(std::string_view code);

// 150.81 < MHz < 154.6275, both ends excluded: where 7.5 kHz channels live.
bool inSpecialRange(double mhz);

// A frequency whose third and fourth decimals are 62, 87, 12 or 37 lies on
// the 6.25 kHz raster.
bool on625Raster(std::string_view text);

// The moduli of a frequency: a by 12.5 kHz, b by 7.5 kHz, c by 5 kHz, d by
// 7.5 kHz from 5 kHz on.
struct Rasters {
    long long a, b, c, d;
    explicit Rasters(long long f) : a(f % 125), b(f % 75), c(f % 50), d((f - 50) % 75) {}
    // On a raster the scanners can tune: any of a, b, c, and d in the special range.
    bool good(bool special) const { return a == 0 || b == 0 || c == 0 || (special && d == 0); }
};

// The coverage limits. A typed frequency in the upper gap stops at 960, a
// frequency found by the table check at 956. Nothing when the frequency is
// inside the coverage.
enum class LimitKind { Entry, Check };
std::optional<std::string> coverageLimit(std::string_view text, LimitKind kind);

// A limit of a search range as it goes to the scanner: the plain value of
// the text, moved into the tunable bands (25 to 512, 806 to 956 and 1240 to
// 1300 MHz) by the table check's limits; 0 (no limit) stays "0".
std::string searchLimit(std::string_view text);

// The lowest and highest whole MHz of a trunk system type 1..7; nothing for
// other types.
std::optional<std::pair<int, int>> trunkRange(int type);

// The check of the whole store, banks 0..10 (see the editor's menu "Check
// Data In Table", File > Save and the way out). Writes the store only; the
// caller repaints the grid.
void checktable(Document& doc, const Settings& settings);

// Makes the table check the check that runs before every save and at the
// way out, with the grid repainted from the checked store afterwards.
class MemTable;
void installTableCheck(MemTable& table);

// Mode and step from the bandplan for the lines firstRow..lastRow of a bank
// that have a frequency.
void applybandplan(Document& doc, const Settings& settings, int bank, int firstRow, int lastRow);
// The same for all banks 0..10.
void applybandplanall(Document& doc, const Settings& settings);

} // namespace kestra
