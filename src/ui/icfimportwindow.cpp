#include "ui/icfimportwindow.h"

#include "core/memfile.h"
#include "core/memtable.h"
#include "core/text.h"
#include "platform/qt/qtext.h"
#include "ui/widgets/namedbutton.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace kestra {

std::unique_ptr<IcfImportWindow> IcfImportWindow::open(MemTable& table, QWidget* parent)
{
    FileChoice choice;
    choice.title = "Import data from ICF files";
    choice.filter = "Icom Files|*.icf";
    choice.folder = table.startFolder(table.opendir);
    const auto path = table.dialogs().openFile(choice);
    if (!path || (!contains(*path, ".ICF") && !contains(*path, ".icf"))) return nullptr;
    std::string bytes;
    IcfData data;
    if (!readFileBytes(*path, bytes) || !decodeIcf(bytes, table.settings().khz9, data)) {
        table.dialogs().message("Not a valid file!");
        return nullptr;
    }
    // A value of the wrong length is told once, and the file is shown all the same.
    if (!data.problems.empty()) table.dialogs().message(data.problems.front());
    return std::make_unique<IcfImportWindow>(table, std::move(data), parent);
}

IcfImportWindow::IcfImportWindow(MemTable& table, IcfData data, QWidget* parent)
    : QDialog(parent), table_(table), data_(std::move(data))
{
    setObjectName("icfpart2");
    setWindowTitle("Import data from ICF files");
    setModal(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel("ICF File Viewer:", this));
    viewer_ = new QTableWidget(10, kIcfChannels, this);
    viewer_->setObjectName("MSFlexGrid1");
    viewer_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    viewer_->setSelectionBehavior(QAbstractItemView::SelectRows);
    QStringList rows;
    for (int b = 0; b < kIcfBanks; ++b) rows << QString("Bank %1").arg(QChar('A' + b));
    rows << "Edge Start" << "Edge End";
    viewer_->setVerticalHeaderLabels(rows);
    QStringList cols;
    for (int c = 0; c < kIcfChannels; ++c) cols << QString::number(c);
    viewer_->setHorizontalHeaderLabels(cols);
    layout->addWidget(viewer_);

    auto* choices = new QHBoxLayout;
    auto* from = new QGroupBox("Import ICF File:", this);
    auto* fromGrid = new QGridLayout(from);
    auto* fromGroup = new QButtonGroup(this);
    for (int b = 0; b < kIcfBanks; ++b) {
        source_[b] = new QRadioButton(QString("Bank %1").arg(QChar('A' + b)), from);
        source_[b]->setObjectName(QString("source%1").arg(b));
        fromGroup->addButton(source_[b]);
        fromGrid->addWidget(source_[b], b % 4, b / 4);
    }
    auto* into = new QGroupBox("Into bank:", this);
    auto* intoGrid = new QGridLayout(into);
    auto* intoGroup = new QButtonGroup(this);
    for (int b = 0; b <= kDummyBank; ++b) {
        destination_[b] = new QRadioButton(b == kDummyBank ? QString("Dummy") : QString("Bank %1").arg(b + 1), into);
        destination_[b]->setObjectName(QString("destination%1").arg(b));
        intoGroup->addButton(destination_[b]);
        intoGrid->addWidget(destination_[b], b % 4, b / 4);
    }
    choices->addWidget(from);
    choices->addWidget(into);
    layout->addLayout(choices);
    layout->addWidget(new QLabel(
        "If you want to import more then one bank, use the apply button and then select the next bank", this));

    auto* buttons = new QHBoxLayout;
    auto add = [&](const char* name, const char* caption) {
        QPushButton* b = namedButton(caption, name, this, buttons);
        b->setAutoDefault(false);
        return b;
    };
    apply_ = add("apply", "Apply");
    apply_->setEnabled(false);
    QPushButton* all = add("importall", "Import All banks");
    QPushButton* edge = add("importedge", "Import Edge Data");
    QPushButton* clean = add("perconclean", "Percon Clean");
    QPushButton* ok = add("ok", "Ok");
    QPushButton* cancel = add("cancel", "Cancel");
    layout->addLayout(buttons);

    connect(viewer_, &QTableWidget::cellClicked, this, [this](int row, int) {
        if (row < 0 || row >= kIcfBanks) return;
        source_[row]->setChecked(true);
        apply_->setEnabled(true);
    });
    connect(apply_, &QPushButton::clicked, this, &IcfImportWindow::apply);
    connect(all, &QPushButton::clicked, this, &IcfImportWindow::importAll);
    connect(edge, &QPushButton::clicked, this, &IcfImportWindow::importEdge);
    connect(clean, &QPushButton::clicked, this, &IcfImportWindow::cleanDuplicates);
    connect(ok, &QPushButton::clicked, this, &IcfImportWindow::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    fillViewer();
}

QPushButton* IcfImportWindow::button(const char* objectName) const { return findChild<QPushButton*>(objectName); }

void IcfImportWindow::fillViewer()
{
    for (int b = 0; b < 10; ++b)
        for (int c = 0; c < kIcfChannels; ++c)
            viewer_->setItem(b, c, new QTableWidgetItem(toQt(data_.icfdata[b][c].freq)));
}

void IcfImportWindow::apply()
{
    int to = -1, from = -1;
    for (int b = 0; b <= kDummyBank; ++b)
        if (destination_[b]->isChecked()) to = b;
    for (int b = 0; b < kIcfBanks; ++b)
        if (source_[b]->isChecked()) from = b;
    if (to < 0) {
        table_.dialogs().beep();
        table_.dialogs().message("Select destination bank.");
        return;
    }
    if (from < 0) return;
    if (!bankIsEmpty(table_.doc(), to)) {
        const std::string question =
            "Bank " + numText(to + 1) + " is not empty!\nDo you want to override the data in this bank?";
        if (table_.dialogs().message(question, "Override?", Buttons::YesNo, Icon::Critical) != Answer::Yes) return;
    }
    applyIcfBank(table_.doc(), data_, from, to);
    apply_->setEnabled(false);
}

void IcfImportWindow::importAll()
{
    for (int b = 0; b < kIcfBanks; ++b) applyIcfBank(table_.doc(), data_, b, b);
}

void IcfImportWindow::importEdge()
{
    // The edge rows of the table, which the file never fills, go to bank 10.
    for (int c = 0; c < kIcfChannels; ++c)
        for (int column = 1; column <= 8; ++column) table_.doc().memdata[9][c][column].clear();
    table_.markDirty();
    QDialog::accept();
}

void IcfImportWindow::cleanDuplicates()
{
    const std::string question = std::string("\r\n") + "This will remove duplicate frequencies from the selected ICF file." +
                                 "\r\n" + "Do you want to continue?";
    if (table_.dialogs().message(question, {}, Buttons::YesNo) != Answer::Yes) return;
    perconClean(data_);
    fillViewer();
}

void IcfImportWindow::accept()
{
    if (apply_->isEnabled()) apply();
    QDialog::accept();
}

} // namespace kestra
