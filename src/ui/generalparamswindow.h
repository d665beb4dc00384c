#pragma once
// The window bc780set, "General parameters": the scanner's nine system
// options, the fifteen FIPS codes and the reset of the whole scanner, on a
// port of its own opened when the window shows.
//
// The rules and the walks are in link/generalparams.h.

#include "core/document.h"
#include "core/settings.h"
#include "link/generalparams.h"
#include "ui/widgets/scannerdialog.h"

#include <array>
#include <memory>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace kestra {

class GeneralParamsWindow : public ScannerDialog {
    Q_OBJECT
public:
    GeneralParamsWindow(TransferWindow::Services services, TransferWindow::Link link, QWidget* parent = nullptr);
    ~GeneralParamsWindow() override;

    QComboBox* option(int index) const { return options_[static_cast<std::size_t>(index)]; }
    QLineEdit* fipsBox(int n) const { return fips_[static_cast<std::size_t>(n - 1)]; }
    QLineEdit* resetBox() const { return text1_; }
    QPushButton* readButton() const { return command1_; }
    QPushButton* sendButton() const { return command2_; }
    QPushButton* resetButton() const { return command4_; }
    QPushButton* storeButton() const { return command5_; }
    QPushButton* clearButton() const { return command6_; }
    QLabel* progress() const { return progress_; }

private:
    void lineChanged() override { busy(false); }
    void readScanner();
    void sendScanner();
    void store();
    void resetScanner();
    void boxesToParams();
    void paramsToControls();
    void busy(bool on);

    std::unique_ptr<GeneralParams> params_;

    std::array<QComboBox*, kGeneralOptions> options_{};
    std::array<QLineEdit*, kFipsBoxes> fips_{};
    QLineEdit* text1_ = nullptr;
    QPushButton* command1_ = nullptr;
    QPushButton* command2_ = nullptr;
    QPushButton* command4_ = nullptr;
    QPushButton* command5_ = nullptr;
    QPushButton* command6_ = nullptr;
    QPushButton* close_ = nullptr;
    QLabel* progress_ = nullptr;
};

} // namespace kestra
