#pragma once
// The window prio, "Priority Channels:": the priority channel of each bank,
// read from and sent to the scanner on a port of its own. A value outside
// its bank becomes the bank's first channel when sent.

#include "link/quicklink.h"
#include "ui/widgets/scannerdialog.h"

#include <array>

class QLineEdit;
class QPushButton;

namespace kestra {

class PriorityWindow : public ScannerDialog {
    Q_OBJECT
public:
    PriorityWindow(TransferWindow::Services services, TransferWindow::Link link, QWidget* parent = nullptr);

    QLineEdit* field(int bank) const { return fields_[static_cast<std::size_t>(bank)]; }
    QPushButton* readButton() const { return read_; }
    QPushButton* sendButton() const { return send_; }

private:
    void lineChanged() override;
    quick::PriorityFields values() const;
    void show(const quick::PriorityFields& values);

    std::array<QLineEdit*, 10> fields_{};
    QPushButton* read_ = nullptr;
    QPushButton* send_ = nullptr;
};

} // namespace kestra
