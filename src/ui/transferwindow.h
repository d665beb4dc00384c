#pragma once
// The transfer window arcomm8, opened as "Read Data" or "Send Data". It owns
// the scanner's port for as long as it is open, the exchange engine on that
// port and the pipeline of its caption. When it loads it opens the port,
// wakes the scanner, learns the model word (kept in version.ini) and reads the
// bank tags and trunk types. It shows the engine's status fields, the delay
// slider at 19200 baud and above, and the choice of banks and kinds of data;
// it closes itself when a run has finished.
//
// "Read Data" starts with command1. "Send Data" hides command1 and has
// Command5 "&Send Data" and Command3 "&Delete Bank" (usable with a single
// bank) instead; its bank lines mark the banks without data "  -  EMPTY".

#include "core/document.h"
#include "core/settings.h"
#include "link/exchange.h"
#include "link/readpipeline.h"
#include "link/sendpipeline.h"

#include "platform/dialogs.h"
#include "platform/scheduler.h"
#include "platform/serialport.h"

#include <QDialog>

#include <array>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QScrollBar;
class QTimer;

namespace kestra {

class TransferWindow : public QDialog {
    Q_OBJECT
public:
    using Caption = ExchangeEngine::Caption;

    // What the window works on. The port is the window's own: it is opened
    // when the window loads and closed when it goes. No port (a number bound
    // to nothing) behaves as a port that cannot be opened.
    struct Services {
        Document& doc;
        Settings& settings;
        Dialogs& dialogs;
        Scheduler& scheduler;
        std::filesystem::path folder;   // the program's folder: version.ini, rxdat.txt, txlog.txt
    };
    struct Link {
        std::unique_ptr<SerialPort> port;
        int comport = 1;
        int baud = 19200;
    };

    TransferWindow(Caption caption, Services services, Link link, QWidget* parent = nullptr);
    ~TransferWindow() override;

    // Form Load: the port, the wake-up and the model word, the slider, then the
    // bank tags and trunk types. Runs by itself the first time the window
    // shows; calling it again does nothing.
    void formLoad();
    bool loaded() const { return loaded_; }

    // The choice of the controls, as the pipeline takes it.
    ReadPipeline::Options selection() const;

    // Copies the engine's status fields and the bank lines into the controls
    // (a timer does this while the window is open).
    void refreshStatus();

    Caption caption() const { return caption_; }
    ExchangeEngine& engine() { return *engine_; }
    ReadPipeline* readPipeline() const { return read_.get(); }
    SendPipeline* sendPipeline() const { return send_.get(); }
    // A run was started from this window (it may have finished or been stopped).
    bool runStarted() const { return runStarted_; }
    // The run has ended well: the pipeline's end-of-run work is done.
    bool runFinished() const;
    // The model word of VR and SI at load, as it came.
    const std::string& modelWord() const { return modelWord_; }

    // Controls.
    QGroupBox* frame3D2() const { return frame3D2_; }
    QGroupBox* frame3D6() const { return frame3D6_; }
    QLineEdit* text3() const { return text3_; }
    QLineEdit* text4() const { return text4_; }
    QLineEdit* text5() const { return text5_; }
    QProgressBar* panel3d1() const { return panel3d1_; }
    QLabel* label6() const { return label6_; }
    QLineEdit* text6() const { return text6_; }
    QScrollBar* hscroll1() const { return hscroll1_; }
    QPushButton* command10() const { return command10_; }
    QRadioButton* option3D2(int index) const { return option3D2_.at(index); }
    QComboBox* combo1() const { return combo1_; }
    QLineEdit* text10(int index) const { return text10_.at(index); }
    QCheckBox* check3D3(int index) const { return check3D3_.at(index); }
    QPushButton* command22() const { return command22_; }
    QCheckBox* check3D5() const { return check3D5_; }
    // "Read Data" only (nullptr in "Send Data"): setting verifyread.
    QCheckBox* verify() const { return verify_; }
    QPushButton* command1() const { return command1_; }
    QPushButton* command3d1() const { return command3d1_; }
    // "Send Data" only (nullptr in "Read Data").
    QPushButton* command5() const { return command5_; }
    QPushButton* command3() const { return command3_; }

    // The window's size at load: 7230 by 5115 twips.
    static constexpr int kWidthTwips = 7230;
    static constexpr int kHeightTwips = 5115;

public:
    void done(int result) override;

protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildControls();
    void optionClicked(int index);
    void allClicked();
    void readClicked();
    void sendClicked();
    void deleteClicked();
    // A run has started: the options and the start buttons wait for its end.
    void runBegun(const ReadPipeline::Options& options);
    // Command3 is usable while Single Bank is chosen.
    void updateDeleteButton();
    // No option chosen and no bank: the form as it opened.
    void resetSelection();
    void stopClicked();
    void delayMoved(int ms);
    void defaultClicked();
    void runEnded();
    std::vector<std::string> bankLines() const;

    Caption caption_;
    Services services_;
    std::unique_ptr<SerialPort> port_;
    int comport_;
    int baud_;
    std::unique_ptr<ExchangeEngine> engine_;
    // The pipeline of the caption, on the window's engine: exactly one is made.
    std::unique_ptr<ReadPipeline> read_;
    std::unique_ptr<SendPipeline> send_;
    std::string modelWord_;
    bool loaded_ = false;
    bool runStarted_ = false;
    bool closing_ = false;

    QTimer* refresh_ = nullptr;
    QGroupBox* frame3D2_ = nullptr;
    QGroupBox* frame3D6_ = nullptr;
    QLineEdit* text3_ = nullptr;
    QLineEdit* text4_ = nullptr;
    QLineEdit* text5_ = nullptr;
    QProgressBar* panel3d1_ = nullptr;
    QLabel* label6_ = nullptr;
    QLineEdit* text6_ = nullptr;
    QScrollBar* hscroll1_ = nullptr;
    QPushButton* command10_ = nullptr;
    std::array<QRadioButton*, 3> option3D2_{};
    QComboBox* combo1_ = nullptr;
    std::array<QLineEdit*, 2> text10_{};
    std::array<QCheckBox*, 4> check3D3_{};
    QPushButton* command22_ = nullptr;
    QCheckBox* check3D5_ = nullptr;
    QCheckBox* verify_ = nullptr;
    QPushButton* command1_ = nullptr;
    QPushButton* command3d1_ = nullptr;
    QPushButton* command5_ = nullptr;
    QPushButton* command3_ = nullptr;
};

} // namespace kestra
