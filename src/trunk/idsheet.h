#pragma once
// The sheet behind the "Trunk Id's:" window: a private working copy of the ID
// lists of all ten banks in editing-row order, and a grid that shows one bank.
// Every gesture of the window (typing, Enter, sorting, the line operations,
// the clipboard, Center Tags) is a routine here; the window only draws the
// grid and passes keys and clicks on. The store changes at commit alone.
//
// Grid layout: row 0 the headers, rows 1..100 the IDs ("1-1" ... "10-10" in
// column 0); columns ID, Tag, Record, Beep Al. and the scan list's tag.

#include "core/document.h"
#include "core/grid.h"

#include <array>
#include <optional>
#include <string>

namespace kestra {

class TrunkIdSheet {
public:
    // Grid columns.
    static constexpr int kIdCol = 1, kTagCol = 2, kRecordCol = 3, kBeepCol = 4, kListTagCol = 5;
    static constexpr int kCols = 6;
    static constexpr int kLastRow = 100;
    static constexpr const char* kOn = "On";   // a set Record or Beep Alert
    static constexpr const char* kOff = " ";

    // Takes a copy of the trunk stores, which revert() puts back.
    explicit TrunkIdSheet(Document& doc);

    Document& doc() { return doc_; }
    Grid& grid() { return grid_; }
    const Grid& grid() const { return grid_; }
    int bank() const { return bank_; }
    int trunkType() const;

    // ---- the working copy ----
    // Fills the working copy from the store and shows `bank` with the first
    // ID cell current.
    void load(int bank);
    // A tab change: the IDs of the bank on view are checked and go into the
    // working copy, then `bank` is shown.
    void showBank(int bank);
    // Rewrites every ID of the grid with the bank's normaliser (checkids).
    void checkids();
    // The grid into the working copy (no check).
    void storeGrid();
    // checkids, then every bank of the working copy into the store
    // (commitids): tags cut to 16, double quotes made blanks.
    void commit();
    // The trunk stores as they were when the sheet was made.
    void revert();
    // True when the ID lists or list tags of the store differ from the copy
    // taken at the start.
    bool storeChanged() const;
    // A window that works on the store itself is about to open: the sheet is
    // committed first and reread afterwards by reload(), which keeps the bank
    // on view and the current cell.
    void handOver() { commit(); }
    void reload();

    // ---- typing ----
    // A key typed into the current cell: accepted keys are appended (an ID
    // holds at most 8), Backspace takes the last one off.
    void typeKey(char key);
    // Enter on the current cell: an ID is checked, a tag cut to 16; the
    // cursor moves to the next row unless it is on the last.
    void enter();
    // Enter in the ID or Tag box: the text goes into the current row's cell
    // as Enter in the grid would leave it, and the cursor moves down.
    void enterId(std::string_view text);
    void enterTag(std::string_view text);
    // A Record or Beep Alert check box, or a double click on that column.
    void setFlag(int col, bool on);
    void toggleFlag(int row, int col);
    bool flag(int row, int col) const { return grid_.text(row, col) == kOn; }
    // Tab and Shift+Tab: one column right or left; false when that would
    // leave the grid, where the cursor stays.
    bool moveColumn(int step);

    // ---- sorting ----
    // Each sort first keeps the four data columns as the undo copy. Rows whose
    // key is empty go to the bottom, in both directions.
    void sortIds(bool ascending);
    void sortTags(bool ascending);
    // The rows as they were before the last sort of the bank on view.
    void undoSort();

    // ---- tags ----
    void centerTags();
    void alignLeft();
    // "Replace Text Tag:": in every non-empty tag the first occurrence of
    // find (case-sensitive) becomes with; the result is cut to 16.
    void replaceTagText(std::string_view find, std::string_view with);

    // ---- line operations (one row selected only) ----
    void insertId();
    void removeId();
    void moveUp();
    void moveDown();

    // ---- clipboard ----
    // The selection as TAB-separated columns, CR between rows.
    std::string copy() const;
    std::string cut();
    // Empties the selected cells of the four data columns.
    void deleteSelection();
    // Lays the clipboard text in at the current cell, cut at row 100 and the
    // Beep column, and selects what it wrote.
    void paste(std::string_view clipboard);

private:
    using Row = std::array<std::string, 4>;   // ID, Tag, Record, Beep as the grid shows them
    Row gridRow(int row) const;
    void setGridRow(int row, const Row& cells);
    void fillGrid();
    void showListTags();
    void sortBy(int col, bool ascending, bool numeric);
    bool oneRowSelected() const;
    void moveTo(int row, int col);
    void swapRows(int a, int b);

    Document& doc_;
    Grid grid_;
    int bank_ = 0;
    // The working copy: [bank][editing row 1..100] with the store's fields.
    std::array<std::array<TrunkIdEntry, kLastRow + 1>, kChannelBanks> work_{};
    // What revert() puts back.
    std::array<std::array<TrunkIdEntry, 100>, 10> savedIds_;
    std::array<std::array<std::string, 10>, 10> savedListTags_;
    std::array<TrunkSystem, 10> savedSystems_;
    // The undo copy of the last sort and the bank it was taken on.
    std::array<Row, kLastRow + 1> undo_{};
    std::optional<int> undoBank_;
};

} // namespace kestra
