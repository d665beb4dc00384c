#include "ui/memorymanagerwindow.h"
#include "ui/widgets/okcancel.h"

#include "core/memtable.h"
#include "editor/memorymanager.h"
#include "platform/qt/qtext.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include <algorithm>

namespace kestra {

namespace {

QComboBox* makeList(QWidget* parent, const char* name, std::initializer_list<const char*> entries)
{
    auto* list = new QComboBox(parent);
    list->setObjectName(name);
    for (const char* entry : entries) list->addItem(QString::fromUtf8(entry));
    list->setCurrentIndex(0);
    return list;
}

QSpinBox* makeChannelBox(QWidget* parent, const char* name)
{
    auto* box = new QSpinBox(parent);
    box->setObjectName(name);
    box->setRange(1, kLastChannel);
    box->setAccelerated(true);
    return box;
}

} // namespace

MemoryManagerWindow::MemoryManagerWindow(MemTable& table, LineOperations* undo, Mode mode, QWidget* parent)
    : QDialog(parent), table_(table), undo_(undo), mode_(mode)
{
    setObjectName("editmenu");
    setWindowTitle(kModeName);
    setModal(true);

    // What to do.
    operation_ = makeList(this, "operation", {"Copy", "Move", "Swap"});
    unit_ = makeList(this, "unit", {"Channels", "Banks"});
    part_ = makeList(this, "part", {"Channels", "Trunk Settings", "Channels and Trunk Settings"});
    auto* what = new QFormLayout;
    what->addRow("Operation:", operation_);
    what->addRow("Memory:", unit_);
    partLabel_ = new QLabel("Bank contents:", this);
    what->addRow(partLabel_, part_);

    // From where to where: channel numbers ...
    channels_ = new QWidget(this);
    channels_->setObjectName("channelframe");
    fromFirst_ = makeChannelBox(channels_, "fromfirst");
    fromLast_ = makeChannelBox(channels_, "fromlast");
    toFirst_ = makeChannelBox(channels_, "tofirst");
    auto* fromRow = new QHBoxLayout;
    fromRow->addWidget(fromFirst_);
    fromRow->addWidget(new QLabel("-", channels_));
    fromRow->addWidget(fromLast_);
    fromRow->addStretch(1);
    auto* channelForm = new QFormLayout(channels_);
    channelForm->setContentsMargins(0, 0, 0, 0);
    channelForm->addRow("From channel:", fromRow);
    auto* toRow = new QHBoxLayout;
    toRow->addWidget(toFirst_);
    toRow->addStretch(1);
    channelForm->addRow("To channel:", toRow);

    // ... or banks.
    banks_ = new QWidget(this);
    banks_->setObjectName("bankframe");
    fromBank_ = new QComboBox(banks_);
    fromBank_->setObjectName("frombank");
    toBank_ = new QComboBox(banks_);
    toBank_->setObjectName("tobank");
    fromBank_->setMinimumContentsLength(20);
    toBank_->setMinimumContentsLength(20);
    fillBankLists();
    fromBank_->setCurrentIndex(0);
    toBank_->setCurrentIndex(1);
    auto* bankForm = new QFormLayout(banks_);
    bankForm->setContentsMargins(0, 0, 0, 0);
    bankForm->addRow("From Bank:", fromBank_);
    bankForm->addRow("To Bank:", toBank_);

    copyTags_ = new QCheckBox("Copy Tags", this);
    copyTags_->setObjectName("copytags");
    copyTags_->setChecked(table_.settings().copytags == 1);

    status_ = new QLabel(this);
    status_->setObjectName("status");
    status_->setWordWrap(true);

    const OkCancelRow okCancel = makeOkCancelRow(this, "Ok");
    ok_ = okCancel.ok;
    cancel_ = okCancel.cancel;
    apply_ = new QPushButton("&Apply", this);
    apply_->setObjectName("apply");
    okCancel.row->addWidget(apply_);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(what);
    layout->addSpacing(6);
    layout->addWidget(channels_);
    layout->addWidget(banks_);
    layout->addWidget(copyTags_);
    layout->addWidget(status_);
    layout->addStretch(1);
    layout->addLayout(okCancel.row);

    connect(unit_, &QComboBox::currentIndexChanged, this, &MemoryManagerWindow::arrange);
    connect(ok_, &QPushButton::clicked, this, &MemoryManagerWindow::accept);
    connect(cancel_, &QPushButton::clicked, this, &MemoryManagerWindow::reject);
    connect(apply_, &QPushButton::clicked, this, &MemoryManagerWindow::apply);

    if (mode_ == Mode::Trunk) {
        // From the trunk settings: copy a bank's trunk settings.
        operation_->setCurrentIndex(0);
        unit_->setCurrentIndex(1);
        part_->setCurrentIndex(1);
        presetBanks(std::clamp(table_.doc().currentBank, 0, kChannelBanks - 1));
    }
    arrange();
}

void MemoryManagerWindow::fillBankLists()
{
    for (QComboBox* list : {fromBank_, toBank_}) {
        const int chosen = list->currentIndex();
        list->clear();
        for (int bank = 0; bank <= kDummyBank; ++bank) list->addItem(toQt(table_.tabCaption(bank)), bank);
        if (chosen >= 0) list->setCurrentIndex(chosen);
    }
}

void MemoryManagerWindow::presetChannels(int fromFirst, int fromLast)
{
    unit_->setCurrentIndex(0);
    fromFirst_->setValue(fromFirst);
    fromLast_->setValue(fromLast);
    toFirst_->setValue(fromFirst);
}

void MemoryManagerWindow::presetBanks(int fromBank)
{
    unit_->setCurrentIndex(1);
    const int from = std::clamp(fromBank, 0, kDummyBank);
    fromBank_->setCurrentIndex(from);
    // The next bank (Bank 10 goes to Bank 1, the Dummy bank to Bank 1).
    toBank_->setCurrentIndex(from + 1 < kDummyBank ? from + 1 : 0);
}

void MemoryManagerWindow::arrange()
{
    const bool banks = unit_->currentIndex() == 1;
    banks_->setVisible(banks);
    channels_->setVisible(!banks);
    part_->setEnabled(banks);
    partLabel_->setEnabled(banks);
}

MemoryJob MemoryManagerWindow::job() const
{
    MemoryJob job;
    job.operation = static_cast<MemoryJob::Operation>(std::max(0, operation_->currentIndex()));
    job.unit = unit_->currentIndex() == 1 ? MemoryJob::Unit::Banks : MemoryJob::Unit::Channels;
    job.part = static_cast<MemoryJob::BankPart>(std::max(0, part_->currentIndex()));
    job.copyTags = copyTags_->isChecked();
    job.fromBank = std::max(0, fromBank_->currentIndex());
    job.toBank = std::max(0, toBank_->currentIndex());
    job.fromFirst = fromFirst_->value();
    job.fromLast = fromLast_->value();
    job.toFirst = toFirst_->value();
    return job;
}

void MemoryManagerWindow::apply()
{
    MemoryManager manager(table_, undo_);
    const MemoryOutcome outcome = manager.perform(job());
    if (outcome.changed) {
        changed_ = true;
        // A bank's tag may have gone with it.
        fillBankLists();
    }
    status_->setText(toQt(outcome.done));
}

void MemoryManagerWindow::accept()
{
    apply();
    QDialog::accept();
}

} // namespace kestra
