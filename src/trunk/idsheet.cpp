#include "trunk/idsheet.h"

#include "core/text.h"
#include "trunk/trunkids.h"

#include <algorithm>
#include <vector>

namespace kestra {

namespace {

const char* const kHeaders[TrunkIdSheet::kCols] = {"", "ID", "Tag", "Record", "Beep Al.", "Scan List Tag"};

bool isSet(const std::string& storeFlag) { return storeFlag == "1"; }

} // namespace

TrunkIdSheet::TrunkIdSheet(Document& doc)
    : doc_(doc), grid_(kLastRow + 1, kCols), savedIds_(doc.trunkids), savedListTags_(doc.trunklisttags),
      savedSystems_(doc.trunkset)
{
    for (int c = 0; c < kCols; ++c) grid_.setText(0, c, kHeaders[c]);
    for (int r = 1; r <= kLastRow; ++r) grid_.setText(r, 0, idRowLabel(r));
}

int TrunkIdSheet::trunkType() const { return bankTrunkType(doc_, bank_); }

// ---- the working copy ---------------------------------------------------------

void TrunkIdSheet::load(int bank)
{
    for (int b = 0; b < kChannelBanks; ++b)
        for (int r = 1; r <= kLastRow; ++r) work_[b][r] = doc_.trunkids[b][storeRowOf(r)];
    bank_ = std::clamp(bank, 0, kChannelBanks - 1);
    fillGrid();
    grid_.select(1, kIdCol);
}

void TrunkIdSheet::reload()
{
    const GridSelection keep = grid_.selection();
    load(bank_);
    grid_.setSelection(keep);
}

void TrunkIdSheet::showBank(int bank)
{
    checkids();
    storeGrid();
    bank_ = std::clamp(bank, 0, kChannelBanks - 1);
    fillGrid();
    grid_.select(1, kIdCol);
}

void TrunkIdSheet::fillGrid()
{
    for (int r = 1; r <= kLastRow; ++r) {
        const TrunkIdEntry& e = work_[bank_][r];
        setGridRow(r, {e[idcol::id], e[idcol::tag], isSet(e[idcol::record]) ? kOn : kOff,
                       isSet(e[idcol::beep]) ? kOn : kOff});
    }
    showListTags();
}

void TrunkIdSheet::showListTags()
{
    for (int r = 1; r <= kLastRow; ++r)
        grid_.setText(r, kListTagCol, doc_.trunklisttags[bank_][listOfStoreRow(storeRowOf(r))]);
}

void TrunkIdSheet::checkids()
{
    const int type = trunkType();
    for (int r = 1; r <= kLastRow; ++r) grid_.setText(r, kIdCol, checkedId(type, grid_.text(r, kIdCol)));
}

void TrunkIdSheet::storeGrid()
{
    for (int r = 1; r <= kLastRow; ++r) {
        TrunkIdEntry& e = work_[bank_][r];
        e[idcol::id] = grid_.text(r, kIdCol);
        e[idcol::tag] = grid_.text(r, kTagCol);
        // A flag that was never set keeps its stored form ("" or "0").
        for (auto [col, field] : {std::pair{kRecordCol, idcol::record}, std::pair{kBeepCol, idcol::beep}}) {
            if (flag(r, col)) e[field] = "1";
            else if (isSet(e[field])) e[field] = "0";
        }
    }
}

void TrunkIdSheet::commit()
{
    checkids();
    storeGrid();
    for (int b = 0; b < kChannelBanks; ++b)
        for (int r = 1; r <= kLastRow; ++r) {
            TrunkIdEntry e = work_[b][r];
            e[idcol::tag] = storedIdTag(e[idcol::tag]);
            doc_.trunkids[b][storeRowOf(r)] = e;
        }
}

void TrunkIdSheet::revert()
{
    doc_.trunkids = savedIds_;
    doc_.trunklisttags = savedListTags_;
    doc_.trunkset = savedSystems_;
}

bool TrunkIdSheet::storeChanged() const
{
    return doc_.trunkids != savedIds_ || doc_.trunklisttags != savedListTags_;
}

// ---- typing -----------------------------------------------------------------------

void TrunkIdSheet::typeKey(char key)
{
    const GridSelection& s = grid_.selection();
    const int row = s.row, col = s.col;
    if (row < 1 || row > kLastRow || (col != kIdCol && col != kTagCol)) return;
    std::string text = grid_.text(row, col);
    if (key == kBackspace) {
        if (!text.empty()) text.pop_back();
    } else if (col == kIdCol) {
        if (!idKeyAccepted(trunkType(), key) || static_cast<unsigned char>(key) < 32) return;
        if (text.size() >= kIdCellLength) return;
        text += key;
    } else {
        if (!tagKeyAccepted(key)) return;
        text += key;
    }
    grid_.setText(row, col, std::move(text));
}

void TrunkIdSheet::enter()
{
    const GridSelection& s = grid_.selection();
    const int row = s.row, col = s.col;
    if (row < 1 || row > kLastRow) return;
    if (col == kIdCol) grid_.setText(row, col, checkedId(trunkType(), grid_.text(row, col)));
    else if (col == kTagCol) grid_.setText(row, col, storedIdTag(grid_.text(row, col)));
    if (row < kLastRow) moveTo(row + 1, col);
}

void TrunkIdSheet::enterId(std::string_view text)
{
    const int row = grid_.selection().row;
    if (row < 1 || row > kLastRow) return;
    grid_.setText(row, kIdCol, std::string(text.substr(0, std::min(text.size(), kIdCellLength))));
    moveTo(row, kIdCol);
    enter();
}

void TrunkIdSheet::enterTag(std::string_view text)
{
    const int row = grid_.selection().row;
    if (row < 1 || row > kLastRow) return;
    grid_.setText(row, kTagCol, std::string(text));
    moveTo(row, kTagCol);
    enter();
}

void TrunkIdSheet::setFlag(int col, bool on)
{
    const int row = grid_.selection().row;
    if (row < 1 || row > kLastRow || (col != kRecordCol && col != kBeepCol)) return;
    grid_.setText(row, col, on ? kOn : kOff);
}

void TrunkIdSheet::toggleFlag(int row, int col)
{
    if (row < 1 || row > kLastRow || (col != kRecordCol && col != kBeepCol)) return;
    grid_.setText(row, col, flag(row, col) ? kOff : kOn);
}

bool TrunkIdSheet::moveColumn(int step)
{
    const GridSelection& s = grid_.selection();
    const int col = s.col + step;
    if (col < kIdCol || col > kListTagCol) return false;
    moveTo(s.row, col);
    return true;
}

void TrunkIdSheet::moveTo(int row, int col) { grid_.select(row, col); }

// ---- sorting -----------------------------------------------------------------------

TrunkIdSheet::Row TrunkIdSheet::gridRow(int row) const
{
    return {grid_.text(row, kIdCol), grid_.text(row, kTagCol), grid_.text(row, kRecordCol), grid_.text(row, kBeepCol)};
}

void TrunkIdSheet::setGridRow(int row, const Row& cells)
{
    for (int c = 0; c < 4; ++c) grid_.setText(row, kIdCol + c, cells[c]);
}

void TrunkIdSheet::sortIds(bool ascending) { sortBy(kIdCol, ascending, true); }
void TrunkIdSheet::sortTags(bool ascending) { sortBy(kTagCol, ascending, false); }

void TrunkIdSheet::sortBy(int col, bool ascending, bool numeric)
{
    std::vector<Row> rows;
    for (int r = 1; r <= kLastRow; ++r) {
        undo_[r] = gridRow(r);
        rows.push_back(undo_[r]);
    }
    undoBank_ = bank_;
    const int key = col - kIdCol;
    auto before = [&](const Row& a, const Row& b) {
        // Rows without a key end at the bottom whatever the direction.
        const bool emptyA = a[key].empty(), emptyB = b[key].empty();
        if (emptyA || emptyB) return !emptyA && emptyB;
        if (numeric) {
            const double va = Val(a[key]), vb = Val(b[key]);
            return ascending ? va < vb : vb < va;
        }
        const std::string ta = asciiLower(a[key]), tb = asciiLower(b[key]);
        return ascending ? ta < tb : tb < ta;
    };
    std::stable_sort(rows.begin(), rows.end(), before);
    for (int r = 1; r <= kLastRow; ++r) setGridRow(r, rows[r - 1]);
}

void TrunkIdSheet::undoSort()
{
    if (undoBank_ != bank_) return;
    for (int r = 1; r <= kLastRow; ++r) setGridRow(r, undo_[r]);
}

// ---- tags ----------------------------------------------------------------------------

void TrunkIdSheet::centerTags()
{
    for (int r = 1; r <= kLastRow; ++r) grid_.setText(r, kTagCol, centerTag(grid_.text(r, kTagCol)));
}

void TrunkIdSheet::alignLeft()
{
    for (int r = 1; r <= kLastRow; ++r) grid_.setText(r, kTagCol, leftTag(grid_.text(r, kTagCol)));
}

void TrunkIdSheet::replaceTagText(std::string_view find, std::string_view with)
{
    if (find.empty()) return;
    for (int r = 1; r <= kLastRow; ++r) {
        std::string tag = grid_.text(r, kTagCol);
        if (tag.empty()) continue;
        const std::size_t at = tag.find(find);
        if (at == std::string::npos) continue;
        tag.replace(at, find.size(), with);
        grid_.setText(r, kTagCol, tag.substr(0, std::min(tag.size(), kIdTagLength)));
    }
}

// ---- line operations ------------------------------------------------------------------

bool TrunkIdSheet::oneRowSelected() const
{
    const GridSelection& s = grid_.selection();
    return s.top() == s.bottom() && s.row >= 1 && s.row <= kLastRow;
}

void TrunkIdSheet::insertId()
{
    if (!oneRowSelected()) return;
    const int row = grid_.selection().row;
    for (int r = kLastRow; r > row; --r) setGridRow(r, gridRow(r - 1));
    setGridRow(row, {"", "", kOff, kOff});
}

void TrunkIdSheet::removeId()
{
    if (!oneRowSelected()) return;
    const int row = grid_.selection().row;
    for (int r = row; r < kLastRow; ++r) setGridRow(r, gridRow(r + 1));
    setGridRow(kLastRow, {"", "", kOff, kOff});
}

void TrunkIdSheet::swapRows(int a, int b)
{
    const Row first = gridRow(a);
    setGridRow(a, gridRow(b));
    setGridRow(b, first);
}

void TrunkIdSheet::moveUp()
{
    if (!oneRowSelected()) return;
    const GridSelection& s = grid_.selection();
    if (s.row <= 1) return;
    const int row = s.row, col = s.col;
    swapRows(row, row - 1);
    moveTo(row - 1, col);
}

void TrunkIdSheet::moveDown()
{
    if (!oneRowSelected()) return;
    const GridSelection& s = grid_.selection();
    if (s.row >= kLastRow) return;
    const int row = s.row, col = s.col;
    swapRows(row, row + 1);
    moveTo(row + 1, col);
}

// ---- clipboard ---------------------------------------------------------------------------

std::string TrunkIdSheet::copy() const
{
    const GridSelection& s = grid_.selection();
    std::string text;
    for (int r = std::max(1, s.top()); r <= std::min(kLastRow, s.bottom()); ++r) {
        if (r > std::max(1, s.top())) text += '\r';
        for (int c = std::max(kIdCol, s.left()); c <= std::min(kListTagCol, s.right()); ++c) {
            if (c > std::max(kIdCol, s.left())) text += '\t';
            text += grid_.text(r, c);
        }
    }
    return text;
}

std::string TrunkIdSheet::cut()
{
    std::string text = copy();
    deleteSelection();
    return text;
}

void TrunkIdSheet::deleteSelection()
{
    const GridSelection& s = grid_.selection();
    for (int r = std::max(1, s.top()); r <= std::min(kLastRow, s.bottom()); ++r)
        for (int c = std::max(kIdCol, s.left()); c <= std::min(kBeepCol, s.right()); ++c) grid_.setText(r, c, "");
}

void TrunkIdSheet::paste(std::string_view clipboard)
{
    std::string text(clipboard);
    if (text.size() >= 2 && text.ends_with("\r\n")) text.resize(text.size() - 2);
    std::string clean;
    for (char c : text)
        if (c != '\n' && static_cast<unsigned char>(c) < 127) clean += c;
    if (clean.empty()) return;

    const GridSelection& s = grid_.selection();
    const int top = s.row, left = s.col;
    if (top < 1 || top > kLastRow || left < kIdCol || left > kBeepCol) return;
    int row = top, bottom = top, right = left;
    std::size_t start = 0;
    while (start <= clean.size() && row <= kLastRow) {
        const std::size_t end = std::min(clean.find('\r', start), clean.size());
        const std::string_view line = std::string_view(clean).substr(start, end - start);
        int col = left;
        std::size_t from = 0;
        while (from <= line.size() && col <= kBeepCol) {
            const std::size_t to = std::min(line.find('\t', from), line.size());
            grid_.setText(row, col, std::string(line.substr(from, to - from)));
            right = std::max(right, col);
            ++col;
            from = to + 1;
        }
        bottom = row;
        ++row;
        start = end + 1;
    }
    grid_.setSelection({top, left, bottom, right});
}

} // namespace kestra
