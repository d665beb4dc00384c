#pragma once
// The window easy2, "Easy Fill" and the model: fills a range of channels with
// ascending frequencies from "Start:" by "Step:", and any of the other columns
// with the value chosen in its list. "Apply" (Command5) fills the store and
// leaves the window open; "Ok" applies and closes; "Cancel" closes. Apply
// repaints the grid, so grid and store agree while the window is open; the
// main window keeps the undo copy and repaints once more when it has closed.

#include "editor/easyfill.h"

#include <QDialog>

#include <array>
#include <set>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace kestra {

class LineOperations;
class MemTable;

class EasyFillWindow : public QDialog {
    Q_OBJECT
public:
    EasyFillWindow(MemTable& table, LineOperations& lineOps, QWidget* parent = nullptr);

    QLineEdit* text1() const { return text1_; }   // "From channel:"
    QLineEdit* text2() const { return text2_; }   // "To channel:"
    QLineEdit* text6() const { return text6_; }   // "Start:"
    QLineEdit* text3() const { return text3_; }   // "Step:"
    QCheckBox* ef(EasyField field) const { return ef_[static_cast<int>(field)]; }
    // The list beside a box; Frequency has none (Start and Step are its values).
    QComboBox* list(EasyField field) const { return list_[static_cast<int>(field)]; }
    QCheckBox* check3d1() const { return check3d1_; }   // "Fill Series"
    QCheckBox* check1() const { return check1_; }       // "Auto Increase Tone Setting"
    QPushButton* selectAllButton() const { return selectAll_; }
    QPushButton* defaultButton() const { return default_; }
    QPushButton* allChannelsButton() const { return allChannels_; }
    QPushButton* helpButton() const { return help_; }
    QPushButton* command5() const { return apply_; }     // "Apply"
    QPushButton* okButton() const { return ok_; }
    QPushButton* cancelButton() const { return cancel_; }

    // The controls as Apply reads them, the chosen texts as store codes.
    EasyFillValues values() const;
    // Apply: the store is filled, the corrected From, To and Step shown.
    void apply();
    // True once Apply has changed the store.
    bool applied() const { return applied_; }

    // "Ok": Apply, then close.
    void accept() override;

    // The info text of the window and of "Help".
    static const char* const kInfo;

private:
    void setDefaults();
    void toggleSelectAll();
    void showHelp();
    void showValues(const EasyFillValues& values);

    MemTable& table_;
    LineOperations& lineOps_;
    bool applied_ = false;
    std::set<int> savedBanks_;   // the banks whose undo copy this window has taken

    QLineEdit* text1_ = nullptr;
    QLineEdit* text2_ = nullptr;
    QLineEdit* text6_ = nullptr;
    QLineEdit* text3_ = nullptr;
    std::array<QCheckBox*, kEasyFields> ef_{};
    std::array<QComboBox*, kEasyFields> list_{};
    QCheckBox* check3d1_ = nullptr;
    QCheckBox* check1_ = nullptr;
    QPushButton* selectAll_ = nullptr;
    QPushButton* default_ = nullptr;
    QPushButton* allChannels_ = nullptr;
    QPushButton* help_ = nullptr;
    QPushButton* apply_ = nullptr;
    QPushButton* ok_ = nullptr;
    QPushButton* cancel_ = nullptr;
};

} // namespace kestra
