#include "ui/banktagswindow.h"

#include "link/quicklink.h"
#include "platform/qt/qtext.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kestra {

BankTagsWindow::BankTagsWindow(TransferWindow::Services services, TransferWindow::Link link, QWidget* parent)
    : ScannerDialog(services, std::move(link), parent)
{
    setObjectName("banknamen");
    setWindowTitle("Setup Bank Tags");
    wake = [this] {
        if (engine().openport()) engine().portOpened = quick::wakeUp(engine(), services_.doc.model.bc785d, true);
    };
    auto* form = new QFormLayout;
    for (int bank = 0; bank < 12; ++bank) {
        auto* field = new QLineEdit(toQt(services_.doc.banktags[static_cast<std::size_t>(bank)]), this);
        field->setObjectName(QString("Text1_%1").arg(bank));
        field->setMaxLength(16);
        form->addRow(bank < 10 ? QString("Bank %1").arg(bank + 1) : bank == 10 ? QString("Dummy") : QString("Bandplan"), field);
        tags_[static_cast<std::size_t>(bank)] = field;
    }
    update_ = new QPushButton("Update scanner now", this);
    update_->setObjectName("Command7");
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(update_);
    layout->addWidget(buttons);
    connect(update_, &QPushButton::clicked, this, [this] {
        update_->setEnabled(false);
        quick::updateBankTags(engine(), fields());
        update_->setEnabled(true);
    });
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void BankTagsWindow::lineChanged() { update_->setEnabled(lineOpen()); }

std::array<std::string, 12> BankTagsWindow::fields() const
{
    std::array<std::string, 12> out;
    for (std::size_t b = 0; b < out.size(); ++b) out[b] = fromQt(tags_[b]->text());
    return out;
}

bool BankTagsWindow::keep()
{
    const std::array<std::string, 12> now = fields();
    if (now == services_.doc.banktags) return false;
    services_.doc.banktags = now;
    return true;
}

} // namespace kestra
