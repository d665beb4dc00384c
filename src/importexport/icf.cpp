#include "icf.h"

#include "core/cellcodes.h"
#include "core/text.h"

#include <cctype>

namespace kestra {

namespace {

int hexValue(char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

std::vector<std::string_view> splitLines(std::string_view text)
{
    std::vector<std::string_view> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        lines.push_back(line);
        start = end + 1;
    }
    return lines;
}

// Mid on a view, 1-based; short lines give what is there.
std::string_view mid(std::string_view s, std::size_t pos, std::size_t len)
{
    if (pos - 1 >= s.size()) return {};
    return s.substr(pos - 1, len);
}

// The six decimals of a frequency kept to four by the radio on a 6.25 or
// 12.5 kHz raster: what the last digit tells of the two that follow.
std::string extension(char last)
{
    switch (last) {
    case '0': return "00";
    case '1': case '6': return "25";
    case '2': case '7': return "50";
    case '3': case '8': return "75";
    default: return {};
    }
}

IcfChannel decodeLine(std::string_view line, int khz9, std::vector<std::string>& problems)
{
    IcfChannel ch;
    line = line.substr(0, 38);
    const std::string_view head = mid(line, 7, 3);
    const bool empty = head == "FFF";
    bool nineKhz = false;
    if (!empty && line.size() >= 14) {
        const int hundreds = hexValue(line[6]) & 3;
        ch.freq = numText(hundreds) + std::string(mid(line, 8, 3)) + "." + std::string(mid(line, 11, 4));
    }
    if (!empty && khz9 == 1 && head.size() == 3 && head[2] == 'F') {
        nineKhz = true;
        const std::string k = numText(hexbyte(mid(line, 7, 2), &problems) * 9 + 495);
        ch.freq = k.size() == 3 ? "0." + k + "00" : k.substr(0, 1) + "." + k.substr(1) + "00";
    }
    if (!nineKhz && !ch.freq.empty()) ch.freq += extension(ch.freq.back());

    const std::string_view modeDigit = mid(line, 23, 1);
    if (!modeDigit.empty()) {
        const int m = hexValue(modeDigit[0]);
        if (m >= 0 && m <= 3) ch.mode = "0";
        else if (m >= 4 && m <= 7) ch.mode = "1";
        else if (m >= 8 && m <= 11) ch.mode = "2";
    }
    ch.step = std::string(mid(line, 26, 1));
    ch.pos15 = std::string(mid(line, 15, 1));
    if (line.size() >= 22) ch.offset = std::string(mid(line, 16, 3)) + "." + std::string(mid(line, 19, 4));
    ch.tone = hexbyte(mid(line, 23, 2), &problems) & 63;
    ch.duplex = hexdigit(mid(line, 25, 1));
    const std::string_view name = mid(line, 27, 12);
    for (std::size_t k = 0; k + 2 <= name.size(); k += 2) {
        int v = hexbyte(name.substr(k, 2), &problems);
        if (v == 255) v = 32;
        if (v > 0) ch.name += static_cast<char>(v);
    }
    return ch;
}

} // namespace

int hexbyte(std::string_view text, std::vector<std::string>* problems)
{
    if (text.empty()) return 0;   // a short line: an empty field
    if (text.size() != 2) {
        if (problems) problems->push_back(std::string(text) + "hexsmeter problem");
        return 0;
    }
    const int hi = hexValue(text[0]), lo = hexValue(text[1]);
    return hi < 0 || lo < 0 ? 0 : hi * 16 + lo;
}

int hexdigit(std::string_view text)
{
    if (text.size() != 1) return 0;
    const int v = hexValue(text[0]);
    return v < 0 ? 0 : v;
}

bool decodeIcf(std::string_view text, int khz9, IcfData& out)
{
    out = IcfData{};
    const std::vector<std::string_view> lines = splitLines(text);
    if (lines.size() < 2 + kIcfBanks * kIcfChannels) return false;
    for (int b = 0; b < kIcfBanks; ++b) {
        for (int c = 0; c < kIcfChannels; ++c) {
            const std::string_view line = lines[static_cast<std::size_t>(2 + b * kIcfChannels + c)];
            for (char ch : line.substr(0, 38))
                if (hexValue(ch) < 0) return false;
            out.icfdata[b][c] = decodeLine(line, khz9, out.problems);
        }
    }
    return true;
}

void applyIcfBank(Document& doc, const IcfData& data, int source, int bank)
{
    static constexpr const char* kStepCode[10] = {"0", "0", "2", "3", "0", "2", "4", "2", "5", "6"};
    for (int c = 0; c < kIcfChannels; ++c) {
        const IcfChannel& ch = data.icfdata[source][c];
        auto& line = doc.memdata[bank][c + 1];
        line[col::freq] = ch.freq;
        line[col::tag] = ch.name;
        line[col::mode] = ch.mode;
        if (ch.step.size() == 1 && ch.step[0] >= '0' && ch.step[0] <= '9') line[col::step] = kStepCode[ch.step[0] - '0'];
    }
    doc.dirty = true;
}

bool bankIsEmpty(const Document& doc, int bank)
{
    for (int row = 1; row <= kChannelRows; ++row)
        if (!doc.isEmpty(bank, row)) return false;
    return true;
}

void perconClean(IcfData& data)
{
    for (int b = 0; b < kIcfBanks; ++b) {
        auto& bank = data.icfdata[b];
        for (int c = 0; c < kIcfChannels; ++c) {
            if (!(Val(bank[c].freq) > 0)) continue;
            for (int k = c + 1; k < kIcfChannels; ++k)
                if (Val(bank[k].freq) > 0 && Val(bank[k].freq) == Val(bank[c].freq)) bank[k].freq.clear();
        }
        // Close up: the channels with a frequency move forward in order.
        int to = 0;
        for (int c = 0; c < kIcfChannels; ++c)
            if (Val(bank[c].freq) > 0) bank[to++] = bank[c];
        for (; to < kIcfChannels; ++to) bank[to] = IcfChannel{};
    }
}

} // namespace kestra
