#pragma once
// `kestractl sim` as a process of a test (or of a benchmark), and a plain
// terminal client for it. The process is started with fork and exec; its
// first line of output is the device path. Whatever happens in the test, the
// destructor ends the process, and it dies with the test's process.

#include <chrono>
#include <string>
#include <vector>

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace kestra::test {

class SimProcess {
public:
    // Runs `kestractl sim` with the words; stderr goes to errFile when given.
    explicit SimProcess(const std::vector<std::string>& words, const std::string& errFile = "")
    {
        // Everything the child needs is made before the fork: after it, the
        // child of a program with threads may only call exec and its like.
        std::vector<std::string> all{KESTRACTL_PATH, "sim"};
        all.insert(all.end(), words.begin(), words.end());
        std::vector<char*> argv;
        for (std::string& w : all) argv.push_back(w.data());
        argv.push_back(nullptr);
        const int err = errFile.empty() ? -1 : ::open(errFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
        int out[2];
        if (::pipe2(out, O_CLOEXEC) != 0) return;
        const pid_t parent = ::getpid();
        pid_ = ::fork();
        if (pid_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            if (::getppid() != parent) ::_exit(127);
            ::dup2(out[1], STDOUT_FILENO);
            if (err >= 0) ::dup2(err, STDERR_FILENO);
            ::execv(KESTRACTL_PATH, argv.data());
            ::_exit(127);
        }
        if (err >= 0) ::close(err);
        ::close(out[1]);
        out_ = out[0];
        // The first line is the device path; nothing else is waited for.
        const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        std::string line;
        while (line.find('\n') == std::string::npos && std::chrono::steady_clock::now() < until) {
            pollfd p{out_, POLLIN, 0};
            if (::poll(&p, 1, 200) <= 0) continue;
            char c[256];
            const ssize_t n = ::read(out_, c, sizeof c);
            if (n <= 0) break;
            line.append(c, static_cast<std::size_t>(n));
        }
        if (const auto nl = line.find('\n'); nl != std::string::npos) device_ = line.substr(0, nl);
    }

    ~SimProcess()
    {
        if (pid_ > 0 && status_ == kRunning) {
            ::kill(pid_, SIGKILL);
            ::waitpid(pid_, nullptr, 0);
        }
        if (out_ >= 0) ::close(out_);
    }
    SimProcess(const SimProcess&) = delete;
    SimProcess& operator=(const SimProcess&) = delete;

    const std::string& device() const { return device_; }

    // Sends the signal and waits for the end; the exit status, or -1 when the
    // process did not end by itself in time (it is killed then).
    int stop(int signal = SIGTERM, int timeoutMs = 10000)
    {
        if (pid_ > 0 && status_ == kRunning) ::kill(pid_, signal);
        return waitForExit(timeoutMs);
    }

    // Waits for a process that ends by itself (a refused start).
    int waitForExit(int timeoutMs = 10000)
    {
        if (pid_ <= 0) return -1;
        if (status_ != kRunning) return status_;
        const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
        int raw = 0;
        while (std::chrono::steady_clock::now() < until) {
            if (::waitpid(pid_, &raw, WNOHANG) == pid_) {
                status_ = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
                return status_;
            }
            ::usleep(10'000);
        }
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
        status_ = -1;
        return status_;
    }

private:
    static constexpr int kRunning = -1000;
    pid_t pid_ = -1;
    int out_ = -1;
    int status_ = kRunning;
    std::string device_;
};

// A serial program at its plainest: the device opened raw at a speed.
class TerminalClient {
public:
    TerminalClient(const std::string& device, speed_t speed)
    {
        fd_ = ::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
        if (fd_ < 0) return;
        termios t{};
        ::tcgetattr(fd_, &t);
        ::cfmakeraw(&t);
        ::cfsetispeed(&t, speed);
        ::cfsetospeed(&t, speed);
        ::tcsetattr(fd_, TCSANOW, &t);
    }
    ~TerminalClient()
    {
        if (fd_ >= 0) ::close(fd_);
    }
    TerminalClient(const TerminalClient&) = delete;
    TerminalClient& operator=(const TerminalClient&) = delete;

    bool isOpen() const { return fd_ >= 0; }
    // False when the terminal did not take it all.
    bool send(const std::string& text) { return ::write(fd_, text.data(), text.size()) == static_cast<ssize_t>(text.size()); }

    // What arrives until a carriage return ends it or the time is up.
    std::string readLine(int timeoutMs = 3000) { return read(timeoutMs, true); }
    // Everything that arrives within the time.
    std::string readFor(int ms) { return read(ms, false); }

    // A command and its reply line.
    std::string ask(const std::string& command, int timeoutMs = 3000)
    {
        if (!send(command + "\r\n")) return {};
        return readLine(timeoutMs);
    }

private:
    std::string read(int ms, bool toLineEnd)
    {
        std::string got;
        const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
        while (std::chrono::steady_clock::now() < until) {
            if (toLineEnd && !got.empty() && got.back() == '\r') break;
            pollfd p{fd_, POLLIN, 0};
            if (::poll(&p, 1, 20) <= 0) continue;
            char c[512];
            const ssize_t n = ::read(fd_, c, sizeof c);
            if (n > 0) got.append(c, static_cast<std::size_t>(n));
        }
        return got;
    }

    int fd_ = -1;
};

} // namespace kestra::test
