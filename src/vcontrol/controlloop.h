#pragma once
// The Virtual Control's link to the scanner: a port of its own (not the
// exchange engine of Read Data and Send Data) and a loop of timers. Timer1
// sends the next poll, Timer10 collects and classifies the reply, Timer2 is
// the watchdog that retries and reopens the port. Everything the panel shows
// hangs on the DisplayState this loop keeps up to date.
//
// Polls: the short cycle (pollfast 1: LCD, MD, TB) while the scanner moves,
// the long one (pollfast 0: thirteen polls, three of them SQ) while it rests.
// Only a complete LCD reply ("LCD4" and the closing CR) resets the retries;
// after 21 failures in a row the link is given up until HOLD, unless
// retryforever (option12 of vfo.ini) is set.

#include "core/cellcodes.h"
#include "platform/dialogs.h"
#include "platform/scheduler.h"
#include "platform/serialport.h"
#include "vcontrol/displaystate.h"
#include "vcontrol/keypad.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace kestra {

struct LinkSettings {
    int port = 1;
    int baud = 19200;
    int delay1 = 100;            // ms after each command of the opening
    bool retryforever = false;   // option12 of vfo.ini
    EncryptedSkip encrypted;     // setup keys enc1..enc4
};

class ControlLoop {
public:
    static constexpr int kSendMs = 250;      // Timer1
    static constexpr int kCollectMs = 50;    // Timer10
    static constexpr int kWatchdogMs = 1000; // Timer2
    static constexpr int kEncodedMs = 50;    // Timer3
    static constexpr int kResumeMs = 100;    // Timer4
    static constexpr int kSkipMs = 500;      // Timer12
    static constexpr int kGiveUp = 21;       // failures in a row before the message
    static constexpr int kHoldRetries = 19;  // HOLD and MANUAL restart the link from here

    static constexpr const char* kInUse = "WARNING: Comport is already used by another application.";
    static constexpr const char* kNoCommunication =
        "No communication, check baudrate, comsettings. Press HOLD to try again.";
    static constexpr const char* kLostStatus = "No communication, Press HOLD to try again.";

    struct Hooks {
        // After a complete LCD reply was parsed and pollfast decided.
        std::function<void()> displayChanged;
        // After the action of any complete reply, with its pollstep and the
        // reply (5 is the MD reply, on which the panel's lamps and captions
        // follow; 8, 9 and 12 the IS, SB and CB lists of active banks).
        std::function<void(int pollstep, const std::string& reply)> replyTaken;
        // The status line Label22 ("Retry:" and the count, the lost link).
        std::function<void(const std::string&)> status;
        // Closing found a wait running (the window shows "BUSYBUSYBUSYBUSYBuSY").
        std::function<void()> closedDuringWait;
    };

    ControlLoop(Scheduler& scheduler, Dialogs& dialogs, std::unique_ptr<SerialPort> port, LinkSettings settings);
    ~ControlLoop();

    Hooks hooks;

    // Opening: the port (a port held by another program gives kInUse and
    // goes on), IDF, CDF, QUF, then VR and SI, each followed by delay1. The
    // SI reply is written to version.ini in folder and corrects the model
    // switches; then polling starts. Returns the model reply.
    std::string open(const std::filesystem::path& folder, ModelSwitches& model);

    void startpolling();
    // retries 20, threshold 0, input dropped, Timer1 and Timer2 off; Timer10 runs on.
    void stoppolling();
    // Waits without blocking (at most 5 s); leaves at once when closing.
    void lcdwait(double seconds);

    // A command straight to the port, between the polls (its reply lands in
    // rxbuf ahead of the poll's, and the handlers look for their marker).
    void send(const std::string& command);
    // A key's commands with their waits, polling paused around them when the
    // action asks, and the HOLD recovery when it asks.
    void run(const KeyAction& action);
    // Restarts the link from the outside: timers off, retries and waitreply
    // 0, the port closed and opened again, the three timers on.
    void holdRecovery();

    // Closing: waitreply and closing 1, the port closed, every timer off.
    void close();

    // Auto Resume ("Auto Resume after:" and Combo1's seconds).
    void setAutoResume(bool enabled, int seconds);
    const AutoResume& autoResume() const { return autoResume_; }

    const DisplayState& state() const { return state_; }
    DisplayState& state() { return state_; }
    int pollstep() const { return pollstep_; }
    int pollfast() const { return pollfast_; }
    int retries() const { return retries_; }
    bool waitreply() const { return waitreply_ != 0; }
    bool lost() const { return retries_ >= kGiveUp && !settings_.retryforever; }
    bool portOpen() const { return port_ && port_->isOpen(); }
    bool waiting() const { return inWait_ > 0; }
    const LinkSettings& settings() const { return settings_; }
    // Every command written to the port, with its carriage return, in order.
    std::function<void(const std::string&)> onSend;

private:
    void sendNext();     // Timer1
    void collect();      // Timer10
    void watchdog();     // Timer2
    void encodedTick();  // Timer3
    void resumeTick();   // Timer4
    void skipTick();     // Timer12
    void takeReply(int step);
    void openPort();
    void write(const std::string& command);
    std::string drain();

    Scheduler& scheduler_;
    Dialogs& dialogs_;
    std::unique_ptr<SerialPort> port_;
    LinkSettings settings_;
    DisplayState state_;
    AutoResume autoResume_;
    bool autoResumeOn_ = false;
    int autoResumeSeconds_ = 5;

    int pollstep_ = 0;
    int pollfast_ = 0;
    int waitreply_ = 0;
    int retries_ = 0;
    int closing_ = 0;
    int inWait_ = 0;
    bool recovering_ = false;  // the watchdog is reopening the port
    std::string rxbuf_;

    std::unique_ptr<Timer> timer1_, timer10_, timer2_, timer3_, timer4_, timer12_;
};

} // namespace kestra
