#pragma once
// The window trtags, "Trunk Id's:": the ID lists of the ten banks, one bank
// per tab, in a grid of ten scan lists of ten IDs. The window works on a
// private sheet (TrunkIdSheet) and commits it at "Ok"; "Cancel" or Escape
// leaves the store as it was when the window opened, including what the
// windows opened from here changed in it.
//
// The grid takes keys itself: typed characters go into the current ID or tag
// cell, Enter checks the cell and moves down, Tab and Shift+Tab move along the
// row (and on to the other controls at its ends), Ctrl+C, Ctrl+X and Ctrl+V
// copy, cut and paste, and the right button opens the same as a menu.

#include "trunk/idsheet.h"

#include <QDialog>

#include <memory>

class QCheckBox;
class QLabel;
class QLineEdit;
class QMenu;
class QModelIndex;
class QPushButton;
class QTabBar;
class QTableView;

namespace kestra {

class GridModel;
class MemTable;

class TrunkIdWindow : public QDialog {
    Q_OBJECT
public:
    explicit TrunkIdWindow(MemTable& table, QWidget* parent = nullptr);
    ~TrunkIdWindow() override;

    TrunkIdSheet& sheet() { return sheet_; }
    QTabBar* tabs() const { return tabs_; }
    QTableView* grid() const { return grid_; }
    GridModel* gridModel() const { return model_.get(); }
    QLineEdit* idBox() const { return idBox_; }
    QLineEdit* tagBox() const { return tagBox_; }
    QCheckBox* recordBox() const { return record_; }
    QCheckBox* beepBox() const { return beep_; }
    QLabel* kindLabel() const { return kind_; }
    QLabel* hintLabel() const { return hint_; }
    QMenu* popupMenu() const { return popup_; }
    QPushButton* okButton() const { return ok_; }
    QPushButton* cancelButton() const { return cancel_; }
    // A command button by its control name (see the constructor).
    QPushButton* button(const char* name) const;

    // "Ok": checks and commits every bank, then closes.
    void accept() override;
    // "Cancel": the store as it was, then closes.
    void reject() override;

    // The clipboard commands, on the system clipboard.
    void copyCells();
    void cutCells();
    void pasteCells();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPushButton* addButton(const char* name, const QString& caption, void (TrunkIdWindow::*handler)());
    bool gridKey(QKeyEvent* key);
    void tabChanged(int index);
    void showBankLabels();
    void fillTabCaptions();
    void showCurrentRow();
    void cellDoubleClicked(const QModelIndex& index);

    // The commands that open another window on the store.
    void copyIds();
    void copyBanks();
    void editListTags();
    void replaceTagText();

    MemTable& table_;
    TrunkIdSheet sheet_;
    std::unique_ptr<GridModel> model_;
    bool loading_ = true;

    QTabBar* tabs_ = nullptr;
    QTableView* grid_ = nullptr;
    QLineEdit* idBox_ = nullptr;
    QLineEdit* tagBox_ = nullptr;
    QCheckBox* record_ = nullptr;
    QCheckBox* beep_ = nullptr;
    QLabel* kind_ = nullptr;
    QLabel* hint_ = nullptr;
    QMenu* popup_ = nullptr;
    QPushButton* ok_ = nullptr;
    QPushButton* cancel_ = nullptr;
};

} // namespace kestra
