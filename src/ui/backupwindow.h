#pragma once
// The window "Backup and Restore" of the File menu: the backups the automatic
// backup has written into backdir/backup, the newest first, with "Backup Now",
// which writes one at once, and "Restore", which opens the chosen one as File
// > Open would (asking "Save data?" first). The list follows every change.

#include <QDialog>

class QLabel;
class QListWidget;
class QPushButton;

namespace kestra {

class Backup;
class MemTable;

class BackupWindow : public QDialog {
    Q_OBJECT
public:
    BackupWindow(MemTable& table, Backup& backup, QWidget* parent = nullptr);

    QListWidget* list() const { return list_; }
    QPushButton* backupNowButton() const { return backupNow_; }
    QPushButton* restoreButton() const { return restore_; }
    // True once a backup was opened into the table.
    bool restored() const { return restored_; }

private:
    void refresh();
    void backupNow();
    void restore();

    MemTable& table_;
    Backup& backup_;
    QLabel* folder_ = nullptr;
    QLabel* state_ = nullptr;
    QListWidget* list_ = nullptr;
    QPushButton* backupNow_ = nullptr;
    QPushButton* restore_ = nullptr;
    QPushButton* close_ = nullptr;
    bool restored_ = false;
};

} // namespace kestra
