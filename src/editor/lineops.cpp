#include "editor/lineops.h"

#include "core/memtable.h"
#include "core/text.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace kestra {

namespace {

constexpr const char* kCrLf = "\r\n";

// A freed or new line: blanks, and "Empty" where the frequency stands.
void blankLine(std::array<std::string, kCellColumns>& line, const std::string& blank)
{
    for (int c = 0; c < col::comment; ++c) line[c] = blank;
    line[col::comment].clear();
    line[col::freq] = "Empty";
}

} // namespace

std::optional<TagSeries> tagSeries(std::string_view tag)
{
    std::string text(tag);
    while (!text.empty() && text.back() == ' ') text.pop_back();
    std::size_t digits = 0;
    while (digits < 6 && digits < text.size() &&
           std::isdigit(static_cast<unsigned char>(text[text.size() - 1 - digits])))
        ++digits;
    if (digits == 0) return std::nullopt;
    return TagSeries{text.substr(0, text.size() - digits), std::stoll(text.substr(text.size() - digits))};
}

int LineOperations::bank() const { return table_.doc().currentBank; }

std::array<std::string, kCellColumns>& LineOperations::line(int row)
{
    return table_.doc().memdata[bank()][row];
}

void LineOperations::selectedRows(int& top, int& bottom) const
{
    const GridSelection& s = table_.grid().selection();
    top = std::clamp(s.top(), 1, kChannelRows);
    bottom = std::clamp(s.bottom(), 1, kChannelRows);
}

bool LineOperations::confirmed()
{
    if (table_.settings().expert == 1) return true;
    return table_.dialogs().message("Are you sure?", {}, Buttons::YesNo, Icon::Question) == Answer::Yes;
}

void LineOperations::finish()
{
    table_.fillgrid();
    table_.markDirty();
}

// ---- undo ----

void LineOperations::saveundo()
{
    table_.createbank();
    saveundo(bank());
}

void LineOperations::saveundo(int b)
{
    if (b < 0 || b > kDummyBank) return;
    keepUndo(b, bankCopy(b));
}

LineOperations::BankCopy LineOperations::bankCopy(int b) const
{
    BankCopy copy;
    // Whole rows: sorting, removing and shifting move the comment with its
    // channel, so undo must bring it back with it.
    const auto& rows = table_.doc().memdata[b];
    for (int r = 1; r <= kChannelRows; ++r) copy[r] = rows[r];
    return copy;
}

void LineOperations::keepUndo(int b, BankCopy copy)
{
    if (b < 0 || b > kDummyBank) return;
    undodata[b] = std::move(copy);
    undoflag[b] = 1;
}

void LineOperations::tabundo()
{
    const int b = bank();
    if (!canUndo(b)) return;
    for (int r = 1; r <= kChannelRows; ++r) line(r) = undodata[b][r];
    finish();
}

// ---- cells ----

std::string LineOperations::clipText(const Grid& grid)
{
    const GridSelection& s = grid.selection();
    std::string text;
    for (int r = s.top(); r <= s.bottom(); ++r) {
        if (r != s.top()) text += '\r';
        for (int c = s.left(); c <= s.right(); ++c) {
            if (c != s.left()) text += '\t';
            text += grid.text(r, c);
        }
    }
    return text;
}

void LineOperations::setClipText(Grid& grid, const std::string& text)
{
    const GridSelection& s = grid.selection();
    int r = s.top(), c = s.left();
    std::string cell;
    auto put = [&] {
        if (r <= s.bottom() && c <= s.right()) grid.setText(r, c, cell);
        cell.clear();
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char ch = text[i];
        if (ch == '\t') {
            put();
            ++c;
        } else if (ch == '\r') {
            put();
            ++r;
            c = s.left();
            if (i + 1 < text.size() && text[i + 1] == '\n') ++i;  // CR LF is one line end
        } else {
            cell += ch;
        }
    }
    put();
}

void LineOperations::selectlines()
{
    Grid& grid = table_.grid();
    remembered_ = grid.selection();
    grid.setSelection({remembered_.top(), 1, remembered_.bottom(), grid.cols() - 1});
}

std::string LineOperations::copycells()
{
    saveundo();
    const std::string clip = clipText(table_.grid());
    std::string text;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = clip.find('\r', start);
        text += clip.substr(start, end == std::string::npos ? std::string::npos : end - start);
        text += kCrLf;
        if (end == std::string::npos) break;
        start = end + 1;
    }
    return text;
}

std::string LineOperations::cutcells()
{
    std::string text = copycells();
    Grid& grid = table_.grid();
    const GridSelection s = grid.selection();
    for (int r = s.top(); r <= s.bottom(); ++r)
        for (int c = s.left(); c <= s.right(); ++c) grid.setText(r, c, "");
    table_.markDirty();
    return text;
}

std::string LineOperations::clipLines(std::string_view clipboard)
{
    // Line ends of every kind (CR LF, LF alone from most programs, CR alone)
    // as one CR; no quote reaches a cell.
    std::string text;
    for (std::size_t i = 0; i < clipboard.size(); ++i) {
        const char c = clipboard[i];
        if (c == '\r' && i + 1 < clipboard.size() && clipboard[i + 1] == '\n') continue;
        text += c == '\n' ? '\r' : c;
    }
    return withoutQuotes(text);
}

void LineOperations::pastecells(const std::string& clipboard)
{
    if (clipboard.empty()) return;
    saveundo();
    layIn(clipboard);
}

void LineOperations::layIn(const std::string& clipboard)
{
    std::string text = clipLines(clipboard);
    if (text.ends_with('\r')) text.pop_back();
    const int rows = static_cast<int>(std::count(text.begin(), text.end(), '\r'));
    // The shape's width is the first line's: one more cell than its tabs.
    const std::string first = text.substr(0, text.find('\r'));
    const int cols = static_cast<int>(std::count(first.begin(), first.end(), '\t'));

    Grid& grid = table_.grid();
    const GridSelection s = grid.selection();
    grid.setSelection({s.row, s.col, s.row + rows, s.col + cols});
    setClipText(grid, text);
    table_.markDirty();
}

void LineOperations::fillDown()
{
    saveundo();
    Grid& grid = table_.grid();
    const GridSelection s = grid.selection();
    for (int c = s.left(); c <= s.right(); ++c) {
        const std::string first = grid.text(s.top(), c);
        for (int r = s.top() + 1; r <= s.bottom(); ++r) grid.setText(r, c, first);
    }
    table_.markDirty();
}

void LineOperations::fillSeries()
{
    Grid& grid = table_.grid();
    const GridSelection s = grid.selection();
    const int tagColumn = gridColumnOfStore(table_.doc().model.bc785d, col::tag);
    if (tagColumn == 0 || s.left() != tagColumn || s.right() != tagColumn) return;

    const std::optional<TagSeries> series = tagSeries(grid.text(s.row, s.col));
    if (!series) return;

    saveundo();
    for (int r = s.row + 1; r <= s.bottom(); ++r) grid.setText(r, s.col, series->at(r - s.row));
    table_.markDirty();
}

// ---- lines ----

void LineOperations::clearSelectedLines()
{
    if (!confirmed()) return;
    saveundo();
    int top, bottom;
    selectedRows(top, bottom);
    for (int r = top; r <= bottom; ++r)
        for (auto& cell : line(r)) cell.clear();
    finish();
}

bool LineOperations::mayPushOut(int lines)
{
    Grid& grid = table_.grid();
    const int freqColumn = gridColumnOfStore(table_.doc().model.bc785d, col::freq);
    for (int row = std::max(1, kChannelRows - lines + 1); row <= kChannelRows; ++row) {
        if (Val(line(row)[col::freq]) == 0 && grid.text(row, freqColumn).empty()) continue;
        std::string number = grid.text(row, 0);
        if (number.empty()) number = std::to_string(row);
        const std::string question = "Channel " + number + " contains data." + kCrLf + "This data will be lost." +
                                     kCrLf + "Continue?";
        return table_.dialogs().message(question, "Warning", Buttons::YesNo, Icon::Exclamation) == Answer::Yes;
    }
    return true;
}

void LineOperations::insertEmptyLine()
{
    saveundo();
    Grid& grid = table_.grid();
    if (!mayPushOut(1)) return;
    const int current = std::clamp(grid.selection().row, 1, kChannelRows);
    for (int r = kChannelRows; r > current; --r) line(r) = line(r - 1);
    blankLine(line(current), " ");
    finish();
}

void LineOperations::removeAllEmptyLines()
{
    saveundo();
    const std::string marker = "9999";
    int r = 1;
    while (r <= kChannelRows && line(r)[col::freq] != marker) {
        if (Val(line(r)[col::freq]) != 0) {
            ++r;
            continue;
        }
        // Take the row out; the line moved up is looked at again.
        for (int below = r; below < kChannelRows; ++below) line(below) = std::move(line(below + 1));
        blankLine(line(kChannelRows), " ");
        line(kChannelRows)[col::freq] = marker;
    }
    for (int row = 1; row <= kChannelRows; ++row)
        if (line(row)[col::freq] == marker) line(row)[col::freq] = "Empty";
    finish();
}

void LineOperations::removeSelectedLines()
{
    if (!confirmed()) return;
    saveundo();
    int top, bottom;
    selectedRows(top, bottom);
    const int count = bottom - top + 1;
    for (int r = top; r + count <= kChannelRows; ++r) line(r) = std::move(line(r + count));
    for (int r = kChannelRows - count + 1; r <= kChannelRows; ++r) blankLine(line(r), "");
    finish();
}

void LineOperations::shiftUp() { shift(table_.settings().shiftdir == 1 ? 1 : -1); }
void LineOperations::shiftDown() { shift(table_.settings().shiftdir == 1 ? -1 : 1); }

void LineOperations::shift(int step)
{
    Grid& grid = table_.grid();
    const GridSelection s = grid.selection();
    if (s.top() != s.bottom()) return;
    const int from = s.row, to = s.row + step;
    if (from < 1 || from > kChannelRows || to < 1 || to > kChannelRows) return;
    saveundo();
    std::swap(line(from), line(to));
    // The selection follows the line, so the next shift moves it again.
    grid.setSelection({to, s.col, to, s.colSel});
    finish();
}

void LineOperations::clearLockoutChannels()
{
    saveundo();
    for (int r = 1; r <= kChannelRows; ++r)
        if (line(r)[col::lockout] == "1") line(r)[col::freq] = "Empty";
    finish();
}

void LineOperations::clearCurrentBank()
{
    const std::string question = std::string("This will clear the current bank.") + kCrLf + "Are you sure?";
    if (table_.dialogs().message(question, {}, Buttons::YesNo, Icon::Question) != Answer::Yes) return;
    saveundo();
    table_.clearbank();
    finish();
}

// ---- whole-bank and default-data tools ----

void LineOperations::selectAll()
{
    Grid& grid = table_.grid();
    grid.setSelection({1, 1, kChannelRows, grid.cols() - 1});
}

void LineOperations::pasteLinesSpecial(const std::string& clipboard)
{
    std::string text = clipLines(clipboard);
    if (text.ends_with('\r')) text.pop_back();
    if (text.empty()) return;
    saveundo();
    Grid& grid = table_.grid();
    const int current = std::clamp(grid.selection().row, 1, kChannelRows);
    const int lines = std::min(static_cast<int>(std::count(text.begin(), text.end(), '\r')) + 1,
                               kChannelRows - current + 1);
    if (!mayPushOut(lines)) return;
    for (int r = kChannelRows; r >= current + lines; --r) line(r) = line(r - lines);
    for (int r = current; r < current + lines; ++r) blankLine(line(r), "");
    table_.fillgrid();
    grid.setSelection({current, 1, current, 1});
    layIn(clipboard);
    table_.markDirty();
}

void LineOperations::changeTags(std::string (*change)(std::string_view))
{
    saveundo();
    for (int r = 1; r <= kChannelRows; ++r) {
        std::string& tag = line(r)[col::tag];
        if (!tag.empty()) tag = change(tag);
    }
    finish();
}

void LineOperations::centerTags()
{
    changeTags([](std::string_view tag) { return centerText(tag, kTagLength); });
}

void LineOperations::removeLeadingSpaces() { changeTags(ltrim); }

void LineOperations::fillDefaultData()
{
    saveundo();
    Grid& grid = table_.grid();
    const int bc785d = table_.doc().model.bc785d;
    int top, bottom;
    selectedRows(top, bottom);
    for (int f = 0; f < DefaultData::FieldCount; ++f) {
        const auto field = static_cast<DefaultData::Field>(f);
        const int column = gridColumnOfStore(bc785d, DefaultData::storeColumn(field));
        const std::string text = table_.defdata.gridText(field, bc785d);
        if (column == 0 || text.empty()) continue;
        for (int r = top; r <= bottom; ++r) grid.setText(r, column, text);
    }
    table_.markDirty();
}

} // namespace kestra
