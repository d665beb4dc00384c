#pragma once
// Bandplans: lists of rows (start in MHz, mode code, step code), each row
// applying from its start up to the next higher start. Five built-in plans,
// plan 1b that only the table check of the UBC3300 plan 1 uses, and the
// custom plan the user keeps in bandplan.dat (bank 12 of the store).

#include "document.h"

#include <optional>
#include <string>
#include <vector>

namespace kestra {

struct BandRow {
    std::string start;  // MHz as text
    std::string mode;   // mode code "0".."3"
    std::string step;   // step code "0".."9"
};

// The names of the `bandplan` setting's values, "Unknown" for any other value.
const char* bandplanName(int bandplan);
inline constexpr int kBandplanCount = 6;

// Built-in plans by number: 1, 3, 4, 5; 13 is plan 1b. Empty for others.
const std::vector<BandRow>& builtinPlan(int plan);
// The custom plan: the rows of bank 12 that have a start.
std::vector<BandRow> customPlan(const Document& doc);

// The plan a typed frequency takes its mode and step from, by `bandplan`.
std::vector<BandRow> planForEntry(const Document& doc, int bandplan);
// The plan a table check takes, by `bandplan` (plan 1b for value 3; none for 4 and 5).
std::vector<BandRow> planForCheck(const Document& doc, int bandplan);

// The row whose start is the largest one not above the frequency; nothing
// when the frequency lies below every start. The rows need not be sorted.
std::optional<BandRow> findBand(const std::vector<BandRow>& plan, double mhz);

} // namespace kestra
