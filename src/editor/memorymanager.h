#pragma once
// Copy, move and swap of memory channels and of whole banks: the work behind
// the Memory Manager window. Channels are addressed by their numbers 1..1100
// (bank * 100 + row, 1001..1100 the Dummy bank), so a range may run across
// banks. A bank carries its channels with their comments, its lockout flags,
// its priority channel and (with Copy Tags) its tag; its trunk settings are
// the trunk system, the ID list and the list tags. The Dummy bank has
// channels only.

#include "core/document.h"

#include <string>

namespace kestra {

class LineOperations;
class MemTable;

struct MemoryJob {
    enum class Operation { Copy, Move, Swap };
    enum class Unit { Channels, Banks };
    // What a bank operation carries.
    enum class BankPart { Channels, TrunkSettings, ChannelsAndTrunkSettings };

    Operation operation = Operation::Copy;
    Unit unit = Unit::Channels;
    BankPart part = BankPart::Channels;
    // Channels: the channel tags follow the channels; off, every channel
    // keeps the tag of its place. Banks: the bank tag follows the bank.
    bool copyTags = false;

    int fromBank = 0, toBank = 0;                  // 0..9 Bank 1..10, 10 Dummy
    int fromFirst = 1, fromLast = 1, toFirst = 1;  // channel numbers 1..1100
};

struct MemoryOutcome {
    bool changed = false;
    std::string done;   // what was done, for the window's status line ("" when nothing)
    std::string note;   // what the user must be told: a range cut short, nothing to do
};

// The job on the document alone: no grid, no undo, no messages.
MemoryOutcome runMemoryJob(Document& doc, const MemoryJob& job);

// The job as the window runs it: the grid into the store, an undo copy of
// every bank whose channels change, the job, the copytags setting, the grid
// repainted, the document marked dirty and the note told in a message box.
class MemoryManager {
public:
    // undo may be null (no undo copies are kept then).
    MemoryManager(MemTable& table, LineOperations* undo) : table_(table), undo_(undo) {}

    MemoryOutcome perform(const MemoryJob& job);

private:
    MemTable& table_;
    LineOperations* undo_;
};

} // namespace kestra
