#pragma once
// Cell entry in the grid of the main window: which columns are typed into the
// in-place text box Text1 and which change by key or double click, the keys of
// every column, the lists the list columns scroll through, the choices of the
// lists in the window's top frame, the Smart Info of the active column and the
// lines of the Keyboard Shortcuts window. Plain logic over the grid; the
// window only passes keys and places the text box.

#include "core/memtable.h"

#include <functional>
#include <string>
#include <vector>

namespace kestra {

class FrequencyEntry;

// How a store column takes its value.
enum class EntryRule {
    None,       // no column of this layout
    Frequency,  // typed into Text1, closed by Enter through enterfreq
    Tag,        // typed into Text1
    OnOff,      // "Off" / "On"
    Delay,      // the delay list of the model
    Tone,       // "None", the CTCSS tones, the DCS codes
    Mode,       // set by letter or scrolled
    Step,       // the step list of the model
};

// A key as the grid passes it on.
struct Keystroke {
    enum class Kind {
        Character,  // a printable character, in `ch`
        Space,
        Delete,
        Backspace,
        Enter,
        Edit,       // F2: the cell's text into the box, to be edited
        NumPlus,    // + and - of the numeric keypad
        NumMinus,
    };
    Kind kind = Kind::Character;
    char ch = 0;        // Windows-1252
    bool shift = false;
    bool ctrl = false;

    static Keystroke character(char c) { return {Kind::Character, c, false, false}; }
    static Keystroke of(Kind kind, bool shift = false, bool ctrl = false) { return {kind, 0, shift, ctrl}; }
};

struct SmartInfo {
    std::string title;
    std::string text;
};

class CellEntry {
public:
    CellEntry(MemTable& table, FrequencyEntry& frequency);

    // ---- columns ----
    int storeColumn(int gridCol) const;             // 0 for the channel number column
    EntryRule rule(int gridCol) const;
    static EntryRule ruleOfStore(int storeColumn);
    bool opensEditor(int gridCol) const;            // frequency and tag

    // The texts a list column scrolls through, in order, for the current model.
    std::vector<std::string> choices(int storeColumn) const { return modelChoices(storeColumn, table_.doc().model); }
    // The same lists for a given model.
    static std::vector<std::string> modelChoices(int storeColumn, const ModelSwitches& model);
    // The lists of the top frame's tone combos: "None" and the CTCSS tones,
    // "None" and the DCS codes.
    static std::vector<std::string> ctcChoices();
    static std::vector<std::string> dcsChoices();
    // How many entries the keypad + and - jump in the PL/DPL list.
    static constexpr int kFastScroll = 10;

    // ---- keys ----
    enum class KeyResult {
        Ignored,       // not a key of this column: the grid may use it (arrows and the like)
        Handled,       // done (the cell may or may not have changed)
        EditorOpened,  // Text1 is to be shown over edit().row, edit().col with edit().text
    };
    // A key on the grid's current cell.
    KeyResult key(const Keystroke& key);
    // A double click on a cell: list columns scroll as with Space, text
    // columns open Text1 on the cell's text.
    KeyResult doubleClick(int row, int gridCol);

    // ---- Text1 ----
    struct Edit {
        int row = 0, col = 0;   // grid cell under the box
        std::string text;       // the text the box starts with
    };
    bool editing() const { return editing_; }
    const Edit& edit() const { return edit_; }
    // Opens Text1 on a cell with a starting text; false for a list column.
    bool beginEdit(int row, int gridCol, std::string text);
    // Closes Text1 into the grid: the frequency through enterfreq, the tag into
    // the Easy Tag lists and the cell. With moveOn the current cell goes one row down.
    void commit(const std::string& text, bool moveOn);
    // Closes Text1 and drops what was typed.
    void drop();

    // ---- the top frame ----
    // A choice in a list combo (step, mode, delay, PL/DPL): the text goes into
    // that column of every selected row.
    void chooseFromList(int storeColumn, const std::string& text);
    // A choice in an Easy Tag combo: the tag goes into every selected row.
    void chooseTag(const std::string& tag);

    // ---- help ----
    SmartInfo smartInfo(int gridCol) const;
    // The lines of the Keyboard Shortcuts window, the two lines of its heading first.
    static const std::vector<std::string>& shortcutLines();

    // The line operations behind Shift+Delete, Ctrl+D and Ctrl+U. While they
    // are unset the keys do nothing.
    std::function<void()> clearSelectedLines;
    // A short word for the status bar (why an entry was not taken).
    std::function<void(const std::string&)> tell;
    std::function<void()> shiftChannelDown;
    std::function<void()> shiftChannelUp;

private:
    bool setCell(int row, int gridCol, const std::string& text);   // true when the text changed
    bool scroll(int row, int gridCol, int by);
    bool toggleLockout(int row, int gridCol);
    KeyResult listKey(int row, int gridCol, const Keystroke& key);
    KeyResult textKey(int row, int gridCol, const Keystroke& key);
    void moveDown(int row, int gridCol);

    MemTable& table_;
    FrequencyEntry& frequency_;
    bool editing_ = false;
    Edit edit_;
};

// The menu commands that check the bank in the grid. Each carries the grid
// into the store, works there, repaints the grid and marks the document changed.
// "Check Data In Table": the table check, then the bandplan over the current
// bank when a bandplan is chosen.
void checkDataInTable(MemTable& table);
// "Check Table using Bandplan" > "Current Bank": the selected rows, or all 100
// when the selection is one row.
void bandplanCurrentBank(MemTable& table);
// "Check Table using Bandplan" > "All Banks".
void bandplanAllBanks(MemTable& table);

} // namespace kestra
