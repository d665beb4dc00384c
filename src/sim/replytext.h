#pragma once
// Pieces of the scanner's replies that its commands and its keys share: the
// short answers, the carriage return that ends a reply, and the fixed-width
// numbers of the reply forms.

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>

namespace kestra::sim {

inline const std::string kOk = "OK\r";
inline const std::string kNg = "NG\r";
inline const std::string kErr = "ERR\r";

inline std::string reply(std::string text) { return text + "\r"; }

inline bool allDigits(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

inline int digitsValue(std::string_view text)
{
    int v = 0;
    for (char c : text) v = v * 10 + (c - '0');
    return v;
}

inline std::string channel3(int n)
{
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "%03d", n % 1000);
    return buffer;
}

inline std::string twoDigits(int n)
{
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%02d", n);
    return buffer;
}

inline const char* flagLetter(bool on) { return on ? "N" : "F"; }

} // namespace kestra::sim
