// An independent client of the command language, Hamlib's rigctl with its
// BC250D model, reads the virtual scanner on the terminal of `kestractl sim`.
// Runs where rigctl is installed (Debian's libhamlib-utils).

#include "sim/documentmapping.h"
#include "sim/simprocess.h"
#include "support/testfiles.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <sstream>

using namespace kestra;
using namespace kestra::sim;
using kestra::test::SimProcess;
using kestra::test::TempDir;

namespace {

// The lines a shell command prints on stdout.
std::vector<std::string> outputLines(const std::string& command)
{
    std::vector<std::string> lines;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (!pipe) return lines;
    std::string all;
    std::array<char, 4096> buffer{};
    std::size_t n;
    while ((n = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0) all.append(buffer.data(), n);
    ::pclose(pipe);
    std::istringstream in(all);
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();  // a raw reply keeps the scanner's CR
        lines.push_back(line);
    }
    return lines;
}

bool rigctlInstalled() { return std::system("command -v rigctl >/dev/null 2>&1") == 0; }

// rigctl's number for the BC250D, from its own model list.
std::string bc250dModelNumber()
{
    const auto lines = outputLines("rigctl -l 2>/dev/null | awk '$2 == \"Uniden\" && $3 == \"BC250D\" {print $1}'");
    return lines.empty() ? "" : lines.front();
}

} // namespace

TEST(RigctlCrossCheck, ReadsWhatTheMemFilePutIntoTheScanner)
{
    if (!rigctlInstalled()) GTEST_SKIP() << "rigctl is not installed (Debian package libhamlib-utils)";
    const std::string model = bc250dModelNumber();
    ASSERT_FALSE(model.empty()) << "rigctl -l lists no Uniden BC250D";

    TempDir dir;
    ScannerMemory memory(Model::BC250D);
    // The scanner starts on channel 1 and, channel 57 being locked out, its
    // scan has nowhere else to go.
    Channel& tower = memory.channel(1);
    tower.freq = 1306250;
    tower.mode = Modulation::AM;
    tower.atten = true;
    tower.lockout = false;
    tower.tag = "PFO Tower Main";
    Channel& fire = memory.channel(57);
    fire.freq = 1543000;
    fire.mode = Modulation::FM;
    fire.lockout = true;
    fire.tag = "County Fire";
    test::writeBytes(dir.path() / "in.mem", memFileText(memory));

    SimProcess sim({"--model", "BC250D", "--load", dir.file("in.mem"), "--log", dir.file("sim.log")});
    ASSERT_FALSE(sim.device().empty());

    // One rigctl run, one answer (or block) per command: frequency, mode and
    // passband, raw signal strength, attenuator, scanner information, the
    // memory channel it is on, channel 57 read without selecting it, and the
    // squelch by its raw command (rigctl's get_dcd takes no "SQ" reply at all).
    const std::string rigctl = "timeout 60 rigctl -m " + model + " -r " + sim.device() +
                               " -s 19200 f m l RAWSTR l ATT _ e h 57 1 W SQ 2 2>/dev/null";
    const auto lines = outputLines(rigctl);
    const std::string all = [&] {
        std::string text;
        for (const auto& l : lines) text += l + "\n";
        return text + "-- scanner log:\n" + test::readBytes(dir.path() / "sim.log");
    }();
    ASSERT_EQ(lines.size(), 16u) << all;
    EXPECT_EQ(lines[0], "130625000") << all;  // Hz
    EXPECT_EQ(lines[1], "AM") << all;
    EXPECT_EQ(lines[3], "0") << all;          // a resting scanner hears nothing
    EXPECT_EQ(lines[4], "20") << all;         // the attenuator of channel 1, in dB
    EXPECT_EQ(lines[5], "BC250D,0000000000,104") << all;
    EXPECT_EQ(lines[6], "1") << all;
    EXPECT_EQ(lines[7], "Channel: 57, Name: 'County Fire'") << all;
    EXPECT_NE(lines[9].find("Freq:   154.3000000 MHz"), std::string::npos) << all;
    EXPECT_EQ(lines[15], "-") << all;         // squelch closed

    EXPECT_EQ(sim.stop(SIGTERM), 0);
}
