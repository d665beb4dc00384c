#include "inifile.h"

#include "memfile.h"
#include "text.h"


namespace kestra {

namespace {
std::string trimBlanks(std::string_view text)
{
    std::size_t a = 0, b = text.size();
    while (a < b && (text[a] == ' ' || text[a] == '\t')) ++a;
    while (b > a && (text[b - 1] == ' ' || text[b - 1] == '\t')) --b;
    return std::string(text.substr(a, b - a));
}
} // namespace

IniFile IniFile::parse(std::string_view text)
{
    IniFile ini;
    std::map<std::string, std::string>* section = nullptr;
    std::size_t pos = 0;
    while (pos < text.size()) {
        std::size_t end = text.find_first_of("\r\n", pos);
        if (end == std::string_view::npos) end = text.size();
        const std::string line = trimBlanks(text.substr(pos, end - pos));
        pos = end;
        while (pos < text.size() && (text[pos] == '\r' || text[pos] == '\n')) ++pos;
        if (line.empty() || line[0] == ';') continue;
        if (line[0] == '[') {
            const auto close = line.find(']');
            section = &ini.sections_[asciiLower(trimBlanks(line.substr(1, close == std::string::npos ? std::string::npos : close - 1)))];
            continue;
        }
        const auto eq = line.find('=');
        if (!section || eq == std::string::npos) continue;
        std::string value = trimBlanks(std::string_view(line).substr(eq + 1));
        if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front())
            value = value.substr(1, value.size() - 2);
        if (value.size() > kMaxValue) value.resize(kMaxValue);
        section->emplace(asciiLower(trimBlanks(std::string_view(line).substr(0, eq))), std::move(value));
    }
    return ini;
}

IniFile IniFile::load(const std::filesystem::path& path)
{
    std::string bytes;
    if (!readFileBytes(path, bytes)) return {};
    return parse(bytes);
}

std::optional<std::string> IniFile::get(std::string_view section, std::string_view key) const
{
    const auto s = sections_.find(asciiLower(section));
    if (s == sections_.end()) return std::nullopt;
    const auto k = s->second.find(asciiLower(key));
    if (k == s->second.end()) return std::nullopt;
    return k->second;
}

std::string IniFile::get(std::string_view section, std::string_view key, std::string_view defaultValue) const
{
    return get(section, key).value_or(std::string(defaultValue));
}

} // namespace kestra
