#include "ui/edittrunkidwindow.h"

#include "platform/qt/qtext.h"
#include "ui/widgets/okcancel.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace kestra {

namespace {

// A frame of radio buttons, the first checked; each change calls changed.
template <std::size_t N>
QGroupBox* optionFrame(QWidget* parent, const char* title, const char* name, const char* const (&captions)[N],
                       std::array<QRadioButton*, N>& buttons)
{
    auto* frame = new QGroupBox(title, parent);
    auto* layout = new QHBoxLayout(frame);
    auto* group = new QButtonGroup(frame);
    for (std::size_t i = 0; i < N; ++i) {
        auto* b = new QRadioButton(captions[i], frame);
        b->setObjectName(name);
        b->setProperty("index", static_cast<int>(i));
        group->addButton(b, static_cast<int>(i));
        layout->addWidget(b);
        buttons[i] = b;
    }
    buttons[0]->setChecked(true);
    return frame;
}

} // namespace

EditTrunkIdWindow::EditTrunkIdWindow(Document& doc, int bank, QWidget* parent)
    : QDialog(parent), doc_(doc), bank_(bank)
{
    setObjectName("editrunk");
    setWindowTitle("Edit Trunk ID's");
    setModal(true);

    static const char* const operations[] = {"&Copy", "&Move", "&Swap"};
    static const char* const units[] = {"ID's", "Lists"};
    static const char* const scopes[] = {"Active Bank", "All Banks"};
    auto* options = new QHBoxLayout;
    options->addWidget(optionFrame(this, "Option:", "Option1", operations, operation_));
    options->addWidget(optionFrame(this, "", "Option2", units, unit_));
    options->addWidget(optionFrame(this, "", "Option3", scopes, scope_));

    from_ = new QListWidget(this);
    from_->setObjectName("List1");
    to_ = new QListWidget(this);
    to_->setObjectName("List2");
    auto* lists = new QGridLayout;
    auto* fromLabel = new QLabel("From:", this);
    fromLabel->setBuddy(from_);
    auto* toLabel = new QLabel("To:", this);
    toLabel->setBuddy(to_);
    lists->addWidget(fromLabel, 0, 0);
    lists->addWidget(toLabel, 0, 1);
    lists->addWidget(from_, 1, 0);
    lists->addWidget(to_, 1, 1);

    apply_ = new QPushButton("&Apply", this);
    apply_->setObjectName("Command3");
    apply_->setAutoDefault(false);
    const OkCancelRow okCancel = makeOkCancelRow(this, "Ok");
    ok_ = okCancel.ok;
    cancel_ = okCancel.cancel;
    okCancel.row->insertWidget(1, apply_);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(options);
    layout->addLayout(lists, 1);
    layout->addLayout(okCancel.row);

    for (QRadioButton* b : {operation_[0], operation_[1], operation_[2], unit_[0], unit_[1], scope_[0], scope_[1]})
        connect(b, &QRadioButton::toggled, this, [this](bool on) {
            if (!on) return;
            pending_ = true;
            rebuild();
        });
    for (QListWidget* list : {from_, to_})
        connect(list, &QListWidget::currentRowChanged, this, [this] { pending_ = true; });
    connect(apply_, &QPushButton::clicked, this, &EditTrunkIdWindow::apply);
    connect(ok_, &QPushButton::clicked, this, &EditTrunkIdWindow::accept);
    connect(cancel_, &QPushButton::clicked, this, &EditTrunkIdWindow::reject);

    rebuild();
    pending_ = false;
    resize(620, 460);
}

IdListChoice EditTrunkIdWindow::choice() const
{
    IdListChoice c;
    for (int i = 0; i < 3; ++i)
        if (operation_[i]->isChecked()) c.operation = static_cast<IdOperation>(i);
    c.unit = unit_[1]->isChecked() ? IdUnit::Lists : IdUnit::Ids;
    c.scope = scope_[1]->isChecked() ? IdScope::AllBanks : IdScope::ActiveBank;
    return c;
}

void EditTrunkIdWindow::rebuild()
{
    const IdListChoice c = choice();
    const int fromRow = from_->currentRow(), toRow = to_->currentRow();
    const bool sameShape = shownUnit_ == c.unit && shownScope_ == c.scope;
    shownUnit_ = c.unit;
    shownScope_ = c.scope;
    for (QListWidget* list : {from_, to_}) {
        const QSignalBlocker quiet(list);
        list->clear();
        for (const std::string& entry : idListEntries(doc_, c.unit, c.scope, bank_)) list->addItem(toQt(entry));
    }
    // After an Apply the same entries stay chosen, so the result is in view.
    if (sameShape) {
        const QSignalBlocker quietFrom(from_), quietTo(to_);
        from_->setCurrentRow(fromRow);
        to_->setCurrentRow(toRow);
    }
}

void EditTrunkIdWindow::apply()
{
    applyIdListChoice(doc_, choice(), bank_, from_->currentRow(), to_->currentRow());
    pending_ = false;
    rebuild();
}

void EditTrunkIdWindow::accept()
{
    if (pending_) apply();
    QDialog::accept();
}

} // namespace kestra
