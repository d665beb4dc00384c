#pragma once
// The Software Options window softset: every switch of setup.ini that the user
// sets, spread over the tabs "General", "Bandplan", "Tags", "Trunk",
// "Virtual Control" and "Backup". The window works on a copy; "Ok" takes the
// copy over into the program's settings and the folders of MemTable and shows
// the grid anew, "Cancel" drops it. setup.ini itself is written when the main
// window unloads.

#include "core/settings.h"

#include <QDialog>

#include <array>
#include <optional>
#include <string>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSlider;

namespace kestra {

class MemTable;

class OptionsWindow : public QDialog {
    Q_OBJECT
public:
    // The check boxes of the control array Check1.
    static constexpr int kChecks = 32;

    explicit OptionsWindow(MemTable& table, QWidget* parent = nullptr);

    // The setup.ini key of box index of Check1 ("9khz", "smart", ...).
    static const char* checkKey(int index);
    // The text beside the slider: "1 Minute.", "30 Minutes.".
    static QString minutesText(int minutes);

    QCheckBox* check1(int index) const { return check1_.at(index); }
    QComboBox* bandplan() const { return bandplan_; }
    QComboBox* model() const { return model_; }
    QComboBox* align() const { return align_; }
    QCheckBox* backena() const { return backena_; }
    QSlider* hscroll1() const { return hscroll1_; }
    QLabel* minutesLabel() const { return minutes_; }
    QPushButton* okButton() const { return ok_; }
    QPushButton* cancelButton() const { return cancel_; }
    QPushButton* command3() const { return command3_; }
    QPushButton* command4() const { return command4_; }
    QPushButton* command5() const { return command5_; }
    QLineEdit* defaultFolderText() const { return defaultFolder_; }
    QLineEdit* backupFolderText() const { return backupFolder_; }

    // "Ok": the values into the settings, the folders into MemTable, the grid
    // filled anew with the alignment and the frequency form chosen.
    void accept() override;

private:
    void chooseDefaultFolder();
    void chooseBackupFolder();
    void resetTrunks();
    void showMinutes(int minutes);

    MemTable& table_;
    std::array<QCheckBox*, kChecks> check1_{};
    QComboBox* bandplan_ = nullptr;
    QComboBox* model_ = nullptr;
    QComboBox* align_ = nullptr;
    QCheckBox* backena_ = nullptr;
    QSlider* hscroll1_ = nullptr;
    QLabel* minutes_ = nullptr;
    QPushButton* ok_ = nullptr;
    QPushButton* cancel_ = nullptr;
    QPushButton* command3_ = nullptr;
    QPushButton* command4_ = nullptr;
    QPushButton* command5_ = nullptr;
    QLineEdit* defaultFolder_ = nullptr;
    QLineEdit* backupFolder_ = nullptr;
    // The folders as chosen, taken over at "Ok"; nothing while not chosen.
    std::optional<std::string> chosenDefault_;
    std::optional<std::string> chosenBackup_;
};

} // namespace kestra
