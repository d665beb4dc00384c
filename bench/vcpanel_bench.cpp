// The Virtual Control on a live scanner: the CPU the program uses while its
// panel polls, and how long a change of the scanner's display takes to reach
// the panel.
//
// CPU: `kestra` itself, started with "Always start with Virtual Control" on a
// scanner of `kestractl sim --activity seed=3,busy=0.3` on a pseudo-terminal;
// its CPU time (from /proc) over a minute after a warm-up, as a share of one
// core. Run it under an X server to count the drawing: `xvfb-run -a
// build/bench/kestra_vcpanel_bench`.
//
// Delay: the same poll loop and decoder in this process on a second scanner
// with the same seed and a log. For every stop the scanner makes (its line 1
// turning to "SCAN +   C nnn"), the time from the scanner's log to the loop's
// reading of that display; the loop's display hook is where the panel draws.
//
// Run by hand: build/bench/kestra_vcpanel_bench [SECONDS]  (default 60)

// The scanner's headers come before Qt's, which takes "slots" for a word of its own.
#include "sim/documentmapping.h"
#include "sim/scannermemory.h"

#include "core/memfile.h"
#include "platform/fake/scripteddialogs.h"
#include "platform/qt/qtscheduler.h"
#include "platform/qt/qtserialport.h"
#include "sim/simprocess.h"
#include "vcontrol/controlloop.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <thread>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using namespace kestra;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

namespace {

std::string busyChannelsMem()
{
    sim::ScannerMemory memory(Model::BC785D);
    const sim::Freq freqs[] = {1550000, 1554750, 1543000, 4625625, 4630000, 1563000};
    for (int i = 0; i < 6; ++i) {
        sim::Channel& ch = memory.channel(i * 7 + 3);
        ch.freq = freqs[i];
        ch.lockout = false;
        ch.delay = 2;
    }
    return sim::memFileText(memory);
}

long cpuTicks(pid_t pid)
{
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string text((std::istreambuf_iterator<char>(stat)), {});
    const auto close = text.rfind(')');
    if (close == std::string::npos) return -1;
    std::istringstream fields(text.substr(close + 2));
    std::string skip;
    for (int i = 0; i < 11; ++i) fields >> skip;  // state .. cmajflt
    long utime = 0, stime = 0;
    fields >> utime >> stime;
    return utime + stime;
}

// kestra with its own home, the Virtual Control opening at the start on the device.
double programCpu(const fs::path& dir, const std::string& mem, int seconds, long& polls)
{
    const std::string log = (dir / "program-sim.log").string();
    test::SimProcess sim({"--model", "BC785D", "--load", mem, "--activity", "seed=3,busy=0.3", "--log", log});
    if (sim.device().empty()) return -1;
    const fs::path folder = dir / "data" / "HalvornKESTRA" / "kestra";
    fs::create_directories(folder);
    writeFileAtomic(folder / "ports.ini", "[ports]\r\n1=" + sim.device() + "\r\n");
    writeFileAtomic(folder / "setup.ini", "[setup]\r\nvstart=1\r\nbackena=0\r\n");
    const std::string kestra = fs::path(KESTRACTL_PATH).parent_path() / "kestra";
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::setenv("HOME", dir.c_str(), 1);
        ::setenv("XDG_DATA_HOME", (dir / "data").c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", (dir / "config").c_str(), 1);
        ::execl(kestra.c_str(), kestra.c_str(), nullptr);
        ::_exit(127);
    }
    std::this_thread::sleep_for(std::chrono::seconds(10));  // start-up and the opening of the link
    const long before = cpuTicks(pid);
    const auto start = Clock::now();
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    const long after = cpuTicks(pid);
    const double wall = std::chrono::duration<double>(Clock::now() - start).count();
    ::kill(pid, SIGKILL);
    ::waitpid(pid, nullptr, 0);
    sim.stop();
    // The program was polling: the display asked for, as the scanner heard it.
    std::ifstream heard(log);
    polls = 0;
    for (std::string line; std::getline(heard, line);)
        if (line.find(" < LCD") != std::string::npos) ++polls;
    if (before < 0 || after < 0) return -1;
    return 100.0 * static_cast<double>(after - before) / static_cast<double>(::sysconf(_SC_CLK_TCK)) / wall;
}

struct Seen {
    long ms;
    std::string line1;
    int pollfast;  // the cycle the loop went on with
};

} // namespace

int main(int argc, char** argv)
{
    const int seconds = argc > 1 ? std::max(10, std::atoi(argv[1])) : 60;
    const fs::path dir = fs::temp_directory_path() / ("kestra-vcpanel-" + std::to_string(::getpid()));
    fs::create_directories(dir);
    const std::string mem = (dir / "busy.mem").string();
    writeFileAtomic(mem, busyChannelsMem());

    long polls = 0;
    const double cpu = programCpu(dir, mem, seconds, polls);

    int qargc = 1;
    char name[] = "kestra_vcpanel_bench";
    char* qargv[] = {name, nullptr};
    QCoreApplication app(qargc, qargv);
    const std::string log = (dir / "sim.log").string();
    test::SimProcess sim({"--model", "BC785D", "--load", mem, "--activity", "seed=3,busy=0.3", "--log", log});
    const auto origin = Clock::now();  // the scanner's clock started a moment before its first line
    const auto since = [&origin] {
        return static_cast<long>(std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - origin).count());
    };
    QtScheduler scheduler;
    ScriptedDialogs dialogs;
    ControlLoop loop(scheduler, dialogs, std::make_unique<QtSerialPort>(sim.device()), LinkSettings{});
    std::vector<Seen> seen;
    loop.hooks.displayChanged = [&] { seen.push_back({since(), loop.state().lcdline[0], loop.pollfast()}); };
    ModelSwitches model = ModelSwitches::of(Model::BC785D);
    loop.open(dir, model);
    const auto end = Clock::now() + std::chrono::seconds(seconds);
    while (Clock::now() < end) scheduler.wait(0.05);
    loop.close();
    sim.stop();

    // The stops in the scanner's log, and when the loop first read each.
    std::ifstream in(log);
    std::vector<long> delays;
    double worstCycles = 0;  // the longest delay in cycles of the poll cycle running at the stop
    std::string previous;
    for (std::string line; std::getline(in, line);) {
        const auto at = line.find(" SHOW ");
        if (at == std::string::npos) continue;
        const std::string line1 = line.substr(at + 6, 16);
        const bool stop = line1.rfind("SCAN +", 0) == 0 && previous.rfind("SCAN +", 0) != 0;
        previous = line1;
        if (!stop) continue;
        const long ms = std::stol(line);
        const auto read = std::find_if(seen.begin(), seen.end(),
                                       [&](const Seen& s) { return s.ms >= ms && s.line1 == line1; });
        if (read == seen.end()) continue;
        delays.push_back(read->ms - ms);
        const auto before = std::find_if(seen.rbegin(), seen.rend(), [&](const Seen& s) { return s.ms < ms; });
        const long running = before != seen.rend() && before->pollfast == 0 ? 13 * ControlLoop::kSendMs
                                                                             : 3 * ControlLoop::kSendMs;
        worstCycles = std::max(worstCycles, static_cast<double>(read->ms - ms) / static_cast<double>(running));
    }
    std::sort(delays.begin(), delays.end());
    long sum = 0;
    for (long d : delays) sum += d;
    std::printf("cpu %.2f%% of one core over %d s (%ld display polls); %zu stops, display to panel: mean %ld ms, "
                "median %ld ms, max %ld ms; at most %.2f poll cycles (short cycle %d ms, long %d ms)\n",
                cpu, seconds, polls, delays.size(), delays.empty() ? 0 : sum / static_cast<long>(delays.size()),
                delays.empty() ? 0 : delays[delays.size() / 2], delays.empty() ? 0 : delays.back(), worstCycles,
                3 * ControlLoop::kSendMs, 13 * ControlLoop::kSendMs);
    fs::remove_all(dir);
    return delays.empty() || cpu < 0 || polls == 0 ? 1 : 0;
}
