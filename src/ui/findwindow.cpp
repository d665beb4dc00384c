#include "ui/findwindow.h"

#include "core/memtable.h"
#include "ui/widgets/radiopair.h"
#include "platform/qt/qtext.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kestra {

FindWindow::FindWindow(MemTable& table, BankTools& tools, QWidget* parent) : QDialog(parent), table_(table), tools_(tools)
{
    setObjectName("find");
    setWindowTitle("Find Data");
    setModal(true);

    text1_ = new QLineEdit(this);
    text1_->setObjectName("Text1");

    Settings& settings = table_.settings();
    auto* choices = new QHBoxLayout;
    choices->addWidget(makeRadioPair(this, "Option3D1", "All Banks", "Current Bank", settings.findoptie0, option3D1_));
    choices->addWidget(makeRadioPair(this, "Option3D2", "Frequency", "Comments", settings.findoptie1, option3D2_));

    find_ = new QPushButton("Find >>", this);
    find_->setObjectName("Command1");
    find_->setDefault(true);
    close_ = new QPushButton("Close", this);
    close_->setObjectName("Command2");
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(find_);
    buttons->addWidget(close_);

    auto* layout = new QVBoxLayout(this);
    auto* text = new QFormLayout;
    text->addRow("Find What:", text1_);
    layout->addLayout(text);
    layout->addLayout(choices);
    layout->addLayout(buttons);

    connect(find_, &QPushButton::clicked, this, &FindWindow::findNext);
    connect(close_, &QPushButton::clicked, this, &QDialog::accept);
}

BankTools::Scope FindWindow::scope() const
{
    return option3D1_[1]->isChecked() ? BankTools::Scope::CurrentBank : BankTools::Scope::AllBanks;
}

BankTools::Field FindWindow::field() const
{
    return option3D2_[1]->isChecked() ? BankTools::Field::Comments : BankTools::Field::Frequency;
}

void FindWindow::findNext()
{
    tools_.findNext(fromQt(text1_->text()), scope(), field());
}

} // namespace kestra
