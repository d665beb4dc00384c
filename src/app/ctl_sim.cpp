// kestractl sim --model MODEL [--link PATH] [--load FILE.mem] [--dump FILE.mem]
//               [--log FILE] [--latency MS] [--faults LIST] [--baud RATE]
//               [--activity seed=N,busy=F] [--traffic FILE] [--menu-shift N]
//
// The virtual scanner on a pseudo-terminal: the device path is the first line
// on stdout, the scanner answers there until SIGINT, SIGTERM or SIGHUP, and
// then its memory is written to the --dump file. It scans and searches in
// real time, and stops on the random activity or the scripted transmissions
// given; the log tells what it showed as it happened.

#include "kestractl.h"

#include "core/cellcodes.h"
#include "core/memfile.h"
#include "core/text.h"
#include "sim/documentmapping.h"
#include "sim/ptyline.h"
#include "sim/traffic.h"
#include "sim/virtualscanner.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <system_error>

#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace kestra::ctl {

namespace {

std::optional<int> wholeNumber(const std::string& text, int most)
{
    if (text.empty() || text.size() > 9 || text.find_first_not_of("0123456789") != std::string::npos) return std::nullopt;
    const int n = std::stoi(text);
    if (n > most) return std::nullopt;
    return n;
}

// PATH made a symbolic link to the terminal; an old link there is replaced,
// anything else is left alone and refused.
bool linkTerminal(const fs::path& path, const std::string& device)
{
    std::error_code ec;
    const auto status = fs::symlink_status(path, ec);
    if (!ec && fs::exists(status) && !fs::is_symlink(status)) {
        std::cerr << "kestractl sim: " << path.string() << " exists and is not a link; not replaced\n";
        return false;
    }
    // Made beside it and renamed over it, so that PATH never goes missing.
    const fs::path fresh = path.string() + ".kestra-" + std::to_string(::getpid());
    fs::remove(fresh, ec);
    fs::create_symlink(device, fresh, ec);
    if (!ec) fs::rename(fresh, path, ec);
    if (ec) {
        fs::remove(fresh, ec);
        std::cerr << "kestractl sim: cannot link " << path.string() << " to " << device << ": " << ec.message() << '\n';
        return false;
    }
    return true;
}

// Removes the link at exit when it still leads to this terminal.
void unlinkTerminal(const fs::path& path, const std::string& device)
{
    std::error_code ec;
    if (fs::is_symlink(fs::symlink_status(path, ec)) && fs::read_symlink(path, ec) == fs::path(device)) fs::remove(path, ec);
}

} // namespace

int sim(const Args& words)
{
    Args args = words;
    std::vector<std::pair<std::string, std::string>> options;
    if (!takeOptions(args, {"--model", "--link", "--load", "--dump", "--log", "--latency", "--faults", "--baud", "--activity",
                      "--traffic", "--menu-shift"}, {},
                     options))
        return 2;
    if (!args.empty()) return usage("sim takes no word " + args[0]);
    std::optional<Model> model;
    std::string link, load, dump, logPath;
    int latencyMs = 0;
    std::optional<int> baud;
    int menuShift = 0;
    LineFaults faults;
    std::optional<sim::Traffic> traffic;
    for (const auto& [name, value] : options) {
        if (name == "--model") {
            model = modelFromName(value);
            if (!model) return usage("unknown model " + value);
        } else if (name == "--link") {
            link = value;
        } else if (name == "--load") {
            load = value;
        } else if (name == "--dump") {
            dump = value;
        } else if (name == "--log") {
            logPath = value;
        } else if (name == "--latency") {
            const auto ms = wholeNumber(value, 60'000);
            if (!ms) return usage("--latency takes milliseconds, 0 to 60000");
            latencyMs = *ms;
        } else if (name == "--faults") {
            const auto parsed = LineFaults::parse(value);
            if (!parsed) return usage("--faults: cannot read " + value);
            faults = *parsed;
        } else if (name == "--menu-shift") {
            const auto steps = wholeNumber(value, 9);
            if (!steps) return usage("--menu-shift takes 0 to 9 entries");
            menuShift = *steps;
        } else if ((name == "--activity" || name == "--traffic") && traffic) {
            return usage("sim takes one of --activity and --traffic");
        } else if (name == "--activity") {
            std::string error;
            const auto activity = sim::parseActivity(value, error);
            if (!activity) return usage("--activity: " + error);
            traffic = sim::Traffic::random(*activity);
        } else if (name == "--traffic") {
            std::string bytes, error;
            if (!readFileBytes(value, bytes)) {
                std::cerr << "kestractl sim: cannot read " << value << '\n';
                return 2;
            }
            auto script = sim::parseTrafficScript(bytes, error);
            if (!script) {
                std::cerr << "kestractl sim: " << value << ", " << error << '\n';
                return 2;
            }
            traffic = sim::Traffic::scripted(std::move(*script));
        } else {
            baud = wholeNumber(value, 10'000'000);
            if (!baud) return usage("--baud takes a speed such as 19200");
        }
    }
    if (!model) return usage("sim needs --model");

    // Stop signals are taken in the loop, never in the middle of a reply.
    sigset_t stopSignals;
    sigemptyset(&stopSignals);
    sigaddset(&stopSignals, SIGINT);
    sigaddset(&stopSignals, SIGTERM);
    sigaddset(&stopSignals, SIGHUP);
    sigprocmask(SIG_BLOCK, &stopSignals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    const int stopFd = signalfd(-1, &stopSignals, SFD_CLOEXEC);
    if (stopFd < 0) {
        std::cerr << "kestractl sim: cannot take signals\n";
        return 1;
    }
    sim::VirtualScanner scanner(*model);
    scanner.setBankMenuShift(menuShift);
    if (!load.empty()) {
        std::string bytes;
        if (!readFileBytes(load, bytes)) {
            std::cerr << "kestractl sim: cannot read " << load << '\n';
            return 1;
        }
        sim::FillReport report;
        const MemLoadResult loaded = sim::loadMemFile(scanner.memory(), bytes, &report);
        if (loaded.status != MemLoadStatus::Loaded) {
            std::cerr << "kestractl sim: " << load << ": " << utf8FromCp1252(loaded.message()) << '\n';
            return 1;
        }
        for (int channel : report.refusedChannels)
            std::cerr << "kestractl sim: channel " << channel << " is outside what the " << modelName(*model)
                      << " receives; left empty\n";
    }
    if (baud && !scanner.setBaudRate(*baud)) {
        std::string rates;
        for (int r : sim::baudRates(*model)) rates += " " + std::to_string(r);
        return usage("the " + std::string(modelName(*model)) + " runs at" + rates);
    }

    std::ofstream logFile;
    if (!logPath.empty()) {
        logFile.open(logPath, std::ios::out | std::ios::trunc | std::ios::binary);
        if (!logFile) {
            std::cerr << "kestractl sim: cannot write " << logPath << '\n';
            return 1;
        }
    }

    sim::PseudoTerminal terminal(scanner.baudRate());
    if (!terminal.isOpen()) {
        std::cerr << "kestractl sim: " << terminal.error() << '\n';
        return 1;
    }
    if (!link.empty() && !linkTerminal(link, terminal.devicePath())) return 1;

    sim::ScannerLine line(scanner, latencyMs, faults);
    // The scanner starts here: the log's times, the traffic's and those of
    // the scanner's own clock count from this moment.
    const auto start = std::chrono::steady_clock::now();
    if (logFile.is_open()) {
        line.log = [&logFile](const std::string& text) { logFile << text << '\n' << std::flush; };
        scanner.showLog = line.log;
        const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
        logFile << ms.count() << " * " << modelName(*model) << " on " << terminal.devicePath() << " at "
                << scanner.baudRate() << " baud\n"
                << std::flush;
    }
    if (traffic) scanner.setTraffic(std::move(*traffic));
    line.tick(0);

    std::cout << terminal.devicePath() << '\n' << std::flush;
    const bool served = sim::serveTerminal(terminal, line, stopFd, start);
    ::close(stopFd);
    if (!link.empty()) unlinkTerminal(link, terminal.devicePath());
    if (!served) std::cerr << "kestractl sim: the terminal failed\n";

    if (!dump.empty()) {
        const std::string failure = writeFileAtomic(dump, sim::memFileText(scanner.memory()));
        if (!failure.empty()) {
            std::cerr << "kestractl sim: cannot write " << dump << ": " << failure << '\n';
            return 1;
        }
    }
    return served ? 0 : 1;
}

} // namespace kestra::ctl
