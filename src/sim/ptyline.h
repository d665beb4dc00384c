#pragma once
// The virtual scanner on a pseudo-terminal, for any serial program to open:
// the terminal itself, the line between it and the scanner (speed, latency,
// wire time, faults, the log), and the loop that answers until told to stop.

#include "sim/linefaults.h"
#include "sim/virtualscanner.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kestra::sim {

// The scanner's line: bytes come in from a client, whole command lines go to
// the scanner, and each reply goes out when the line has carried it. A client
// set to another speed than the scanner's is heard as garbage and hears
// garbage. Times are microseconds on the caller's clock.
class ScannerLine {
public:
    ScannerLine(VirtualScanner& scanner, int latencyMs, const LineFaults& faults);

    // Where one line per command received and reply sent goes, with the time
    // in milliseconds; no line end.
    std::function<void(const std::string&)> log;

    // Bytes that arrived at nowUs from a client whose terminal is at
    // clientBaud (0: not known, taken as the scanner's speed).
    void received(std::int64_t nowUs, std::string_view bytes, int clientBaud);
    // When the next bytes are due to go out; nothing when no reply waits.
    std::optional<std::int64_t> nextDueUs() const;
    // The bytes due by nowUs, in the order they go out.
    std::string takeDue(std::int64_t nowUs);

    // Lets the scanner live up to nowUs (scan, search, what it hears), so
    // that what it shows is logged as it happens and not only when asked.
    // The scanner's clock starts with the first bytes or tick, on the
    // caller's clock.
    void tick(std::int64_t nowUs);
    // When the scanner next changes by itself; nothing while it rests.
    std::optional<std::int64_t> nextChangeUs() const;

    int latencyMs() const { return latencyMs_; }

private:
    struct Outgoing {
        std::int64_t atUs;
        std::string bytes;
        std::string logText;  // for the last piece of a reply: what the log tells
    };
    void answer(std::int64_t nowUs, std::string reply, bool wrongSpeed);
    void write(std::int64_t nowUs, char direction, std::string_view text);

    VirtualScanner& scanner_;
    int latencyMs_;
    FaultyLine line_;
    std::deque<Outgoing> outgoing_;
    std::string heard_;             // the command line heard so far, for the log
    std::int64_t replyFreeUs_ = 0;  // when the line back is free again
    // When the last character sent to the scanner is through: a pseudo-
    // terminal passes a command at once, a cable at ten bits a character.
    std::int64_t heardUntilUs_ = 0;
};

// The log's form of a line: control characters and characters above 126 as
// \r, \n or \xNN; the final carriage return left out.
std::string loggable(std::string_view text);

// The scanner's end (master) of a pseudo-terminal. The terminal starts in raw
// mode at a given speed; a client opens the device end and sets its own. The
// scanner keeps the device end open as well, so that a client closing it does
// not end the terminal and the next client finds it there.
class PseudoTerminal {
public:
    explicit PseudoTerminal(int baud = 19200);
    ~PseudoTerminal();
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    bool isOpen() const { return master_ >= 0; }
    const std::string& error() const { return error_; }
    const std::string& devicePath() const { return device_; }
    int fd() const { return master_; }

    // The speed the device end is set to, as its client set it; 0 when it
    // cannot be read. On Linux the terminal settings read through the master
    // are those of the device end.
    int clientBaud() const;
    // Sets the device end's speed (a client setting its own replaces it).
    bool setClientBaud(int baud);

    // Everything waiting to be read; never blocks.
    std::string read();
    // Writes what the terminal takes now; the count written.
    std::size_t write(std::string_view bytes);

private:
    int master_ = -1;
    int device_fd_ = -1;
    std::string device_;
    std::string error_;
};

// The speed of a termios speed code and back; 0 and nothing for unknown ones.
int baudOfSpeedCode(unsigned code);
std::optional<unsigned> speedCodeOfBaud(int baud);

// Answers on the terminal until stopFd becomes readable (a signal's file
// descriptor, or a pipe in a test): reads what clients send, hands it to the
// line, writes replies when they are due, and lets the scanner live between
// them. Sleeps in poll between events.
// Times are measured from `start`. False when the terminal failed.
bool serveTerminal(PseudoTerminal& terminal, ScannerLine& line, int stopFd,
                   std::chrono::steady_clock::time_point start);

} // namespace kestra::sim
