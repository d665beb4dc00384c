#include "searchranges.h"

#include "core/text.h"

#include <algorithm>

namespace kestra {

const std::vector<std::string>& searchModeList()
{
    static const std::vector<std::string> modes = {"-", "AM", "FM", "WFM", "NFM", "Auto"};
    return modes;
}

std::vector<std::string> searchStepList(const ModelSwitches& model)
{
    std::vector<std::string> steps = {"-", "5"};
    if (model.x96 == 1 || model.ubc33 == 1) steps.push_back("6.25");
    for (const char* s : {"7.5", "10", "12.5"}) steps.push_back(s);
    if (model.ubc33 == 1) steps.push_back("20");
    for (const char* s : {"25", "50", "100", "Auto", " "}) steps.push_back(s);
    return steps;
}

namespace {

int indexOf(const std::vector<std::string>& list, std::string_view text)
{
    const auto it = std::find(list.begin(), list.end(), text);
    return it == list.end() ? 0 : static_cast<int>(it - list.begin());
}

} // namespace

int presetModeIndex(std::string_view mode)
{
    // The texts a preset's mode may name; "Auto" is never chosen by a preset.
    for (const char* m : {"AM", "WFM", "FM", "NFM"})
        if (mode == m) return indexOf(searchModeList(), m);
    return 0;
}

int presetStepIndex(std::string_view step, const ModelSwitches& model)
{
    for (const char* s : {"5", "7.5", "10", "12.5", "25", "50", "100"})
        if (step == s) return indexOf(searchStepList(model), s);
    return 0;
}

std::string presetLabel(const SearchPreset& preset) { return preset.start + " - " + preset.end + " - " + preset.tag; }

void applyPreset(SearchRangeFields& range, const SearchPreset& preset, const ModelSwitches& model)
{
    range[rangefield::start] = preset.start;
    range[rangefield::end] = preset.end;
    range[rangefield::tag] = preset.tag;
    range[rangefield::mode] = std::to_string(presetModeIndex(preset.mode));
    range[rangefield::step] = std::to_string(presetStepIndex(preset.step, model));
}

bool limitKeyAccepted(char key) { return (key >= '0' && key <= '9') || key == '.'; }

std::vector<SearchPreset> extenderPresets(const std::vector<SearchPreset>& presets)
{
    std::vector<SearchPreset> rows;
    for (const SearchPreset& p : presets)
        if (Val(p.start) > 0 && rows.size() < static_cast<std::size_t>(kMaxSearchPresets)) rows.push_back(p);
    return rows;
}

} // namespace kestra
