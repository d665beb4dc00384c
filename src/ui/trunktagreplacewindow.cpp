#include "ui/trunktagreplacewindow.h"

#include "platform/qt/qtext.h"
#include "trunk/idsheet.h"
#include "trunk/trunkids.h"
#include "ui/widgets/keyfilter.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kestra {

TrunkTagReplaceWindow::TrunkTagReplaceWindow(TrunkIdSheet& sheet, QWidget* parent) : QDialog(parent), sheet_(sheet)
{
    setObjectName("vervangtrunk");
    setWindowTitle("Replace Text Tag:");
    setModal(true);

    find_ = new QLineEdit(this);
    find_->setObjectName("Text1");
    replace_ = new QLineEdit(this);
    replace_->setObjectName("Text2");
    // A tag can hold neither a comma nor a double quote: the replacement neither.
    new KeyFilter(replace_, &tagKeyAccepted);
    auto* texts = new QFormLayout;
    texts->addRow("Find What:", find_);
    texts->addRow("Replace With:", replace_);

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
    layout->addLayout(buttons);

    connect(apply_, &QPushButton::clicked, this, &TrunkTagReplaceWindow::apply);
    connect(close_, &QPushButton::clicked, this, &QDialog::accept);
}

void TrunkTagReplaceWindow::apply()
{
    sheet_.replaceTagText(fromQt(find_->text()), fromQt(replace_->text()));
}

} // namespace kestra
