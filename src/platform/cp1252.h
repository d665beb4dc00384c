#pragma once
// Windows-1252 <-> UTF-8. The program holds all of its text as single-byte
// Windows-1252 strings; windows, paths and the terminal speak UTF-8. These two
// functions are the crossing between them.

#include <string>
#include <string_view>

namespace kestra {

// Every byte becomes one character. The five codes that Windows-1252 leaves
// undefined (0x81, 0x8D, 0x8F, 0x90, 0x9D) become the control characters of
// the same number, so that any byte string survives a round trip.
std::string utf8FromCp1252(std::string_view text);

// Every character becomes one byte; a character that Windows-1252 lacks, and
// every byte that is not part of well-formed UTF-8, becomes "?".
std::string cp1252FromUtf8(std::string_view text);

} // namespace kestra
