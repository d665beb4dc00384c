#pragma once
// The window defdata, "Default data per channel:": for each of the seven
// fields a new line can get by default, a check box Check1 (whether it gets
// one) and a list Combo1 (which one) in the texts of the current layout. "OK"
// takes the choices over into MemTable::defdata, "Cancel" drops them;
// defdata.ini is written when the main window unloads.

#include "core/defaultdata.h"

#include <QDialog>

#include <array>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;

namespace kestra {

class MemTable;

class DefaultDataWindow : public QDialog {
    Q_OBJECT
public:
    explicit DefaultDataWindow(MemTable& table, QWidget* parent = nullptr);

    QCheckBox* check1(int field) const { return check1_.at(field); }
    QComboBox* combo1(int field) const { return combo1_.at(field); }
    QLabel* label1(int field) const { return label1_.at(field); }
    QPushButton* okButton() const { return ok_; }
    QPushButton* cancelButton() const { return cancel_; }

    // "OK": flags and values of the current layout into MemTable::defdata.
    void accept() override;

private:
    MemTable& table_;
    int bc785d_ = 0;   // the layout whose values the lists show
    std::array<QCheckBox*, DefaultData::FieldCount> check1_{};
    std::array<QComboBox*, DefaultData::FieldCount> combo1_{};
    std::array<QLabel*, DefaultData::FieldCount> label1_{};
    QPushButton* ok_ = nullptr;
    QPushButton* cancel_ = nullptr;
};

} // namespace kestra
