#include "ui/csvexportwindow.h"

#include "core/memfile.h"
#include "core/memtable.h"
#include "platform/qt/qtext.h"

#include <QDialogButtonBox>
#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace kestra {

CsvExportWindow::CsvExportWindow(MemTable& table, QWidget* parent) : QDialog(parent), table_(table)
{
    setObjectName("expcsvd");
    setWindowTitle("Export CSV data");
    setModal(true);
    auto* layout = new QVBoxLayout(this);
    auto* group = new QGroupBox("Options:", this);
    auto* choices = new QVBoxLayout(group);
    const char* captions[6] = {"Export Current Bank", "Export All Memory Banks", "Export Search/Edge Data",
                               "Export Bandplan", "Export Trunk Id's (current bank)", "Export Trunk Id's (all banks)"};
    for (std::size_t i = 0; i < options_.size(); ++i) {
        options_[i] = new QRadioButton(captions[i], group);
        options_[i]->setObjectName(QString("Option1_%1").arg(i));
        choices->addWidget(options_[i]);
    }
    layout->addWidget(group);
    const int bank = table_.doc().currentBank;
    options_[bank >= 0 && bank <= kDummyBank ? 0 : 1]->setChecked(true);
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton("Ok", QDialogButtonBox::AcceptRole)->setObjectName("ok");
    buttons->addButton("Cancel", QDialogButtonBox::RejectRole)->setObjectName("cancel");
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &CsvExportWindow::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void CsvExportWindow::accept()
{
    std::size_t chosen = 0;
    while (chosen < options_.size() && !options_[chosen]->isChecked()) ++chosen;
    if (chosen == options_.size()) return;
    FileChoice choice;
    choice.title = "Export CSV data";
    choice.filter = "Comma Separated Files (*.csv)|*.csv";
    choice.name = "*.csv";
    choice.folder = table_.startFolder(table_.savedir);
    const auto name = table_.dialogs().saveFile(choice);
    if (!name) return;
    const Document& doc = table_.doc();
    const std::string text = csvExportText(doc, static_cast<CsvExportKind>(chosen), doc.currentBank);
    if (!writeFileAtomic(csvExportName(*name), text).empty()) {
        table_.dialogs().message(static_cast<CsvExportKind>(chosen) == CsvExportKind::Bandplan
                                     ? "Problem in export bandplan."
                                     : "Problem in export routine 1.");
        return;
    }
    QDialog::accept();
}

} // namespace kestra
