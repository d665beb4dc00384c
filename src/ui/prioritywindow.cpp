#include "ui/prioritywindow.h"

#include "platform/qt/qtext.h"
#include "ui/widgets/keyfilter.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kestra {

PriorityWindow::PriorityWindow(TransferWindow::Services services, TransferWindow::Link link, QWidget* parent)
    : ScannerDialog(services, std::move(link), parent)
{
    setObjectName("prio");
    setWindowTitle("Priority Channels:");
    wake = [this] {
        if (engine().openport()) engine().portOpened = quick::wakeUp(engine(), services_.doc.model.bc785d, false);
    };
    auto* form = new QFormLayout;
    // Labelled with the bank's range, from "901-1000" downward.
    for (int bank = 9; bank >= 0; --bank) {
        auto* field = new QLineEdit(this);
        field->setObjectName(QString("Text1_%1").arg(bank));
        field->setMaxLength(4);
        new KeyFilter(field, [](char c) { return c >= '0' && c <= '9'; });
        form->addRow(QString("%1-%2").arg(bank * 100 + 1).arg(bank * 100 + 100), field);
        fields_[static_cast<std::size_t>(bank)] = field;
    }
    quick::PriorityFields stored;
    for (int bank = 0; bank < 10; ++bank)
        stored[bank] = services_.doc.priochan[bank] > 0 ? std::to_string(services_.doc.priochan[bank]) : "";
    show(stored);

    read_ = new QPushButton("Read", this);
    read_->setObjectName("Command3");
    send_ = new QPushButton("Send", this);
    send_->setObjectName("Command2");
    auto* close = new QPushButton("Close", this);
    close->setObjectName("Command1");
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(read_);
    buttons->addWidget(send_);
    buttons->addStretch(1);
    buttons->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(buttons);

    connect(read_, &QPushButton::clicked, this, [this] {
        quick::PriorityFields v = values();
        quick::readPriorities(engine(), v);
        show(v);
    });
    connect(send_, &QPushButton::clicked, this, [this] {
        quick::PriorityFields v = values();
        quick::sendPriorities(engine(), v);
        show(v);
    });
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
}

void PriorityWindow::lineChanged()
{
    read_->setEnabled(lineOpen());
    send_->setEnabled(lineOpen());
}

quick::PriorityFields PriorityWindow::values() const
{
    quick::PriorityFields v;
    for (int bank = 0; bank < 10; ++bank) v[bank] = fromQt(fields_[static_cast<std::size_t>(bank)]->text());
    return v;
}

void PriorityWindow::show(const quick::PriorityFields& values)
{
    for (int bank = 0; bank < 10; ++bank) fields_[static_cast<std::size_t>(bank)]->setText(toQt(values[bank]));
}

} // namespace kestra
