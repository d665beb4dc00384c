#pragma once
// A full document for the report tests: ten banks of 100 channels with every
// code of every column in turn, a bank with a gap of empty channels, search
// ranges and trunk IDs, the way a MEM file would carry them.

#include "core/document.h"

#include <cstdio>
#include <string>

namespace kestra::test {

// Channel freq of bank b, row r: "1BB.RRR0" style, distinct everywhere.
inline std::string reportFrequency(int bank, int row)
{
    char text[16];
    std::snprintf(text, sizeof text, "%.4f", 118.0 + bank * 10 + row * 0.025);
    return text;
}

inline Document reportDocument()
{
    Document doc;
    doc.clearstores();
    doc.model = ModelSwitches::of(Model::BC785D);
    for (int b = 0; b < kChannelBanks; ++b) {
        doc.banktags[b] = "Bank tag " + std::to_string(b + 1);
        for (int r = 1; r <= kChannelRows; ++r) {
            auto& c = doc.memdata[b][r];
            if (b == 4 && r > 40 && r <= 60) continue;   // a gap of empty channels
            c[col::freq] = reportFrequency(b, r);
            c[col::tag] = "Tag " + std::to_string(b + 1) + "-" + std::to_string(r);
            c[col::trunk] = std::to_string(r % 2);
            c[col::record] = std::to_string(r % 3 == 0);
            c[col::delay] = std::to_string(r % 8);
            c[col::recordHidden] = "0";
            c[col::beep] = std::to_string(r % 2 == 0);
            c[col::tone] = std::to_string(r % 41);
            c[col::lockout] = std::to_string(r % 5 == 0);
            c[col::atten] = std::to_string(r % 7 == 0);
            c[col::mode] = std::to_string(r % 4);
            c[col::step] = std::to_string(r % 10);
            c[col::comment] = " ";
        }
    }
    // Search ranges 1..7 filled, 8..10 empty.
    for (int s = 0; s < 7; ++s) {
        char start[16], end[16];
        std::snprintf(start, sizeof start, "%.4f", 130.0 + s * 10);
        std::snprintf(end, sizeof end, "%.4f", 135.0 + s * 10);
        doc.srcdata[s] = {start, end, std::to_string(s % 6), std::to_string(s + 1), "Range " + std::to_string(s + 1)};
    }
    // Bank 3 is a Motorola system with two scan lists of IDs.
    doc.trunkset[2].trunktype = "1";
    for (int list = 0; list < 2; ++list) {
        doc.trunklisttags[2][list] = "List " + std::to_string(list + 1);
        for (int p = 0; p < 10; ++p) {
            // Store row 10*list holds the list's tenth ID.
            auto& id = doc.trunkids[2][list * 10 + p];
            id = {std::to_string(1000 + list * 100 + (p == 0 ? 10 : p)),
                  "Group " + std::to_string(list + 1) + "." + std::to_string(p == 0 ? 10 : p), "0", "0", ""};
        }
    }
    return doc;
}

} // namespace kestra::test
