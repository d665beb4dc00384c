#pragma once
// The one crossing between the virtual scanner's memory and the program's
// document: which store column, trunk field and search field holds which of
// the scanner's values, in both directions. A MEM file fills the scanner
// through here, and the scanner's memory is written as a MEM file through here.

#include "core/document.h"
#include "core/memfile.h"
#include "sim/scannermemory.h"

#include <string>
#include <string_view>
#include <vector>

namespace kestra::sim {

struct FillReport {
    std::vector<int> refusedChannels;  // channels whose frequency the receiver cannot tune: left empty
};

// Puts the document's banks 0..9, bank tags, priority channels, active banks,
// trunk systems, ID lists, search ranges and FIPS codes into the memory. The
// memory's model decides the record column and the delay and step lists, as
// it does for a transfer. Values the document does not hold stay as they are.
FillReport fillFromDocument(ScannerMemory& memory, const Document& doc);

// Writes what the scanner keeps into the document, in the store's code forms.
// Cells the scanner has no place for (line numbers, comments, the Dummy
// bank, trunk fields of other system types) are left alone.
void writeToDocument(const ScannerMemory& memory, Document& doc);

// A new document (as after File > New) holding the scanner's memory.
Document documentOf(const ScannerMemory& memory);

// A MEM file into the memory; the memory is unchanged when the file is refused.
MemLoadResult loadMemFile(ScannerMemory& memory, std::string_view bytes, FillReport* report = nullptr);
// The memory as the text of a MEM file.
std::string memFileText(const ScannerMemory& memory);

// The program's trunk type (1..9) of a scanner system and back: the program
// numbers Type 1 and Type 2 800 MHz the other way round, and LTR and EDACS SCT.
int programTrunkType(TrunkKind kind);
std::optional<TrunkKind> trunkKindOfProgramType(int type);

} // namespace kestra::sim
