#pragma once
// The grid of the main window as text: a matrix of cells with a fixed header
// row and a fixed first column, a current cell, a selection and a shown/hidden
// state. The window draws it; createbank and fillgrid read and write it. It
// holds grid texts (Windows-1252), never store codes.

#include <functional>
#include <string>
#include <vector>

namespace kestra {

struct GridSelection {
    int row = 1, col = 1;        // the current cell
    int rowSel = 1, colSel = 1;  // the other corner of the selection
    int top() const { return row < rowSel ? row : rowSel; }
    int bottom() const { return row < rowSel ? rowSel : row; }
    int left() const { return col < colSel ? col : colSel; }
    int right() const { return col < colSel ? colSel : col; }
    bool operator==(const GridSelection&) const = default;
};

class Grid {
public:
    // What the window listens to. Cell changes are announced only while the
    // grid is shown; showing it again announces a whole reset.
    struct Listener {
        virtual ~Listener() = default;
        virtual void gridReset() = 0;
        virtual void cellChanged(int row, int col) = 0;
        virtual void selectionChanged() = 0;
        virtual void shownChanged(bool shown) = 0;
    };

    Grid(int rows = 101, int cols = 11);

    int rows() const { return rows_; }
    int cols() const { return cols_; }
    // Resizing keeps the texts that still fit and blanks the rest.
    void resize(int rows, int cols);

    const std::string& text(int row, int col) const;
    void setText(int row, int col, std::string text);

    const GridSelection& selection() const { return sel_; }
    void setSelection(const GridSelection& sel);
    void select(int row, int col) { setSelection({row, col, row, col}); }

    bool shown() const { return shown_; }
    void hide();
    void show();

    void setListener(Listener* listener) { listener_ = listener; }

private:
    int rows_, cols_;
    std::vector<std::string> cells_;
    GridSelection sel_;
    bool shown_ = true;
    Listener* listener_ = nullptr;
};

} // namespace kestra
