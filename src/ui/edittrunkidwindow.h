#pragma once
// The window editrunk, "Edit Trunk ID's": copy, move or swap an ID or a scan
// list within the bank on view, or a whole bank's lists or one list between
// banks. The "From:" and "To:" lists are rebuilt whenever an option changes
// and after each "&Apply", so the user sees the result. The work is done on
// the store; the ID window hands its sheet over before and rereads it after.

#include "trunk/idlistedit.h"

#include <QDialog>

#include <array>

class QListWidget;
class QPushButton;
class QRadioButton;

namespace kestra {

class EditTrunkIdWindow : public QDialog {
    Q_OBJECT
public:
    EditTrunkIdWindow(Document& doc, int bank, QWidget* parent = nullptr);

    QRadioButton* operationButton(IdOperation op) const { return operation_[static_cast<int>(op)]; }
    QRadioButton* unitButton(IdUnit unit) const { return unit_[static_cast<int>(unit)]; }
    QRadioButton* scopeButton(IdScope scope) const { return scope_[static_cast<int>(scope)]; }
    QListWidget* fromList() const { return from_; }
    QListWidget* toList() const { return to_; }
    QPushButton* applyButton() const { return apply_; }
    QPushButton* okButton() const { return ok_; }
    QPushButton* cancelButton() const { return cancel_; }

    IdListChoice choice() const;

    // "&Apply": the work, the lists rebuilt; the window stays.
    void apply();
    // "Ok": the work when something was chosen since the last Apply, then close.
    void accept() override;

private:
    void rebuild();

    Document& doc_;
    int bank_;
    bool pending_ = false;   // a list or option changed since the last Apply
    IdUnit shownUnit_ = IdUnit::Ids;   // what the lists show now
    IdScope shownScope_ = IdScope::ActiveBank;
    std::array<QRadioButton*, 3> operation_{};
    std::array<QRadioButton*, 2> unit_{};
    std::array<QRadioButton*, 2> scope_{};
    QListWidget* from_ = nullptr;
    QListWidget* to_ = nullptr;
    QPushButton* apply_ = nullptr;
    QPushButton* ok_ = nullptr;
    QPushButton* cancel_ = nullptr;
};

} // namespace kestra
