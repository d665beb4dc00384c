#pragma once
// The key=value files of the program (setup.ini, com250.ini) read the way the
// system's private-profile call reads them: sections and keys without regard
// to case, the first of two equal keys wins, blanks round a value cut, one pair
// of surrounding quotes taken off, and a value cut to 254 characters.

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace kestra {

class IniFile {
public:
    static IniFile parse(std::string_view text);
    // A missing or unreadable file reads as an empty one.
    static IniFile load(const std::filesystem::path& path);

    std::optional<std::string> get(std::string_view section, std::string_view key) const;
    // The value, or the default when the section or key is missing.
    std::string get(std::string_view section, std::string_view key, std::string_view defaultValue) const;

    static constexpr std::size_t kMaxValue = 254;

private:
    std::map<std::string, std::map<std::string, std::string>> sections_;
};

} // namespace kestra
