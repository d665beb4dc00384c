// Read Data and Send Data through the real serial port: kestractl read and
// send, as a user runs them, on the pseudo-terminal of a running kestractl
// sim. What passes here passes the way a USB cable is driven (QSerialPort),
// not only on the program's built-in scanner.

#include "core/cellcodes.h"
#include "core/memfile.h"
#include "core/text.h"
#include "sim/simprocess.h"
#include "support/kestractl.h"
#include "support/testfiles.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>

using namespace kestra;
using kestra::test::CtlRun;
using kestra::test::readBytes;
using kestra::test::SimProcess;
using kestra::test::TempDir;
using kestra::test::writeBytes;

namespace {

// Bank 1 of a BC796D with a channel every other row up to `used` (the first
// a trunk channel), bank tags, a trunk system on bank 1 and a priority
// channel. Every value is one the table check of a read leaves as it is.
Document bankOne(int used)
{
    Document doc;
    doc.clearstores();
    doc.model = ModelSwitches::of(Model::BC796D);
    for (int b = 0; b < 10; ++b) doc.banktags[b] = b == 0 ? "County Fire" : b == 9 ? "Air, Tower" : " ";
    doc.trunkset[0].trunktype = "2";
    doc.priochan[0] = 7;
    for (int n = 1; n <= used; n += 2) {
        auto& line = doc.memdata[0][n];
        line[col::freq] = n == 1 ? "0851.0125" : padfreq(std::to_string(151 + n) + ".4625", 8, 5);
        line[col::tag] = "Unit " + std::to_string(n) + " dispatch";
        line[col::trunk] = n == 1 ? "1" : "0";
        line[col::record] = std::to_string(n / 2 % 2);
        line[col::delay] = std::to_string(n % 8);
        line[col::beep] = std::to_string(n / 3 % 2);
        line[col::tone] = std::to_string(n % 38 + 1);
        line[col::lockout] = "0";
        line[col::atten] = std::to_string(n / 5 % 2);
        line[col::mode] = n % 4 == 1 ? "0" : "3";
        line[col::step] = "3";
    }
    return doc;
}

Document loaded(const std::string& bytes)
{
    Document doc;
    doc.clearstores();
    EXPECT_EQ(readMem(doc, bytes, 0).status, MemLoadStatus::Loaded);
    return doc;
}

// The channels 1..last of bank 1 as the scanner holds them: the same in both.
void expectSameChannels(const Document& want, const Document& got, int last)
{
    for (int r = 1; r <= last; ++r) {
        SCOPED_TRACE("channel " + std::to_string(r));
        const auto& w = want.memdata[0][r];
        const auto& g = got.memdata[0][r];
        ASSERT_EQ(Val(g[col::freq]), Val(w[col::freq]));
        if (Val(w[col::freq]) == 0) continue;
        EXPECT_EQ(g[col::tag], w[col::tag]);
        for (int c : {col::trunk, col::record, col::delay, col::beep, col::lockout, col::atten, col::mode, col::step})
            EXPECT_EQ(g[c], w[c]) << "column " << c;
        EXPECT_EQ(toneText(repairToneCode(g[col::tone])), toneText(w[col::tone]));
    }
}

// A folder for kestractl: short delays, and the program's files.
struct Home {
    TempDir dir;
    Home() { writeBytes(dir.file("setup.ini"), "[setup]\r\ndelay1=25\r\n"); }
    std::string where() const { return " --dir '" + dir.path().string() + "'"; }
    CtlRun run(const std::string& args) const { return test::runKestractl(dir, args + where()); }
};

// kestractl sim with the document loaded, its log and dump in the folder.
struct Scanner {
    TempDir dir;
    std::unique_ptr<SimProcess> process;
    explicit Scanner(const Document& doc, const std::string& faults = "")
    {
        writeBytes(dir.file("scanner.mem"), memText(doc, Settings{}));
        std::vector<std::string> words{"--model", "BC796D", "--load", dir.file("scanner.mem"), "--log", dir.file("sim.log"),
                                       "--dump", dir.file("dump.mem")};
        if (!faults.empty()) words.insert(words.end(), {"--faults", faults});
        process = std::make_unique<SimProcess>(words, dir.file("sim.err"));
    }
    const std::string& device() const { return process->device(); }
    std::string log() const { return readBytes(dir.file("sim.log")); }
    // Stops the scanner and gives its memory as a document.
    Document dumped()
    {
        EXPECT_EQ(process->stop(), 0);
        return loaded(readBytes(dir.file("dump.mem")));
    }
};

double secondsOf(const std::function<void()>& body)
{
    const auto start = std::chrono::steady_clock::now();
    body();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

} // namespace

TEST(RealPort, ReadDataOfBankOneBringsTheChannelsTheBankTagsAndTheTrunkTypes)
{
    const Document source = bankOne(9);
    Scanner scanner(source);
    ASSERT_FALSE(scanner.device().empty());
    Home home;
    CtlRun run;
    const double seconds = secondsOf([&] { run = home.run("read '" + home.dir.file("r.mem") + "' --port " + scanner.device() + " --banks 1"); });
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.err.find("Read Data finished; 0 retries."), std::string::npos) << run.err;
    // Every exchange waits for its reply and one delay: no stall of a minute
    // anywhere (the opening reads once waited for an event that never came).
    EXPECT_LT(seconds, 30.0);
    const Document got = loaded(readBytes(home.dir.file("r.mem")));
    EXPECT_EQ(got.banktags[0], "County Fire");
    EXPECT_EQ(got.banktags[9], "Air; Tower");   // a comma comes back as ";"
    EXPECT_EQ(got.banktags[4], " ");            // an empty tag stays empty
    EXPECT_EQ(got.trunkset[0].trunktype, "2");
    EXPECT_EQ(got.priochan[0], 7);
    expectSameChannels(source, got, 100);
    // The scanner heard the tags asked for up to J, then the trunk types.
    const std::string log = scanner.log();
    EXPECT_NE(log.find("< TA B J"), std::string::npos);
    EXPECT_LT(log.find("< TA B J"), log.find("< TB J"));
}

TEST(RealPort, SendDataOfBankOneLeavesATrunkTypeTheScannerHasAlone)
{
    Document source = bankOne(5);
    Document inScanner = bankOne(0);  // the same trunk system, no channels
    Scanner scanner(inScanner);
    Home home;
    writeBytes(home.dir.file("in.mem"), memText(source, Settings{}));
    const CtlRun run = home.run("send '" + home.dir.file("in.mem") + "' --port " + scanner.device() + " --banks 1");
    ASSERT_EQ(run.status, 0) << run.err;
    const std::string log = scanner.log();
    EXPECT_EQ(log.find("< TR "), std::string::npos) << "the trunk type was sent again";
    EXPECT_NE(log.find("< PM001T"), std::string::npos);
    const Document dumped = scanner.dumped();
    expectSameChannels(source, dumped, 100);
    EXPECT_EQ(dumped.banktags[0], "County Fire");
}

TEST(RealPort, APortThatCannotBeOpenedFailsAtOnce)
{
    Home home;
    CtlRun run;
    const double seconds = secondsOf([&] { run = home.run("read '" + home.dir.file("r.mem") + "' --port /dev/ttyKestraNone --banks 1"); });
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "The selected comport is already in use or not available in your system!\n");
    EXPECT_LT(seconds, 2.0);
    EXPECT_FALSE(std::filesystem::exists(home.dir.file("r.mem")));
}

// A line that corrupts one character in a hundred, lose replies, or splits
// them: every run either brings or leaves every channel right, or ends with
// status 1 and says why. Never status 0 with a wrong channel.
TEST(RealPort, FaultyLinesNeverEndWellWithWrongData)
{
    const Document source = bankOne(40);
    struct Outcome {
        CtlRun run;
        Document data;
        bool read;
    };
    const auto readOnce = [&](const std::string& faults) {
        Scanner scanner(source, faults);
        Home home;
        Outcome o{home.run("read '" + home.dir.file("r.mem") + "' --port " + scanner.device() + " --banks 1-40"), {}, true};
        if (o.run.status == 0) o.data = loaded(readBytes(home.dir.file("r.mem")));
        return o;
    };
    const auto sendOnce = [&](const std::string& faults) {
        Scanner scanner(bankOne(0), faults);
        Home home;
        writeBytes(home.dir.file("in.mem"), memText(source, Settings{}));
        Outcome o{home.run("send '" + home.dir.file("in.mem") + "' --port " + scanner.device() + " --banks 1-40"), {}, false};
        o.data = scanner.dumped();
        return o;
    };
    std::vector<std::future<Outcome>> runs;
    for (int seed : {1, 2, 3})
        runs.push_back(std::async(std::launch::async, readOnce, "garble=0.01,seed=" + std::to_string(seed)));
    // A worse line still: a bank tag garbled in one pass of the opening reads
    // once passed for its own second copy here.
    runs.push_back(std::async(std::launch::async, readOnce, "garble=0.02,split=0.3,drop=0.02,seed=15"));
    for (int seed : {4, 5})
        runs.push_back(std::async(std::launch::async, sendOnce, "garble=0.01,drop=0.02,split=0.2,seed=" + std::to_string(seed)));
    int good = 0;
    for (auto& r : runs) {
        const Outcome o = r.get();
        SCOPED_TRACE((o.read ? "read: " : "send: ") + o.run.err);
        if (o.run.status == 0) {
            ++good;
            expectSameChannels(source, o.data, 40);
            if (o.read) {
                EXPECT_EQ(o.data.banktags[0], "County Fire");
            }
            // The last line tells how often the line had to be asked again.
            const std::size_t said = o.run.err.find(" Data finished; ");
            ASSERT_NE(said, std::string::npos);
            EXPECT_GT(IntVal(o.run.err.substr(said + 16)), 0);
        } else {
            EXPECT_EQ(o.run.status, 1);
            EXPECT_FALSE(o.run.err.empty());
        }
    }
    // The line is bad, not hopeless: most runs get through, with retries.
    EXPECT_GE(good, 3);
}
