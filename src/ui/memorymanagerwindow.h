#pragma once
// The window editmenu, "Memory Manager": copy, move or swap a range of
// channels, or whole banks with their channels, their trunk settings or both.
// Three lists choose the work (operation, unit, what a bank carries); the
// channel numbers or the banks say from where to where; "Copy Tags" is the
// copytags setting. "&Apply" does the work and stays open, "Ok" does it and
// closes, "Cancel" closes.
//
// The window has two modes, told by its mode name: "Memory Manager" from the
// Edit menu, and "Memory Manager1" from the trunk settings, which opens on
// copying the trunk settings of banks.

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QSpinBox;
class QWidget;

namespace kestra {

class LineOperations;
class MemTable;
struct MemoryJob;

class MemoryManagerWindow : public QDialog {
    Q_OBJECT
public:
    static constexpr const char* kModeName = "Memory Manager";
    static constexpr const char* kTrunkModeName = "Memory Manager1";
    enum class Mode { Memory, Trunk };

    // undo: the main window's line operations, whose undo copies the work keeps (may be null).
    MemoryManagerWindow(MemTable& table, LineOperations* undo, Mode mode, QWidget* parent = nullptr);

    QString modeName() const { return mode_ == Mode::Trunk ? kTrunkModeName : kModeName; }

    // Presets before the window shows: channels of a range, or a bank (the
    // trunk mode starts from the bank on view; the trunk settings window
    // presets its own bank).
    void presetChannels(int fromFirst, int fromLast);
    void presetBanks(int fromBank);

    QComboBox* operationList() const { return operation_; }
    QComboBox* unitList() const { return unit_; }
    QComboBox* partList() const { return part_; }
    QComboBox* fromBank() const { return fromBank_; }
    QComboBox* toBank() const { return toBank_; }
    QSpinBox* fromFirst() const { return fromFirst_; }
    QSpinBox* fromLast() const { return fromLast_; }
    QSpinBox* toFirst() const { return toFirst_; }
    QCheckBox* copyTags() const { return copyTags_; }
    QLabel* status() const { return status_; }
    QPushButton* applyButton() const { return apply_; }
    QPushButton* okButton() const { return ok_; }
    QPushButton* cancelButton() const { return cancel_; }

    // True when an Apply or Ok of this window changed the document.
    bool changed() const { return changed_; }

    // "Ok": the work, then close.
    void accept() override;

private:
    MemoryJob job() const;
    void apply();
    void arrange();
    void fillBankLists();

    MemTable& table_;
    LineOperations* undo_;
    Mode mode_;
    bool changed_ = false;

    QComboBox* operation_ = nullptr;
    QComboBox* unit_ = nullptr;
    QComboBox* part_ = nullptr;
    QLabel* partLabel_ = nullptr;
    QWidget* banks_ = nullptr;
    QWidget* channels_ = nullptr;
    QComboBox* fromBank_ = nullptr;
    QComboBox* toBank_ = nullptr;
    QSpinBox* fromFirst_ = nullptr;
    QSpinBox* fromLast_ = nullptr;
    QSpinBox* toFirst_ = nullptr;
    QCheckBox* copyTags_ = nullptr;
    QLabel* status_ = nullptr;
    QPushButton* apply_ = nullptr;
    QPushButton* ok_ = nullptr;
    QPushButton* cancel_ = nullptr;
};

} // namespace kestra
