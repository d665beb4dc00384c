#include "ui/replacewindow.h"

#include "core/memtable.h"
#include "ui/widgets/radiopair.h"
#include "platform/qt/qtext.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kestra {

ReplaceWindow::ReplaceWindow(MemTable& table, BankTools& tools, QWidget* parent)
    : QDialog(parent), table_(table), tools_(tools)
{
    setObjectName("vervang");
    setWindowTitle("Replace Text Tag:");
    setModal(true);

    text1_ = new QLineEdit(this);
    text1_->setObjectName("Text1");
    text2_ = new QLineEdit(this);
    text2_->setObjectName("Text2");
    auto* texts = new QFormLayout;
    texts->addRow("Find What:", text1_);
    texts->addRow("Replace With:", text2_);

    auto* scope = makeRadioPair(this, "Option3D1", "All Banks", "Current Bank", table_.settings().findoptie2,
                                option3D1_);

    apply_ = new QPushButton("Apply", this);
    apply_->setObjectName("Command1");
    apply_->setDefault(true);
    close_ = new QPushButton("Close", this);
    close_->setObjectName("Command2");
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(apply_);
    buttons->addWidget(close_);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(texts);
    layout->addWidget(scope);
    layout->addLayout(buttons);

    connect(apply_, &QPushButton::clicked, this, &ReplaceWindow::apply);
    connect(close_, &QPushButton::clicked, this, &QDialog::accept);
}

BankTools::Scope ReplaceWindow::scope() const
{
    return option3D1_[1]->isChecked() ? BankTools::Scope::CurrentBank : BankTools::Scope::AllBanks;
}

void ReplaceWindow::apply()
{
    tools_.replaceTags(fromQt(text1_->text()), fromQt(text2_->text()), scope());
}

} // namespace kestra
