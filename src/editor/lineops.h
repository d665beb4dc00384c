#pragma once
// The Edit and Options entries that work on the selected cells or on whole
// lines of the current bank: undo, cut, copy, paste, clear, insert, remove,
// shift and fill. Cell operations work on the grid; line operations work on
// memdata and repaint once with fillgrid. Every operation first keeps a copy
// of the bank, so one step of undo per bank is always at hand.
//
// The clipboard is plain text passed in and out as a string; the window
// connects it to the system clipboard.

#include "core/document.h"
#include "core/grid.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace kestra {

class MemTable;

// The counter at the end of a tag, as Fill Series counts it: with the blanks
// at the end cut, the final digits (six at most) are the counter and what
// stands before them the stem.
struct TagSeries {
    std::string stem;
    long long counter = 0;
    // The tag `offset` places further on: the stem and the counter plus offset.
    std::string at(long long offset) const { return stem + std::to_string(counter + offset); }
};
// Nothing when the tag does not end in a digit.
std::optional<TagSeries> tagSeries(std::string_view tag);

class LineOperations {
public:
    explicit LineOperations(MemTable& table) : table_(table) {}

    // createbank, then a copy of rows 1..100, columns 0..12 of the current bank.
    void saveundo();
    // The copy of one bank as the store holds it, without createbank: for
    // work on the store that reaches banks other than the one on view.
    void saveundo(int bank);
    // Brings back the bank's copy (again and again: the copy is kept).
    void tabundo();
    bool canUndo(int bank) const { return bank >= 0 && bank <= kDummyBank && undoflag[bank] != 0; }

    // Stretches the selection over all data columns of the selected rows.
    void selectlines();
    const GridSelection& rememberedSelection() const { return remembered_; }

    // The selection as clipboard text: cells divided by TAB, each line ended by CR LF.
    std::string copycells();
    std::string cutcells();
    // Lays the clipboard text in from the current cell. An empty text is a
    // failed clipboard read and changes nothing.
    void pastecells(const std::string& clipboard);
    std::string copyLines() { selectlines(); return copycells(); }
    std::string cutLines() { selectlines(); return cutcells(); }
    void pasteLines(const std::string& clipboard) { selectlines(); pastecells(clipboard); }

    void clearSelectedLines();
    void insertEmptyLine();
    void removeAllEmptyLines();
    void removeSelectedLines();
    void shiftUp();
    void shiftDown();
    void fillDown();
    void fillSeries();
    void clearLockoutChannels();
    void clearCurrentBank();

    // Edit > Select All: every channel line of the bank, all data columns.
    void selectAll();
    // Paste Line Special: the clipboard's lines go in as new lines at the
    // current row, the lines below move down to make room. Lines pushed past
    // row 100 are lost, so the user is asked first when one holds a channel.
    void pasteLinesSpecial(const std::string& clipboard);
    // The tags of the bank centred in 16 characters, or with their leading
    // blanks cut.
    void centerTags();
    void removeLeadingSpaces();
    // The default data of a new channel into each selected line, over what
    // its cells held.
    void fillDefaultData();

    // The grid's clip text of the selection: cells by TAB, lines by CR.
    static std::string clipText(const Grid& grid);
    // Sets the selection's cells from a clip text; cells outside the grid are dropped.
    static void setClipText(Grid& grid, const std::string& text);

    using BankCopy = std::array<std::array<std::string, kCellColumns>, kChannelRows + 1>;  // whole rows, comments too
    // Rows 1..100, columns 0..12 of a bank as the store holds them now.
    BankCopy bankCopy(int bank) const;
    // Clipboard text with every line end as one CR and no double quote.
    static std::string clipLines(std::string_view clipboard);
    // Makes a copy taken earlier the bank's undo step.
    void keepUndo(int bank, BankCopy copy);
    std::array<BankCopy, kDummyBank + 1> undodata;
    std::array<int, kDummyBank + 1> undoflag{};

private:
    bool confirmed();
    int bank() const;
    std::array<std::string, kCellColumns>& line(int row);
    void selectedRows(int& top, int& bottom) const;
    void shift(int step);
    // Lays the clipboard text in from the current cell, as paste does, without an undo copy.
    void layIn(const std::string& clipboard);
    // Asks before a line holding a channel is pushed out past row 100.
    bool mayPushOut(int lines);
    void changeTags(std::string (*change)(std::string_view));
    void finish();

    MemTable& table_;
    GridSelection remembered_;
};

} // namespace kestra
