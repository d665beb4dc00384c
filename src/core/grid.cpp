#include "grid.h"

#include <algorithm>

namespace kestra {

namespace {
const std::string kNoText;
}

Grid::Grid(int rows, int cols)
    : rows_(std::max(rows, 1)), cols_(std::max(cols, 1)),
      cells_(static_cast<std::size_t>(rows_) * static_cast<std::size_t>(cols_))
{
}

void Grid::resize(int rows, int cols)
{
    rows = std::max(rows, 1);
    cols = std::max(cols, 1);
    if (rows == rows_ && cols == cols_) return;
    std::vector<std::string> cells(static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols));
    for (int r = 0; r < std::min(rows, rows_); ++r)
        for (int c = 0; c < std::min(cols, cols_); ++c)
            cells[static_cast<std::size_t>(r) * cols + c] = std::move(cells_[static_cast<std::size_t>(r) * cols_ + c]);
    cells_ = std::move(cells);
    rows_ = rows;
    cols_ = cols;
    GridSelection sel = sel_;
    sel.row = std::min(sel.row, rows_ - 1);
    sel.rowSel = std::min(sel.rowSel, rows_ - 1);
    sel.col = std::min(sel.col, cols_ - 1);
    sel.colSel = std::min(sel.colSel, cols_ - 1);
    sel_ = sel;
    if (shown_ && listener_) listener_->gridReset();
}

const std::string& Grid::text(int row, int col) const
{
    if (row < 0 || row >= rows_ || col < 0 || col >= cols_) return kNoText;
    return cells_[static_cast<std::size_t>(row) * cols_ + col];
}

void Grid::setText(int row, int col, std::string text)
{
    if (row < 0 || row >= rows_ || col < 0 || col >= cols_) return;
    auto& cell = cells_[static_cast<std::size_t>(row) * cols_ + col];
    if (cell == text) return;
    cell = std::move(text);
    if (shown_ && listener_) listener_->cellChanged(row, col);
}

void Grid::setSelection(const GridSelection& sel)
{
    auto clampRow = [this](int r) { return std::clamp(r, 0, rows_ - 1); };
    auto clampCol = [this](int c) { return std::clamp(c, 0, cols_ - 1); };
    GridSelection s{clampRow(sel.row), clampCol(sel.col), clampRow(sel.rowSel), clampCol(sel.colSel)};
    if (s == sel_) return;
    sel_ = s;
    if (listener_) listener_->selectionChanged();
}

void Grid::hide()
{
    if (!shown_) return;
    shown_ = false;
    if (listener_) listener_->shownChanged(false);
}

void Grid::show()
{
    if (shown_) return;
    shown_ = true;
    if (listener_) {
        listener_->gridReset();
        listener_->shownChanged(true);
    }
}

} // namespace kestra
