#pragma once
// The search presets of SEARCH.TXT: rows of start, end, mode, step, tag and a
// spare text, which the search windows offer to fill a search range.

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kestra {

struct SearchPreset {
    std::string start, end;  // nine-character frequency texts
    std::string mode;        // "FM", "NFM", "AM", "WFM", or the text as it stood
    std::string step;        // "5", "7.5", "10", "12.5", "25", "50", "100", or the text as it stood
    std::string tag;
    std::string spare;
};

inline constexpr int kMaxSearchPresets = 200;

// The presets of SEARCH.TXT in folder: nothing when the file is missing.
std::vector<SearchPreset> readSearchPresets(const std::filesystem::path& folder);
std::vector<SearchPreset> parseSearchPresets(std::string_view text);

// The mode and step of a preset by the texts they contain; a later test wins.
std::string presetMode(std::string_view text);
std::string presetStep(std::string_view text);

} // namespace kestra
