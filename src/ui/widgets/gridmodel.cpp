#include "ui/widgets/gridmodel.h"
#include "platform/qt/qtext.h"

#include "core/settings.h"
#include "core/text.h"

#include <QItemSelectionModel>

#include <algorithm>

namespace kestra {

namespace {

// The tag column of both layouts.
constexpr int kTagColumn = 2;

} // namespace

GridModel::GridModel(Grid& grid, const Settings& settings, QObject* parent)
    : QAbstractTableModel(parent), grid_(grid), settings_(settings)
{
    rows_ = std::max(0, grid_.rows() - 1);
    cols_ = std::max(0, grid_.cols() - 1);
    grid_.setListener(this);
}

GridModel::~GridModel()
{
    grid_.setListener(nullptr);
}

int GridModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : rows_;
}

int GridModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : cols_;
}

Qt::Alignment GridModel::alignment() const
{
    switch (settings_.align) {
    case 1: return Qt::AlignHCenter | Qt::AlignVCenter;
    case 2: return Qt::AlignRight | Qt::AlignVCenter;
    default: return Qt::AlignLeft | Qt::AlignVCenter;
    }
}

QVariant GridModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid()) return {};
    const int row = gridRow(index), col = gridCol(index);
    if (row >= grid_.rows() || col >= grid_.cols()) return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return toQt(grid_.text(row, col));
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(alignment());
    case Qt::FontRole:
        if (col == kTagColumn && settings_.ffont == 1 && !fixedFont_.family().isEmpty()) return fixedFont_;
        return {};
    default:
        return {};
    }
}

bool GridModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || role != Qt::EditRole) return false;
    const int row = gridRow(index), col = gridCol(index);
    if (row >= grid_.rows() || col >= grid_.cols()) return false;
    std::string text = fromQt(value.toString());
    if (text == grid_.text(row, col)) return true;   // closing an editor unchanged is no edit
    grid_.setText(row, col, std::move(text));
    if (!grid_.shown()) emit dataChanged(index, index);   // the grid does not announce while hidden
    if (onEdited) onEdited(row, col);
    return true;
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (section < 0) return {};
    if (orientation == Qt::Horizontal) {
        const int col = section + 1;
        if (col >= grid_.cols()) return {};
        if (role == Qt::DisplayRole) return toQt(grid_.text(0, col));
        if (role == Qt::TextAlignmentRole) return QVariant::fromValue(Qt::Alignment(Qt::AlignCenter));
        return {};
    }
    const int row = section + 1;
    if (row >= grid_.rows()) return {};
    if (role == Qt::DisplayRole) return toQt(grid_.text(row, 0));
    if (role == Qt::TextAlignmentRole) return QVariant::fromValue(Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter));
    return {};
}

Qt::ItemFlags GridModel::flags(const QModelIndex& index) const
{
    if (!index.isValid()) return Qt::NoItemFlags;
    // Cells are not edited through the view's own editors: the window types
    // into its box Text1 and changes list cells by key.
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

void GridModel::reload()
{
    const int rows = std::max(0, grid_.rows() - 1);
    const int cols = std::max(0, grid_.cols() - 1);
    syncing_ = true;
    if (rows == rows_ && cols == cols_) {
        // Same shape: repaint every text, and keep the view's column widths,
        // scroll position and open state as they are.
        if (rows_ > 0 && cols_ > 0) emit dataChanged(index(0, 0), index(rows_ - 1, cols_ - 1));
        if (cols_ > 0) emit headerDataChanged(Qt::Horizontal, 0, cols_ - 1);
        if (rows_ > 0) emit headerDataChanged(Qt::Vertical, 0, rows_ - 1);
    } else {
        beginResetModel();
        rows_ = rows;
        cols_ = cols;
        endResetModel();
    }
    syncing_ = false;
    selectionToView();
}

void GridModel::gridReset()
{
    reload();
}

void GridModel::cellChanged(int row, int col)
{
    if (row >= grid_.rows() || col >= grid_.cols()) return;
    if (row > rows_ || col > cols_) {   // the grid grew without telling: take it all anew
        reload();
        return;
    }
    if (row == 0 && col >= 1) {
        emit headerDataChanged(Qt::Horizontal, col - 1, col - 1);
    } else if (col == 0 && row >= 1) {
        emit headerDataChanged(Qt::Vertical, row - 1, row - 1);
    } else if (row >= 1 && col >= 1) {
        const QModelIndex at = indexOfCell(row, col);
        emit dataChanged(at, at);
    }
}

void GridModel::selectionChanged()
{
    if (!syncing_) selectionToView();
}

void GridModel::shownChanged(bool shown)
{
    emit gridShownChanged(shown);
}

void GridModel::bindSelection(QItemSelectionModel* selection)
{
    if (selection_) disconnect(selection_, nullptr, this, nullptr);
    selection_ = selection;
    if (!selection_) return;
    connect(selection_, &QItemSelectionModel::currentChanged, this, [this] { selectionFromView(); });
    connect(selection_, &QItemSelectionModel::selectionChanged, this, [this] { selectionFromView(); });
    selectionToView();
}

void GridModel::selectionToView()
{
    if (!selection_ || rows_ < 1 || cols_ < 1) return;
    const GridSelection& sel = grid_.selection();
    auto clampRow = [this](int r) { return std::clamp(r, 1, rows_); };
    auto clampCol = [this](int c) { return std::clamp(c, 1, cols_); };
    const QModelIndex current = indexOfCell(clampRow(sel.row), clampCol(sel.col));
    const QItemSelection range(indexOfCell(clampRow(sel.top()), clampCol(sel.left())),
                               indexOfCell(clampRow(sel.bottom()), clampCol(sel.right())));
    syncing_ = true;
    selection_->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    selection_->select(range, QItemSelectionModel::ClearAndSelect);
    syncing_ = false;
}

void GridModel::selectionFromView()
{
    if (syncing_ || !selection_) return;
    const QModelIndex current = selection_->currentIndex();
    if (!current.isValid()) return;
    GridSelection sel;
    sel.row = sel.rowSel = gridRow(current);
    sel.col = sel.colSel = gridCol(current);
    // The selection is one rectangle in the grid; take the bounding box of what
    // the view holds and put the current cell in one of its corners.
    const QItemSelection ranges = selection_->selection();
    if (!ranges.isEmpty()) {
        int top = current.row(), bottom = current.row(), left = current.column(), right = current.column();
        bool any = false;
        for (const QItemSelectionRange& r : ranges) {
            if (!r.isValid()) continue;
            if (!any) {
                top = r.top(); bottom = r.bottom(); left = r.left(); right = r.right();
                any = true;
            } else {
                top = std::min(top, r.top()); bottom = std::max(bottom, r.bottom());
                left = std::min(left, r.left()); right = std::max(right, r.right());
            }
        }
        if (any && current.row() >= top && current.row() <= bottom && current.column() >= left
            && current.column() <= right) {
            sel.rowSel = (current.row() == top ? bottom : top) + 1;
            sel.colSel = (current.column() == left ? right : left) + 1;
        }
    }
    if (sel == grid_.selection()) return;
    syncing_ = true;
    grid_.setSelection(sel);
    syncing_ = false;
}

} // namespace kestra
