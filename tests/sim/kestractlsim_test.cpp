// kestractl sim, run as the program it is, talked to by a plain terminal client.

#include "sim/documentmapping.h"
#include "sim/simprocess.h"
#include "support/testfiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

using namespace kestra;
using namespace kestra::sim;
using kestra::test::readBytes;
using kestra::test::SimProcess;
using kestra::test::TempDir;
using kestra::test::TerminalClient;
using kestra::test::writeBytes;

namespace {

// A MEM file of a BC250D with two channels programmed.
std::string twoChannelMem()
{
    ScannerMemory memory(Model::BC250D);
    Channel& tower = memory.channel(1);
    tower.freq = 1306250;
    tower.mode = Modulation::AM;
    tower.lockout = false;
    tower.tag = "PFO Tower Main";
    Channel& fire = memory.channel(12);
    fire.freq = 1543000;
    fire.tone = 12;
    fire.lockout = false;
    return memFileText(memory);
}

int exitOf(const std::vector<std::string>& words, const std::string& errFile)
{
    SimProcess sim(words, errFile);
    return sim.waitForExit();
}

} // namespace

TEST(KestractlSim, RefusesWhatItCannotRunWith)
{
    TempDir dir;
    const std::string err = dir.file("err.txt");
    EXPECT_EQ(exitOf({}, err), 2);
    EXPECT_NE(readBytes(err).find("sim needs --model"), std::string::npos);
    EXPECT_EQ(exitOf({"--model", "BC999"}, err), 2);
    EXPECT_EQ(exitOf({"--model", "BC250D", "--faults", "drop=3"}, err), 2);
    EXPECT_EQ(exitOf({"--model", "BC250D", "--latency", "soon"}, err), 2);
    // The BC250D runs at 4800, 9600 and 19200 only.
    EXPECT_EQ(exitOf({"--model", "BC250D", "--baud", "57600"}, err), 2);
    EXPECT_NE(readBytes(err).find("4800 9600 19200"), std::string::npos);

    // A file that is no MEM file is told, with the program's message.
    writeBytes(dir.path() / "notes.mem", "shopping list\r\n");
    EXPECT_EQ(exitOf({"--model", "BC250D", "--load", dir.file("notes.mem")}, err), 1);
    EXPECT_NE(readBytes(err).find("File is not compatible with this version."), std::string::npos);
    EXPECT_EQ(exitOf({"--model", "BC250D", "--load", dir.file("missing.mem")}, err), 1);

    // A traffic script with a bad line is told by its line number.
    writeBytes(dir.path() / "traffic.txt", "100,500,ch=1\r\n100,500,channel 12\r\n");
    EXPECT_EQ(exitOf({"--model", "BC250D", "--traffic", dir.file("traffic.txt")}, err), 2);
    EXPECT_NE(readBytes(err).find("line 2: "), std::string::npos) << readBytes(err);
    EXPECT_EQ(exitOf({"--model", "BC250D", "--activity", "seed=1,busy=2"}, err), 2);

    // A link never replaces a file of the user's.
    writeBytes(dir.path() / "scanner", "keep me");
    EXPECT_EQ(exitOf({"--model", "BC250D", "--link", dir.file("scanner")}, err), 1);
    EXPECT_EQ(readBytes(dir.path() / "scanner"), "keep me");
}

TEST(KestractlSim, ServesLoadedMemoryOnItsLinkAndDumpsItOnInterrupt)
{
    TempDir dir;
    writeBytes(dir.path() / "in.mem", twoChannelMem());
    const std::string link = dir.file("scanner");
    std::filesystem::create_symlink("/dev/null", link);  // an old link is replaced
    SimProcess sim({"--model", "BC250D", "--load", dir.file("in.mem"), "--dump", dir.file("out.mem"), "--link", link,
                    "--log", dir.file("sim.log")},
                   dir.file("err.txt"));
    ASSERT_FALSE(sim.device().empty()) << readBytes(dir.path() / "err.txt");
    EXPECT_EQ(std::filesystem::read_symlink(link), sim.device());
    {
        TerminalClient client(link, B19200);
        ASSERT_TRUE(client.isOpen());
        EXPECT_EQ(client.ask("MA001"), "C001 F01306250 TF DF LF AF RF N000\r");
        EXPECT_EQ(client.ask("TA C 001"), "TA C 001 PFO Tower Main\r");
        EXPECT_EQ(client.ask("MA012"), "C012 F01543000 TF DF LF AF RF N012\r");
        EXPECT_EQ(client.ask("PM300 04625625"), "OK\r");
    }
    EXPECT_EQ(sim.stop(SIGINT), 0);
    EXPECT_FALSE(std::filesystem::is_symlink(link));

    ScannerMemory back(Model::BC250D);
    ASSERT_EQ(loadMemFile(back, readBytes(dir.path() / "out.mem")).status, MemLoadStatus::Loaded);
    EXPECT_EQ(back.channel(1).freq, 1306250u);
    EXPECT_EQ(back.channel(1).tag, "PFO Tower Main");
    EXPECT_EQ(back.channel(300).freq, 4625625u);

    // One line per command and per reply, in time order, among the lines of
    // what the scanner showed.
    std::istringstream log(readBytes(dir.path() / "sim.log"));
    std::vector<std::string> lines;
    long previous = 0;
    for (std::string line; std::getline(log, line);) {
        const long ms = std::stol(line);
        EXPECT_GE(ms, previous) << line;
        previous = ms;
        if (line.find(" SHOW ") == std::string::npos) lines.push_back(line);
    }
    ASSERT_EQ(lines.size(), 9u);
    EXPECT_NE(lines[0].find("BC250D on " + sim.device() + " at 19200 baud"), std::string::npos);
    EXPECT_NE(lines[1].find(" < MA001"), std::string::npos);
    EXPECT_NE(lines[2].find(" > C001 F01306250"), std::string::npos);
    EXPECT_NE(lines[8].find(" > OK"), std::string::npos);
}

TEST(KestractlSim, TheScannersSpeedAndLatencyAreThoseAskedFor)
{
    TempDir dir;
    SimProcess sim({"--model", "BC296D", "--baud", "38400", "--latency", "300"});
    ASSERT_FALSE(sim.device().empty());
    {
        TerminalClient client(sim.device(), B19200);
        ASSERT_TRUE(client.send("SI\r\n"));
        EXPECT_EQ(client.readFor(800).find("BC296D"), std::string::npos);
    }
    TerminalClient client(sim.device(), B38400);
    // The noise of the wrong speed waits in the scanner's line: a line end
    // alone answers it.
    EXPECT_EQ(client.ask(""), "ERR\r");
    ASSERT_TRUE(client.send("SI\r\n"));
    EXPECT_EQ(client.readFor(200), "");  // not before its latency
    EXPECT_EQ(client.readLine(3000), "SI BC296D,0000000000,106\r");
    EXPECT_EQ(sim.stop(SIGTERM), 0);
}

TEST(KestractlSim, LineFaultsRepeatWithTheirSeed)
{
    const auto session = [](const std::string& faults) {
        std::vector<std::string> words{"--model", "BC785D"};
        if (!faults.empty()) words.insert(words.end(), {"--faults", faults});
        SimProcess sim(words);
        EXPECT_FALSE(sim.device().empty());
        TerminalClient client(sim.device(), B19200);
        // What arrives, in order, does not depend on how fast the machine is:
        // the faults are drawn reply by reply.
        std::string heard;
        for (int i = 1; i <= 8; ++i) {
            EXPECT_TRUE(client.send("MA00" + std::to_string(i) + "\r\n"));
            heard += client.readFor(150);
        }
        heard += client.readFor(500);
        EXPECT_EQ(sim.stop(), 0);
        return heard;
    };
    const std::string knobs = "drop=0.2,split=0.5,garble=0.1,stray=0.3,delay=60,seed=7";
    const std::string first = session(knobs);
    EXPECT_EQ(session(knobs), first);
    const std::string clean = session("");
    EXPECT_NE(first, clean);
    EXPECT_NE(clean.find("C008 F00000000"), std::string::npos);
}

TEST(KestractlSim, ItsLogShowsWhatTheScannerShowedAsTheScriptedCallCameAndWent)
{
    TempDir dir;
    writeBytes(dir.path() / "in.mem", twoChannelMem());
    writeBytes(dir.path() / "traffic.txt", "# the fire channel\r\n300,1200,ch=12\r\n");
    SimProcess sim({"--model", "BC250D", "--load", dir.file("in.mem"), "--traffic", dir.file("traffic.txt"), "--log",
                    dir.file("sim.log")},
                   dir.file("err.txt"));
    ASSERT_FALSE(sim.device().empty()) << readBytes(dir.path() / "err.txt");
    ::usleep(2'200'000);  // nobody asks: the log is written as time passes
    EXPECT_EQ(sim.stop(), 0);

    std::istringstream log(readBytes(dir.path() / "sim.log"));
    std::vector<std::pair<long, std::string>> shown;
    for (std::string line; std::getline(log, line);) {
        const auto at = line.find(" SHOW ");
        if (at != std::string::npos) shown.emplace_back(std::stol(line), line.substr(at + 6));
    }
    ASSERT_FALSE(shown.empty());
    // Scanning channels 1 and 12 from the start, the scan stops on 12 within
    // two of its ticks of the call and leaves when it ends (no delay).
    EXPECT_EQ(shown.front().first, 0);
    EXPECT_EQ(shown.front().second.substr(0, 34), "     +   C 001  |  SCAN          |");
    const std::string stopped = "SCAN +   C 012  | 154.3000  FM   |                |                 SQ+ SG";
    const auto stop = std::find_if(shown.begin(), shown.end(), [&](const auto& s) { return s.second.rfind(stopped, 0) == 0; });
    ASSERT_NE(stop, shown.end()) << readBytes(dir.path() / "sim.log");
    EXPECT_GE(stop->first, 300);
    EXPECT_LE(stop->first, 350);
    EXPECT_GT(std::stoi(stop->second.substr(stopped.size())), 0);
    ASSERT_NE(stop + 1, shown.end());
    EXPECT_EQ(stop[1].first, 1500);
    EXPECT_EQ(stop[1].second.substr(0, 2), "  ");  // scanning again, squelch closed
    EXPECT_NE(stop[1].second.find("SQ- SG0"), std::string::npos);
    EXPECT_EQ(std::count_if(shown.begin(), shown.end(), [](const auto& s) { return s.second.find("SQ+") != std::string::npos; }), 1);
}
