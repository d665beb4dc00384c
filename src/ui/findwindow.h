#pragma once
// The window find, "Find Data": the text box Text1, the scope "All Banks" or
// "Current Bank" (Option3D1), the column "Frequency" or "Comments"
// (Option3D2) and the button "Find >>", which looks for the next channel
// behind the last hit. The two choices are kept in findoptie0 (scope: 0 All
// Banks, 1 Current Bank) and findoptie1 (column: 0 Frequency, 1 Comments)
// as soon as they change.

#include "editor/banktools.h"

#include <QDialog>

#include <array>

class QLineEdit;
class QPushButton;
class QRadioButton;

namespace kestra {

class MemTable;

class FindWindow : public QDialog {
    Q_OBJECT
public:
    FindWindow(MemTable& table, BankTools& tools, QWidget* parent = nullptr);

    QLineEdit* text1() const { return text1_; }
    // Option3D1: 0 "All Banks", 1 "Current Bank". Option3D2: 0 "Frequency", 1 "Comments".
    QRadioButton* option3D1(int index) const { return option3D1_.at(index); }
    QRadioButton* option3D2(int index) const { return option3D2_.at(index); }
    QPushButton* findButton() const { return find_; }
    QPushButton* closeButton() const { return close_; }

    BankTools::Scope scope() const;
    BankTools::Field field() const;

    // "Find >>".
    void findNext();

private:
    MemTable& table_;
    BankTools& tools_;
    QLineEdit* text1_ = nullptr;
    std::array<QRadioButton*, 2> option3D1_{};
    std::array<QRadioButton*, 2> option3D2_{};
    QPushButton* find_ = nullptr;
    QPushButton* close_ = nullptr;
};

} // namespace kestra
