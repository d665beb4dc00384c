#include "platform/cp1252.h"

#include <cstdint>

namespace kestra {

namespace {

// Code points of bytes 0x80..0x9F. The rest of the code page (0x00..0x7F and
// 0xA0..0xFF) is the same number as the code point.
constexpr char32_t kHighControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80..87
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 88..8F
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90..97
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 98..9F
};

void appendUtf8(std::string& out, char32_t cp)
{
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

// The byte for a code point, or '?' when the code page has none.
char byteFor(char32_t cp)
{
    if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) return static_cast<char>(cp);
    for (int i = 0; i < 32; ++i) {
        if (kHighControls[i] == cp) return static_cast<char>(0x80 + i);
    }
    return '?';
}

// Decodes one well-formed UTF-8 sequence at text[pos]. Returns its length, or
// 0 when the bytes there are not well-formed (bad lead byte, missing or stray
// continuation, overlong form, surrogate, beyond U+10FFFF).
std::size_t decodeOne(std::string_view text, std::size_t pos, char32_t& cp)
{
    const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
    const std::uint8_t lead = byte(pos);
    std::size_t length;
    char32_t min;
    if (lead < 0x80) {
        cp = lead;
        return 1;
    } else if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        min = 0x80;
        cp = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        min = 0x800;
        cp = lead & 0x0F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        min = 0x10000;
        cp = lead & 0x07;
    } else {
        return 0;
    }
    if (pos + length > text.size()) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        const std::uint8_t next = byte(pos + i);
        if ((next & 0xC0) != 0x80) return 0;
        cp = (cp << 6) | (next & 0x3F);
    }
    if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return 0;
    return length;
}

} // namespace

std::string utf8FromCp1252(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        const auto b = static_cast<std::uint8_t>(c);
        appendUtf8(out, b >= 0x80 && b <= 0x9F ? kHighControls[b - 0x80] : char32_t(b));
    }
    return out;
}

std::string cp1252FromUtf8(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    std::size_t pos = 0;
    while (pos < text.size()) {
        char32_t cp = 0;
        const std::size_t length = decodeOne(text, pos, cp);
        if (length == 0) {
            out += '?';
            ++pos;
        } else {
            out += byteFor(cp);
            pos += length;
        }
    }
    return out;
}

} // namespace kestra
