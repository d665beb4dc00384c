#pragma once
// The ten search ranges of srcdata as the Search Events window edits them:
// the fields of a range, the mode and step lists (the step list depends on
// the model, and the stored step is the index in it), and how a preset of
// SEARCH.TXT fills a range.

#include "core/cellcodes.h"
#include "search/presets.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace kestra {

inline constexpr int kSearchRanges = 10;
using SearchRangeFields = std::array<std::string, 10>;   // one row of srcdata
using SearchRangeTable = std::array<SearchRangeFields, 10>;

namespace rangefield {
inline constexpr int start = 0, end = 1, mode = 2, step = 3, tag = 4;
}

// "-", "AM", "FM", "WFM", "NFM", "Auto": the index is the scanner's menu digit.
const std::vector<std::string>& searchModeList();
// "-", "5", "6.25" (x96 or ubc33), "7.5", "10", "12.5", "20" (ubc33), "25",
// "50", "100", "Auto", " ". Index n (1 and up) is the n-th line of the
// scanner's step menu, digit n % 10.
std::vector<std::string> searchStepList(const ModelSwitches& model);

// The list index a preset's mode or step text chooses; 0 when none does.
int presetModeIndex(std::string_view mode);
int presetStepIndex(std::string_view step, const ModelSwitches& model);

// A preset's line in the preset lists: start " - " end " - " tag.
std::string presetLabel(const SearchPreset& preset);
// Fills a range from a preset: limits, tag, and the mode and step its texts name.
void applyPreset(SearchRangeFields& range, const SearchPreset& preset, const ModelSwitches& model);

// Keys the limit boxes take: digits and the point.
bool limitKeyAccepted(char key);

// The presets the Search Range Extender lists: those whose start is above 0.
std::vector<SearchPreset> extenderPresets(const std::vector<SearchPreset>& presets);

} // namespace kestra
