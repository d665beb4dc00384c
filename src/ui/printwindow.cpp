#include "ui/printwindow.h"

#include "core/memtable.h"
#include "platform/cp1252.h"
#include "platform/qt/qtprinter.h"
#include "ui/printpreviewwindow.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPageLayout>
#include <QPageSize>
#include <QPrintDialog>
#include <QPrinterInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <filesystem>

namespace kestra {

PrintWindow::PrintWindow(MemTable& table, QWidget* parent) : QDialog(parent), table_(table)
{
    setObjectName("printie");
    setWindowTitle("Let's Print...");
    printer_.setPageSize(QPageSize(QPageSize::A4));
    printer_.setDocName("Kestra Console report");

    auto* layout = new QHBoxLayout(this);
    auto* choices = new QGroupBox("Select an item to print:", this);
    choices->setObjectName("Frame1");
    auto* list = new QVBoxLayout(choices);
    for (int i = 0; i < kPrintItems; ++i) {
        options_[i] = new QRadioButton(printItemCaption(static_cast<PrintItem>(i)), choices);
        options_[i]->setObjectName(QString("Option1_%1").arg(i));
    }
    // In the order a user reads them: the banks, search, bandplan, the IDs.
    for (PrintItem item : {PrintItem::ActiveBank, PrintItem::AllBanks, PrintItem::MemoryAndSearch,
                           PrintItem::SearchData, PrintItem::Bandplan, PrintItem::TrunkIds, PrintItem::AllTrunkIds})
        list->addWidget(option(item));
    option(initialPrintItem(table_.doc().currentBank))->setChecked(true);
    preview_ = new QCheckBox("Show the pages before printing", choices);
    preview_->setObjectName("preview");
    preview_->setChecked(true);
    pdf_ = new QCheckBox("Print into a PDF file", choices);
    pdf_->setObjectName("pdf");
    pdf_->setChecked(QPrinterInfo::availablePrinterNames().isEmpty());
    list->addSpacing(8);
    list->addWidget(preview_);
    list->addWidget(pdf_);
    layout->addWidget(choices, 1);

    auto* buttons = new QVBoxLayout;
    auto button = [&](const char* caption, const char* name) {
        auto* b = new QPushButton(caption, this);
        b->setObjectName(name);
        b->setAutoDefault(false);
        buttons->addWidget(b);
        return b;
    };
    print_ = button("Print", "Command1");
    print_->setDefault(true);
    setup_ = button("Setup Printer", "Command2");
    cancel_ = button("Cancel", "Command3");
    buttons->addStretch(1);
    table1_ = button("Setup Print Table", "Command4");
    auto* small = new QHBoxLayout;
    table2_ = new QPushButton("2", this);
    table2_->setObjectName("Command5");
    table3_ = new QPushButton("3", this);
    table3_->setObjectName("Command6");
    for (QPushButton* b : {table2_, table3_}) {
        b->setAutoDefault(false);
        b->setMaximumWidth(32);
        b->setToolTip("Print a test page");
        small->addWidget(b);
    }
    small->addStretch(1);
    buttons->addLayout(small);
    layout->addLayout(buttons);

    connect(print_, &QPushButton::clicked, this, &PrintWindow::print);
    connect(setup_, &QPushButton::clicked, this, &PrintWindow::setupPrinter);
    connect(cancel_, &QPushButton::clicked, this, &QDialog::reject);
    for (QPushButton* b : {table1_, table2_, table3_})
        connect(b, &QPushButton::clicked, this, &PrintWindow::printTestText);
}

PrintWindow::~PrintWindow() = default;

PrintItem PrintWindow::selectedItem() const
{
    for (int i = 0; i < kPrintItems; ++i)
        if (options_[i]->isChecked()) return static_cast<PrintItem>(i);
    return PrintItem::ActiveBank;
}

ReportJob PrintWindow::job() const
{
    ReportJob job;
    job.item = selectedItem();
    job.bank = table_.doc().currentBank;
    job.date = reportDate();
    job.fileName = cp1252FromUtf8(std::filesystem::path(table_.doc().fnaam).filename().string());
    return job;
}

bool PrintWindow::chooseTarget()
{
    if (!pdf_->isChecked()) {
        if (!fileFromSetup_) printer_.setOutputFormat(QPrinter::NativeFormat);
        return true;
    }
    FileChoice choice;
    choice.title = "Print into a PDF file";
    choice.filter = "PDF Files|*.pdf|All Files|*.*";
    choice.folder = table_.startFolder(table_.savedir);
    choice.name = "report.pdf";
    const std::optional<std::string> name = table_.dialogs().saveFile(choice);
    if (!name) return false;
    std::string path = *name;
    if (std::filesystem::path(path).extension().empty()) path += ".pdf";
    printer_.setOutputFormat(QPrinter::PdfFormat);
    printer_.setOutputFileName(QString::fromStdString(path));
    printer_.setPageMargins(QMarginsF(0, 0, 0, 0));
    return true;
}

void PrintWindow::print()
{
    if (!chooseTarget()) return;
    const ReportJob report = job();
    const Document& doc = table_.doc();
    if (preview_->isChecked()) {
        PrintPreviewWindow preview(
            printer_, [&](QPrinter& target) {
                QtPrinter pages(target);
                printReport(pages, doc, report);
            },
            this);
        QMetaObject::invokeMethod(this, [this, &preview] { emit previewShown(&preview); }, Qt::QueuedConnection);
        if (preview.exec() != QDialog::Accepted) return;
    }
    QtPrinter pages(printer_);
    if (const int error = printReport(pages, doc, report)) {
        table_.dialogs().message(printerFailureMessage(error));
        return;
    }
    accept();
}

void PrintWindow::setupPrinter()
{
    QPrintDialog dialog(&printer_, this);
    if (dialog.exec() != QDialog::Accepted) return;
    // A file chosen in the printer dialog is the target; no second question.
    fileFromSetup_ = printer_.outputFormat() == QPrinter::PdfFormat && !printer_.outputFileName().isEmpty();
    if (fileFromSetup_) pdf_->setChecked(false);
}

void PrintWindow::printTestText()
{
    if (!chooseTarget()) return;
    printer_.setPageOrientation(QPageLayout::Landscape);
    QtPrinter pages(printer_);
    const int error = printTestPage(pages);
    printer_.setPageOrientation(QPageLayout::Portrait);
    if (error) table_.dialogs().message(printerFailureMessage(error));
}

} // namespace kestra
