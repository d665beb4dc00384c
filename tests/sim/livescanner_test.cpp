// The virtual scanner as time passes, in virtual time: the scan and the
// search stop on what is on the air and move on after the delay, the trunk ID
// modes show their calls where the panel reads them, the knob and direct
// tuning move it, and random activity repeats with its seed.

#include "sim/scannertalk.h"
#include "sim/traffic.h"
#include "sim/virtualscanner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

using namespace kestra;
using namespace kestra::sim;
using kestra::test::expectReplies;
using kestra::test::sendAll;

namespace {

// The text (or the attributes) of the four lines of the "LCD" reply.
std::array<std::string, 4> lcd(VirtualScanner& s, bool attributes = false)
{
    const std::string reply = s.command("LCD");
    std::array<std::string, 4> lines;
    std::size_t at = 0;
    for (auto& line : lines) {
        line = reply.substr(at + (attributes ? 24 : 6), 16);
        at = reply.find('\r', at) + 1;
    }
    return lines;
}

std::string ask(VirtualScanner& s, std::string_view command)
{
    std::string r = s.command(command);
    if (!r.empty()) r.pop_back();
    return r;
}

std::vector<Transmission> script(std::string_view text)
{
    std::string error;
    auto parsed = parseTrafficScript(text, error);
    EXPECT_TRUE(parsed) << error;
    return parsed ? *parsed : std::vector<Transmission>{};
}

std::string signalReply(int signal, const char* freq8)
{
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "S%03d F%s", signal, freq8);
    return buffer;
}

} // namespace

TEST(LiveScanner, ScanStopsOnATransmissionHoldsForTheDelayAndMovesOn)
{
    VirtualScanner s(Model::BC785D);
    sendAll(s, {"PM005 01550000", "PM017 01554750", "RM FM", "DLN +2", "TA C 017 FIRE DISPATCH", "TA B A COUNTY",
                "PM040 04625625", "PM041 04630000", "LON", "PM120T08561250", "TR B 2", "KEY01"});
    std::vector<std::string> log;
    s.showLog = [&](const std::string& line) { log.push_back(line); };
    s.advanceTo(0);
    const auto air = script("# one call on the fire channel\n2000,3000,ch=17\n");
    s.setTraffic(Traffic::scripted(air));

    // Up through the channels of the banks, the empty, locked-out and trunk
    // ones left out; the knob turns the scan down and up again.
    const auto visits = [&](std::int64_t from, std::int64_t to) {
        std::vector<int> seen;
        for (std::int64_t t = from; t <= to; t += VirtualScanner::kTickMs) {
            s.advanceTo(t);
            seen.push_back(s.currentChannel());
        }
        return seen;
    };
    const std::vector<int> ring{5, 17, 40};
    const auto follows = [&](const std::vector<int>& seen, int step) {
        for (std::size_t i = 1; i < seen.size(); ++i) {
            const auto at = std::find(ring.begin(), ring.end(), seen[i - 1]) - ring.begin();
            ASSERT_LT(at, 3) << seen[i - 1];
            EXPECT_EQ(seen[i], ring[static_cast<std::size_t>((at + step + 3) % 3)]) << i;
        }
    };
    follows(visits(25, 1000), +1);
    EXPECT_EQ(lcd(s)[1], "  SCAN          ");
    expectReplies(s, {{"MD", "MD00"}, {"SQ", "-"}, {"KEY16", "OK"}});
    follows(visits(1025, 1500), -1);
    s.command("KEY15");
    s.advanceTo(1900);

    // The call: the scan stops on it within a round of the channels.
    s.advanceTo(2100);
    EXPECT_EQ(lcd(s), (std::array<std::string, 4>{"SCAN +   C 017  ", " 155.4750  FM   ", "FIRE DISPATCH   ",
                                                   "COUNTY          "}));
    EXPECT_EQ(lcd(s, true)[0], "####            ");
    expectReplies(s, {{"SQ", "+"}, {"SG", signalReply(air[0].signal, "01554750")}, {"MD", "MD00"}});
    const auto stop = std::find_if(log.begin(), log.end(), [](const std::string& l) { return l.find("SQ+") != std::string::npos; });
    ASSERT_NE(stop, log.end());
    EXPECT_GE(std::stol(*stop), 2000);
    EXPECT_LE(std::stol(*stop), 2075);

    // It ends at 5000; the channel's two seconds of delay keep the scan there.
    s.advanceTo(4990);
    EXPECT_EQ(ask(s, "SQ"), "+");
    s.advanceTo(6990);
    EXPECT_EQ(lcd(s)[0], "SCAN +   C 017  ");
    expectReplies(s, {{"SQ", "-"}, {"SG", "S000 F01554750"}});
    EXPECT_NE(std::find(log.begin(), log.end(),
                        "5000 SHOW SCAN +   C 017  | 155.4750  FM   |FIRE DISPATCH   |COUNTY           SQ- SG0"),
              log.end());
    s.advanceTo(7000);
    EXPECT_EQ(lcd(s)[1], "  SCAN          ");
    EXPECT_EQ(s.currentChannel(), 40);
    EXPECT_EQ(log.back().substr(0, 10), "7000 SHOW ");
}

TEST(LiveScanner, SearchFollowsTheKnobStopsOnAFrequencyAndDirectTuningHearsIt)
{
    VirtualScanner s(Model::BC796D);
    sendAll(s, {"LL01550000 A", "LU01560000 A", "TA S A VHF", "SB A", "KEY09", "ST 12.5K", "RM FM"});
    s.advanceTo(0);
    s.setTraffic(Traffic::scripted(script("1500,5000,f=155.4750")));
    const auto tuned = [&](std::int64_t t) {
        s.advanceTo(t);
        return ask(s, "RF");
    };
    EXPECT_EQ(tuned(0), "RF01550000");
    EXPECT_EQ(tuned(100), "RF01550500");  // four steps of 12.5 kHz
    s.command("KEY16");                    // the knob turns it down
    EXPECT_EQ(tuned(150), "RF01550250");
    s.command("KEY15");
    EXPECT_EQ(tuned(200), "RF01550500");

    // The call starts while the search is past it: the next sweep reaches it
    // (34 steps up, 42 to the top, 38 from the bottom), listens one tick,
    // and stays there until RESUME.
    s.advanceTo(3075);
    EXPECT_EQ(lcd(s)[0], "SRCH +          ");
    s.advanceTo(3100);
    EXPECT_EQ(lcd(s), (std::array<std::string, 4>{"     + SRCH     ", " 155.4750  FM   ", "Range 01        ",
                                                   "VHF             "}));
    EXPECT_EQ(lcd(s, true)[0], "      ####      ");
    expectReplies(s, {{"SQ", "+"}, {"MD", "MD02"}, {"KEY00", "OK"}});
    EXPECT_EQ(lcd(s)[0], "SRCH +          ");
    EXPECT_EQ(ask(s, "RF"), "RF01554875");
    s.advanceTo(3125);
    expectReplies(s, {{"SQ", "-"}, {"RF", "RF01555000"}});

    // Direct tuning: channel 999 tuned to the frequency hears the call.
    expectReplies(s, {{"MA999", "C999 F00000000 TF DF LN AF RF N000"}, {"RF01554750", "OK"}, {"MD", "MD01"}, {"SQ", "+"}});
    EXPECT_EQ(lcd(s)[0].substr(9, 5), "C 999");
    EXPECT_EQ(lcd(s)[1].substr(0, 9), " 155.4750");
    s.advanceTo(6600);
    EXPECT_EQ(ask(s, "SQ"), "-");
}

TEST(LiveScanner, TrunkCallsShowTheirIdWhereThePanelReadsIt)
{
    VirtualScanner s(Model::BC785D);
    sendAll(s, {"TR D 2", "TA B D CITY", "PM301T08561250", "PM302T08566250", "TG D A1 012345", "TA I D A1 FIRE OPS",
                "TG D B3 004567", "MA301", "KEY13"});
    s.advanceTo(0);
    s.setTraffic(Traffic::scripted(script("1000,2000,id=012345\n4000,2000,id=009999\n8000,1000,id=101123\n")));

    // ID scan: a listed ID stops it, shown with its list and slot.
    s.advanceTo(1100);
    const auto call = lcd(s);
    EXPECT_EQ(call[0], " M1-1 012345    ");
    EXPECT_EQ(call[0][3], '-');
    EXPECT_EQ(call[0].substr(6, 6), "012345");  // columns 7 to 12
    EXPECT_TRUE(call[1] == " 856.1250 NFM   " || call[1] == " 856.6250 NFM   ") << call[1];
    EXPECT_EQ(call[2], "FIRE OPS        ");
    EXPECT_EQ(call[3], "CITY            ");
    expectReplies(s, {{"SQ", "+"}, {"MD", "MD12"}, {"TB", "TB D E2-8"}});
    s.advanceTo(3100);
    EXPECT_EQ(lcd(s)[0], "ID SCAN  M      ");
    EXPECT_EQ(ask(s, "SQ"), "-");

    // An ID in no list: the ID scan passes it by, the ID search stops on it.
    s.advanceTo(4500);
    EXPECT_EQ(lcd(s)[0], "ID SCAN  M      ");
    expectReplies(s, {{"KEY09", "OK"}, {"MD", "MD10"}});
    s.advanceTo(4525);
    EXPECT_EQ(lcd(s)[0], "M ID:009999     ");
    EXPECT_EQ(ask(s, "SQ"), "+");
    // Held, it stays on that ID after the call.
    s.command("KEY07");
    s.advanceTo(6100);
    EXPECT_EQ(lcd(s)[0], "M ID:009999     ");
    expectReplies(s, {{"MD", "MD11"}, {"SQ", "-"}, {"KEY00", "OK"}});
    EXPECT_EQ(lcd(s)[0], "ID SRCH  M      ");

    // An LTR system's ID search: "L ID:" and the ID from column 6.
    s.command("TR D 9");
    s.advanceTo(8100);
    const std::string ltr = lcd(s)[0];
    EXPECT_EQ(ltr.substr(0, 5), "L ID:");
    EXPECT_EQ(ltr.substr(5, 8), "101123  ");
    expectReplies(s, {{"MD", "MD18"}, {"SQ", "+"}});
}

TEST(LiveScanner, RandomActivityRepeatsWithItsSeedAndKeepsToItsShare)
{
    const auto run = [](std::uint64_t seed, std::int64_t stepMs, std::int64_t untilMs) {
        VirtualScanner s(Model::BC250D);
        sendAll(s, {"PM001 01550000", "PM002 01554750", "PM003 01560000", "LON", "PM004 04625625", "PM005 04630000",
                    "PM006 08515000", "KEY01"});
        std::vector<std::string> log;
        s.showLog = [&](const std::string& line) { log.push_back(line); };
        s.advanceTo(0);
        s.setTraffic(Traffic::random({seed, 0.5}));
        for (std::int64_t t = stepMs; t < untilMs + stepMs; t += stepMs) s.advanceTo(std::min(t, untilMs));
        return log;
    };
    const auto first = run(7, 250, 60'000);
    EXPECT_EQ(run(7, 60'000, 60'000), first);  // however often the clock is driven
    EXPECT_NE(run(8, 250, 60'000), first);
    const auto stops = std::count_if(first.begin(), first.end(), [](const std::string& l) { return l.find("SQ+") != std::string::npos; });
    EXPECT_GE(stops, 3);
    for (const std::string& line : first) EXPECT_EQ(line.find("C 003"), std::string::npos) << "a locked-out channel: " << line;

    // Half of the time something transmits; the scan hears all of it but
    // what goes out on the locked-out channel.
    const auto long_ = run(11, 1000, 600'000);
    std::int64_t open = 0, since = -1;
    for (const std::string& line : long_) {
        const std::int64_t ms = std::stoll(line);
        const bool heard = line.find("SQ+") != std::string::npos;
        if (since >= 0 && !heard) open += ms - since, since = -1;
        if (since < 0 && heard) since = ms;
    }
    EXPECT_GT(open, 600'000 * 3 / 10);
    EXPECT_LT(open, 600'000 * 6 / 10);
}

TEST(LiveScanner, ALongGapWithNothingOnTheAirEndsWhereTickByTickWould)
{
    const auto after = [](std::initializer_list<std::string_view> setup, std::int64_t stepMs) {
        VirtualScanner s(Model::BC796D);
        sendAll(s, {"PM005 01550000", "PM017 01554750", "PM040 04625625", "LL01550000 B", "LU01551000 B",
                    "LL01600000 D", "LU01600300 D"});
        sendAll(s, setup);
        s.advanceTo(0);
        for (std::int64_t t = stepMs; t <= 3'600'000; t += stepMs) s.advanceTo(t);
        return s.command("LCD") + s.command("RF");
    };
    // A scan; a search across two ranges, downwards from a frequency off its steps.
    for (const auto& setup : {std::initializer_list<std::string_view>{"MA017", "KEY01"},
                              std::initializer_list<std::string_view>{"SB BD", "KEY09", "ST 5K", "RF01550720", "KEY16"}})
        EXPECT_EQ(after(setup, 3'600'000), after(setup, VirtualScanner::kTickMs));
}

TEST(LiveScanner, ScriptsAndActivityRefuseWhatTheyCannotRead)
{
    std::string error;
    const auto parsed = parseTrafficScript(
        "0,100,ch=1, ctcss=67.0\n\n# later\n250,40,f=851.0125,dcs=754\r\n300,10,id=i01234\n320,0,keys=07;02 5;13H\n", error);
    ASSERT_TRUE(parsed) << error;
    ASSERT_EQ(parsed->size(), 4u);
    EXPECT_EQ((*parsed)[0].ctcss, "67.0");
    EXPECT_EQ((*parsed)[1].freq, 8510125u);
    EXPECT_EQ((*parsed)[1].dcs, "754");
    EXPECT_EQ((*parsed)[2].id, "i01234");
    EXPECT_EQ((*parsed)[3].keys, (std::vector<std::string>{"07", "02 5", "13H"}));
    for (const auto& [text, line] : std::vector<std::pair<std::string, std::string>>{
             {"0,100,ch=1001", "line 1:"}, {"\n5,0,ch=3", "line 2:"}, {"1,1,f=600.0000", "line 1:"},
             {"1,1,f=155.47501", "line 1:"}, {"x,1,ch=3", "line 1:"}, {"1,1,ch=3,4", "line 1:"}, {"1,1,tg=5", "line 1:"},
             {"1,1,id=", "line 1:"}, {"1,1,ch=3,ctcss=67", "line 1:"}, {"1,1,ch=3,dcs=023-", "line 1:"},
             {"1,0,keys=07,ctcss=67.0", "line 1:"}, {"1,0,keys=7", "line 1:"}, {"1,0,ch=3", "line 1:"}}) {
        EXPECT_FALSE(parseTrafficScript(text, error)) << text;
        EXPECT_EQ(error.substr(0, line.size()), line) << text << ": " << error;
    }
    const auto activity = parseActivity("seed=42,busy=0.3", error);
    ASSERT_TRUE(activity);
    EXPECT_EQ(activity->seed, 42u);
    EXPECT_DOUBLE_EQ(activity->busy, 0.3);
    EXPECT_FALSE(parseActivity("seed=42,busy=1.5", error));
    EXPECT_FALSE(parseActivity("seed=-1", error));
    EXPECT_FALSE(parseActivity("noise=1", error));
}
