#pragma once
// The exchange engine of the transfer window arcomm8: the state machine that
// every bulk transfer runs on. A command goes out and the watchdog is armed;
// the receive event collects the reply up to its carriage return and, by the
// present commstate, enables the step timer of that state; one delay later the
// step decodes the reply and sends the next command. Lost replies are retried
// from the start of the channel; the tenth ends the run.

#include "core/settings.h"
#include "platform/dialogs.h"
#include "platform/scheduler.h"
#include "platform/serialport.h"

#include <array>
#include <functional>
#include <memory>
#include <string>

namespace kestra {

class ExchangeEngine {
public:
    enum class Caption { ReadData, SendData };

    // What the pipelines put on the engine: the step handlers and the points
    // where a run goes on or ends. Any may be left empty.
    struct Hooks {
        std::function<void(int step)> readStep;       // timer2(step), states 1..6 and 8..10
        std::function<void(int step)> sendStep;       // Timer4(step), states 20..29
        // Decodes rxdata of a finished channel; false when the channel is not
        // finished after all (the reply was sent for again, or taken as lost).
        std::function<bool(int state)> finishChannel;
        std::function<void()> runOver;                // the last channel of the range is done
        std::function<void()> senddata;               // state 30: the next channel of a send
        std::function<void()> bankTags, trunkTypes, idListTags, ids, idTags, idBeeps;  // states 33..38
        std::function<void()> endOfRun;               // Timer3
        std::function<void()> stopping;               // STOP: the log files are closed at once
        std::function<void()> stopped;                // STOP has run and every wait it cut short has returned
        std::function<void(const std::string&)> log;  // a line of the transfer's log file
    };

    // The status fields of the window.
    struct Status {
        std::string text3;  // the last reply or the present step's words
        std::string text4;  // the present channel as three digits
        std::string text5;  // the state, "???" on an error reply, the retry count
        int progress = 0;   // 0..100
    };

    ExchangeEngine(SerialPort& port, Scheduler& scheduler, Dialogs& dialogs, Settings& settings, int comport,
                   int baud, Caption caption);
    ~ExchangeEngine();

    Hooks hooks;
    Status status;

    // ---- shared state of the form ----
    int commstate = 0;
    std::string rxdata;
    int chanid = 0;
    int retrycount = 0;
    int startchan = 0, endchan = 1001;
    int progstart = 0, progend = 999;
    int stopflag = 0;
    // Of the present run: replies lost or garbled and asked for again, and
    // commands the scanner refused ("NG", "ERR").
    int retries = 0;
    int refusals = 0;
    // The last line of a finished run: "Read Data finished; 3 retries."
    std::string finishedLine() const;
    // What is said of refused commands: "" when there were none.
    std::string refusalsLine() const;

    int bk() const;  // bank of chanid, 0..9
    int ka() const;  // row of chanid in its bank
    Caption caption() const { return caption_; }
    const Settings& settings() const { return settings_; }
    int baud() const { return baud_; }

    // The form-wide wait in seconds: delay3 at exactly 4800 baud, delay2 at
    // exactly 9600, delay1 otherwise.
    double commdelay() const;
    // The delay of the step timers in ms (delay1; the slider moves it).
    int stepDelay() const { return settings_.delay1; }
    // The delay slider: every step timer takes the value, and so does delay1.
    void setDelay(int ms);
    // "Default": 100 ms at 19200 baud and above.
    void defaultDelay();
    bool sliderShown() const { return baud_ >= 19200; }

    // ---- port operations ----
    // Opens the port at the settings of the baud rate; false (after the
    // message) when it is in use or missing.
    bool openport();
    void reopenport();
    void sendline(const std::string& text);
    // The cooperative wait. False when STOP was pressed before it ended (or
    // earlier in the run): the caller then goes no further.
    bool wait(double seconds);
    // Takes the replies of commands sent with the receive event off: waits
    // until `lines` lines have come (at most timeoutMs) and returns them all.
    // A reply left behind would be taken for the reply of the next command.
    std::string collect(int lines, int timeoutMs = kWatchdogMs);
    SerialPort& port() { return port_; }
    Scheduler& scheduler() { return scheduler_; }

    // Marks code that waits outside `wait` (the model check): STOP pressed
    // meanwhile gives the window back only when it has returned.
    class Busy {
    public:
        explicit Busy(ExchangeEngine& engine) : engine_(engine) { ++engine_.busy_; }
        ~Busy() { engine_.leaveBusy(); }
        Busy(const Busy&) = delete;
        Busy& operator=(const Busy&) = delete;

    private:
        ExchangeEngine& engine_;
    };

    // Opening the form: the port, the wake-up sequence, the model word of VR
    // and SI (returned, and kept as modelWord). When the port cannot be
    // opened nothing is sent and portOpened is false.
    std::string openForm(int bc785d);
    std::string modelWord;
    bool portOpened = false;

    // ---- the exchange ----
    // Sends a command of a channel pipeline: the watchdog is armed anew.
    void sendWatched(const std::string& text);
    // Arms the watchdog for a reply (also when nothing went out: then it is
    // what restarts the channel).
    void armWatchdog();
    // Selects channel `chanid` with "MA" and arms the watchdog (the start of a channel).
    void sendSelect();
    // The receive event of the port.
    void onReceive();
    // The end of a channel in states 7, 11 and 12, and the step to the next.
    void finishChannel();
    // Timer3: the end-of-run work after the shortest delay.
    void endRun();
    // The STOP button, and what every fatal path runs.
    void stopxfer();

    // The watchdog firing (one lost reply); also what a garbled reply of a
    // send runs.
    void watchdog();
    // One more try of the present channel: false (after the message, with
    // the run stopped) when it was the tenth.
    bool countRetry();

    // Progress from a channel number between progstart and progend.
    void setProgressChannel(int channel);

    static constexpr int kWatchdogMs = 1000;
    static constexpr int kCrlfTimeoutMs = 2000;

private:
    void enableTimer(Timer& timer, int interval);
    void leaveBusy();
    // A reply of a send step: garbled ones are lost ones, refusals are counted.
    bool sendReplyTaken();
    std::string portSettings() const;

    SerialPort& port_;
    Scheduler& scheduler_;
    Dialogs& dialogs_;
    Settings& settings_;
    int comport_;
    int baud_;
    Caption caption_;
    int busy_ = 0;             // waits and model checks under way
    bool stopPending_ = false; // STOP ran inside one of them
    std::unique_ptr<Timer> timer1_, timer3_, timer6_, timer7_, timer11_, timer12_, timer13_, timer14_;
    std::array<std::unique_ptr<Timer>, 11> timer2_;
    std::array<std::unique_ptr<Timer>, 11> timer4_;
};

} // namespace kestra
