#pragma once
// The memory image of an Icom radio in the ICF text form: two header lines,
// then 400 data lines, one channel each, banks A to H of fifty channels. The
// decoded table icfdata has ten bank rows (8 and 9 the edge rows, which the
// file does not fill) of 51 channels.

#include "core/document.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace kestra {

struct IcfChannel {
    std::string freq;      // MHz text, "" for an empty channel
    std::string mode;      // "0", "1", "2" or ""
    std::string step;      // the tuning step digit
    std::string pos15;     // the digit kept from position 15
    std::string offset;    // the offset text
    int tone = 0;          // the tone byte AND 63
    int duplex = 0;        // the tone or duplex digit
    std::string name;
};

inline constexpr int kIcfBanks = 8;
inline constexpr int kIcfChannels = 50;

struct IcfData {
    std::array<std::array<IcfChannel, 51>, 10> icfdata;
    // The texts a value of the wrong length produced ("... hexsmeter problem").
    std::vector<std::string> problems;
};

// Decodes the file's text; false ("Not a valid file!") for a file of fewer
// than 402 lines or a data line with other than hexadecimal digits. khz9 is
// the setting "Advanced Frequency Upload".
bool decodeIcf(std::string_view text, int khz9, IcfData& out);

// hexbyte and hexdigit of the decoder: two digits to 0..255, one to 0..15;
// 0 for what is no such value.
int hexbyte(std::string_view text, std::vector<std::string>* problems = nullptr);
int hexdigit(std::string_view text);

// Writes ICF bank `source` (0..7) into channels 1..50 of `bank`: frequency,
// name as tag, mode, and the step mapped to a step code (digits without a
// mapping leave the step as it was).
void applyIcfBank(Document& doc, const IcfData& data, int source, int bank);

// True when no channel of the bank has a frequency.
bool bankIsEmpty(const Document& doc, int bank);

// Removes later duplicates (by value) within each ICF bank and closes up the gaps.
void perconClean(IcfData& data);

} // namespace kestra
