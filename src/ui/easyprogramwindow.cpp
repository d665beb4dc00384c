#include "ui/easyprogramwindow.h"

#include "core/text.h"
#include "platform/qt/qtext.h"
#include "ui/widgets/keyfilter.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace kestra {

EasyProgramWindow::EasyProgramWindow(TransferWindow::Services services, TransferWindow::Link link, QWidget* parent)
    : ScannerDialog(services, std::move(link), parent)
{
    setObjectName("easyprog");
    setWindowTitle("Easy Program:");
    wake = [this] {
        if (engine().openport()) engine().portOpened = quick::wakeUp(engine(), services_.doc.model.bc785d, false);
    };

    auto* range = new QGroupBox("Into Channel Range:", this);
    auto* rangeGrid = new QGridLayout(range);
    all_ = new QRadioButton("All Banks", range);
    all_->setObjectName("Option1");
    single_ = new QRadioButton("Single Bank:", range);
    bank_ = new QComboBox(range);
    bank_->setObjectName("Combo2");
    for (int b = 1; b <= 10; ++b) bank_->addItem(QString::number(b));
    start_ = new QLineEdit("1", range);
    start_->setObjectName("Text1_0");
    end_ = new QLineEdit("1000", range);
    end_->setObjectName("Text1_1");
    for (QLineEdit* field : {start_, end_}) {
        field->setMaxLength(4);
        new KeyFilter(field, [](char c) { return c >= '0' && c <= '9'; });
    }
    all_->setChecked(true);
    rangeGrid->addWidget(all_, 0, 0);
    rangeGrid->addWidget(single_, 1, 0);
    rangeGrid->addWidget(bank_, 1, 1);
    rangeGrid->addWidget(new QLabel("Start:", range), 2, 0);
    rangeGrid->addWidget(start_, 2, 1);
    rangeGrid->addWidget(new QLabel("End:", range), 3, 0);
    rangeGrid->addWidget(end_, 3, 1);
    connect(all_, &QRadioButton::toggled, this, [this] { bankChosen(); });
    connect(bank_, &QComboBox::currentIndexChanged, this, [this] { bankChosen(); });

    auto* parameters = new QGroupBox("Parameters:", this);
    auto* grid = new QGridLayout(parameters);
    const char* labels[kParameters] = {"Attenuator:", "Lock Out:", "Beep AL:", "Record/Line out:", "Delay:", "Trunk:"};
    for (int p = 0; p < kParameters; ++p) {
        checks_[p] = new QCheckBox(labels[p], parameters);
        checks_[p]->setObjectName(QString("Check1_%1").arg(p));
        lists_[p] = new QComboBox(parameters);
        lists_[p]->setObjectName(QString("Combo1_%1").arg(p));
        if (p == Delay) {
            for (const char* d : quick::easyDelays()) lists_[p]->addItem(d);
        } else {
            lists_[p]->addItems({"On", "Off"});
        }
        grid->addWidget(checks_[p], p, 0);
        grid->addWidget(lists_[p], p, 1);
    }

    command5_ = new QPushButton("Start", this);
    command5_->setObjectName("Command5");
    auto* cancel = new QPushButton("Cancel", this);
    cancel->setObjectName("Command1");
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(command5_);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(range);
    layout->addWidget(parameters);
    layout->addLayout(buttons);
    connect(command5_, &QPushButton::clicked, this, &EasyProgramWindow::start);
    connect(cancel, &QPushButton::clicked, this, &EasyProgramWindow::reject);
}

void EasyProgramWindow::lineChanged() { command5_->setEnabled(lineOpen() && !running_); }

// "Single Bank:" fills the range with the bank's channels; "All Banks" with 1..1000.
void EasyProgramWindow::bankChosen()
{
    const int bank = all_->isChecked() ? -1 : bank_->currentIndex();
    start_->setText(QString::number(bank < 0 ? 1 : bank * 100 + 1));
    end_->setText(QString::number(bank < 0 ? 1000 : bank * 100 + 100));
}

quick::EasyChoices EasyProgramWindow::choices() const
{
    quick::EasyChoices c;
    const auto on = [this](Parameter p) { return lists_[p]->currentIndex() == 0; };
    c.atten = checks_[Atten]->isChecked();
    c.attenOn = on(Atten);
    c.lockout = checks_[Lockout]->isChecked();
    c.lockoutOn = on(Lockout);
    c.beep = checks_[Beep]->isChecked();
    c.beepOn = on(Beep);
    c.record = checks_[Record]->isChecked();
    c.recordOn = on(Record);
    c.delay = checks_[Delay]->isChecked();
    c.delayIndex = lists_[Delay]->currentIndex();
    c.trunk = checks_[Trunk]->isChecked();
    return c;
}

void EasyProgramWindow::start()
{
    running_ = true;
    lineChanged();
    quick::easyProgram(engine(), static_cast<int>(IntVal(fromQt(start_->text()))),
                       static_cast<int>(IntVal(fromQt(end_->text()))), choices(), [this] { return closing_; });
    running_ = false;
    if (closing_) {
        QDialog::reject();
        return;
    }
    lineChanged();
}

// Closing during a run: the run notices at its next channel and the window
// goes then.
void EasyProgramWindow::closeEvent(QCloseEvent* event)
{
    if (running_) {
        closing_ = true;
        event->ignore();
        return;
    }
    ScannerDialog::closeEvent(event);
}

void EasyProgramWindow::reject()
{
    if (running_) {
        closing_ = true;
        return;
    }
    ScannerDialog::reject();
}

} // namespace kestra
