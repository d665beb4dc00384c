#pragma once
// The window banknamen, "Setup Bank Tags": the twelve bank tags of the
// document, kept with Ok, and "Update scanner now" sending the ten of the
// scanner's banks on a port of its own.

#include "ui/widgets/scannerdialog.h"

#include <array>

class QLineEdit;
class QPushButton;

namespace kestra {

class BankTagsWindow : public ScannerDialog {
    Q_OBJECT
public:
    BankTagsWindow(TransferWindow::Services services, TransferWindow::Link link, QWidget* parent = nullptr);

    QLineEdit* tag(int bank) const { return tags_[static_cast<std::size_t>(bank)]; }
    QPushButton* updateButton() const { return update_; }
    // Ok: the fields into banktags; true when any changed.
    bool keep();

private:
    void lineChanged() override;
    std::array<std::string, 12> fields() const;

    std::array<QLineEdit*, 12> tags_{};
    QPushButton* update_ = nullptr;
};

} // namespace kestra
