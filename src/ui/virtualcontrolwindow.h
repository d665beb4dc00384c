#pragma once
// The Virtual Control window lcd2: the live panel of the scanner. Above, the
// mirror of its four-line display with the signal meter and the Busy
// indicator, the status line Label22 and the squelch-open counter Label23;
// below, the tabs of SSTab1 with the keypad, the knob, direct tuning and Auto
// Resume ("Keyboard"), the hit history ("History") and what steers the hit
// log ("Log Setup"), the audio recorder ("Audio Setup", "Audio Rec."), the
// display font and colours ("Font") and the lists of active banks ("Misc.").
// The window holds a ControlLoop of its own with its own port: while it is
// open the main window's port actions refuse. It also holds the HitLog on
// that loop and the AudioRecorder over a sound capture device.
//
// Minimised, with the setting vcstat, the small status window states2 stands
// in for it. vfo.ini is read when the window is made and written when it
// closes; the font and colours live in the per-user store.
//
// One class in three files: virtualcontrolwindow.cpp the frame, opening and
// closing, and what the loop tells the panel; virtualcontrolkeyboard.cpp the
// Keyboard tab; virtualcontroltabs.cpp the other tabs.

#include "core/memtable.h"
#include "platform/profilestore.h"
#include "platform/recorder.h"
#include "platform/serialport.h"
#include "ui/statuswindow.h"
#include "vcontrol/audiorecorder.h"
#include "vcontrol/controlloop.h"
#include "vcontrol/hitlog.h"
#include "vcontrol/vfoini.h"

#include <QColor>
#include <QMainWindow>
#include <QPointer>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

class QCheckBox;
class QComboBox;
class QFrame;
class QGroupBox;
class QLabel;
class QLineEdit;
class QAction;
class QButtonGroup;
class QPushButton;
class QRadioButton;
class QSoundEffect;
class QSlider;
class QTabWidget;
class QTableWidget;
class QTableWidgetItem;

namespace kestra {

class LcdPanel;
class PanelKey;
class SignalMeter;
class ToggleLetter;
class TuningKnob;

// The display's font and colours as the per-user store keeps them (section
// VirtualControl). Colours are the classic colour numbers, red + 256 * green
// + 65536 * blue.
struct LcdLook {
    static constexpr const char* kSection = "VirtualControl";
    static constexpr int kSizes[6] = {8, 10, 12, 18, 20, 24};

    std::string fontname = "Terminal";
    int fontsize = 24;
    int fontbold = 1;
    // color1 text, color2 back, color3 the display around the cells, color4 as color1.
    std::array<int, 4> color = {0x000000, 0x8CDCB4, 0x78C8A0, 0x000000};

    // A name under four characters reads as "Terminal", a size is kept in 8..24.
    static LcdLook read(const ProfileStore& profile);
    void save(ProfileStore& profile) const;

    static QColor colour(int classic) { return QColor(classic & 0xFF, (classic >> 8) & 0xFF, (classic >> 16) & 0xFF); }
    static int classic(const QColor& c) { return c.red() | (c.green() << 8) | (c.blue() << 16); }
};

class VirtualControlWindow : public QMainWindow {
    Q_OBJECT
public:
    static constexpr int kWidthTwips = 9300;       // fixed
    static constexpr int kMinHeightTwips = 8700;   // at least
    static constexpr int kBlinkMs = 650;           // lijnknip1
    static constexpr const char* kCaption = "KESTRA - Virtual Control";
    static constexpr const char* kBusyCaption = "BUSYBUSYBUSYBUSYBuSY";
    static constexpr int kResumeChoices = 5;

    // port: the window's own port object (the number and speed come from the
    // table's com settings); null when the number is bound to nothing.
    // recorder: the sound capture device of the recorder, which must outlive
    // the window; null gives the window the system's own.
    VirtualControlWindow(MemTable& table, std::unique_ptr<SerialPort> port, Recorder* recorder = nullptr,
                         QWidget* parent = nullptr);
    ~VirtualControlWindow() override;

    // Load: vcrunning set, then the link opened (the opening commands, the
    // model reply that corrects the switches), the panel fitted to the model,
    // polling started.
    void start();

    // The close path is over and vcrunning is 0: the main window shows itself again.
    std::function<void()> onClosed;
    // The scanner's reply changed the model switches while the link opened.
    std::function<void()> onModelChanged;

    // The close path has run; the window is on its way out.
    bool closed() const { return closed_; }

    ControlLoop& loop() { return *loop_; }
    HitLog& hitLog() { return *hitlog_; }
    AudioRecorder& audio() { return *audio_; }
    const VfoIni& vfo() const { return vfo_; }

    // The controls, for those who drive the window.
    LcdPanel* lcd() const { return lcd_; }
    SignalMeter* meter() const { return meter_; }
    QLabel* busyIndicator() const { return busy_; }
    QLabel* label22() const { return label22_; }
    QLabel* label23() const { return label23_; }
    QTabWidget* sstab1() const { return sstab1_; }
    PanelKey* keyA(int index) const { return index >= 0 && index < 12 ? keysA_[index] : nullptr; }
    PanelKey* keyB(int index) const { return index >= 0 && index < 12 ? keysB_[index] : nullptr; }
    PanelKey* keyC(int index) const { return index >= 0 && index < 10 ? keysC_[index] : nullptr; }
    TuningKnob* knob() const { return knob_; }
    QLineEdit* text19() const { return text19_; }
    QPushButton* command12() const { return command12_; }
    QCheckBox* check2() const { return check2_; }
    QComboBox* combo1() const { return combo1_; }
    ToggleLetter* linkb1(int index) const { return index >= 0 && index < 130 ? linkb1_[index] : nullptr; }
    QFrame* optionOverlay() const { return picture23_; }
    StatusWindow* states2() const { return states2_; }
    QTableWidget* loggrid() const { return loggrid_; }
    QTableWidget* activityGrid() const { return activityGrid_; }
    QPushButton* playButton() const { return playButton_; }
    // The recording last given to the player.
    const std::string& playing() const { return playing_; }
    QCheckBox* check3() const { return check3_; }
    QLabel* label18() const { return label18_; }
    QPushButton* command4() const { return command4_; }
    QLabel* label27() const { return label27_; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // virtualcontrolwindow.cpp
    void buildFrame();
    QWidget* buildDisplay(QWidget* parent);
    void placeFromVfo();
    void storePlace();
    void displayChanged();       // a complete LCD reply
    void replyTaken(int pollstep);
    void refreshIndicators();    // Busy, meter, lamps, Label23
    void applyPanel();           // captions and lamps by the mode (after MD)
    void applyLook();            // font and colours onto the display and states2
    void showStatusWindow();
    void restoreFromStatus();
    void runKey(const KeyAction& action);

    // virtualcontrolkeyboard.cpp
    QWidget* buildKeyboardTab();
    QWidget* buildGroupA(QWidget* parent);
    QWidget* buildGroupB(QWidget* parent);
    QWidget* buildGroupC(QWidget* parent);
    QWidget* buildTuning(QWidget* parent);
    QWidget* buildOptionOverlay(QWidget* parent);
    void knobPressed(Qt::MouseButton button);
    void knobReleased();
    void knobTick(bool up);
    void tune();
    bool directTuneKey(QKeyEvent* event);
    void autoResumeChanged();

    // The time of a hit or a recording: the local date and time at the
    // opening, moved on by the scheduler's clock.
    DateTime now() const;

    // virtualcontrolhistory.cpp
    QWidget* buildHistoryTab();
    void showHistory();
    void showActivity();
    void showPlayButton();
    void playHistoryRow(int row);
    void saveHistoryAs();
    // virtualcontrolextender.cpp
    QWidget* buildExtenderTab();
    // virtualcontroltabs.cpp
    QWidget* buildLogSetupTab();
    QWidget* buildAudioSetupTab();
    QWidget* buildAudioRecTab();
    void chooseLogName();
    void logToDisk(bool on);
    void chooseAudioFolder();
    void showAudio();           // the recorder's labels, buttons and settings
    void storeTabs();           // the tabs' settings into vfo_ at close
    QWidget* buildFontTab();
    QWidget* buildMiscTab();
    void fontTabFromLook();
    void fontTabSample();
    void fontTabApply();
    void fontTabDefault();
    void chooseColour(int which);
    void activeReply(ActiveList list, const std::string& reply);
    void letterToggled(int index);

    MemTable& table_;
    VfoIni vfo_;
    LcdLook look_;
    LcdLook pendingLook_;   // the Font tab's choice until Apply
    std::unique_ptr<Recorder> ownRecorder_;
    std::unique_ptr<ControlLoop> loop_;
    // Both read the loop's state, so they go before it.
    std::unique_ptr<HitLog> hitlog_;
    std::unique_ptr<AudioRecorder> audio_;
    DateTime opened_;
    std::int64_t openedMs_ = 0;
    bool started_ = false;
    bool closed_ = false;

    // Timers of the window: the blink and the knob (Timer11 left, Timer7 right).
    std::unique_ptr<Timer> lijnknip1_, timer7_, timer11_;

    LcdPanel* lcd_ = nullptr;
    SignalMeter* meter_ = nullptr;
    QLabel* busy_ = nullptr;       // Label4 index 3
    QLabel* label22_ = nullptr;
    QLabel* label23_ = nullptr;
    QTabWidget* sstab1_ = nullptr;
    std::array<PanelKey*, 12> keysA_{};
    std::array<PanelKey*, 12> keysB_{};
    std::array<PanelKey*, 10> keysC_{};   // index 3 stays empty: it is the Busy indicator
    TuningKnob* knob_ = nullptr;
    QLineEdit* text19_ = nullptr;
    QPushButton* command12_ = nullptr;
    QCheckBox* check2_ = nullptr;
    QComboBox* combo1_ = nullptr;
    QFrame* picture23_ = nullptr;

    // Font tab
    QCheckBox* check6_ = nullptr;
    QCheckBox* check5_ = nullptr;
    QComboBox* fontNames_ = nullptr;
    QComboBox* fontSizes_ = nullptr;
    QLabel* fontSample_ = nullptr;

    // Misc. tab
    std::array<ToggleLetter*, 130> linkb1_{};
    std::array<QGroupBox*, 3> activeFrames_{};   // search banks, scan banks, ID scan lists

    // History and Log Setup tabs
    QTableWidget* loggrid_ = nullptr;
    QTableWidget* activityGrid_ = nullptr;
    std::vector<QTableWidgetItem*> activityItems_;  // the first cell of each activity entry's row
    QPushButton* playButton_ = nullptr;
    QSoundEffect* player_ = nullptr;
    std::string playing_;
    QCheckBox* check3_ = nullptr;
    std::array<QCheckBox*, 5> logOptions_{};   // Check4, Check7, Check8, Check9, Check10
    QLabel* label18_ = nullptr;

    // Audio Setup and Audio Rec. tabs
    std::array<QRadioButton*, 2> option1_{};   // Audio Quality
    std::array<QRadioButton*, 2> option2_{};   // Recording Trigger
    QSlider* hscroll1_ = nullptr;
    QLabel* audiodel_ = nullptr;
    QLabel* audioFolder_ = nullptr;
    QCheckBox* check11_ = nullptr;
    std::array<QLineEdit*, 4> recordOut_{};    // Text11, Text13, Text14, Text15
    QAction* arOn_ = nullptr;
    QPushButton* command4_ = nullptr;
    QPushButton* command5_ = nullptr;
    QPushButton* cmdRecord_ = nullptr;
    QPushButton* cmdSave_ = nullptr;
    QLabel* label27_ = nullptr;
    QLabel* label28_ = nullptr;
    QLabel* label29_ = nullptr;

    QPointer<StatusWindow> states2_;
};

} // namespace kestra
