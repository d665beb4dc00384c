#pragma once
// The default data of a new channel (defdata.ini): for each of seven fields,
// whether a new line gets a default, and the default itself as the position in
// the field's list, separately for the two grid layouts.

#include <array>
#include <filesystem>
#include <string>
#include <vector>

namespace kestra {

struct DefaultData {
    enum Field { Trunk, Delay, Beep, Tone, Lockout, Atten, Record, FieldCount };

    std::array<int, FieldCount> enabled{1, 1, 1, 0, 1, 1, 0};
    // value[field][bc785d]: the position in fieldList(field, bc785d).
    std::array<std::array<int, 2>, FieldCount> value{{{0, 0}, {1, 1}, {0, 0}, {0, 0}, {0, 0}, {0, 0}, {0, 0}}};

    // "Trunk:", "Delay Time:", ... as the window labels them.
    static const char* caption(Field field);
    // The choices of a field in grid text: "Off"/"On", the delay list of the
    // layout, "None" and the tones and codes.
    static std::vector<std::string> fieldList(Field field, int bc785d);
    // The store column a field fills.
    static int storeColumn(Field field);

    // The grid text a new line gets in a field, "" when the field has no default.
    std::string gridText(Field field, int bc785d) const;
};

// Reads defdata.ini from folder; a missing or short file leaves the built-in values.
void readDefaultData(DefaultData& data, const std::filesystem::path& folder);
std::string defaultDataText(const DefaultData& data);
std::string writeDefaultData(const DefaultData& data, const std::filesystem::path& folder);

} // namespace kestra
