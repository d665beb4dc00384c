#include "ui/printpreviewwindow.h"

#include <QHBoxLayout>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QPushButton>
#include <QVBoxLayout>

namespace kestra {

PrintPreviewWindow::PrintPreviewWindow(QPrinter& printer, std::function<void(QPrinter&)> paint, QWidget* parent)
    : QDialog(parent)
{
    setObjectName("printpreview");
    setWindowTitle("Print Preview");
    auto* layout = new QVBoxLayout(this);
    pages_ = new QPrintPreviewWidget(&printer, this);
    pages_->setObjectName("pages");
    connect(pages_, &QPrintPreviewWidget::paintRequested, this, [paint](QPrinter* target) { paint(*target); });
    pages_->fitToWidth();
    layout->addWidget(pages_, 1);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    print_ = new QPushButton("Print", this);
    print_->setObjectName("print");
    print_->setDefault(true);
    close_ = new QPushButton("Close", this);
    close_->setObjectName("close");
    buttons->addWidget(print_);
    buttons->addWidget(close_);
    layout->addLayout(buttons);
    connect(print_, &QPushButton::clicked, this, &QDialog::accept);
    connect(close_, &QPushButton::clicked, this, &QDialog::reject);
    resize(760, 900);
    pages_->updatePreview();
}

int PrintPreviewWindow::pageCount() const { return pages_->pageCount(); }

} // namespace kestra
