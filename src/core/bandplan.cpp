#include "bandplan.h"

#include "text.h"

namespace kestra {

const char* bandplanName(int bandplan)
{
    static constexpr const char* names[kBandplanCount] = {
        "None", "BC250/785 Bandplan - US", "Custom Bandplan", "UBC3300 - plan 1", "UBC3300 - plan 2",
        "UBC3300 - plan 3 - Germany"};
    return bandplan >= 0 && bandplan < kBandplanCount ? names[bandplan] : "Unknown";
}

namespace {
// Mode codes: FM 0, WFM 1, AM 2, NFM 3. Step codes: 5.0 0, 7.5 1, 10.0 2,
// 12.5 3, 25.0 4, 50.0 5, 100.0 6, Auto 7.
const std::vector<BandRow> kPlan1 = {
    {"25", "2", "0"},  {"28", "0", "2"},  {"54", "1", "5"},  {"88", "1", "6"},  {"108", "2", "4"}, {"137", "0", "0"},
    {"144", "0", "0"}, {"162", "0", "3"}, {"174", "1", "5"}, {"216", "0", "0"}, {"225", "2", "5"}, {"400", "3", "3"},
};
const std::vector<BandRow> kPlan1b = {
    {"25", "2", "0"},  {"28", "0", "2"},  {"70", "0", "3"},  {"88", "1", "6"},  {"108", "2", "3"},
    {"137", "0", "0"}, {"148", "0", "3"}, {"174", "1", "6"}, {"225", "2", "5"}, {"400", "3", "3"},
};
const std::vector<BandRow> kPlan3 = {
    {"25", "0", "0"},    {"30", "0", "4"},  {"80", "0", "3"},  {"83", "0", "4"},    {"87.3", "1", "7"},
    {"108", "2", "4"},   {"137", "0", "0"}, {"138", "0", "4"}, {"158", "0", "3"},   {"160.6", "0", "4"},
    {"162.6", "0", "3"}, {"174", "1", "7"}, {"216", "0", "0"}, {"225", "2", "7"},   {"400", "0", "4"},
    {"440", "0", "1"},   {"466", "0", "3"}, {"470", "0", "4"},
};
const std::vector<BandRow> kPlan4 = {
    {"25", "0", "0"},  {"30", "0", "1"},  {"80", "0", "4"},  {"87.3", "1", "7"}, {"108", "2", "4"}, {"137", "0", "0"},
    {"138", "0", "4"}, {"174", "1", "7"}, {"216", "0", "0"}, {"225", "2", "7"},  {"400", "0", "4"}, {"406", "0", "1"},
    {"806", "0", "4"},
};
const std::vector<BandRow> kPlan5 = {
    {"25", "0", "0"},      {"50", "0", "4"},     {"84.015", "0", "5"}, {"87.3", "1", "7"},   {"108", "2", "4"},
    {"137", "0", "4"},     {"146", "0", "3"},    {"156", "0", "4"},    {"157.43", "0", "3"}, {"160.6", "0", "4"},
    {"162.3", "0", "3"},   {"174", "1", "7"},    {"216", "0", "0"},    {"225", "2", "7"},    {"400", "0", "4"},
    {"440.0062", "0", "1"}, {"450.01", "0", "3"}, {"470", "0", "4"},
};
const std::vector<BandRow> kNone;
} // namespace

const std::vector<BandRow>& builtinPlan(int plan)
{
    switch (plan) {
    case 1: return kPlan1;
    case 3: return kPlan3;
    case 4: return kPlan4;
    case 5: return kPlan5;
    case 13: return kPlan1b;
    default: return kNone;
    }
}

std::vector<BandRow> customPlan(const Document& doc)
{
    std::vector<BandRow> rows;
    for (int r = 0; r < kChannelRows; ++r) {
        const auto& line = doc.memdata[kBandplanBank][r];
        if (trim(line[1]).empty()) continue;
        rows.push_back({line[1], line[2], line[3]});
    }
    return rows;
}

std::vector<BandRow> planForEntry(const Document& doc, int bandplan)
{
    return bandplan == 2 ? customPlan(doc) : builtinPlan(bandplan == 1 || bandplan >= 3 ? bandplan : 0);
}

std::vector<BandRow> planForCheck(const Document& doc, int bandplan)
{
    switch (bandplan) {
    case 1: return builtinPlan(1);
    case 2: return customPlan(doc);
    case 3: return builtinPlan(13);
    default: return {};
    }
}

std::optional<BandRow> findBand(const std::vector<BandRow>& plan, double mhz)
{
    std::optional<BandRow> best;
    double bestStart = 0;
    for (const BandRow& row : plan) {
        const double start = Val(row.start);
        if (start <= mhz && (!best || start > bestStart)) {
            best = row;
            bestStart = start;
        }
    }
    return best;
}

} // namespace kestra
