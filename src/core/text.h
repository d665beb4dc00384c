#pragma once
// Text helpers shared by every part of the program. All document text is held
// as single-byte Windows-1252 strings: one byte, one character.

#include "platform/cp1252.h"  // utf8FromCp1252, cp1252FromUtf8: the edges of the program

#include <string>
#include <string_view>

namespace kestra {

// The leading-number parse: the longest numeric prefix of the text (after
// leading blanks and tabs), 0 when there is none. "146.0050 MHz" gives
// 146.005, "12L" gives 12, "-2" gives -2, "1E3" gives 1000, "abc" gives 0.
double Val(std::string_view text);

// The whole-number part of Val (towards minus infinity, like Int()).
long long IntVal(std::string_view text);

// Val clamped into a 16-bit signed value, as the settings and flags keep it.
int Val16(std::string_view text);

// Position (from 1) of needle in text at or after position start, 0 when absent.
std::size_t InStr(std::string_view text, std::string_view needle, std::size_t start = 1);

inline bool contains(std::string_view text, std::string_view needle)
{
    return text.find(needle) != std::string_view::npos;
}

// Mid(text, start, length) with start counted from 1; out-of-range parts give "".
std::string Mid(std::string_view text, std::size_t start, std::size_t length = std::string_view::npos);

std::string ltrim(std::string_view text);   // cuts leading blanks
std::string rtrim(std::string_view text);   // cuts trailing blanks
std::string trim(std::string_view text);
// The text with its ASCII letters made lower or upper case; other bytes stay.
std::string asciiLower(std::string_view text);
std::string asciiUpper(std::string_view text);
// A tag centred in `width` characters: cut to the width and trimmed, then, if
// anything is left, (width - length) / 2 leading blanks, the half rounded to
// even.
std::string centerText(std::string_view text, std::size_t width);

// Text on its way into the store (a tag, a comment): every double quote
// becomes an apostrophe. The MEM format quotes its fields and has no escape,
// so a quote in a field would end it early and shift every field after it.
std::string withoutQuotes(std::string_view text);

// A whole number as text, without leading zeros or blanks.
std::string numText(long long value);

} // namespace kestra
