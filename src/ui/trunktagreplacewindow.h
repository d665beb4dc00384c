#pragma once
// The window vervangtrunk, "Replace Text Tag:" of the ID window: the search
// text, "Replace With:", "Apply", which replaces the first occurrence in each
// tag of the ID window's grid, and "Close". Only the grid changes; the ID
// window's "Ok" commits it.

#include <QDialog>

class QLineEdit;
class QPushButton;

namespace kestra {

class TrunkIdSheet;

class TrunkTagReplaceWindow : public QDialog {
    Q_OBJECT
public:
    TrunkTagReplaceWindow(TrunkIdSheet& sheet, QWidget* parent = nullptr);

    QLineEdit* findBox() const { return find_; }
    QLineEdit* replaceBox() const { return replace_; }
    QPushButton* applyButton() const { return apply_; }
    QPushButton* closeButton() const { return close_; }

    void apply();

private:
    TrunkIdSheet& sheet_;
    QLineEdit* find_ = nullptr;
    QLineEdit* replace_ = nullptr;
    QPushButton* apply_ = nullptr;
    QPushButton* close_ = nullptr;
};

} // namespace kestra
