#include "ptyline.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

namespace kestra::sim {

// ---- the line ----------------------------------------------------------------------

namespace {
constexpr std::size_t kHeardLimit = 256;  // the log keeps no more of a line without its end
}

std::string loggable(std::string_view text)
{
    if (!text.empty() && text.back() == '\r') text.remove_suffix(1);
    std::string out;
    for (char ch : text) {
        const auto c = static_cast<unsigned char>(ch);
        if (c == '\r') {
            out += "\\r";
        } else if (c == '\n') {
            out += "\\n";
        } else if (c == '\\') {
            out += "\\\\";
        } else if (c < 32 || c > 126) {
            char hex[8];
            std::snprintf(hex, sizeof hex, "\\x%02X", c);
            out += hex;
        } else {
            out += ch;
        }
    }
    return out;
}

ScannerLine::ScannerLine(VirtualScanner& scanner, int latencyMs, const LineFaults& faults)
    : scanner_(scanner), latencyMs_(std::max(0, latencyMs)), line_(faults)
{
}

void ScannerLine::write(std::int64_t nowUs, char direction, std::string_view text)
{
    if (!log) return;
    log(std::to_string(nowUs / 1000) + " " + direction + " " + std::string(text));
}

void ScannerLine::received(std::int64_t nowUs, std::string_view bytes, int clientBaud)
{
    const bool wrongSpeed = clientBaud > 0 && clientBaud != scanner_.baudRate();
    const std::string heard = wrongSpeed ? line_.atWrongSpeed(bytes) : std::string(bytes);
    const std::int64_t charUs = 10'000'000 / std::max(clientBaud > 0 ? clientBaud : scanner_.baudRate(), 1);
    std::size_t pos = 0;
    while (pos < heard.size()) {
        const std::size_t cr = heard.find('\r', pos);
        const std::size_t end = cr == std::string::npos ? heard.size() : cr + 1;
        const std::string_view piece = std::string_view(heard).substr(pos, end - pos);
        pos = end;
        // The scanner has the piece when its last character is through.
        heardUntilUs_ = std::max(nowUs, heardUntilUs_) + charUs * static_cast<std::int64_t>(piece.size());
        const std::int64_t atUs = heardUntilUs_;
        tick(atUs);
        for (char c : piece)
            if (c != '\r' && c != '\n' && heard_.size() < kHeardLimit) heard_ += c;
        if (cr != std::string::npos) {
            write(atUs, '<', loggable(heard_));
            heard_.clear();
        }
        std::string reply = scanner_.receive(piece);
        if (cr == std::string::npos) break;
        // The reply goes out at the speed the scanner has now: the key that
        // stores a new speed is answered at the new one.
        answer(atUs, std::move(reply), clientBaud > 0 && clientBaud != scanner_.baudRate());
    }
}

void ScannerLine::tick(std::int64_t nowUs) { scanner_.advanceTo(nowUs / 1000); }

std::optional<std::int64_t> ScannerLine::nextChangeUs() const
{
    const auto ms = scanner_.nextChangeMs();
    if (!ms) return std::nullopt;
    return *ms * 1000;
}

void ScannerLine::answer(std::int64_t nowUs, std::string reply, bool wrongSpeed)
{
    if (reply.empty()) return;
    if (wrongSpeed) reply = line_.atWrongSpeed(reply);
    const CarriedReply carried = line_.carry(reply);
    if (carried.lost()) {
        write(nowUs, '>', "[lost] " + loggable(reply));
        return;
    }
    const std::int64_t charUs = 10'000'000 / std::max(scanner_.baudRate(), 1);
    const std::int64_t start = std::max(nowUs + std::int64_t{latencyMs_} * 1000 + carried.lateUs, replyFreeUs_);
    auto pieces = carried.timed(start, charUs);
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const bool last = i + 1 == pieces.size();
        outgoing_.push_back({pieces[i].atUs, std::move(pieces[i].bytes), last ? loggable(carried.text()) : std::string()});
        replyFreeUs_ = pieces[i].atUs;
    }
}

std::optional<std::int64_t> ScannerLine::nextDueUs() const
{
    if (outgoing_.empty()) return std::nullopt;
    return outgoing_.front().atUs;
}

std::string ScannerLine::takeDue(std::int64_t nowUs)
{
    std::string out;
    while (!outgoing_.empty() && outgoing_.front().atUs <= nowUs) {
        Outgoing& o = outgoing_.front();
        tick(o.atUs);  // what the scanner showed before this goes first in the log
        out += o.bytes;
        if (!o.logText.empty()) write(o.atUs, '>', o.logText);
        outgoing_.pop_front();
    }
    return out;
}

// ---- speeds ------------------------------------------------------------------------

namespace {
struct SpeedCode {
    int baud;
    speed_t code;
};
constexpr std::array<SpeedCode, 18> kSpeeds{{
    {300, B300},       {600, B600},       {1200, B1200},     {1800, B1800},     {2400, B2400},
    {4800, B4800},     {9600, B9600},     {19200, B19200},   {38400, B38400},   {57600, B57600},
    {115200, B115200}, {230400, B230400}, {460800, B460800}, {500000, B500000}, {576000, B576000},
    {921600, B921600}, {1000000, B1000000}, {2000000, B2000000},
}};
} // namespace

int baudOfSpeedCode(unsigned code)
{
    for (const SpeedCode& s : kSpeeds)
        if (s.code == code) return s.baud;
    return 0;
}

std::optional<unsigned> speedCodeOfBaud(int baud)
{
    for (const SpeedCode& s : kSpeeds)
        if (s.baud == baud) return s.code;
    return std::nullopt;
}

// ---- the terminal ------------------------------------------------------------------

PseudoTerminal::PseudoTerminal(int baud)
{
    const int fd = posix_openpt(O_RDWR | O_NOCTTY);
    if (fd < 0) {
        error_ = std::string("cannot open a pseudo-terminal: ") + std::strerror(errno);
        return;
    }
    if (grantpt(fd) != 0 || unlockpt(fd) != 0 || !ptsname(fd)) {
        error_ = std::string("cannot prepare the pseudo-terminal: ") + std::strerror(errno);
        ::close(fd);
        return;
    }
    device_ = ptsname(fd);
    device_fd_ = ::open(device_.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (device_fd_ < 0) {
        error_ = "cannot open " + device_ + ": " + std::strerror(errno);
        ::close(fd);
        return;
    }
    fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) | O_NONBLOCK);
    master_ = fd;
    termios t{};
    if (tcgetattr(device_fd_, &t) == 0) {
        cfmakeraw(&t);
        t.c_cflag |= CLOCAL | CREAD;
        tcsetattr(device_fd_, TCSANOW, &t);
    }
    setClientBaud(baud);
}

PseudoTerminal::~PseudoTerminal()
{
    if (device_fd_ >= 0) ::close(device_fd_);
    if (master_ >= 0) ::close(master_);
}

int PseudoTerminal::clientBaud() const
{
    termios t{};
    if (master_ < 0 || tcgetattr(master_, &t) != 0) return 0;
    return baudOfSpeedCode(cfgetospeed(&t));
}

bool PseudoTerminal::setClientBaud(int baud)
{
    const auto code = speedCodeOfBaud(baud);
    termios t{};
    if (!code || device_fd_ < 0 || tcgetattr(device_fd_, &t) != 0) return false;
    cfsetispeed(&t, *code);
    cfsetospeed(&t, *code);
    return tcsetattr(device_fd_, TCSANOW, &t) == 0;
}

std::string PseudoTerminal::read()
{
    std::string got;
    char buffer[4096];
    while (master_ >= 0) {
        const ssize_t n = ::read(master_, buffer, sizeof buffer);
        if (n > 0) {
            got.append(buffer, static_cast<std::size_t>(n));
            continue;
        }
        if (n < 0 && errno == EINTR) continue;
        break;
    }
    return got;
}

std::size_t PseudoTerminal::write(std::string_view bytes)
{
    std::size_t done = 0;
    while (master_ >= 0 && done < bytes.size()) {
        const ssize_t n = ::write(master_, bytes.data() + done, bytes.size() - done);
        if (n > 0) {
            done += static_cast<std::size_t>(n);
            continue;
        }
        if (n < 0 && errno == EINTR) continue;
        break;
    }
    return done;
}

// ---- serving -----------------------------------------------------------------------

bool serveTerminal(PseudoTerminal& terminal, ScannerLine& line, int stopFd, std::chrono::steady_clock::time_point start)
{
    if (!terminal.isOpen()) return false;
    const auto nowUs = [start] {
        return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start).count();
    };
    std::string unsent;  // due bytes the terminal had no room for yet
    for (;;) {
        unsent += line.takeDue(nowUs());
        if (!unsent.empty()) unsent.erase(0, terminal.write(unsent));
        line.tick(nowUs());

        std::optional<std::int64_t> due = line.nextDueUs();
        if (const auto change = line.nextChangeUs(); change && (!due || *change < *due)) due = change;
        int timeoutMs = -1;
        if (due) {
            const std::int64_t wait = std::max<std::int64_t>(0, *due - nowUs());
            timeoutMs = static_cast<int>(std::min<std::int64_t>((wait + 999) / 1000, 60'000));
        }
        pollfd fds[2] = {{terminal.fd(), static_cast<short>(POLLIN | (unsent.empty() ? 0 : POLLOUT)), 0},
                         {stopFd, POLLIN, 0}};
        const int ready = ::poll(fds, 2, timeoutMs);
        if (ready < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        if (fds[1].revents != 0) return true;
        if (fds[0].revents & POLLIN) {
            const std::string bytes = terminal.read();
            if (!bytes.empty()) line.received(nowUs(), bytes, terminal.clientBaud());
        }
        if (fds[0].revents & (POLLERR | POLLNVAL)) return false;
        // The terminal is held open at both ends, so it does not hang up; if
        // it ever did, poll would report it at once: wait rather than spin.
        if ((fds[0].revents & POLLHUP) && !(fds[0].revents & POLLIN)) ::poll(nullptr, 0, 50);
    }
}

} // namespace kestra::sim
