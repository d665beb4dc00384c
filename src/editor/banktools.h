#pragma once
// The bulk tools of the Options and Edit menus: sorting a bank by frequency,
// finding and removing duplicate channels, finding text in the frequency or
// comment column and replacing text in the tags. They all work on memdata:
// the grid is carried into the store first and repainted from it last.

#include <string>

namespace kestra {

class LineOperations;
class MemTable;

class BankTools {
public:
    // lineOps: the window's line operations, so that the copy a sort keeps
    // is the one the Undo entry brings back.
    BankTools(MemTable& table, LineOperations& lineOps) : table_(table), lineOps_(lineOps) {}

    enum class Scope { AllBanks, CurrentBank };
    enum class Field { Frequency, Comments };

    // Sorts the selected rows of the current bank by frequency value (one
    // selected row sorts rows 1..100); whole rows move, empty channels go to
    // the end of the range as blank rows. An EDACS bank asks first.
    void sortAscending() { sort(false); }
    void sortDescending() { sort(true); }

    // Every pair of channels with the same frequency text (and with
    // withSubtone the same PL/DPL code) in the current bank or in banks 1 to
    // 10, shown one by one until Cancel. Each pair shown is also a line of
    // dupl.txt in the program's folder: the text of its message.
    void findDuplicates(Scope scope, bool withSubtone);

    // Empties the frequency of the later channel of each pair with the same
    // frequency text in the current bank. Undo brings the bank back.
    void removeDuplicates();

    // Looks for the text (any case) in the chosen column of the channels of
    // the scope, starting behind the last hit; once nothing is left behind it
    // the search starts over at the first channel of the scope. A hit shows
    // the bank, selects the row and tells the channel. False when no channel
    // holds the text (nothing is shown then).
    bool findNext(const std::string& text, Scope scope, Field field);
    // The next search starts at the first channel of its scope.
    void forgetLastHit() { hitBank_ = -1; hitRow_ = 0; }

    // In each channel of the scope whose tag holds `what` (any case), the
    // first occurrence becomes `with`; the tag is cut to 16 characters.
    // Each bank changed keeps its undo copy from before.
    // Returns the number of tags changed.
    int replaceTags(const std::string& what, const std::string& with, Scope scope);

    static constexpr const char* kDuplicateFile = "dupl.txt";

private:
    void sort(bool descending);
    bool sortConfirmed(int bank);
    int firstBank(Scope scope) const;
    int lastBank(Scope scope) const;

    MemTable& table_;
    LineOperations& lineOps_;
    int hitBank_ = -1;
    int hitRow_ = 0;
};

} // namespace kestra
