#pragma once
// The window printie, "Let's Print...": choose a report, see its pages in a
// preview, and print it on a printer or into a PDF file. Without a printer
// on the system the PDF file is the way out, and its box starts ticked.

#include "print/reports.h"

#include <QDialog>
#include <QPrinter>

#include <array>
#include <memory>

class QCheckBox;
class QPushButton;
class QRadioButton;

namespace kestra {

class MemTable;

class PrintWindow : public QDialog {
    Q_OBJECT
public:
    explicit PrintWindow(MemTable& table, QWidget* parent = nullptr);
    ~PrintWindow() override;

    QRadioButton* option(PrintItem item) const { return options_[static_cast<int>(item)]; }
    QCheckBox* previewBox() const { return preview_; }   // "Show the pages before printing"
    QCheckBox* pdfBox() const { return pdf_; }           // "Print into a PDF file"
    QPushButton* printButton() const { return print_; }
    QPushButton* setupButton() const { return setup_; }  // "Setup Printer"
    QPushButton* cancelButton() const { return cancel_; }
    QPushButton* tableButton() const { return table1_; } // "Setup Print Table"
    PrintItem selectedItem() const;
    QPrinter& printer() { return printer_; }

    // Runs the chosen report to the printer (after the preview when it is
    // ticked) and closes; a printer failure is told and the window stays.
    void print();
    // The system's printer dialog.
    void setupPrinter();
    // The test page of the small buttons.
    void printTestText();

signals:
    // The preview window is up (for those who drive the window by program).
    void previewShown(QDialog* preview);

private:
    // Where the pages go: the PDF file asked for when its box is ticked.
    // False when the user cancelled the file chooser.
    bool chooseTarget();
    ReportJob job() const;

    MemTable& table_;
    QPrinter printer_{QPrinter::HighResolution};
    std::array<QRadioButton*, kPrintItems> options_{};
    QCheckBox* preview_ = nullptr;
    QCheckBox* pdf_ = nullptr;
    QPushButton* print_ = nullptr;
    QPushButton* setup_ = nullptr;
    QPushButton* cancel_ = nullptr;
    QPushButton* table1_ = nullptr;
    QPushButton* table2_ = nullptr;
    QPushButton* table3_ = nullptr;
    bool fileFromSetup_ = false;   // the printer dialog chose a PDF file
};

} // namespace kestra
