#pragma once
// The window vervang, "Replace Text Tag:": "Find What:" (Text1), "Replace
// With:" (Text2), the scope "All Banks" or "Current Bank" (Option3D1, kept in
// findoptie2: 0 All Banks, 1 Current Bank), "Apply", which replaces the text
// in the tags of the scope at once, and "Close".

#include "editor/banktools.h"

#include <QDialog>

#include <array>

class QLineEdit;
class QPushButton;
class QRadioButton;

namespace kestra {

class MemTable;

class ReplaceWindow : public QDialog {
    Q_OBJECT
public:
    ReplaceWindow(MemTable& table, BankTools& tools, QWidget* parent = nullptr);

    QLineEdit* text1() const { return text1_; }
    QLineEdit* text2() const { return text2_; }
    // Option3D1: 0 "All Banks", 1 "Current Bank".
    QRadioButton* option3D1(int index) const { return option3D1_.at(index); }
    QPushButton* applyButton() const { return apply_; }
    QPushButton* closeButton() const { return close_; }

    BankTools::Scope scope() const;

    // "Apply".
    void apply();

private:
    MemTable& table_;
    BankTools& tools_;
    QLineEdit* text1_ = nullptr;
    QLineEdit* text2_ = nullptr;
    std::array<QRadioButton*, 2> option3D1_{};
    QPushButton* apply_ = nullptr;
    QPushButton* close_ = nullptr;
};

} // namespace kestra
