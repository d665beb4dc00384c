// The hit log: display states driven by hand through Timer8's judgement, and
// the real poll loop against the virtual scanner writing its log file.

#include "vcontrol/hitlog.h"

#include "platform/fake/scripteddialogs.h"
#include "platform/fake/virtualscheduler.h"
#include "sim/traffic.h"
#include "sim/virtualport.h"
#include "sim/virtualscanner.h"
#include "support/testfiles.h"
#include "vcontrol/controlloop.h"

#include <gtest/gtest.h>

#include <sstream>

namespace kestra {
namespace {

std::vector<std::string> fileLines(const std::filesystem::path& path)
{
    std::vector<std::string> lines;
    const std::string bytes = test::readBytes(path);
    std::size_t start = 0;
    for (std::size_t end; (end = bytes.find("\r\n", start)) != std::string::npos; start = end + 2)
        lines.push_back(bytes.substr(start, end - start));
    EXPECT_EQ(start, bytes.size()) << "a line without CR LF";
    return lines;
}

struct HitRig {
    Document doc;
    std::vector<std::string> sent;
    std::vector<std::string> lines;
    DateTime now{2026, 1, 2, 10, 0, 0};
    HitLog log{doc, [this](const std::string& c) { sent.push_back(c); }, [this] { return now; }};
    DisplayState s;

    HitRig()
    {
        doc.model = ModelSwitches::of(Model::BC785D);
        log.onHit = [this](const std::string& line) { lines.push_back(line); };
    }
    // A scan stop with the squelch open.
    void stop(int opclass, const std::string& channel, const std::string& freq, const std::string& mode = " FM")
    {
        s.busyshown = true;
        s.trunkmode = 0;
        s.opclass = opclass;
        s.channeltext = channel;
        s.freqtext = freq;
        s.lcdline[1] = freq + " " + mode + "   ";
    }
};

TEST(HitLog, FrequencyHitsCarryTheChannelTagAndLogOncePerChangeOrOnceAtAllWhenOnlyNew)
{
    const auto run = [](bool onlyNew) {
        HitRig rig;
        rig.doc.cell(0, 17, col::tag) = "Tower, North    ";
        rig.log.options.onlyNew = onlyNew;
        rig.log.options.lockoutSearch = rig.log.options.resumeSearch = true;
        rig.s.curbank = 1;
        rig.stop(1, " 017", " 155.4750");
        rig.log.tick(rig.s);
        rig.log.tick(rig.s);  // still resting on it
        rig.s.busyshown = false;
        rig.log.tick(rig.s);
        rig.stop(1, " 140", " 462.5625", "NFM");
        rig.log.tick(rig.s);
        rig.stop(1, " 017", " 155.4750");
        rig.now.second = 9;
        rig.log.tick(rig.s);
        EXPECT_TRUE(rig.sent.empty()) << "a scan hit never locks out";
        return rig.lines;
    };
    const std::vector<std::string> every = run(false);
    ASSERT_EQ(every.size(), 3u);
    EXPECT_EQ(every[0], "SCAN , 1 ,  017 ,  155.4750 , Tower  North ,  ,  , 10:00:00 ,  FM,2026-01-02");
    EXPECT_EQ(every[1], "SCAN , 2 ,  140 ,  462.5625 ,  ,  ,  , 10:00:00 , NFM,2026-01-02");
    EXPECT_EQ(every[2], "SCAN , 1 ,  017 ,  155.4750 , Tower  North ,  ,  , 10:00:09 ,  FM,2026-01-02");
    EXPECT_EQ(run(true), std::vector<std::string>(every.begin(), every.begin() + 2));

    // In search: the bank is the display's, the channel empty, lockout then
    // resume; a searching tone fills the Ctcss cell. Clear History forgets
    // seenlist, so the frequency logs again.
    HitRig rig;
    rig.log.options.onlyNew = true;
    rig.log.options.lockoutSearch = rig.log.options.resumeSearch = true;
    rig.s.curbank = 4;
    rig.stop(3, "5.0k", " 121.5000", " AM");
    rig.s.subtonestate = 3;
    rig.s.subtonetext = " 88.5";
    rig.log.tick(rig.s);
    EXPECT_EQ(rig.lines.back(), "SRC , 4 ,  ,  121.5000 ,  , 88.5 ,  , 10:00:00 ,  AM,2026-01-02");
    EXPECT_EQ(rig.sent, (std::vector<std::string>{"KEY06", "KEY00"}));
    EXPECT_EQ(rig.log.seenlist(4), "* 121.5000");
    const HitLog::Row row = rig.log.histline()[1];
    EXPECT_EQ(row[0], "SRC ");
    EXPECT_EQ(row[3], "  121.5000 ");
    EXPECT_EQ(row[9], "2026-01-02");
    rig.stop(3, "5.0k", " 121.6000", " AM");
    rig.log.tick(rig.s);
    rig.stop(3, "5.0k", " 121.5000", " AM");
    rig.log.tick(rig.s);
    EXPECT_EQ(rig.lines.size(), 2u);
    rig.log.clear();
    EXPECT_TRUE(rig.log.histline()[1][0].empty());
    rig.log.tick(rig.s);
    EXPECT_EQ(rig.lines.size(), 3u);
}

TEST(HitLog, TrunkIdsTakeTheirTagPaddingAndLocationAndLogAgainAfterAMove)
{
    HitRig rig;
    rig.doc.trunkset[2].trunktype = "3";
    rig.doc.trunkids[2][15] = {"001234", "Fire One", "0", "0", ""};
    rig.doc.trunkids[2][40] = {"001234", "Fire Two", "0", "0", ""};
    rig.doc.trunkids[2][41] = {"004321", "Police", "0", "0", ""};
    rig.doc.trunkids[2][42] = {"701234", "Icall", "0", "0", ""};  // holds "1234" but is another ID
    rig.log.options.lockoutIdSearch = true;
    DisplayState& s = rig.s;
    s.freqtext = " 851.0125";
    s.lcdline[1] = " 851.0125  FM   ";
    s.busyshown = true;
    s.trunkmode = 1;
    s.idvalid = 1;
    s.trunkbank = 3;
    s.curbank = 3;
    s.modenumber = "10";
    s.trunkid = "  1234";
    s.idlocation = "A07";
    rig.log.tick(s);
    EXPECT_EQ(s.idtag, "Fire Two") << "the last matching row wins";
    EXPECT_EQ(s.trunkid, "01234");
    rig.log.tick(s);
    // The same ID in P25 is a hit of its own; in a scan mode the location shows.
    s.lcdline[1] = " 851.0125 P25   ";
    s.modenumber = "12";
    rig.log.tick(s);
    rig.log.moved();
    rig.log.tick(s);
    ASSERT_EQ(rig.lines.size(), 3u);
    EXPECT_EQ(rig.lines[0], "ID , 3 ,  ,  851.0125 , 01234 ,  ,  , 10:00:00 ,  FM,2026-01-02");
    EXPECT_EQ(rig.lines[1], "P25 , 3 , A07 ,  851.0125 , 01234 ,  ,  , 10:00:00 , P25,2026-01-02");
    EXPECT_EQ(rig.lines[2], rig.lines[1]);
    EXPECT_EQ(rig.sent, std::vector<std::string>(3, "KEY06"));

    // Only new: an ID once per trunk bank; the x96 models mark a new ID.
    rig.log.options.onlyNew = true;
    rig.doc.model = ModelSwitches::of(Model::BC796D);
    s.lcdline[1] = " 851.0125  FM   ";
    s.lcdline[2] = "NEW             ";
    s.trunkid = "4321";
    rig.log.tick(s);
    EXPECT_EQ(rig.lines.back().substr(0, 20), "ID-NEW , 3 , A07 ,  ");
    EXPECT_EQ(s.idtag, "Fire Two") << "no tag lookup on the x96 models";
    rig.log.moved();
    rig.log.tick(s);
    EXPECT_EQ(rig.lines.size(), 4u);
}

TEST(HitLog, TonesLogOncePerMovementAndOnlyNewKeepsEachToneOfAFrequencyOnce)
{
    HitRig rig;
    rig.log.options.onlyNew = true;
    rig.stop(1, " 017", " 155.4750", "NFM");
    rig.log.tick(rig.s);  // the frequency
    rig.s.subtonestate = 1;
    rig.s.subtonetext = "100.0";
    rig.log.tick(rig.s);
    rig.log.tick(rig.s);
    ASSERT_EQ(rig.lines.size(), 2u);
    EXPECT_EQ(rig.lines[1], "SUB , 1 ,  017 ,  155.4750 ,   , 100.0 ,   , 10:00:00, NFM,2026-01-02");
    EXPECT_EQ(rig.log.loggedTones(), "*100.0");
    EXPECT_EQ(rig.log.seenlist(1), "* 155.4750\xA3" "100.0 155.4750");
    rig.log.moved();
    rig.log.tick(rig.s);  // seen before in this bank
    EXPECT_EQ(rig.lines.size(), 2u);

    rig.log.options.onlyNew = false;
    rig.s.subtonestate = 2;
    rig.s.subtonetext = "023";
    rig.s.lcdline[1] = " 155.4750 ENC";
    rig.log.tick(rig.s);
    EXPECT_EQ(rig.lines.back(), "DCS , 1 ,  017 ,  155.4750 ,   ,   , 023 , 10:00:00, ,2026-01-02");
    rig.s.trunkmode = 1;  // not on a trunk display
    rig.log.moved();
    rig.log.tick(rig.s);
    EXPECT_EQ(rig.lines.size(), 3u);
}

TEST(HitLog, TheHistoryKeepsTheNewestHundredAndTheFileEveryLineWhileTicked)
{
    test::TempDir dir;
    HitRig rig;
    rig.log.logname = (dir.path() / "hits.csv").string();
    ASSERT_TRUE(rig.log.setLogging(true));
    for (int i = 1; i <= 150; ++i) rig.log.addhit("X" + std::to_string(i) + " , a , b , c , d , e , f , g , h,i");
    EXPECT_EQ(rig.log.histline()[0][1], "Bank");
    EXPECT_EQ(rig.log.histline()[1][0], "X150 ");
    EXPECT_EQ(rig.log.histline()[1][9], "i");
    EXPECT_EQ(rig.log.histline()[100][0], "X51 ");
    std::vector<std::string> lines = fileLines(dir.path() / "hits.csv");
    ASSERT_EQ(lines.size(), 151u);
    EXPECT_EQ(lines[0], HitLog::kLiveHeader);
    EXPECT_EQ(lines[150].substr(0, 5), "X150 ");

    ASSERT_EQ(rig.log.saveHistory(dir.path() / "saved.csv"), "");
    lines = fileLines(dir.path() / "saved.csv");
    ASSERT_EQ(lines.size(), 101u);
    EXPECT_EQ(lines[0], HitLog::kSavedHeader);
    EXPECT_EQ(lines[1], "X150 , a , b , c , d , e , f , g , h,i");

    // Unticked: no file; ticked again: a new file with only the header.
    rig.log.setLogging(false);
    rig.log.addhit("lost");
    EXPECT_EQ(fileLines(dir.path() / "hits.csv").size(), 151u);
    rig.log.setLogging(true);
    rig.log.addhit("kept");
    EXPECT_EQ(fileLines(dir.path() / "hits.csv"), (std::vector<std::string>{HitLog::kLiveHeader, "kept"}));
}

TEST(HitLog, EachHitKeepsItsTimeOnTheAirItsRecordingAndItsCountForTheSession)
{
    HitRig rig;
    std::int64_t ms = 0;
    rig.log.nowMs = [&ms] { return ms; };
    ActivityLog& activity = rig.log.activity;
    const auto at = [&](std::int64_t when) {
        ms = when;
        rig.log.tick(rig.s);
    };
    rig.s.curbank = 1;
    rig.stop(1, " 017", " 155.4750");
    rig.s.subtonestate = 1;
    rig.s.subtonetext = "123.0";
    activity.recordingStarted(0);
    at(500);  // a frequency and its tone, both on the air
    at(3000);
    rig.s.busyshown = false;
    at(3500);
    activity.recordingSaved("/rec/one.wav");
    ASSERT_EQ(activity.rows().size(), 2u);
    EXPECT_EQ(activity.rows()[0].durationMs, 3000);
    EXPECT_EQ(activity.rows()[0].recording, "/rec/one.wav");
    EXPECT_EQ(activity.rows()[1].recording, "/rec/one.wav");

    // A trunk call ends when another ID takes the frequency; nothing records it.
    rig.s = DisplayState{};
    rig.s.freqtext = " 851.0125";
    rig.s.busyshown = true;
    rig.s.trunkmode = rig.s.idvalid = 1;
    rig.s.trunkbank = 3;
    rig.s.trunkid = "1234";
    at(10000);
    rig.s.trunkid = "4321";
    at(12500);
    EXPECT_EQ(activity.rows()[1].durationMs, 2500);
    EXPECT_EQ(activity.rows()[0].durationMs, -1) << "still on the air";
    EXPECT_TRUE(activity.rows()[1].recording.empty());

    // Another frequency, then the first again: two hits, their times added;
    // Clear History forgets the rows, not the session.
    rig.s = DisplayState{};
    rig.stop(1, " 140", " 462.5625");
    at(15000);
    rig.stop(1, " 017", " 155.4750");
    at(20000);
    rig.s.busyshown = false;
    at(21500);
    rig.log.clear();
    EXPECT_TRUE(activity.rows().empty());
    const std::vector<ActivityLog::Entry> entries = activity.entries();
    ASSERT_EQ(entries.size(), 5u);
    EXPECT_EQ(entries[0].kind, "Frequency");
    EXPECT_EQ(entries[0].tag, "");
    EXPECT_EQ(entries[0].hits, 2);
    EXPECT_EQ(entries[0].totalMs, 4500);
    EXPECT_EQ(entries[0].lastMs, 20000);
    EXPECT_EQ((std::vector<std::string>{entries[1].kind, entries[1].subject, entries[1].where}),
              (std::vector<std::string>{"CTCSS", "123.0", "155.4750"}));
    EXPECT_EQ(entries[2].subject, "01234");
    EXPECT_EQ(entries[2].where, "Bank 3");
    EXPECT_EQ(entries[3].totalMs, 2500);
    EXPECT_EQ(entries[4].totalMs, 5000);
    EXPECT_EQ(ActivityLog::durationText(2450), "2.5 s");
    EXPECT_EQ(ActivityLog::durationText(184'000), "3 min 04 s");
}

TEST(HitLog, OnThePollLoopItLogsEachStopOfTheScanningScannerInOrder)
{
    VirtualScheduler scheduler;
    ScriptedDialogs dialogs;
    test::TempDir dir;
    sim::VirtualScanner scanner{Model::BC785D};
    auto device = std::make_shared<VirtualDevice>();
    std::string heard;
    device->baud = [&] { return scanner.baudRate(); };
    device->respond = [&](std::string_view bytes) {
        std::string out;
        scanner.advanceTo(scheduler.now());
        for (char c : bytes) {
            heard += c;
            if (c != '\r') continue;
            out += scanner.receive(heard);
            heard.clear();
        }
        return out;
    };
    for (const char* c : {"PM005 01550000", "PM017 01554750", "PM040 04625625", "KEY01"}) scanner.command(c);
    std::string error;
    scanner.setTraffic(sim::Traffic::scripted(
        *sim::parseTrafficScript("5000,9000,ch=17\n25000,9000,ch=40\n45000,9000,ch=5\n65000,9000,ch=17\n", error)));
    ControlLoop loop(scheduler, dialogs, std::make_unique<VirtualPort>(scheduler, device), LinkSettings{});

    Document doc;
    doc.model = ModelSwitches::of(Model::BC785D);
    doc.cell(0, 40, col::tag) = "Site 40";
    const auto clock = [&] {
        const int s = static_cast<int>(scheduler.now() / 1000);
        return DateTime{2026, 3, 4, 12, s / 60, s % 60};
    };
    HitLog log(doc, [&](const std::string& c) { loop.send(c); }, clock);
    log.logname = (dir.path() / "log.csv").string();
    log.setLogging(true);
    log.attach(scheduler, loop);
    ModelSwitches model = ModelSwitches::of(Model::BC785D);
    loop.open(dir.path(), model);
    scheduler.advance(85'000);
    log.setLogging(false);

    const std::vector<std::string> lines = fileLines(dir.path() / "log.csv");
    ASSERT_EQ(lines.size(), 5u) << ::testing::PrintToString(lines);
    EXPECT_EQ(lines[0], HitLog::kLiveHeader);
    const struct { const char* head; int from; } calls[] = {
        {"SCAN , 1 ,  017 ,  155.4750 ,  ,  ,  , ", 5},
        {"SCAN , 1 ,  040 ,  462.5625 , Site 40 ,  ,  , ", 25},
        {"SCAN , 1 ,  005 ,  155.0000 ,  ,  ,  , ", 45},
        {"SCAN , 1 ,  017 ,  155.4750 ,  ,  ,  , ", 65},
    };
    for (int i = 0; i < 4; ++i) {
        const std::string& line = lines[i + 1];
        const std::string head = calls[i].head;
        ASSERT_EQ(line.substr(0, head.size()), head);
        // Logged while the call was on the air, within the 500 ms tick and a poll cycle.
        const int minute = std::stoi(line.substr(head.size() + 3, 2));
        const int second = std::stoi(line.substr(head.size() + 6, 2));
        const int at = minute * 60 + second;
        EXPECT_GE(at, calls[i].from) << line;
        EXPECT_LE(at, calls[i].from + 5) << line;
        EXPECT_EQ(line.substr(line.size() - 11), ",2026-03-04") << line;
    }
    loop.close();
}

} // namespace
} // namespace kestra
