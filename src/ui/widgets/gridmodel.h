#pragma once
// The grid memtabel as a Qt table model. It shows a kestra::Grid: model row r
// is grid row r + 1 (channel rows 1..100), model column c is grid column c + 1
// (the data columns); grid row 0 gives the horizontal header and the fixed grid
// column 0 (the channel numbers) the vertical header. The grid's texts are
// Windows-1252; they are converted here, at the window's edge.

#include "core/grid.h"

#include <QAbstractTableModel>
#include <QFont>
#include <QPointer>

#include <functional>

class QItemSelectionModel;

namespace kestra {

struct Settings;

class GridModel : public QAbstractTableModel, public Grid::Listener {
    Q_OBJECT
public:
    GridModel(Grid& grid, const Settings& settings, QObject* parent = nullptr);
    ~GridModel() override;

    Grid& grid() { return grid_; }

    // Called after the user changed a cell's text (grid row, grid column).
    std::function<void(int row, int col)> onEdited;

    // Keeps the view's current cell and selection and Grid::selection() equal,
    // both ways. One selection model at a time.
    void bindSelection(QItemSelectionModel* selection);

    // The font of the tag column when tags are shown in a fixed-width font.
    void setFixedFont(const QFont& font) { fixedFont_ = font; }

    // Re-reads every text, and the grid's size: the model is reset only when
    // the number of rows or columns changed.
    void reload();

    // Model index of a grid cell, and the grid cell of a model index.
    QModelIndex indexOfCell(int row, int col) const { return index(row - 1, col - 1); }
    static int gridRow(const QModelIndex& index) { return index.row() + 1; }
    static int gridCol(const QModelIndex& index) { return index.column() + 1; }

    // QAbstractTableModel
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    // Grid::Listener
    void gridReset() override;
    void cellChanged(int row, int col) override;
    void selectionChanged() override;
    void shownChanged(bool shown) override;

signals:
    // The grid was hidden (a bank is being copied or repainted) or shown again.
    void gridShownChanged(bool shown);

private:
    void selectionToView();
    void selectionFromView();
    Qt::Alignment alignment() const;

    Grid& grid_;
    const Settings& settings_;
    QFont fixedFont_;
    QPointer<QItemSelectionModel> selection_;
    int rows_ = 0;   // model rows: grid rows - 1, as of the last reset
    int cols_ = 0;   // model columns: grid columns - 1
    bool syncing_ = false;
};

} // namespace kestra
