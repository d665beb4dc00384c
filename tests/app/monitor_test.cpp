// kestractl monitor through the real QSerialPort against kestractl sim with
// random activity on a pseudo-terminal: what the monitor prints agrees with
// what the scanner's own log says it showed, and a seed gives the same lines
// twice. Two scanners and two monitors run side by side, 30 s of real time.

#include "sim/documentmapping.h"
#include "sim/scannermemory.h"
#include "sim/simprocess.h"
#include "support/testfiles.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <thread>

namespace kestra::test {
namespace {

std::string busyChannelsMem()
{
    sim::ScannerMemory memory(Model::BC785D);
    const sim::Freq freqs[] = {1550000, 1554750, 1543000, 4625625, 4630000, 1563000};
    const char* tags[] = {"COUNTY", "FIRE DISPATCH", "EMS", "", "WATER", "ROADS"};
    for (int i = 0; i < 6; ++i) {
        sim::Channel& ch = memory.channel(i * 7 + 3);
        ch.freq = freqs[i];
        ch.lockout = false;
        ch.delay = 2;
        ch.tag = tags[i];
    }
    return sim::memFileText(memory);
}

struct Stop {
    std::string channel;  // three digits
    std::string freq;     // MHz as the display shows it
    bool operator==(const Stop&) const = default;
};

// The places the scanner stopped on, from its log: line 1 of a stopped scan
// is "SCAN +   C 017", line 2 the frequency.
std::vector<std::pair<long, Stop>> stopsInLog(const std::string& log)
{
    std::vector<std::pair<long, Stop>> stops;
    std::istringstream in(log);
    for (std::string line; std::getline(in, line);) {
        const auto at = line.find(" SHOW ");
        if (at == std::string::npos || line.compare(at + 6, 6, "SCAN +") != 0) continue;
        const std::string l1 = line.substr(at + 6, 16);
        std::string freq = line.substr(at + 6 + 17, 9);
        freq.erase(0, freq.find_first_not_of(' '));
        const Stop stop{l1.substr(11, 3), freq};
        if (stops.empty() || !(stops.back().second == stop)) stops.emplace_back(std::stol(line), stop);
    }
    return stops;
}

// A monitor line without its time, signal and squelch: what stays the same
// however the polls fall ("00 1/017 155.4750 "FIRE DISPATCH" -").
std::string steady(const std::string& line)
{
    std::string s = line.substr(line.find(' ') + 1);
    const auto squelch = s.rfind(' ');
    return s.substr(0, s.rfind(' ', squelch - 1));
}

struct Watched {
    std::string monitor;
    std::string log;
};

Watched watch(const TempDir& dir, const std::string& name)
{
    writeBytes(dir.path() / "in.mem", busyChannelsMem());
    Watched run;
    const std::string log = dir.file(name + ".log");
    SimProcess sim({"--model", "BC785D", "--load", dir.file("in.mem"), "--activity", "seed=3,busy=0.3", "--log", log},
                   dir.file(name + ".err"));
    if (sim.device().empty()) return run;
    const std::string command = std::string(KESTRACTL_PATH) + " monitor --duration 30 --port " + sim.device() +
                                " --dir " + dir.path().string() + " 2>" + dir.file(name + ".monitor.err");
    if (FILE* out = ::popen(command.c_str(), "r")) {
        char buffer[512];
        while (std::fgets(buffer, sizeof buffer, out)) run.monitor += buffer;
        ::pclose(out);
    }
    sim.stop();
    run.log = readBytes(log);
    return run;
}

TEST(Monitor, PrintsWhatTheScannerShowedAndTheSameSeedGivesTheSameLines)
{
    TempDir dirA, dirB;
    Watched a, b;
    std::thread other([&] { b = watch(dirB, "b"); });
    a = watch(dirA, "a");
    other.join();

    for (const Watched* run : {&a, &b}) {
        ASSERT_FALSE(run->monitor.empty());
        const auto logged = stopsInLog(run->log);
        ASSERT_GE(logged.size(), 3u) << run->log.substr(0, 2000);
        // Every stop the monitor printed is one the scanner showed, in the
        // scanner's order; every stop the scanner made well inside the 30 s
        // (at least 3 s with its delay) is among them.
        std::vector<Stop> printed;
        std::istringstream in(run->monitor);
        for (std::string line; std::getline(in, line);) {
            std::istringstream fields(line);
            std::string ms, mode, place, freq;
            fields >> ms >> mode >> place >> freq;
            if (place == "-/-" || freq == "-") continue;
            const Stop stop{place.substr(place.find('/') + 1), freq};
            if (printed.empty() || !(printed.back() == stop)) printed.push_back(stop);
        }
        std::size_t next = 0;
        for (const Stop& stop : printed) {
            while (next < logged.size() && !(logged[next].second == stop)) ++next;
            ASSERT_LT(next, logged.size()) << "printed a stop the scanner did not make: " << stop.channel;
            ++next;
        }
        std::size_t at = 0;
        for (const auto& [ms, stop] : logged) {
            if (ms < 1500 || ms > 26000) continue;
            while (at < printed.size() && !(printed[at] == stop)) ++at;
            EXPECT_LT(at, printed.size()) << "missed the stop at " << ms << " ms on channel " << stop.channel;
        }
        EXPECT_NE(run->monitor.find(" SQ+"), std::string::npos);
    }

    // The same seed: the scanners showed the same, and the monitors printed
    // the same lines up to the last stop both saw whole.
    const auto early = [](const std::string& log) {
        auto stops = stopsInLog(log);
        std::erase_if(stops, [](const auto& s) { return s.first > 28000; });
        return stops;
    };
    EXPECT_EQ(early(a.log), early(b.log));
    const auto lines = [](const std::string& monitor) {
        std::vector<std::string> out;
        std::istringstream in(monitor);
        for (std::string line; std::getline(in, line);)
            if (const std::string s = steady(line); out.empty() || out.back() != s) out.push_back(s);
        return out;
    };
    auto la = lines(a.monitor), lb = lines(b.monitor);
    // Cut both after the same number of stops, less the last, which the end
    // of the 30 s may cut short in one run and not in the other.
    const auto stopsIn = [](const std::vector<std::string>& l) {
        return std::count_if(l.begin(), l.end(), [](const std::string& s) { return s.find(" -/- ") == std::string::npos; });
    };
    const long keep = std::min(stopsIn(la), stopsIn(lb)) - 1;
    ASSERT_GE(keep, 2);
    const auto cut = [keep](std::vector<std::string> l) {
        long seen = 0;
        for (std::size_t i = 0; i < l.size(); ++i)
            if (l[i].find(" -/- ") == std::string::npos && ++seen == keep) {
                l.resize(i + 1);
                break;
            }
        return l;
    };
    EXPECT_EQ(cut(la), cut(lb)) << a.monitor << "\n----\n" << b.monitor;
}

} // namespace
} // namespace kestra::test
