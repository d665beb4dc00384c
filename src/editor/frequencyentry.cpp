#include "frequencyentry.h"

#include "core/bandplan.h"
#include "freqrules.h"

#include "core/cellcodes.h"
#include "core/text.h"

#include <cmath>

namespace kestra {

namespace {
// The step size of a step's grid text in 100 Hz units, 0 when it has none.
int stepUnitsOfText(const std::string& text)
{
    const auto code = stepCode(text, 1);
    return code ? stepUnits(*code) : 0;
}
} // namespace

void FrequencyEntry::setCell(int row, int storeColumn, const std::string& text)
{
    const int column = gridColumnOfStore(table_.doc().model.bc785d, storeColumn);
    if (column > 0) table_.grid().setText(row, column, text);
}

void FrequencyEntry::fillbyband(int row, double mhz)
{
    const auto band = findBand(planForEntry(table_.doc(), table_.settings().bandplan), mhz);
    if (!band) return;
    const std::string step = stepText(band->step);
    setCell(row, col::mode, modeText(band->mode));
    setCell(row, col::step, step);
    bandStep_ = step;
}

void FrequencyEntry::fillDefaults(int row)
{
    Grid& grid = table_.grid();
    const int bc785d = table_.doc().model.bc785d;
    for (int f = 0; f < DefaultData::FieldCount; ++f) {
        const auto field = static_cast<DefaultData::Field>(f);
        const int column = gridColumnOfStore(bc785d, DefaultData::storeColumn(field));
        if (column == 0 || !grid.text(row, column).empty()) continue;
        const std::string text = table_.defdata.gridText(field, bc785d);
        if (!text.empty()) grid.setText(row, column, text);
    }
}

void FrequencyEntry::enterfreq(int row, std::string text)
{
    const Settings& settings = table_.settings();
    text = ltrim(text);
    if (auto limited = coverageLimit(text, LimitKind::Entry)) text = *limited;

    const bool on625 = on625Raster(text);
    long long f = freqUnits(text);
    const Rasters r(f);
    const bool special = inSpecialRange(Val(text));
    if (!on625) {
        if (settings.round == 0 && !r.good(special)) {
            f = (f / 50) * 50;
            text = unitsText(f);
        }
        if (table_.doc().currentBank <= kDummyBank) fillbyband(row, Val(text));
        const int s = stepUnitsOfText(bandStep_);
        if (settings.round == 1 && s > 0 && !special) {
            const long long q = f / s;
            const int remainder = static_cast<int>(std::floor((static_cast<double>(f) / s - static_cast<double>(q)) * 100));
            roundRemainder_ = std::to_string(remainder);
            f = (remainder >= 50 ? q + 1 : q) * s;
            text = unitsText(f);
        }
    }
    if (settings.option11 == 1 && special && r.d == 0) setCell(row, col::step, "7.5");
    if (on625) setCell(row, col::step, "6.25");

    table_.grid().setText(row, gridColumnOfStore(table_.doc().model.bc785d, col::freq), formatFreq(text, settings.zero));
    fillDefaults(row);
    table_.markDirty();
}

} // namespace kestra
