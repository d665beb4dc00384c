#pragma once
// The window easyprog, "Easy Program:": ticked parameters (attenuator,
// lockout, beep alert, record, delay, trunk) written into a range of
// channels already in the scanner, channel by channel, on a port of its own.
// Closing the window during a run stops it at the next channel.

#include "link/quicklink.h"
#include "ui/widgets/scannerdialog.h"

#include <array>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace kestra {

class EasyProgramWindow : public ScannerDialog {
    Q_OBJECT
public:
    EasyProgramWindow(TransferWindow::Services services, TransferWindow::Link link, QWidget* parent = nullptr);

    enum Parameter { Atten, Lockout, Beep, Record, Delay, Trunk, kParameters };
    QCheckBox* tick(Parameter p) const { return checks_[p]; }
    QComboBox* choice(Parameter p) const { return lists_[p]; }
    QLineEdit* startField() const { return start_; }
    QLineEdit* endField() const { return end_; }
    QRadioButton* allBanks() const { return all_; }
    QComboBox* bankList() const { return bank_; }
    QPushButton* startButton() const { return command5_; }
    bool running() const { return running_; }

    // Cancel, Escape: during a run the window goes at the next channel.
    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void lineChanged() override;
    void bankChosen();
    void start();
    quick::EasyChoices choices() const;

    std::array<QCheckBox*, kParameters> checks_{};
    std::array<QComboBox*, kParameters> lists_{};
    QRadioButton* all_ = nullptr;
    QRadioButton* single_ = nullptr;
    QComboBox* bank_ = nullptr;
    QLineEdit* start_ = nullptr;
    QLineEdit* end_ = nullptr;
    QPushButton* command5_ = nullptr;
    bool running_ = false;
    bool closing_ = false;
};

} // namespace kestra
