#include "presets.h"

#include "core/cellcodes.h"
#include "core/listreader.h"
#include "core/memfile.h"
#include "core/text.h"

namespace kestra {

std::string presetMode(std::string_view text)
{
    std::string mode(text);
    for (const char* m : {"FM", "NFM", "AM", "WFM"})
        if (contains(text, m)) mode = m;
    return mode;
}

std::string presetStep(std::string_view text)
{
    static constexpr std::pair<const char*, const char*> tests[] = {
        {"5", "5"}, {"25", "25"}, {"10", "10"}, {"2.", "12.5"}, {"7.", "7.5"}, {"100", "100"}, {"50", "50"}};
    std::string step(text);
    for (const auto& [mark, value] : tests)
        if (contains(text, mark)) step = value;
    return step;
}

std::vector<SearchPreset> parseSearchPresets(std::string_view text)
{
    ListReader in(text);
    for (int i = 0; i < 3; ++i) in.line();
    std::vector<SearchPreset> presets;
    while (presets.size() < static_cast<std::size_t>(kMaxSearchPresets)) {
        std::string fields[6];
        for (auto& f : fields) {
            auto value = in.field();
            if (!value) return presets;
            f = std::move(*value);
        }
        presets.push_back({padfreq(fields[0], 8, 5), padfreq(fields[1], 8, 5), presetMode(fields[2]),
                           presetStep(fields[3]), fields[4], fields[5]});
    }
    return presets;
}

std::vector<SearchPreset> readSearchPresets(const std::filesystem::path& folder)
{
    std::string bytes;
    if (!readFileBytes(folder / "SEARCH.TXT", bytes)) return {};
    return parseSearchPresets(bytes);
}

} // namespace kestra
