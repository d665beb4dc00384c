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
// Reception, which nothing changes yet: a resting scanner hears nothing.

#include "sim/scannermemory.h"
#include "sim/scannermenu.h"

#include <string>
#include <string_view>

namespace kestra::sim {

enum class Mode {
    Scan, Manual, Search, SearchHold, Service, ServiceHold,
    IdSearch, IdSearchHold, IdScan, IdScanHold,
};

struct Reception {
    bool squelchOpen = false;
    int signal = 0;  // 0..255
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
    int currentChannel() const { return channel_; }
    int currentRange() const { return range_; }
    int trunkBank() const { return trunkBank_; }
    Freq tunedFrequency() const;
    std::string modeNumber() const;  // the two digits "MD" answers: "00".."21", "22" in a menu
    const Reception& reception() const { return reception_; }
    void setReception(const Reception& reception) { reception_ = reception; }
    // Moves the scan to a channel, or the search to a frequency, without a key.
    void scanTo(int channel);
    void searchTo(Freq f);

    // The four display lines with their attributes ("*" a whole inverted
    // line, "#" one inverted character).
    Screen display() const;

    static constexpr std::size_t kLineLimit = 64;  // the receive buffer of one line

private:
    std::string dispatch(std::string_view line);
    std::string pressKey(int key, bool hold, int digit);
    void menuKey(int key, bool hold, int digit);
    void manualKey(int key, int digit, bool afterPoint);
    void enterFrequencyOrChannel();
    void startSearch();
    void stepSearch(int direction);

    std::string channelLine(int number) const;
    Screen channelScreen(bool stopped) const;
    Screen modeScreen() const;
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
};

} // namespace kestra::sim
