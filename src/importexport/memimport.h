#pragma once
// Import from another MEM file, bank by bank, without opening it: channel
// banks (frequencies) or trunk ID lists. The other file is read by the same
// readers as File > Open (KESTRA V1.00 to V1.02, LORVEN) into a private
// document; nothing of the open document changes until a bank is applied.

#include "core/document.h"

#include <string>
#include <string_view>

namespace kestra {

enum class MemImportKind { Frequencies, TrunkIds };

struct MemSource {
    Document doc;
    std::string problem;   // "" when read, else the message for the user
    bool ok() const { return problem.empty(); }
};

// Reads the other file's text; the name tells a LORVEN file from a KESTRA one
// the way File > Open tells them.
MemSource readMemSource(const std::string& path, std::string_view bytes);

// True when the destination bank has nothing the import would override: no
// channel with a frequency, or no ID in its list.
bool destinationEmpty(const Document& doc, MemImportKind kind, int bank);

// Copies bank `from` of the source into bank `to`: channels 1..100 with
// columns 0..12, or the ID list rows 0..99 with their five fields. Marks the
// document changed.
void applyMemBank(Document& doc, const Document& source, MemImportKind kind, int from, int to);

// The edge data: rows 0..49, columns 1..9 of the source's bank 10 into the
// document's bank 10 (the channel store in both kinds).
void applyMemEdge(Document& doc, const Document& source);

} // namespace kestra
