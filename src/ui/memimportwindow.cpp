#include "ui/memimportwindow.h"

#include "core/memfile.h"
#include "core/memtable.h"
#include "core/text.h"
#include "platform/qt/qtext.h"
#include "ui/widgets/namedbutton.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace kestra {

std::unique_ptr<MemImportWindow> MemImportWindow::open(MemImportKind kind, MemTable& table, QWidget* parent)
{
    FileChoice choice;
    choice.title = kind == MemImportKind::Frequencies ? "Import frequency data from MEM files"
                                                      : "Import trunk data from MEM files";
    choice.filter = "Mem Files|*.mem";
    choice.folder = table.startFolder(table.opendir);
    const auto path = table.dialogs().openFile(choice);
    if (!path || (!contains(*path, ".MEM") && !contains(*path, ".mem"))) return nullptr;
    std::string bytes;
    if (!readFileBytes(*path, bytes)) {
        table.dialogs().message("Not a valid file!");
        return nullptr;
    }
    MemSource source = readMemSource(*path, bytes);
    if (!source.ok()) {
        table.dialogs().message(source.problem);
        return nullptr;
    }
    return std::make_unique<MemImportWindow>(kind, table, std::move(source), parent);
}

MemImportWindow::MemImportWindow(MemImportKind kind, MemTable& table, MemSource source, QWidget* parent)
    : QDialog(parent), kind_(kind), table_(table), source_data_(std::move(source))
{
    const bool freqs = kind_ == MemImportKind::Frequencies;
    setObjectName(freqs ? "i2cpart" : "trcpart");
    setWindowTitle(freqs ? "Import frequency data from MEM files" : "Import trunk data from MEM files");
    setModal(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel("Selected MEM File Viewer:", this));
    viewer_ = new QTableWidget(10, 100, this);
    viewer_->setObjectName("MSFlexGrid1");
    viewer_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    viewer_->setSelectionBehavior(QAbstractItemView::SelectRows);
    QStringList rows;
    for (int b = 0; b < 10; ++b) rows << QString("Bank %1:").arg(b + 1);
    viewer_->setVerticalHeaderLabels(rows);
    const Document& other = source_data_.doc;
    for (int b = 0; b < 10; ++b)
        for (int i = 0; i < 100; ++i) {
            const std::string& text = freqs ? other.memdata[b][i + 1][col::freq] : other.trunkids[b][i][0];
            viewer_->setItem(b, i, new QTableWidgetItem(toQt(freqs && Val(text) == 0 ? std::string() : text)));
        }
    layout->addWidget(viewer_);

    auto* choices = new QHBoxLayout;
    auto* from = new QGroupBox("Import bank:", this);
    auto* fromGrid = new QGridLayout(from);
    auto* into = new QGroupBox("Into bank:", this);
    auto* intoGrid = new QGridLayout(into);
    auto* fromGroup = new QButtonGroup(this);
    auto* intoGroup = new QButtonGroup(this);
    for (int b = 0; b < 10; ++b) {
        source_[b] = new QRadioButton(QString("Bank %1").arg(b + 1), from);
        source_[b]->setObjectName(QString("source%1").arg(b));
        fromGroup->addButton(source_[b]);
        fromGrid->addWidget(source_[b], b % 5, b / 5);
        destination_[b] = new QRadioButton(QString("Bank %1").arg(b + 1), into);
        destination_[b]->setObjectName(QString("destination%1").arg(b));
        intoGroup->addButton(destination_[b]);
        intoGrid->addWidget(destination_[b], b % 5, b / 5);
    }
    choices->addWidget(from);
    choices->addWidget(into);
    layout->addLayout(choices);

    auto* buttons = new QHBoxLayout;
    auto add = [&](const char* name, const char* caption) {
        QPushButton* b = namedButton(caption, name, this, buttons);
        b->setAutoDefault(false);
        return b;
    };
    names_ = add("names", "Names");
    apply_ = add("apply", "Apply");
    apply_->setEnabled(false);
    QPushButton* all = add("importall", "Import All banks");
    QPushButton* edge = add("importedge", "Import Edge Data");
    QPushButton* ok = add("ok", "Ok");
    QPushButton* cancel = add("cancel", "Cancel");
    layout->addLayout(buttons);

    connect(viewer_, &QTableWidget::cellClicked, this, [this](int row, int) {
        if (row < 0 || row >= 10) return;
        source_[row]->setChecked(true);
        apply_->setEnabled(true);
    });
    connect(names_, &QPushButton::clicked, this, &MemImportWindow::toggleNames);
    connect(apply_, &QPushButton::clicked, this, [this] { apply(); });
    connect(all, &QPushButton::clicked, this, [this] {
        for (int b = 0; b < 10; ++b) applyMemBank(table_.doc(), source_data_.doc, kind_, b, b);
    });
    connect(edge, &QPushButton::clicked, this, [this] {
        applyMemEdge(table_.doc(), source_data_.doc);
        QDialog::accept();
    });
    connect(ok, &QPushButton::clicked, this, &MemImportWindow::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

QPushButton* MemImportWindow::button(const char* objectName) const { return findChild<QPushButton*>(objectName); }

void MemImportWindow::toggleNames()
{
    const bool toNames = names_->text() == "Names";
    for (int b = 0; b < 10; ++b)
        source_[b]->setText(toNames ? toQt(source_data_.doc.banktags[b]) : QString("Bank %1").arg(b + 1));
    names_->setText(toNames ? "Default" : "Names");
}

bool MemImportWindow::apply()
{
    int to = -1, from = -1;
    for (int b = 0; b < 10; ++b) {
        if (destination_[b]->isChecked()) to = b;
        if (source_[b]->isChecked()) from = b;
    }
    if (to < 0) {
        table_.dialogs().message("Select destination bank.");
        return false;
    }
    if (from < 0) return false;
    if (!destinationEmpty(table_.doc(), kind_, to) &&
        table_.dialogs().message("Bank is not empty!\nDo you want to override the data in this bank?", "Override?",
                                 Buttons::YesNo) != Answer::Yes)
        return false;
    applyMemBank(table_.doc(), source_data_.doc, kind_, from, to);
    apply_->setEnabled(false);
    return true;
}

void MemImportWindow::accept()
{
    if (apply_->isEnabled() && !apply()) return;
    QDialog::accept();
}

} // namespace kestra
