#include "ui/backupwindow.h"

#include "core/memtable.h"
#include "editor/backup.h"
#include "platform/qt/qtext.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace kestra {

namespace {

QString nativeText(const std::filesystem::path& path) { return QString::fromStdString(path.string()); }

} // namespace

BackupWindow::BackupWindow(MemTable& table, Backup& backup, QWidget* parent)
    : QDialog(parent), table_(table), backup_(backup)
{
    setObjectName("backrest");
    setWindowTitle("Backup and Restore");
    setModal(true);

    folder_ = new QLabel(this);
    folder_->setObjectName("folder");
    folder_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    state_ = new QLabel(this);
    state_->setObjectName("state");
    state_->setWordWrap(true);
    list_ = new QListWidget(this);
    list_->setObjectName("List1");
    list_->setMinimumSize(420, 220);

    backupNow_ = new QPushButton("Backup Now", this);
    backupNow_->setObjectName("Command1");
    backupNow_->setAutoDefault(false);
    restore_ = new QPushButton("Restore", this);
    restore_->setObjectName("Command2");
    restore_->setAutoDefault(false);
    close_ = new QPushButton("Close", this);
    close_->setObjectName("Command3");
    close_->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(backupNow_);
    buttons->addWidget(restore_);
    buttons->addStretch(1);
    buttons->addWidget(close_);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(folder_);
    layout->addWidget(state_);
    layout->addWidget(list_, 1);
    layout->addLayout(buttons);

    connect(backupNow_, &QPushButton::clicked, this, &BackupWindow::backupNow);
    connect(restore_, &QPushButton::clicked, this, &BackupWindow::restore);
    connect(list_, &QListWidget::itemDoubleClicked, this, &BackupWindow::restore);
    connect(list_, &QListWidget::currentRowChanged, this, [this](int row) { restore_->setEnabled(row >= 0); });
    connect(close_, &QPushButton::clicked, this, &QDialog::accept);
    refresh();
}

void BackupWindow::refresh()
{
    folder_->setText("Folder: " + nativeText(backup_.folder()));
    const Settings& settings = table_.settings();
    if (settings.backena == 0)
        state_->setText("The automatic backup is off (Setup > Software Options > Backup).");
    else
        state_->setText(QString("A backup is written every %1 minute%2.")
                            .arg(settings.backupdelay)
                            .arg(settings.backupdelay == 1 ? "" : "s"));
    list_->clear();
    for (const std::filesystem::path& path : backup_.backups()) {
        auto* item = new QListWidgetItem(nativeText(path.filename()), list_);
        item->setData(Qt::UserRole, nativeText(path));
        item->setToolTip(nativeText(path));
    }
    if (list_->count() > 0) list_->setCurrentRow(0);
    restore_->setEnabled(list_->currentRow() >= 0);
}

void BackupWindow::backupNow()
{
    const std::string error = backup_.backupNow();
    if (!error.empty())
        table_.dialogs().message("The backup could not be written: " + error, {}, Buttons::Ok, Icon::Exclamation);
    refresh();
}

void BackupWindow::restore()
{
    QListWidgetItem* item = list_->currentItem();
    if (!item) return;
    if (table_.openMemFile(item->data(Qt::UserRole).toString().toStdString())) {
        restored_ = true;
        accept();
    }
}

} // namespace kestra
