#pragma once
// The window trunkconfig, "Trunk Configuration": the trunk system of each of
// the ten banks. A tab per bank, the Trunk Type list, and one group of
// settings for the type on view: Motorola Type 1 and Type 2 at 800 and
// 900 MHz, Type 2 UHF and VHF with their Base Configs, EDACS, and LT.
//
// The window works on a copy of trunkset. The type list changes the copy at
// once; the controls go into it when another bank is chosen and on "Close",
// which puts the copy into the document. "Cancel" (Escape) drops it.
// "Copy/Move/Swap Banks" puts the copy into the document first, since the
// Memory Manager works on the document, and takes the result back.
//
// The rules (what a type shows, loading, saving and its coercions, the All
// buttons) are in trunk/trunkconfig.h.

#include "core/document.h"
#include "trunk/trunkconfig.h"

#include <QDialog>

#include <array>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTabBar;

namespace kestra {

class LineOperations;
class MemTable;

// The controls of one settings group; a group has only some of them (the
// others are null).
struct TrunkGroupControls {
    QGroupBox* frame = nullptr;
    QLabel* controlChannelLabel = nullptr;
    QComboBox* controlChannel = nullptr;
    QCheckBox* controlChannelOnly = nullptr;
    QPushButton* controlChannelAll = nullptr;
    QCheckBox* statusBit = nullptr;
    QComboBox* idFormat = nullptr;
    QComboBox* endCode = nullptr;
    QComboBox* icall = nullptr;
    QComboBox* delay = nullptr;
    QCheckBox* record = nullptr;
    QCheckBox* activityId = nullptr;
    QCheckBox* emergencyAlt = nullptr;
    // Type 1's fleetmap.
    QLabel* fleetmapLabel = nullptr;
    QComboBox* fleetmap = nullptr;
    QLabel* customLabel = nullptr;
    QPushButton* clearCustom = nullptr;
    std::array<QLineEdit*, 8> blocks{};
    std::array<QLabel*, 8> blockLabels{};
    // Type 2 UHF and VHF: frequency, step and offset of Base Config 1 to 3.
    std::array<std::array<QLineEdit*, 3>, 3> baseConfigs{};
};

class TrunkConfigWindow : public QDialog {
    Q_OBJECT
public:
    // undo: the main window's line operations, for the Memory Manager (may be null).
    TrunkConfigWindow(MemTable& table, LineOperations* undo, QWidget* parent = nullptr);

    QComboBox* trunkTypeList() const { return trunkType_; }
    QTabBar* bankTabs() const { return tabs_; }
    const TrunkGroupControls& group(TrunkGroup which) const { return groups_.at(static_cast<int>(which) - 1); }
    QPushButton* clearBankButton() const { return clearBank_; }
    QPushButton* copyBanksButton() const { return copyBanks_; }
    QPushButton* closeButton() const { return close_; }
    QPushButton* cancelButton() const { return cancel_; }
    int currentBank() const { return bank_; }
    // The window's copy of trunkset, as far as it has been saved.
    const std::array<TrunkSystem, kChannelBanks>& banks() const { return banks_; }

    // True when the Memory Manager, opened from here, changed the document
    // (a bank's tag may have gone with its trunk settings).
    bool banksMoved() const { return banksMoved_; }

    // "Close": the bank on view saved, the copy into the document.
    void accept() override;

private:
    void buildGroups();
    void arrange();
    void showForm(const TrunkForm& form);
    TrunkForm formShown() const;
    const TrunkGroupControls* shownGroup() const;
    void loadBank();
    void saveBank();
    void setTypeListFromStore();
    void chooseType(int type);
    void chooseBank(int index);
    void fleetmapChosen(int entry);
    void showCustomControls();
    void clearThisBank();
    void applyToAll(AllButton button);
    void copyMoveSwapBanks();
    void commit();

    MemTable& table_;
    LineOperations* undo_;
    std::array<TrunkSystem, kChannelBanks> banks_;
    int bank_ = 0;
    int bc785d_ = 0;
    bool banksMoved_ = false;

    QComboBox* trunkType_ = nullptr;
    QTabBar* tabs_ = nullptr;
    std::array<TrunkGroupControls, 4> groups_{};   // Motorola, BaseConfig, Edacs, Lt
    QPushButton* clearBank_ = nullptr;
    QPushButton* copyBanks_ = nullptr;
    QPushButton* close_ = nullptr;
    QPushButton* cancel_ = nullptr;
};

} // namespace kestra
