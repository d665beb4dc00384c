#include "cellentry.h"

#include "freqrules.h"
#include "frequencyentry.h"

#include "core/cellcodes.h"
#include "core/text.h"

#include <algorithm>
#include <cctype>

namespace kestra {

namespace {

constexpr const char* kOff = "Off";
constexpr const char* kOn = "On";
constexpr const char* kNone = "None";
constexpr const char* kEmpty = "Empty";

// The Mode cell set by a letter, or nothing for another letter.
const char* modeOfLetter(char upper)
{
    switch (upper) {
    case 'A': return "AM";
    case 'F':
    case 'M': return "FM";
    case 'N': return "NFM";
    case 'W': return "WFM";
    default: return nullptr;
    }
}

// An on/off cell set by a key, or nothing for another key.
const char* onOffOfKey(char upper)
{
    switch (upper) {
    case '0':
    case 'F': return kOff;
    case '1':
    case 'N': return kOn;
    default: return nullptr;
    }
}

char upperOf(char c) { return static_cast<char>(std::toupper(static_cast<unsigned char>(c))); }

// A tone or code of the tables without its lockout mark ("100.0", "023").
bool isPlainTone(const std::string& text)
{
    const ToneTables& t = toneTables();
    for (int i = 1; i <= 38; ++i)
        if (text == t.ctcss[i]) return true;
    for (int i = 0; i <= 103; ++i)
        if (text == t.dcs[i]) return true;
    return false;
}

SmartInfo smartInfoOfStore(int storeColumn, int bc785d)
{
    constexpr const char* kToggle = "Use double click or spacebar to toggle between Off/On";
    switch (storeColumn) {
    case col::freq: return {"Frequency", "Enter frequency. Use <ENTER> to jump to next channel."};
    case col::tag:
        return {"Tag:", "Enter tag. Maximum 16 characters are stored. Tip: you can also use special characters "
                        "like ? + { } [ ] _ | "};
    case col::trunk:
        return {"Trunk:", std::string(kToggle) + ". Set to ON when frequency is part of trunk system"};
    case col::record:
        return {"Record output:",
                std::string(kToggle) + ". This option will activate the record output of your scanner."};
    case col::delay:
        // Models without the long delay list know only "None" and "2": the cell toggles.
        if (bc785d == 0) return {"Delay:", std::string(kToggle) + ". "};
        return {"Delay Time:", "Select from list or use double click/spacebar to scroll the list. Sets wait time "
                               "before scanner resumes"};
    case col::beep:
        return {"Beep Alert:",
                std::string(kToggle) + ". Beep alert will sound a beep when scanner stops at this channel"};
    case col::tone:
        return {"PL/DPL:", "Select from list or use double click/spacebar to scroll up the list. TIP: Use "
                           "SHIFT_SPACEBAR for scroll down. Use + / - for fast scroll. Use L for lockout."};
    case col::lockout: return {"Lock Out:", kToggle};
    case col::atten: return {"Attenuator:", kToggle};
    case col::mode:
        return {"Mode:", "Use double click/spacebar to change mode or select from list in top frame. Shortcuts: "
                         "W=WFM N=NFM A=AM F=FM"};
    case col::step: return {"Step:", "Select from list or use double click/spacebar to scroll the list."};
    case col::comment: return {"Comment:", "Enter comment. Comment is only stored in file! Maximum 40 characters."};
    default: return {};
    }
}

} // namespace

CellEntry::CellEntry(MemTable& table, FrequencyEntry& frequency) : table_(table), frequency_(frequency) {}

// ---- columns ----

int CellEntry::storeColumn(int gridCol) const
{
    const int bc785d = table_.doc().model.bc785d;
    if (gridCol < 1 || gridCol > gridDataColumns(bc785d)) return 0;
    return gridColumn(bc785d, gridCol).storeColumn;
}

EntryRule CellEntry::ruleOfStore(int storeColumn)
{
    switch (storeColumn) {
    case col::freq: return EntryRule::Frequency;
    case col::tag: return EntryRule::Tag;
    case col::trunk:
    case col::record:
    case col::beep:
    case col::lockout:
    case col::atten: return EntryRule::OnOff;
    case col::delay: return EntryRule::Delay;
    case col::tone: return EntryRule::Tone;
    case col::mode: return EntryRule::Mode;
    case col::step: return EntryRule::Step;
    default: return EntryRule::None;
    }
}

EntryRule CellEntry::rule(int gridCol) const { return ruleOfStore(storeColumn(gridCol)); }

bool CellEntry::opensEditor(int gridCol) const
{
    const EntryRule r = rule(gridCol);
    return r == EntryRule::Frequency || r == EntryRule::Tag;
}

std::vector<std::string> CellEntry::ctcChoices()
{
    std::vector<std::string> list{kNone};
    const ToneTables& t = toneTables();
    for (int i = 1; i <= 38; ++i) list.push_back(t.ctcss[i]);
    return list;
}

std::vector<std::string> CellEntry::dcsChoices()
{
    std::vector<std::string> list{kNone};
    const ToneTables& t = toneTables();
    for (int i = 0; i <= 103; ++i) list.push_back(t.dcs[i]);
    return list;
}

std::vector<std::string> CellEntry::modelChoices(int storeColumn, const ModelSwitches& model)
{
    std::vector<std::string> list;
    switch (ruleOfStore(storeColumn)) {
    case EntryRule::OnOff: return {kOff, kOn};
    case EntryRule::Delay:
        if (model.bc785d == 0) return {kNone, "2"};
        for (int code = 0; code <= 7; ++code) list.push_back(delayText(std::to_string(code), 1));
        return list;
    case EntryRule::Tone: {
        // The order of the stored codes: none, the tones, the codes.
        list = ctcChoices();
        const auto codes = dcsChoices();
        list.insert(list.end(), codes.begin() + 1, codes.end());
        return list;
    }
    case EntryRule::Mode:
        for (int code = 0; code <= 3; ++code) list.push_back(modeText(std::to_string(code)));
        return list;
    case EntryRule::Step:
        // The order of the stored codes; 6.25 and 20 kHz only on the models that have them.
        for (int code = 0; code <= 7; ++code) list.push_back(stepText(std::to_string(code)));
        if (model.x96 == 1) {
            list.push_back(stepText("8"));
            list.push_back(stepText("9"));
        }
        return list;
    default: return {};
    }
}

// ---- cells ----

bool CellEntry::setCell(int row, int gridCol, const std::string& text)
{
    Grid& grid = table_.grid();
    if (grid.text(row, gridCol) == text) return false;
    grid.setText(row, gridCol, text);
    table_.markDirty();
    return true;
}

bool CellEntry::scroll(int row, int gridCol, int by)
{
    const std::vector<std::string> list = choices(storeColumn(gridCol));
    if (list.empty()) return false;
    std::string text = table_.grid().text(row, gridCol);
    // A locked-out tone keeps its lockout while it is scrolled to another tone.
    bool locked = false;
    if (rule(gridCol) == EntryRule::Tone && !text.empty() && text.back() == '-') {
        text.pop_back();
        locked = true;
    }
    const int n = static_cast<int>(list.size());
    const auto found = std::find(list.begin(), list.end(), text);
    // A text not in the list starts just before the first entry (forward) or
    // just behind the last (backward).
    const int from = found != list.end() ? static_cast<int>(found - list.begin()) : (by > 0 ? -1 : n);
    const int to = ((from + by) % n + n) % n;
    std::string next = list[to];
    if (locked && next != kNone) next += '-';
    return setCell(row, gridCol, next);
}

bool CellEntry::toggleLockout(int row, int gridCol)
{
    const std::string& text = table_.grid().text(row, gridCol);
    if (!text.empty() && text.back() == '-') {
        const std::string plain = text.substr(0, text.size() - 1);
        return isPlainTone(plain) && setCell(row, gridCol, plain);
    }
    return isPlainTone(text) && setCell(row, gridCol, text + '-');
}

void CellEntry::moveDown(int row, int gridCol)
{
    table_.grid().select(std::min(row + 1, kChannelRows), gridCol);
}

// ---- keys ----

CellEntry::KeyResult CellEntry::key(const Keystroke& k)
{
    const GridSelection sel = table_.grid().selection();
    const int row = sel.row, gc = sel.col;
    if (row < 1 || row > kChannelRows || storeColumn(gc) == 0) return KeyResult::Ignored;

    // The keys of every column.
    if (k.ctrl) {
        const char c = k.kind == Keystroke::Kind::Character ? upperOf(k.ch) : 0;
        if (c != 'D' && c != 'U') return KeyResult::Ignored;
        const std::function<void()>& shift = c == 'D' ? shiftChannelDown : shiftChannelUp;
        if (shift) shift();
        return KeyResult::Handled;
    }
    if (k.kind == Keystroke::Kind::Delete) {
        if (k.shift) {
            if (clearSelectedLines) clearSelectedLines();
            return KeyResult::Handled;
        }
        // The selected cells are cleared; with one cell selected, that cell.
        for (int r = std::max(sel.top(), 1); r <= std::min(sel.bottom(), kChannelRows); ++r)
            for (int c = sel.left(); c <= sel.right(); ++c)
                if (storeColumn(c) != 0) setCell(r, c, "");
        return KeyResult::Handled;
    }
    return opensEditor(gc) ? textKey(row, gc, k) : listKey(row, gc, k);
}

CellEntry::KeyResult CellEntry::textKey(int row, int gc, const Keystroke& k)
{
    Grid& grid = table_.grid();
    // A cell cleared on purpose is typed into as a blank one.
    if (grid.text(row, gc) == kEmpty) grid.setText(row, gc, "");
    // Enter, F2 and a double click edit the cell's text; a key typed starts
    // a fresh entry with that key, as in every spreadsheet (typing "460" on
    // a cell holding 155.0000 enters 460).
    std::string text;
    switch (k.kind) {
    case Keystroke::Kind::Enter:
    case Keystroke::Kind::Edit: text = grid.text(row, gc); break;
    case Keystroke::Kind::Backspace: break;
    case Keystroke::Kind::Space: text = " "; break;
    case Keystroke::Kind::NumPlus: text = "+"; break;
    case Keystroke::Kind::NumMinus: text = "-"; break;
    case Keystroke::Kind::Character:
        if (static_cast<unsigned char>(k.ch) < 32) return KeyResult::Ignored;
        text = std::string(1, k.ch);
        break;
    default: return KeyResult::Ignored;
    }
    beginEdit(row, gc, std::move(text));
    return KeyResult::EditorOpened;
}

CellEntry::KeyResult CellEntry::listKey(int row, int gc, const Keystroke& k)
{
    const EntryRule r = rule(gc);
    switch (k.kind) {
    case Keystroke::Kind::Space:
        if (r == EntryRule::OnOff)
            setCell(row, gc, table_.grid().text(row, gc) == kOn ? kOff : kOn);
        else
            scroll(row, gc, k.shift ? -1 : 1);
        return KeyResult::Handled;
    case Keystroke::Kind::NumPlus:
    case Keystroke::Kind::NumMinus:
        if (r == EntryRule::Tone) scroll(row, gc, k.kind == Keystroke::Kind::NumPlus ? kFastScroll : -kFastScroll);
        return KeyResult::Handled;
    case Keystroke::Kind::Character: {
        const char c = upperOf(k.ch);
        if (r == EntryRule::Mode) {
            if (const char* mode = modeOfLetter(c)) setCell(row, gc, mode);
        } else if (r == EntryRule::OnOff) {
            if (const char* value = onOffOfKey(c)) setCell(row, gc, value);
        } else if (r == EntryRule::Tone) {
            // + and - of the main keyboard scroll fast too, for keyboards without a keypad.
            if (c == 'L')
                toggleLockout(row, gc);
            else if (c == '+' || c == '-')
                scroll(row, gc, c == '+' ? kFastScroll : -kFastScroll);
        }
        // Other characters do nothing in a list column; they open no editor.
        return KeyResult::Handled;
    }
    default: return KeyResult::Ignored;
    }
}

CellEntry::KeyResult CellEntry::doubleClick(int row, int gc)
{
    if (row < 1 || row > kChannelRows || storeColumn(gc) == 0) return KeyResult::Ignored;
    if (opensEditor(gc)) return textKey(row, gc, Keystroke::of(Keystroke::Kind::Edit));
    return listKey(row, gc, Keystroke::of(Keystroke::Kind::Space));
}

// ---- Text1 ----

bool CellEntry::beginEdit(int row, int gc, std::string text)
{
    if (row < 1 || row > kChannelRows || !opensEditor(gc)) return false;
    edit_ = {row, gc, std::move(text)};
    editing_ = true;
    return true;
}

void CellEntry::commit(const std::string& text, bool moveOn)
{
    if (!editing_) return;
    editing_ = false;
    const Edit e = edit_;
    switch (rule(e.col)) {
    case EntryRule::Frequency: {
        // A box emptied by the user clears the frequency rather than entering
        // 25 MHz; a text without a digit is no frequency and changes nothing;
        // a comma is a decimal point, as many users write it.
        std::string typed = text;
        std::replace(typed.begin(), typed.end(), ',', '.');
        if (ltrim(typed).empty()) {
            setCell(e.row, e.col, "");
        } else if (typed.find_first_of("0123456789") == std::string::npos) {
            if (tell) tell("\"" + text + "\" is not a frequency: the channel is left as it was.");
            return;
        } else {
            frequency_.enterfreq(e.row, typed);
        }
        break;
    }
    case EntryRule::Tag: {
        const std::string tag = withoutQuotes(text);
        const Settings& settings = table_.settings();
        table_.doc().addeasytag(tag, table_.doc().currentBank, settings.option9);
        if (settings.option9 == 1) table_.rebuildeasytags();
        setCell(e.row, e.col, tag);
        break;
    }
    default: return;
    }
    if (moveOn) moveDown(e.row, e.col);
}

void CellEntry::drop() { editing_ = false; }

// ---- the top frame ----

void CellEntry::chooseFromList(int storeCol, const std::string& text)
{
    const int gc = gridColumnOfStore(table_.doc().model.bc785d, storeCol);
    if (gc == 0) return;
    const GridSelection& sel = table_.grid().selection();
    for (int r = std::max(sel.top(), 1); r <= std::min(sel.bottom(), kChannelRows); ++r) setCell(r, gc, text);
}

void CellEntry::chooseTag(const std::string& tag) { chooseFromList(col::tag, tag); }

// ---- help ----

SmartInfo CellEntry::smartInfo(int gridCol) const
{
    return smartInfoOfStore(storeColumn(gridCol), table_.doc().model.bc785d);
}

const std::vector<std::string>& CellEntry::shortcutLines()
{
    static const std::vector<std::string> lines{
        "You can use these keyboard shortcuts,",
        "depending on which column is active:",
        "A = AM ",
        "F = FM ",
        "M = FM ",
        "N = NFM ",
        "W = WFM ",
        "Typing = a new entry in the cell",
        "Enter or F2 = edit the cell's text",
        "CTRL + D = shift channel down ",
        "CTRL + U = shift channel up ",
        "0 = Off ",
        "F = Off ",
        "1 = On ",
        "N = On ",
        "Space = toggle data",
        "Space = scroll list up",
        "Shift-Space = scroll list down",
        "L = toggle CTCSS/DCS lockout on/off",
    };
    return lines;
}

// ---- menu commands ----

namespace {
// The lines a bandplan is applied to: those selected, or all 100 when the
// selection is one row.
std::pair<int, int> bandplanRows(MemTable& table)
{
    const GridSelection& sel = table.grid().selection();
    if (sel.top() == sel.bottom()) return {1, kChannelRows};
    return {sel.top(), sel.bottom()};
}

// Runs a check on the store and repaints; the document counts as changed only
// when the check changed a channel: for the bank on view what the grid shows,
// for the others their cells. (The store's forms of one value, "None" and "0"
// for no tone, "Empty" and "0000.0000" for no frequency, are no change a user
// could see.)
template <class Check>
void checkStore(MemTable& table, Check check)
{
    const Grid& grid = table.grid();
    const auto shown = [&grid] {
        std::vector<std::string> cells;
        for (int r = 0; r < grid.rows(); ++r)
            for (int c = 0; c < grid.cols(); ++c) cells.push_back(grid.text(r, c));
        return cells;
    };
    const auto before = shown();
    if (!table.createbank()) return;
    const auto stored = table.doc().memdata;
    check(table.doc(), table.settings());
    table.fillgrid();
    bool changed = shown() != before;
    const auto& after = table.doc().memdata;
    for (int b = 0; b <= kDummyBank && !changed; ++b) {
        if (b == table.doc().currentBank) continue;
        for (int r = 1; r <= kChannelRows; ++r)
            for (int c = 0; c < kCellColumns; ++c) {
                const std::string& was = stored[b][r][c];
                const std::string& is = after[b][r][c];
                if (c == col::freq ? Val(was) != Val(is) : was != is) changed = true;
            }
    }
    if (changed) table.markDirty();
}
} // namespace

void checkDataInTable(MemTable& table)
{
    const auto [first, last] = bandplanRows(table);
    checkStore(table, [&, first = first, last = last](Document& doc, const Settings& settings) {
        checktable(doc, settings);
        if (settings.bandplan != 0) applybandplan(doc, settings, doc.currentBank, first, last);
    });
}

void bandplanCurrentBank(MemTable& table)
{
    const auto [first, last] = bandplanRows(table);
    checkStore(table, [&, first = first, last = last](Document& doc, const Settings& settings) {
        applybandplan(doc, settings, doc.currentBank, first, last);
    });
}

void bandplanAllBanks(MemTable& table) { checkStore(table, applybandplanall); }

} // namespace kestra
