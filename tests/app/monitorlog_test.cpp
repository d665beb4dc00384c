// kestractl monitor --log against kestractl sim --traffic on a pseudo-terminal,
// through the real QSerialPort: a script of twenty transmissions on channels,
// with subtones, and on the talkgroups of a trunk bank (the owner switches the
// scanner to ID scan and back at the front panel) gives the hit log's lines
// in order. Three runs side by side, about 70 s of real time: two alike,
// whose files agree apart from the times (the first also records), and one
// that logs only what is new.

#include "core/text.h"
#include "sim/documentmapping.h"
#include "sim/scannermemory.h"
#include "sim/simprocess.h"
#include "support/testfiles.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <thread>

namespace kestra::test {
namespace {

// Bank 1: five conventional channels; bank 3: a Motorola system with one
// voice channel and list 1 of three talkgroups.
std::string memory()
{
    sim::ScannerMemory m(Model::BC785D);
    const struct { int channel; sim::Freq freq; const char* tag; } channels[] = {
        {3, 1550000, "COUNTY"}, {10, 1554750, "FIRE DISPATCH"}, {17, 1543000, "EMS"}, {24, 4625625, ""}, {31, 4630000, "WATER"}};
    for (const auto& c : channels) {
        sim::Channel& ch = m.channel(c.channel);
        ch.freq = c.freq;
        ch.lockout = false;
        ch.delay = 1;
        ch.tag = c.tag;
    }
    sim::Channel& voice = m.channel(201);
    voice.freq = 8511625;
    voice.lockout = false;
    voice.trunk = true;
    m.trunk[2].on = true;
    m.trunk[2].kind = sim::TrunkKind::Type2_800;
    m.trunk[2].delay = 1;
    m.ids[2][0].active = true;
    const char* ids[] = {"01008", "02016", "00400"};
    const char* tags[] = {"PD MAIN", "FD OPS", "PW"};
    for (int i = 0; i < 3; ++i) m.ids[2][0].idSlots[static_cast<std::size_t>(i + 1)] = {ids[i], tags[i], false, false};
    for (int b = 0; b < 10; ++b) m.scanBanks[static_cast<std::size_t>(b)] = b == 0;
    return sim::memFileText(m);
}

// Every transmission 2 s, one every 3.5 s; the owner's keys between. The
// transmission on 160.1 MHz is on no channel, ID 09999 in no list, and
// channel 3 is not scanned while the scanner follows the trunk bank: the
// scanner passes these three by.
constexpr const char* kScript =
    "# channels, tones and codes in scan mode\n"
    "1000,2000,ch=3\n"
    "4500,2000,ch=10\n"
    "8000,2000,ch=17,ctcss=123.0\n"
    "11500,2000,ch=3\n"
    "15000,2000,ch=24,dcs=023\n"
    "18500,2000,ch=10\n"
    "22000,2000,ch=31,ctcss=67.0\n"
    "25500,2000,ch=17,ctcss=123.0\n"
    "29000,2000,f=160.1000\n"
    "32500,2000,ch=3\n"
    "# HOLD, channel 201, E, TRUNK: ID scan of bank 3\n"
    "35000,0,keys=07;02 2;02 0;02 1;04;13\n"
    "37000,2000,id=01008\n"
    "40500,2000,id=02016\n"
    "44000,2000,id=01008\n"
    "47500,2000,id=00400\n"
    "51000,2000,id=09999\n"
    "51000,2000,ch=3\n"
    "54500,2000,id=02016\n"
    "# TRUNK again: back to the scan of bank 1\n"
    "57000,0,keys=13\n"
    "58500,2000,ch=31\n"
    "62000,2000,ch=24,dcs=023\n"
    "65500,2000,ch=10\n";

// The log's lines, each hit's time (cell 7) and date (cell 9) put as "T" and "D".
std::vector<std::string> logged(const std::string& file)
{
    std::vector<std::string> lines;
    const std::string text = readBytes(file);
    for (std::size_t at = 0; at < text.size();) {
        const auto end = text.find("\r\n", at);
        std::vector<std::string> cells{""};
        for (char c : text.substr(at, end - at)) {
            if (c == ',') cells.emplace_back();
            else cells.back() += c;
        }
        at = end == std::string::npos ? text.size() : end + 2;
        if (cells.size() == 10) {
            cells[7] = "T";
            cells[9] = "D";
        }
        std::string line = cells[0];
        for (std::size_t i = 1; i < cells.size(); ++i) line += "," + cells[i];
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> run(const TempDir& dir, bool onlyNew, bool record = false)
{
    // The tags come from the document the program last had open.
    writeBytes(dir.path() / "in.mem", memory());
    writeBytes(dir.path() / "lastused.sav", memory());
    writeBytes(dir.path() / "traffic.txt", kScript);
    if (onlyNew) writeBytes(dir.path() / "vfo.ini", "KESTRA-VFO ini data v1.01\r\n[options]\r\noption1=1\r\n");
    SimProcess sim({"--model", "BC785D", "--load", dir.file("in.mem"), "--traffic", dir.file("traffic.txt"), "--log",
                    dir.file("sim.log")},
                   dir.file("sim.err"));
    if (sim.device().empty()) return {};
    const std::string command = std::string(KESTRACTL_PATH) + " monitor --duration 70 --port " + sim.device() +
                                " --dir " + dir.path().string() + " --log " + dir.file("hits.csv") +
                                (record ? " --record " + dir.file("rec") : "") + " >" +
                                dir.file("monitor.out") + " 2>" + dir.file("monitor.err");
    EXPECT_EQ(std::system(command.c_str()), 0) << readBytes(dir.file("monitor.err"));
    sim.stop();
    return logged(dir.file("hits.csv"));
}

TEST(MonitorLog, TwentyTransmissionsGiveTheHitLogsLinesInOrder)
{
    TempDir dirA, dirB, dirNew;
    std::vector<std::string> a, b, fresh;
    std::thread second([&] { b = run(dirB, false); });
    std::thread third([&] { fresh = run(dirNew, true); });
    a = run(dirA, false, true);
    second.join();
    third.join();

    // Cells 0..6 of a hit; each ends in the time, the mode and the date.
    const auto hit = [](const std::string& cells) { return cells + ",T,  FM,D"; };
    const std::string header = "KESTRA,Halvorn, Lowland";
    const std::string c3 = hit("SCAN , 1 ,  003 ,  155.0000 , COUNTY ,  ,  ");
    const std::string c10 = hit("SCAN , 1 ,  010 ,  155.4750 , FIRE DISPATCH ,  ,  ");
    const std::string c17 = hit("SCAN , 1 ,  017 ,  154.3000 , EMS ,  ,  ");
    const std::string c24 = hit("SCAN , 1 ,  024 ,  462.5625 ,  ,  ,  ");
    const std::string c31 = hit("SCAN , 1 ,  031 ,  463.0000 , WATER ,  ,  ");
    const std::string tone17 = hit("SUB , 1 ,  017 ,  154.3000 ,   , 123.0 ,   ");
    const std::string tone31 = hit("SUB , 1 ,  031 ,  463.0000 ,   , 67.0 ,   ");
    const std::string code24 = hit("DCS , 1 ,  024 ,  462.5625 ,   ,   , 023 ");
    const std::string pd = hit("ID , 3 , 1-1 ,  851.1625 , 01008 ,  ,  ");
    const std::string fd = hit("ID , 3 , 1-2 ,  851.1625 , 02016 ,  ,  ");
    const std::string pw = hit("ID , 3 , 1-3 ,  851.1625 , 00400 ,  ,  ");
    // Every change of frequency logs; a tone logs again after the scan moved on.
    EXPECT_EQ(a, (std::vector<std::string>{header, c3, c10, c17, tone17, c3, c24, code24, c10, c31, tone31, c17, tone17,
                                           c3, pd, fd, pd, pw, fd, c31, c24, code24, c10}));
    EXPECT_EQ(a, b);
    // "Only Log new frequencies / trunk id's": each one once.
    EXPECT_EQ(fresh, (std::vector<std::string>{header, c3, c10, c17, tone17, c24, code24, c31, tone31, pd, fd, pw}));

    // The first run also recorded: a WAV file a transmission where the machine
    // can capture sound; where it cannot, the message and the log as above.
    const std::string err = readBytes(dirA.file("monitor.err"));
    if (err.find("No audio device, recording disabled") != std::string::npos) {
        EXPECT_FALSE(std::filesystem::exists(dirA.path() / "rec" / "~capture.wav"));
    } else {
        int wavs = 0;
        for (const auto& entry : std::filesystem::directory_iterator(dirA.path() / "rec"))
            wavs += entry.path().extension() == ".wav" && entry.path().filename() != "~capture.wav" ? 1 : 0;
        EXPECT_EQ(wavs, 17) << err;  // the seventeen transmissions the scanner stopped on
    }
}

} // namespace
} // namespace kestra::test
