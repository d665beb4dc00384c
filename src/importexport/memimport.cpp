#include "memimport.h"

#include "convert.h"

#include "core/memfile.h"

namespace kestra {

MemSource readMemSource(const std::string& path, std::string_view bytes)
{
    MemSource source;
    source.doc.clearstores();
    MemLoadResult result;
    switch (memKindOf(path, bytes.substr(0, 256))) {
    case MemKind::Lorven: result = read780(source.doc, bytes, 0); break;
    case MemKind::Kestra: result = readMem(source.doc, bytes, 0); break;
    case MemKind::Special: source.problem = "File is not compatible."; return source;
    }
    switch (result.status) {
    case MemLoadStatus::Loaded: break;
    case MemLoadStatus::NotCompatible:
    case MemLoadStatus::NotLorven:
    case MemLoadStatus::LorvenNoVersion: source.problem = "File is not compatible."; break;
    case MemLoadStatus::Invalid: source.problem = "Not a valid file!"; break;
    }
    return source;
}

bool destinationEmpty(const Document& doc, MemImportKind kind, int bank)
{
    if (kind == MemImportKind::Frequencies) {
        for (int row = 1; row <= kChannelRows; ++row)
            if (!doc.isEmpty(bank, row)) return false;
        return true;
    }
    for (const TrunkIdEntry& entry : doc.trunkids[bank])
        if (!entry[0].empty()) return false;
    return true;
}

void applyMemBank(Document& doc, const Document& source, MemImportKind kind, int from, int to)
{
    if (kind == MemImportKind::Frequencies) {
        for (int row = 1; row <= kChannelRows; ++row)
            for (int c = 0; c <= col::step; ++c) doc.memdata[to][row][c] = source.memdata[from][row][c];
    } else {
        // Store row for store row, so that the lists keep the other file's order.
        doc.trunkids[to] = source.trunkids[from];
    }
    doc.dirty = true;
}

void applyMemEdge(Document& doc, const Document& source)
{
    for (int row = 0; row < 50; ++row)
        for (int c = 1; c <= 9; ++c) doc.memdata[9][row][c] = source.memdata[9][row][c];
    doc.dirty = true;
}

} // namespace kestra
