#pragma once
// A frequency typed into the grid of the main window: enterfreq with its
// coverage limits, raster checks, rounding to the band step and the mode and
// step of the bandplan, then the default data of a new line.

#include "core/memtable.h"

#include <string>

namespace kestra {

class FrequencyEntry {
public:
    explicit FrequencyEntry(MemTable& table) : table_(table) {}

    // The cell editor closed on the frequency column of `row` with `text`:
    // the corrected frequency goes into the grid, with the line's mode, step
    // and defaults. Sets the dirty flag.
    void enterfreq(int row, std::string text);

    // Mode and step of the band the frequency lies in, into the grid line;
    // keeps the band's step text for rounding.
    void fillbyband(int row, double mhz);

    // Fills the empty cells of a grid line from the default data.
    void fillDefaults(int row);

    // The step of the last band found ("" before the first).
    const std::string& bandStep() const { return bandStep_; }
    // The remainder in hundredths of the last rounding (the small box "round").
    const std::string& roundRemainder() const { return roundRemainder_; }

private:
    void setCell(int row, int storeColumn, const std::string& text);

    MemTable& table_;
    std::string bandStep_;
    std::string roundRemainder_;
};

} // namespace kestra
