#include "ui/activebankswindow.h"

#include "ui/widgets/okcancel.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace kestra {

ActiveBanksWindow::ActiveBanksWindow(Document& doc, QWidget* parent) : QDialog(parent), doc_(doc)
{
    setObjectName("ACTBANK");
    setWindowTitle("Active Banks:");
    setModal(true);

    auto* grid = new QGridLayout;
    const auto addRow = [this, grid](int row, const char* caption, int first, const std::array<std::int16_t, 10>& flags,
                                     const char* all, const char* clear) {
        grid->addWidget(new QLabel(caption, this), row, 0);
        for (int i = 0; i < 10; ++i) {
            auto* b = new QCheckBox(QString::number(i + 1), this);
            b->setObjectName("Check1");
            b->setProperty("index", first + i);
            b->setChecked(flags[i] == 1);
            grid->addWidget(b, row, i + 1);
            boxes_[first + i] = b;
        }
        const auto addButton = [this, grid, row, first](const char* name, const char* text, bool on, int column) {
            auto* b = new QPushButton(text, this);
            b->setObjectName(name);
            b->setAutoDefault(false);
            connect(b, &QPushButton::clicked, this, [this, first, on] {
                for (int i = 0; i < 10; ++i) boxes_[first + i]->setChecked(on);
            });
            grid->addWidget(b, row, column);
        };
        addButton(all, "All", true, 11);
        addButton(clear, "Clr", false, 12);
    };
    addRow(0, "Scanbank:", 0, doc_.banklockm, "Command3", "Command5");
    addRow(1, "Searchbank:", 10, doc_.banklocks, "Command4", "Command6");

    const OkCancelRow okCancel = makeOkCancelRow(this, "Ok");
    connect(okCancel.ok, &QPushButton::clicked, this, &ActiveBanksWindow::accept);
    connect(okCancel.cancel, &QPushButton::clicked, this, &ActiveBanksWindow::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addLayout(okCancel.row);
    adjustSize();
    if (parent) move(parent->geometry().center() - rect().center());
}

QPushButton* ActiveBanksWindow::button(const char* name) const { return findChild<QPushButton*>(name); }

void ActiveBanksWindow::accept()
{
    for (int i = 0; i < 10; ++i) {
        doc_.banklockm[i] = boxes_[i]->isChecked() ? 1 : 0;
        doc_.banklocks[i] = boxes_[10 + i]->isChecked() ? 1 : 0;
    }
    QDialog::accept();
}

} // namespace kestra
