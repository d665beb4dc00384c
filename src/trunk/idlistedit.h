#pragma once
// Copy, move and swap of trunk IDs and scan lists, within the bank on view
// or between banks, and the tags of the ten scan lists. These work on the
// store (trunkids, trunklisttags); the ID window commits before and rereads
// after.

#include "core/document.h"

#include <string>
#include <vector>

namespace kestra {

enum class IdOperation { Copy, Move, Swap };
enum class IdUnit { Ids, Lists };
enum class IdScope { ActiveBank, AllBanks };

struct IdListChoice {
    IdOperation operation = IdOperation::Copy;
    IdUnit unit = IdUnit::Ids;
    IdScope scope = IdScope::ActiveBank;
};

// The entries of the "From:" and "To:" lists for a choice, bank the bank on view:
// - IDs in the bank: one per store row 0..99, "list : ID - tag";
// - lists in the bank: "1: tag" ... "10: tag";
// - IDs between banks: one per bank, a whole bank's lists with their tags;
// - lists between banks: every list of every bank, "Bank 2 - 3: tag".
std::vector<std::string> idListEntries(const Document& doc, IdUnit unit, IdScope scope, int bank);

// Performs the choice from entry `from` to entry `to` of those lists; an entry
// of -1 (no selection) or out of range does nothing. Move empties the source
// (a moved list's tag becomes one blank) also when source and target are one.
void applyIdListChoice(Document& doc, const IdListChoice& choice, int bank, int from, int to);

// ---- list tags ----
// "Bank 3 List 7" for bank index 2 and list 7 (counted from 1).
std::string defaultListTag(int bank, int list);
// Every list of the ten banks gets its default tag.
void defaultListTagsAllBanks(Document& doc);
// A key typed into a list tag box: dropped when its code is 9..31, 127 or
// above, or it is a double quote or a comma.
bool listTagKeyAccepted(char key);

} // namespace kestra
