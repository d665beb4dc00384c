#pragma once
// The pages of a report before they go to the printer: "Print" sends them,
// "Close" goes back without printing.

#include <QDialog>

#include <functional>

class QPrinter;
class QPrintPreviewWidget;
class QPushButton;

namespace kestra {

class PrintPreviewWindow : public QDialog {
    Q_OBJECT
public:
    // paint draws the report onto the printer it is given.
    PrintPreviewWindow(QPrinter& printer, std::function<void(QPrinter&)> paint, QWidget* parent = nullptr);

    QPrintPreviewWidget* pages() const { return pages_; }
    QPushButton* printButton() const { return print_; }
    QPushButton* closeButton() const { return close_; }
    int pageCount() const;

private:
    QPrintPreviewWidget* pages_ = nullptr;
    QPushButton* print_ = nullptr;
    QPushButton* close_ = nullptr;
};

} // namespace kestra
