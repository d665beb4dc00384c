#include "ui/defaultdatawindow.h"
#include "ui/widgets/okcancel.h"

#include "core/memtable.h"
#include "platform/qt/qtext.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace kestra {

DefaultDataWindow::DefaultDataWindow(MemTable& table, QWidget* parent)
    : QDialog(parent), table_(table), bc785d_(table.doc().model.bc785d == 1 ? 1 : 0)
{
    setObjectName("defdata");
    setWindowTitle("Default data per channel:");
    setModal(true);

    const DefaultData& data = table_.defdata;
    auto* fields = new QGridLayout;
    fields->setColumnStretch(2, 1);
    fields->setHorizontalSpacing(10);
    for (int f = 0; f < DefaultData::FieldCount; ++f) {
        const auto field = static_cast<DefaultData::Field>(f);

        auto* check = new QCheckBox(this);
        check->setObjectName("Check1");
        check->setProperty("index", f);
        check->setToolTip("A new line gets this default");
        check->setChecked(data.enabled[f] == 1);

        auto* label = new QLabel(QString::fromUtf8(DefaultData::caption(field)), this);
        label->setObjectName("Label1");

        auto* combo = new QComboBox(this);
        combo->setObjectName("Combo1");
        combo->setProperty("index", f);
        for (const std::string& item : DefaultData::fieldList(field, bc785d_)) combo->addItem(toQt(item));
        const int value = data.value[f][bc785d_];
        combo->setCurrentIndex(value >= 0 && value < combo->count() ? value : -1);
        combo->setMinimumContentsLength(8);
        label->setBuddy(combo);

        // The list is only of use while its field gets a default.
        combo->setEnabled(check->isChecked());
        connect(check, &QCheckBox::toggled, combo, &QWidget::setEnabled);

        fields->addWidget(check, f, 0);
        fields->addWidget(label, f, 1);
        fields->addWidget(combo, f, 2);
        check1_[f] = check;
        label1_[f] = label;
        combo1_[f] = combo;
    }

    const OkCancelRow okCancel = makeOkCancelRow(this, "OK");
    ok_ = okCancel.ok;
    cancel_ = okCancel.cancel;
    auto* buttons = okCancel.row;

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addSpacing(6);
    layout->addLayout(buttons);

    connect(ok_, &QPushButton::clicked, this, &DefaultDataWindow::accept);
    connect(cancel_, &QPushButton::clicked, this, &DefaultDataWindow::reject);
}

void DefaultDataWindow::accept()
{
    DefaultData& data = table_.defdata;
    for (int f = 0; f < DefaultData::FieldCount; ++f) {
        data.enabled[f] = check1_[f]->isChecked() ? 1 : 0;
        // A list without a choice (a value from the file that no entry stands for) keeps it.
        if (combo1_[f]->currentIndex() >= 0) data.value[f][bc785d_] = combo1_[f]->currentIndex();
    }
    QDialog::accept();
}

} // namespace kestra
