#include "trunk/idlistedit.h"

#include "core/text.h"
#include "trunk/trunkids.h"

#include <utility>

namespace kestra {

namespace {

// One place of the store that takes part: an ID row, or a list tag.
struct Place {
    int bank;
    int row;    // store row 0..99, or -1 for a list tag
    int list;   // list 0..9 when row is -1
};

void act(Document& doc, IdOperation op, const Place& f, const Place& t)
{
    if (f.row >= 0) {
        TrunkIdEntry& from = doc.trunkids[f.bank][f.row];
        TrunkIdEntry& to = doc.trunkids[t.bank][t.row];
        switch (op) {
        case IdOperation::Copy: to = TrunkIdEntry(from); break;
        case IdOperation::Move: to = TrunkIdEntry(from); from = TrunkIdEntry{}; break;
        case IdOperation::Swap: std::swap(from, to); break;
        }
        return;
    }
    std::string& from = doc.trunklisttags[f.bank][f.list];
    std::string& to = doc.trunklisttags[t.bank][t.list];
    switch (op) {
    case IdOperation::Copy: to = std::string(from); break;
    case IdOperation::Move: to = std::string(from); from = " "; break;
    case IdOperation::Swap: std::swap(from, to); break;
    }
}

// A list's ten rows and its tag.
void actOnList(Document& doc, IdOperation op, int fromBank, int fromList, int toBank, int toList)
{
    for (int p = 0; p < kIdsPerList; ++p)
        act(doc, op, {fromBank, fromList * kIdsPerList + p, 0}, {toBank, toList * kIdsPerList + p, 0});
    act(doc, op, {fromBank, -1, fromList}, {toBank, -1, toList});
}

int entryCount(IdUnit unit, IdScope scope)
{
    if (scope == IdScope::AllBanks) return unit == IdUnit::Ids ? kChannelBanks : kChannelBanks * kIdLists;
    return unit == IdUnit::Ids ? kIdRows : kIdLists;
}

} // namespace

std::vector<std::string> idListEntries(const Document& doc, IdUnit unit, IdScope scope, int bank)
{
    std::vector<std::string> entries;
    if (scope == IdScope::ActiveBank && unit == IdUnit::Ids) {
        for (int s = 0; s < kIdRows; ++s) {
            const TrunkIdEntry& e = doc.trunkids[bank][s];
            entries.push_back(numText(listOfStoreRow(s) + 1) + " : " + e[idcol::id] + " - " + e[idcol::tag]);
        }
    } else if (scope == IdScope::ActiveBank) {
        for (int l = 0; l < kIdLists; ++l) entries.push_back(numText(l + 1) + ": " + doc.trunklisttags[bank][l]);
    } else if (unit == IdUnit::Ids) {
        for (int b = 0; b < kChannelBanks; ++b) entries.push_back(bankListCaption(doc, b));
    } else {
        for (int b = 0; b < kChannelBanks; ++b)
            for (int l = 0; l < kIdLists; ++l)
                entries.push_back("Bank " + numText(b + 1) + " - " + numText(l + 1) + ": " + doc.trunklisttags[b][l]);
    }
    return entries;
}

void applyIdListChoice(Document& doc, const IdListChoice& choice, int bank, int from, int to)
{
    const int count = entryCount(choice.unit, choice.scope);
    if (from < 0 || to < 0 || from >= count || to >= count) return;
    const IdOperation op = choice.operation;
    if (choice.scope == IdScope::ActiveBank) {
        if (choice.unit == IdUnit::Ids) act(doc, op, {bank, from, 0}, {bank, to, 0});
        else actOnList(doc, op, bank, from, bank, to);
    } else if (choice.unit == IdUnit::Ids) {
        // A whole bank: all its rows and all its list tags.
        for (int l = 0; l < kIdLists; ++l) actOnList(doc, op, from, l, to, l);
    } else {
        actOnList(doc, op, from / kIdLists, from % kIdLists, to / kIdLists, to % kIdLists);
    }
}

std::string defaultListTag(int bank, int list)
{
    return "Bank " + numText(bank + 1) + " List " + numText(list);
}

void defaultListTagsAllBanks(Document& doc)
{
    for (int b = 0; b < kChannelBanks; ++b)
        for (int l = 0; l < kIdLists; ++l) doc.trunklisttags[b][l] = defaultListTag(b, l + 1);
}

bool listTagKeyAccepted(char key)
{
    const auto code = static_cast<unsigned char>(key);
    if ((code >= 9 && code <= 31) || code >= 127) return false;
    return key != '"' && key != ',';
}

} // namespace kestra
