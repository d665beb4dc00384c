#pragma once
// The Rs232 setup window comsetup ("Rs232 setup:"): the scanner model, the
// port number and the baud rate, the box for a USB converter, and AutoDetect,
// which tries every bound port at every speed and shows what answered. Port
// numbers have no devices of their own on this system, so the window also
// binds the chosen number to a serial device, the built-in virtual scanner or
// a typed device path.
//
// "Ok" writes com250.ini and ports.ini and hands the model and the port
// settings back to the caller, which changes the program over to them;
// "Cancel" stores nothing (only turning the USB box off takes effect at once,
// as it always has).

#include "link/portbinding.h"
#include "link/portsetup.h"

#include <QDialog>

#include <array>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;

namespace kestra {

class ProgramPorts;
class MemTable;

class PortSetupWindow : public QDialog {
    Q_OBJECT
public:
    static constexpr int kModels = 5;
    static constexpr int kPortOptions = 9;   // com1..com8 and "other:"
    static constexpr int kAdviceLines = 8;
    // What the binding list shows for the built-in scanner and for no binding.
    static constexpr const char* kVirtualText = "Virtual scanner";
    static constexpr const char* kUnboundText = "Not bound";

    PortSetupWindow(MemTable& table, ProgramPorts& ports, QWidget* parent = nullptr);

    // The controls, by their names.
    QGroupBox* frame2() const { return frame2_; }
    QRadioButton* option1(int index) const { return option1_.at(index); }
    QGroupBox* frame1() const { return frame1_; }
    QRadioButton* option3d1(int index) const { return option3d1_.at(index); }
    QLineEdit* text1() const { return text1_; }
    QComboBox* combo1() const { return combo1_; }
    QLabel* label1() const { return label1_; }
    QCheckBox* check1() const { return check1_; }
    QPushButton* command1() const { return command1_; }   // "Ok"
    QPushButton* command2() const { return command2_; }   // "Cancel"
    QPushButton* command3() const { return command3_; }   // "AutoDetect"
    QLabel* label2(int index) const { return label2_.at(index); }
    // The binding of the chosen port number: what it is bound to, and every
    // binding there is.
    QComboBox* portTarget() const { return portTarget_; }
    QLabel* portTargetLabel() const { return portTargetLabel_; }
    QListWidget* bindings() const { return bindings_; }

    // The port number the controls show: com1..com8, or the "other:" number
    // held to 1..19.
    int selectedPort() const;

    // What "Ok" stored; valid after the window was accepted.
    const SetupResult& result() const { return result_; }

    // "AutoDetect": every bound port at every speed; the result goes into the
    // controls and the window stays open.
    void autoDetect();

    void accept() override;   // "Ok"
    void reject() override;   // "Cancel" and closing the window

private:
    void showValues();
    void showPort(int port);
    void showBinding();
    void bindTyped(const QString& text);
    void refreshBindings();
    SetupChoice choice() const;

    MemTable& table_;
    ProgramPorts& ports_;
    PortBinding original_;
    SetupResult result_;
    bool showing_ = false;
    bool detecting_ = false;   // AutoDetect is running: the window stays

    QGroupBox* frame2_ = nullptr;
    std::array<QRadioButton*, kModels> option1_{};
    QGroupBox* frame1_ = nullptr;
    std::array<QRadioButton*, kPortOptions> option3d1_{};
    QLineEdit* text1_ = nullptr;
    QComboBox* combo1_ = nullptr;
    QLabel* label1_ = nullptr;
    QCheckBox* check1_ = nullptr;
    QPushButton* command1_ = nullptr;
    QPushButton* command2_ = nullptr;
    QPushButton* command3_ = nullptr;
    std::array<QLabel*, kAdviceLines> label2_{};
    QComboBox* portTarget_ = nullptr;
    QLabel* portTargetLabel_ = nullptr;
    QListWidget* bindings_ = nullptr;
};

} // namespace kestra
