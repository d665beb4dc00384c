#include "text.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>

namespace kestra {

namespace {
bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isBlank(char c) { return c == ' ' || c == '\t'; }
} // namespace

double Val(std::string_view text)
{
    std::size_t i = 0;
    const std::size_t n = text.size();
    while (i < n && isBlank(text[i])) ++i;
    const std::size_t start = i;
    if (i < n && (text[i] == '+' || text[i] == '-')) ++i;
    const std::size_t mantissa = i;
    while (i < n && isDigit(text[i])) ++i;
    bool digits = i > mantissa;
    if (i < n && text[i] == '.') {
        const std::size_t frac = ++i;
        while (i < n && isDigit(text[i])) ++i;
        digits = digits || i > frac;
    }
    if (!digits) return 0;
    std::size_t end = i;
    if (i < n && (text[i] == 'e' || text[i] == 'E' || text[i] == 'd' || text[i] == 'D')) {
        std::size_t j = i + 1;
        if (j < n && (text[j] == '+' || text[j] == '-')) ++j;
        const std::size_t expDigits = j;
        while (j < n && isDigit(text[j])) ++j;
        if (j > expDigits) end = j;
    }
    // from_chars takes no leading "+" and no "D" exponent: build the plain form.
    std::string number(text.substr(start, end - start));
    if (!number.empty() && number.front() == '+') number.erase(0, 1);
    for (char& c : number)
        if (c == 'd' || c == 'D') c = 'e';
    double value = 0;
    auto [ptr, ec] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (ec == std::errc::result_out_of_range) {
        // Too large (or too small) for a double: the sign of the text decides.
        const bool negative = number.front() == '-';
        const bool tiny = number.find_first_of("123456789") == std::string::npos || contains(number, "e-");
        return tiny ? 0.0 : (negative ? -HUGE_VAL : HUGE_VAL);
    }
    (void)ptr;
    return value;
}

long long IntVal(std::string_view text)
{
    const double v = std::floor(Val(text));
    if (!(v > static_cast<double>(LLONG_MIN))) return LLONG_MIN;
    if (!(v < static_cast<double>(LLONG_MAX))) return LLONG_MAX;
    return static_cast<long long>(v);
}

int Val16(std::string_view text)
{
    const double v = Val(text);
    if (v >= 32767) return 32767;
    if (v <= -32768) return -32768;
    return static_cast<int>(std::nearbyint(v));  // halves to even, as a 16-bit assignment rounds
}

std::size_t InStr(std::string_view text, std::string_view needle, std::size_t start)
{
    if (start == 0) start = 1;
    if (start > text.size() + 1) return 0;
    const auto pos = text.find(needle, start - 1);
    return pos == std::string_view::npos ? 0 : pos + 1;
}

std::string Mid(std::string_view text, std::size_t start, std::size_t length)
{
    if (start == 0 || start > text.size()) return {};
    return std::string(text.substr(start - 1, length));
}

std::string ltrim(std::string_view text)
{
    std::size_t i = 0;
    while (i < text.size() && text[i] == ' ') ++i;
    return std::string(text.substr(i));
}

std::string rtrim(std::string_view text)
{
    std::size_t n = text.size();
    while (n > 0 && text[n - 1] == ' ') --n;
    return std::string(text.substr(0, n));
}

std::string trim(std::string_view text) { return ltrim(rtrim(text)); }

std::string asciiLower(std::string_view text)
{
    std::string out(text);
    for (char& c : out)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return out;
}

std::string asciiUpper(std::string_view text)
{
    std::string out(text);
    for (char& c : out)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return out;
}

std::string numText(long long value) { return std::to_string(value); }

std::string centerText(std::string_view text, std::size_t width)
{
    std::string tag = trim(text.substr(0, std::min(text.size(), width)));
    if (tag.empty()) return tag;
    const std::size_t room = width - tag.size();
    // Half of the room, rounded to even: 1.5 gives 2, 2.5 gives 2.
    std::size_t lead = room / 2;
    if (room % 2 == 1 && lead % 2 == 1) ++lead;
    return std::string(lead, ' ') + tag;
}

std::string withoutQuotes(std::string_view text)
{
    std::string out(text);
    for (char& c : out)
        if (c == '"') c = '\'';
    return out;
}

} // namespace kestra
