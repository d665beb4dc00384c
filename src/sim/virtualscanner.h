#pragma once
// The virtual scanner: one of the five scanners in software, answering the
// remote command language as the real ones do. It takes command lines and
// gives reply lines; a serial port, a pseudo-terminal or a test puts bytes in
// with receive() and sends back what it returns.
//
// Replies end with a carriage return. A setting answers "OK"; a known command
// with a value the scanner refuses, or in a state where it cannot act, "NG";
// an unknown or malformed command "ERR"; a line longer than the receive
// buffer "ORER".
//
// The scanner is always in one mode (scan, manual, search, service, a trunk ID
// mode, or a menu on top of one of them), on a current channel, a current
// search range and a current trunk bank. Channel settings (CS, DL, RM, ST,
// LON/LOF, ATN/ATF, ARN/ARF, RF) act on the current channel; "MA" and
// programming a channel with "PM" make it current. In search modes RM, ST and
// the attenuator act on the search. What is received (squelch, signal) is the
// Reception.
//
// Time: the scanner lives on a clock that its owner drives with advanceTo()
// (before each command, and while nobody asks, so that its log is written in
// time). Every tick it scans on to the next channel of the active banks,
// searches on by one step, or watches its trunk system; it stops on what it
// receives from the Traffic on the air, holds for the delay after the
// transmission ends, and moves on. A scanner whose clock never runs rests: it
// stays where the commands put it and hears only what setReception() says.
// Stepping does not depend on how often advanceTo() is called, so the same
// commands at the same times give the same display every time.

#include "sim/scannermemory.h"
#include "sim/scannermenu.h"
#include "sim/traffic.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestra::sim {

enum class Mode {
    Scan, Manual, Search, SearchHold, Service, ServiceHold,
    IdSearch, IdSearchHold, IdScan, IdScanHold,
};

struct Reception {
    bool squelchOpen = false;
    int signal = 0;     // 0..255
    std::string ctcss;  // the CTCSS tone or DCS code heard with it, if any
    std::string dcs;
};

class VirtualScanner {
public:
    explicit VirtualScanner(Model model = Model::BC785D, int baud = 19200);

    Model model() const { return memory_.model; }
    const ModelSwitches& switches() const { return modelInfo(memory_.model).switches; }
    int baudRate() const { return memory_.baud; }
    // As the baud rate menu does; false (and no change) for a rate the model lacks.
    bool setBaudRate(int baud);

    // One command line, without its line end; the reply, each line ended by CR.
    std::string command(std::string_view line);
    // Bytes as they come off the wire: lines end with CR, LF is ignored, a
    // partial line waits for the rest. The bytes to send back.
    std::string receive(std::string_view bytes);

    ScannerMemory& memory() { return memory_; }
    const ScannerMemory& memory() const { return memory_; }

    // ---- present state ----
    Mode mode() const { return mode_; }
    bool inMenu() const { return menu_.isOpen(); }
    // The fault of a trunk bank menu moved by `steps` entries (see Menu).
    void setBankMenuShift(int steps) { menu_.setBankMenuShift(steps); }
    int currentChannel() const { return channel_; }
    int currentRange() const { return range_; }
    int trunkBank() const { return trunkBank_; }
    Freq tunedFrequency() const;
    std::string modeNumber() const;  // the two digits "MD" answers: "00".."21", "22" in a menu
    const Reception& reception() const { return reception_; }
    // What the receiver hears, until the clock's next tick decides it anew.
    void setReception(const Reception& reception) { reception_ = reception; }
    // Moves the scan to a channel, or the search to a frequency, without a key.
    void scanTo(int channel);
    void searchTo(Freq f);

    // The four display lines with their attributes ("*" a whole inverted
    // line, "#" one inverted character).
    Screen display() const;

    static constexpr std::size_t kLineLimit = 64;  // the receive buffer of one line

    // ---- time and traffic ----
    // Lets the scanner's clock run to ms (milliseconds on the owner's clock);
    // the first call starts the clock there. A time before the last one is
    // taken as the last one.
    void advanceTo(std::int64_t ms);
    bool clockRunning() const { return clock_; }
    std::int64_t elapsedMs() const { return now_; }  // since the clock started
    // When the scanner may next change by itself, on the owner's clock;
    // nothing while it rests until a command or new traffic moves it.
    std::optional<std::int64_t> nextChangeMs() const;
    // What is on the air from now on; its times count from now (from the
    // clock's start when the clock has not started yet).
    void setTraffic(Traffic traffic);

    // Every tick is one channel of a scan or one step of a search.
    static constexpr int kTickMs = 25;
    // What a search waits after a transmission ends.
    static constexpr int kSearchDelayMs = 2000;
    // Beyond this many ticks at once a scan or search with nothing on the air
    // skips its whole rounds (the place it reaches is the same).
    static constexpr std::int64_t kLongGapTicks = 2400;

    // The log of what the scanner shows: once when the clock starts, then for
    // each change of the display or of squelch and signal, with the
    // milliseconds since the clock started:
    //   "<ms> SHOW <line1>|<line2>|<line3>|<line4> SQ<+ or -> SG<signal>"
    std::function<void(const std::string&)> showLog;
    // The text of that line behind the time, for the present state.
    std::string showText() const;

private:
    std::string dispatch(std::string_view line);

    // the clock (virtualscannerlive.cpp)
    enum class Phase { Moving, Receiving, Lingering };  // Lingering: the delay after a transmission
    void tick();
    // delayCode: a channel's or trunk bank's delay; -1 to linger lingerMs instead.
    void follow(const Reception& heard, int delayCode, std::int64_t lingerMs);
    void resume();
    void moveOn(std::int64_t ticks);
    void scanOn();
    void searchOn();
    bool scannable(int channel) const;
    long long searchStepHz() const;
    bool quiet() const;
    void listen();
    void afterCommand(Mode before);
    void show();
    void takeAir();
    // The strongest transmission the receiver hears there, or none.
    const Transmission* strongestOnHz(long long hz, long long stepHz) const;
    // Reception of what a channel or search step hears now, subtone and all.
    Reception receptionOnHz(long long hz, long long stepHz) const;
    // The owner's key presses of the script that are due.
    void pressScriptKeys();
    void showSubtone(Screen& s) const;
    int heardId(const std::string& id) const;
    bool catchId();  // a call to stop on in the ID scan or search

    std::string pressKey(int key, bool hold, int digit);
    void menuKey(int key, bool hold, int digit);
    void manualKey(int key, int digit, bool afterPoint);
    void enterFrequencyOrChannel();
    void startSearch();
    void stepSearch(int direction);

    std::string channelLine(int number) const;
    Screen channelScreen(bool stopped) const;
    Screen modeScreen() const;
    Screen trunkScreen() const;
    std::string lcdReply(int line) const;

    bool searching() const;
    bool trunkMode() const;
    int displayBank() const;   // the bank on the display: the trunk bank in trunk modes
    Channel& current() { return memory_.channel(channel_); }
    const Channel& current() const { return memory_.channel(channel_); }

    // command families
    std::string channelProgram(std::string_view args);
    std::string tagCommand(std::string_view args);
    std::string beepCommand(std::string_view line);
    std::string stepCommand(std::string_view args);
    std::string modeCommand(std::string_view args);
    std::string delayCommand(std::string_view line);
    std::string subtoneCommand(std::string_view args);
    std::string priorityCommand(std::string_view args);
    std::string activeCommand(std::string_view line);
    std::string trunkTypeCommand(std::string_view args);
    std::string controlChannelCommand(std::string_view line);
    std::string trunkIdCommand(std::string_view args);
    std::string fleetCommand(std::string_view args);
    std::string limitCommand(std::string_view line);
    std::string fipsCommand(std::string_view args);
    std::string frequencyCommand(std::string_view args);
    std::string keyCommand(std::string_view args);
    std::string lcdCommand(std::string_view args) const;

    ScannerMemory memory_;
    Menu menu_;
    Mode mode_ = Mode::Scan;
    int channel_ = 1;
    int range_ = 0;
    long long searchHz_ = 0;
    int trunkBank_ = 0;
    std::string entry_;  // digits keyed in manual mode
    bool lastKeyPoint_ = false;
    bool priority_ = false;
    bool muted_ = false;
    bool searchAtten_ = false;
    Reception reception_;
    std::string partial_;
    bool overrun_ = false;

    // the clock
    bool clock_ = false;
    std::int64_t originMs_ = 0;   // the owner's time at which the clock started
    std::int64_t now_ = 0;        // since then
    std::int64_t nextTick_ = kTickMs;
    Phase phase_ = Phase::Moving;
    int direction_ = 1;           // of the scan and the search: +1 up, -1 down
    std::int64_t stoppedAtMs_ = 0;
    std::int64_t resumeAtMs_ = 0; // end of the delay; -1: until RESUME
    Traffic traffic_;
    std::int64_t trafficOriginMs_ = 0;
    std::vector<const Transmission*> air_;  // on the air at the last look
    // The trunk call the scanner stopped on: the ID, its place in the lists
    // (list and slot index, -1 when it is in none) and the frequency it is on.
    std::string heldId_;
    int heldList_ = -1, heldSlot_ = -1;
    Freq voiceFreq_ = 0;
    Modulation voiceMode_ = Modulation::FM;
    std::string lastShown_;
};

} // namespace kestra::sim
