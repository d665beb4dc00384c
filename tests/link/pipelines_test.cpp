// The send and read pipelines of the transfer window, on a virtual scanner.

#include "link/readpipeline.h"
#include "link/sendpipeline.h"

#include "core/text.h"
#include "core/bandplan.h"
#include "sim/documentmapping.h"
#include "sim/virtualport.h"
#include "sim/virtualscanner.h"
#include "support/tablerig.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace kestra;

namespace {

const Model kModels[] = {Model::BC250D, Model::BC296D, Model::BC785D, Model::BC796D, Model::UBC3300};

Document emptyDocument(Model model)
{
    Document doc;
    doc.clearstores();
    doc.model = ModelSwitches::of(model);
    return doc;
}

// One virtual scanner, and a transfer window's engine that can be opened on
// it for a send or a read, as the program does.
struct Bench {
    test::TempDir dir;
    VirtualScheduler scheduler;
    ScriptedDialogs dialogs;
    Settings settings;
    sim::VirtualScanner scanner;
    std::shared_ptr<VirtualDevice> device = std::make_shared<VirtualDevice>();
    std::vector<std::string> lines;  // what the scanner was sent

    explicit Bench(Model model, const std::string& faults = "") : scanner(model, 19200)
    {
        device->respond = [this](std::string_view b) {
            std::string partial;
            for (char c : b)
                if (c != '\r' && c != '\n') partial += c;
            if (!partial.empty()) lines.push_back(partial);
            return scanner.receive(b);
        };
        device->baud = [this] { return scanner.baudRate(); };
        device->faults = *LineFaults::parse(faults);
    }
    std::vector<std::string> messages() const { return test::messageTexts(dialogs); }

    bool send(Document& doc, const SendPipeline::Options& options)
    {
        VirtualPort port(scheduler, device);
        ExchangeEngine engine(port, scheduler, dialogs, settings, 1, 19200, ExchangeEngine::Caption::SendData);
        SendPipeline pipeline(engine, doc, settings, dialogs, scheduler, dir.path());
        engine.openForm(doc.model.bc785d);
        pipeline.open();
        scheduler.runUntil([&] { return pipeline.tagsread && engine.commstate == 0; }, 60'000);
        if (!pipeline.sendData(options)) return false;
        return scheduler.runUntil([&] { return pipeline.finished || engine.stopflag == 1; }, 48 * 3600 * 1000) &&
               pipeline.finished;
    }

    // The read window opened on the scanner, its tags read.
    struct Reader {
        VirtualPort port;
        ExchangeEngine engine;
        Document doc;
        ReadPipeline pipeline;
        Reader(Bench& b, Model model)
            : port(b.scheduler, b.device),
              engine(port, b.scheduler, b.dialogs, b.settings, 1, 19200, ExchangeEngine::Caption::ReadData),
              doc(emptyDocument(model)), pipeline(engine, doc, b.dialogs, b.scheduler, b.dir.path())
        {
            engine.openForm(doc.model.bc785d);
            pipeline.open();
            b.scheduler.runUntil([&] { return pipeline.opened(); }, 60'000);
        }
    };

    // Every bank read back into a fresh document, with the tags the opening read.
    Document read(Model model)
    {
        Reader r(*this, model);
        for (int b = 0; b < 10; ++b)
            if (r.pipeline.tagsread) r.doc.banktags[b] = r.pipeline.tags[b] == "_" ? " " : r.pipeline.tags[b];
        ReadPipeline::Options options;
        options.scope = ReadPipeline::Scope::AllBanks;
        EXPECT_TRUE(r.pipeline.readData(options));
        EXPECT_TRUE(scheduler.runUntil([&] { return r.pipeline.finished || r.engine.stopflag == 1; }, 48 * 3600 * 1000));
        return r.doc;
    }
};

// A bench for sends: short delays, and without the questions of a non-expert unless asked for.
struct Sender : Bench {
    explicit Sender(Model model, bool expert = true) : Bench(model)
    {
        settings.expert = expert ? 1 : 0;
        settings.delay1 = 25;
    }
};

SendPipeline::Options bankScope(SendPipeline::Scope scope, int bank = 0)
{
    SendPipeline::Options o;
    o.scope = scope;
    o.bank = bank;
    return o;
}
const SendPipeline::Options kAllBanks = bankScope(SendPipeline::Scope::AllBanks);

// Every channel as it comes back over the wire: a quote as a blank, the tag
// cut at 16, the one delay of the BC2xx family as 2 seconds, the record flag
// in the model's column; the step as stepOf says.
template <class StepOf>
void expectChannelsBack(const Document& want, const Document& got, StepOf stepOf)
{
    const bool bc785d = want.model.bc785d == 1;
    for (int b = 0; b < 10; ++b)
        for (int r = 1; r <= 100; ++r) {
            SCOPED_TRACE(std::to_string(b * 100 + r));
            const auto& w = want.memdata[b][r];
            const auto& g = got.memdata[b][r];
            if (Val(w[col::freq]) == 0) {
                ASSERT_EQ(g[col::freq], "0000.0000");
                ASSERT_EQ(g[col::tag], " ");  // the rest of a cleared channel stays
                continue;
            }
            ASSERT_EQ(g[col::freq], w[col::freq]);
            std::string tag = w[col::tag].substr(0, 16);
            std::replace(tag.begin(), tag.end(), '"', ' ');
            EXPECT_EQ(g[col::tag], tag);
            for (int c : {col::trunk, col::mode, col::beep, col::lockout, col::atten}) EXPECT_EQ(g[c], w[c]) << c;
            EXPECT_EQ(g[col::step], stepOf(w));
            EXPECT_EQ(g[col::delay], bc785d || w[col::delay] == "0" ? w[col::delay] : "2");
            EXPECT_EQ(g[bc785d ? col::record : col::recordHidden], w[col::record]);
            EXPECT_EQ(toneText(repairToneCode(g[col::tone])), toneText(w[col::tone]));
        }
}

// A document with every kind of channel content the model can hold.
Document everyKind(Model model)
{
    Document doc = emptyDocument(model);
    const bool x96 = doc.model.x96 == 1;
    int n = 0;
    for (int b = 0; b < 10; ++b) {
        doc.banktags[b] = "Tag, bank " + std::to_string(b + 1);
        doc.priochan[b] = static_cast<std::int16_t>(b * 100 + 7);
        for (int r = 2; r <= 100; r += 7 + b) {  // empty channels between full ones
            auto& line = doc.memdata[b][r];
            ++n;
            line[col::freq] = padfreq(std::to_string(137 + n % 370) + "." + std::to_string(1000 + (n * 125) % 9000), 8, 5);
            line[col::tag] = n % 7 == 0 ? "Fire, \"EMS\" dispatch" : "Ch " + std::to_string(n);
            line[col::trunk] = std::to_string(n % 2);
            line[col::record] = line[col::recordHidden] = std::to_string((n / 2) % 2);
            line[col::delay] = std::to_string(n % 8);
            line[col::beep] = std::to_string((n / 3) % 2);
            line[col::tone] = std::to_string(n % 3 == 0 ? 150 + n % 38 : (n % 5 == 0 ? 188 + n % 104 : n % 143));
            line[col::lockout] = std::to_string((n / 4) % 2);
            line[col::atten] = std::to_string((n / 5) % 2);
            line[col::mode] = std::to_string(n % 4);
            const int step = n % 10;
            line[col::step] = std::to_string(!x96 && step >= 8 ? n % 7 : step);
        }
    }
    doc.memdata[9][100] = doc.memdata[0][2];
    doc.memdata[9][100][col::freq] = "0851.0125";
    doc.memdata[9][100][col::trunk] = "1";
    return doc;
}

// Every step comes back as it went, "Auto" included.
const auto kStepReadBack = [](const auto& line) { return line[col::step]; };

} // namespace

// ---- reading ----

TEST(ReadPipeline, OpeningReadsTheBankTagsAndTrunkTypes)
{
    Bench bench(Model::BC796D);
    for (int b = 0; b < 10; ++b) bench.scanner.memory().bankTags[b] = b == 3 ? "Fire, EMS" : "Bank " + std::string(1, 'A' + b);
    const Bench::Reader r(bench, Model::BC796D);
    bench.scheduler.runUntil([&] { return r.engine.status.text3 == "Trunk type read Ok"; }, 60'000);
    EXPECT_TRUE(r.pipeline.tagsread);
    EXPECT_EQ(r.pipeline.tags[3], "Fire; EMS");
    EXPECT_EQ(r.pipeline.combo1Lines()[3], "301 - 400 / 4 / Fire; EMS");
    EXPECT_EQ(r.engine.status.text3, "Trunk type read Ok");
    EXPECT_TRUE(bench.messages().empty());
}

TEST(ReadPipeline, AllBanksBringsEveryChannelBackOnEveryModel)
{
    for (Model model : kModels) {
        SCOPED_TRACE(modelName(model));
        Bench bench(model);
        const Document source = everyKind(model);
        sim::fillFromDocument(bench.scanner.memory(), source);
        const Document back = bench.read(model);
        EXPECT_TRUE(bench.messages().empty());
        expectChannelsBack(source, back, kStepReadBack);
        for (int b = 0; b < 10; ++b) EXPECT_EQ(back.priochan[b], bench.scanner.memory().priority[b]);
    }
}

TEST(ReadPipeline, AFlakyLineStillReadsEveryChannelRight)
{
    // Lost and split replies over a whole read: each lost reply restarts its
    // channel, and each finished channel clears the count of retries.
    Bench bench(Model::BC796D, "drop=0.04,split=0.4,delay=30,seed=11");
    const Document source = everyKind(Model::BC796D);
    sim::fillFromDocument(bench.scanner.memory(), source);
    const Document back = bench.read(Model::BC796D);
    EXPECT_TRUE(bench.messages().empty());
    expectChannelsBack(source, back, kStepReadBack);
}

TEST(ReadPipeline, OpeningReadsThatGetNoAnswerFailInTimeAndSaySo)
{
    // A scanner that refuses "TA B" and "TB": the letters go on past J, each
    // refusal counts, the tags get their second pass, and both reads end with
    // their messages. One that says nothing at all ends as soon.
    for (const bool silent : {false, true}) {
        SCOPED_TRACE(silent ? "silent" : "refusing");
        Bench bench(Model::BC796D);
        bench.settings.verifyread = 0;
        auto answer = bench.device->respond;
        bench.device->respond = [&, answer](std::string_view b) -> std::string {
            std::string reply = answer(b);
            if (b.substr(0, 4) == "TA B" || b.substr(0, 3) == "TB ") return silent ? "" : "ERR\r";
            return reply;
        };
        const std::int64_t start = bench.scheduler.now();
        const Bench::Reader r(bench, Model::BC796D);
        EXPECT_TRUE(r.pipeline.opened());
        EXPECT_FALSE(r.pipeline.tagsread);
        EXPECT_FALSE(r.pipeline.typesread);
        EXPECT_EQ(bench.messages(), (std::vector<std::string>{"Reading banknames failed.", "Reading trunktype failed."}));
        // The wake-up, then at most twelve replies a pass at one delay (100 ms)
        // each, or a second of silence a pass: two passes of the tags, one of the types.
        EXPECT_LT(bench.scheduler.now() - start, 6'000);
        if (!silent) {
            EXPECT_NE(std::find(bench.lines.begin(), bench.lines.end(), "TA B L"), bench.lines.end());
        }
    }
}

TEST(ReadPipeline, ARangeEndingAtOneThousandReadsNothingPastIt)
{
    Bench bench(Model::BC796D);
    Bench::Reader r(bench, Model::BC796D);
    ReadPipeline::Options options;
    options.scope = ReadPipeline::Scope::ChannelRange;
    options.rangeStart = "998";
    options.rangeEnd = "1000";
    r.doc.memdata[10][1][col::tag] = "Dummy";
    const auto dummy = r.doc.memdata[10][1];
    ASSERT_TRUE(r.pipeline.readData(options));
    ASSERT_TRUE(bench.scheduler.runUntil([&] { return r.pipeline.finished; }, 3600'000));
    EXPECT_EQ(r.doc.memdata[10][1], dummy);
    EXPECT_EQ(bench.lines.back().rfind("PC J", 0), 0u);
    EXPECT_EQ(std::count(bench.lines.begin(), bench.lines.end(), "MA001"), 2);  // the two of the opening only
}

// ---- sending ----

TEST(SendPipeline, KeyedFrequenciesSkipTheLeadingAndTrailingZeros)
{
    EXPECT_EQ(SendPipeline::frequencyKeys("01000000"),
              (std::vector<std::string>{"KEY02 1", "KEY02 0", "KEY02 0", "KEY03", "KEY04", "KEY04"}));
    EXPECT_EQ(SendPipeline::frequencyKeys("08511625"),
              (std::vector<std::string>{"KEY02 8", "KEY02 5", "KEY02 1", "KEY03", "KEY02 1", "KEY02 6", "KEY02 2",
                                        "KEY02 5", "KEY04", "KEY04"}));
    EXPECT_EQ(SendPipeline::frequencyKeys("00250500"),
              (std::vector<std::string>{"KEY02 2", "KEY02 5", "KEY03", "KEY02 0", "KEY02 5", "KEY04", "KEY04"}));
    EXPECT_EQ(SendPipeline::txdOf("0416.0000"), "04160000");
    // The grid's text without leading zeros goes out padded; an empty channel
    // as zeros; a text that eight digits cannot hold, never.
    EXPECT_EQ(SendPipeline::txdOf("Empty"), "00000000");
    EXPECT_EQ(SendPipeline::txdOf("25.0000"), "00250000");
    EXPECT_EQ(SendPipeline::txdOf("12345.0000"), std::nullopt);
}

TEST(SendPipeline, TheDocumentGoesToTheScannerAndComesBackOnEveryModel)
{
    for (Model model : kModels) {
        SCOPED_TRACE(modelName(model));
        Sender bench(model);
        Document source = everyKind(model);
        ASSERT_TRUE(bench.send(source, kAllBanks));
        EXPECT_TRUE(bench.dialogs.shown.empty());
        const Document back = bench.read(model);
        for (int b = 0; b < 10; ++b) {
            std::string tag = source.banktags[b];
            std::replace(tag.begin(), tag.end(), ',', ';');  // the tag read turns commas into semicolons
            EXPECT_EQ(back.banktags[b], tag);
            EXPECT_EQ(back.priochan[b], source.priochan[b]);
        }
        // A fresh install keys in the frequencies whose step "PM" would change.
        expectChannelsBack(source, back, kStepReadBack);
    }
}

TEST(SendPipeline, KeyedUploadKeepsEveryStep)
{
    // "Advanced Frequency Upload" keys every frequency in; the automatic one
    // keys only those whose wanted step is not the band's own; without
    // either, "PM" gives every channel the scanner's own step of its band.
    enum { Never, Always, Automatic };
    for (const int keyed : {Never, Always, Automatic}) {
        SCOPED_TRACE(keyed);
        Sender bench(Model::BC796D);
        bench.settings.option2 = keyed == Automatic;
        bench.settings.khz9 = keyed == Always;
        Document source = everyKind(Model::BC796D);
        ASSERT_TRUE(bench.send(source, kAllBanks));
        int full = 0, byBand = 0;
        for (int b = 0; b < 10; ++b)
            for (int r = 1; r <= 100; ++r)
                if (Val(source.memdata[b][r][col::freq]) != 0) {
                    ++full;
                    byBand += findBand(builtinPlan(1), Val(source.memdata[b][r][col::freq]))->step == source.memdata[b][r][col::step];
                }
        EXPECT_EQ(std::count(bench.lines.begin(), bench.lines.end(), "KEY14"),
                  keyed == Never ? 0 : keyed == Automatic ? full - byBand : full);
        if (keyed == Never)
            expectChannelsBack(source, bench.read(Model::BC796D),
                               [](const auto& line) { return findBand(builtinPlan(1), Val(line[col::freq]))->step; });
        else
            expectChannelsBack(source, bench.read(Model::BC796D), kStepReadBack);
    }
}

TEST(SendPipeline, AnEmptyChannelIsOneExchangeAndChannelOneThousandIsZero)
{
    Sender bench(Model::BC785D);
    Document doc = everyKind(Model::BC785D);
    for (int r = 1; r < 100; ++r) doc.memdata[9][r][col::freq] = "0";
    doc.memdata[9][100][col::beep] = "0";
    ASSERT_TRUE(bench.send(doc, bankScope(SendPipeline::Scope::SingleBank, 9)));
    const auto sent = [&](const char* line) { return std::find(bench.lines.begin(), bench.lines.end(), line); };
    for (const char* line : {"PM901 00000000", "PM000T08510125", "BAF C 1000", "BAF C 000"})
        EXPECT_NE(sent(line), bench.lines.end()) << line;
    // Between two empty channels nothing but their "PM".
    const auto at = sent("PM950 00000000");
    ASSERT_NE(at, bench.lines.end());
    EXPECT_EQ(*(at + 1), "PM951 00000000");
    // The log marks channel 1000 in place of the blank, its number whole;
    // and the tags and priority channels of the end of the run went out.
    const std::string txlog = test::readBytes((bench.dir.path() / "txlog.txt").string());
    EXPECT_NE(txlog.find("\r\nPM000t08510125 ts: chanid:1000 "), std::string::npos) << txlog;
    EXPECT_NE(sent("TA B J Tag, bank 10"), bench.lines.end());
    EXPECT_NE(sent("PC J907"), bench.lines.end());
}

TEST(SendPipeline, BankTagsAndPriorityChannelsGoOutWithoutFrequenciesToo)
{
    Sender bench(Model::BC785D);
    Document doc = everyKind(Model::BC785D);
    SendPipeline::Options options = bankScope(SendPipeline::Scope::SingleBank, 3);
    options.frequencies = false;
    options.searchEvents = true;  // the search ranges go, and the run ends as runs end
    ASSERT_TRUE(bench.send(doc, options));
    EXPECT_EQ(std::count_if(bench.lines.begin(), bench.lines.end(), [](const std::string& l) { return l.rfind("PM", 0) == 0; }), 0);
    EXPECT_NE(std::find(bench.lines.begin(), bench.lines.end(), "TA B D Tag, bank 4"), bench.lines.end());
    EXPECT_NE(std::find(bench.lines.begin(), bench.lines.end(), "PC D307"), bench.lines.end());

    // "Upload Active Bank settings": the scanner takes the active banks and
    // ranges of the document whole, as the Virtual Control reads them back.
    bench.settings.linkbank = 1;
    doc.banklockm = {1, 0, 1, 0, 0, 0, 0, 0, 0, 1};
    doc.banklocks = {0, 1, 0, 0, 0, 0, 0, 0, 0, 0};
    ASSERT_TRUE(bench.send(doc, options));
    EXPECT_EQ(bench.scanner.command("CB"), "CB ACJ\r");
    EXPECT_EQ(bench.scanner.command("SB"), "SB B\r");
}

TEST(SendPipeline, ConfirmationsAndRefusals)
{
    Sender bench(Model::BC250D, false);
    Document doc = everyKind(Model::BC250D);
    bench.dialogs.answers = {Answer::No};
    EXPECT_FALSE(bench.send(doc, kAllBanks));
    EXPECT_EQ(bench.messages(), std::vector<std::string>{"Please confirm data upload.\r\nChannels: 0 / 1000\r\nAre you sure?"});
    EXPECT_EQ(bench.dialogs.shown[0].buttons, Buttons::YesNo);

    doc.onebankread = 1;
    bench.dialogs.answers = {Answer::Yes, Answer::No};
    EXPECT_FALSE(bench.send(doc, kAllBanks));
    EXPECT_EQ(bench.dialogs.shown.back().text,
              "WARNING: Please re-confirm data upload.\r\nYou previously downloaded 1 bank and now you want to upload all "
              "banks.\r\nAll remaining channels will be cleared!\r\nAre you sure?");
    EXPECT_EQ(doc.onebankread, 1);

    Document empty = emptyDocument(Model::BC250D);
    EXPECT_FALSE(bench.send(empty, bankScope(SendPipeline::Scope::SingleBank, 4)));
    EXPECT_EQ(bench.dialogs.shown.back().text, "There is nothing to send!");
    SendPipeline::Options none;
    none.frequencies = false;
    EXPECT_FALSE(bench.send(empty, none));
    EXPECT_EQ(bench.dialogs.shown.back().text, "Please select which data you want to upload.");
    // Trunk data goes by bank: Single Bank needs its bank.
    none.trunkIds = true;
    none.scope = SendPipeline::Scope::SingleBank;
    EXPECT_FALSE(bench.send(empty, none));
    EXPECT_EQ(bench.dialogs.shown.back().text, "Please select which bank you want to upload.");
}

// Delete Bank clears channels i*100+1 .. i*100+100: the bank's own hundred,
// not i*100 .. i*100+99, which would take the last channel of the bank before
// it and leave the bank's own hundredth.
TEST(SendPipeline, DeleteBankClearsTheBanksOwnHundredNotTheLastChannelOfTheBankBefore)
{
    Sender bench(Model::BC796D);
    Document doc = everyKind(Model::BC796D);
    doc.memdata[1][100] = doc.memdata[1][2];
    doc.memdata[2][100] = doc.memdata[1][2];
    ASSERT_TRUE(bench.send(doc, kAllBanks));
    VirtualPort port(bench.scheduler, bench.device);
    ExchangeEngine engine(port, bench.scheduler, bench.dialogs, bench.settings, 1, 19200, ExchangeEngine::Caption::SendData);
    SendPipeline pipeline(engine, doc, bench.settings, bench.dialogs, bench.scheduler, bench.dir.path());
    engine.openport();
    ASSERT_TRUE(pipeline.deleteBank(bankScope(SendPipeline::Scope::SingleBank, 2)));
    bench.scheduler.advance(1000);
    auto& memory = bench.scanner.memory();
    EXPECT_TRUE(memory.channel(201).empty());
    EXPECT_TRUE(memory.channel(300).empty());
    EXPECT_FALSE(memory.channel(200).empty());
    EXPECT_FALSE(memory.channel(102).empty());
    EXPECT_FALSE(memory.channel(302).empty());
    EXPECT_FALSE(pipeline.deleteBank(kAllBanks));
    EXPECT_EQ(bench.dialogs.shown.back().text, "Please select which bank you want to delete.");
}

TEST(SendPipeline, ACellOutsideItsListIsLeftOutAndEveryToneGoes)
{
    // A step with no code is left out with a line in txlog.txt, and the run
    // goes on; tones without a name still go as their codes say, and what the
    // scanner refuses of them is counted in txlog.txt, not the end of the run.
    Sender bench(Model::BC785D);
    Document doc = everyKind(Model::BC785D);
    doc.memdata[0][2][col::step] = "12";
    doc.memdata[0][2][col::tone] = "149";
    doc.memdata[0][9][col::tone] = "400";
    ASSERT_TRUE(bench.send(doc, bankScope(SendPipeline::Scope::SingleBank, 0)));
    EXPECT_TRUE(bench.dialogs.shown.empty());
    const auto pm = std::find_if(bench.lines.begin(), bench.lines.end(), [](const std::string& l) { return l.rfind("PM002", 0) == 0; });
    const auto cs = std::find(pm, bench.lines.end(), "CS149");
    ASSERT_NE(cs, bench.lines.end());
    EXPECT_EQ(std::count_if(pm, cs, [](const std::string& l) { return l.rfind("ST", 0) == 0; }), 0);
    EXPECT_NE(std::find(bench.lines.begin(), bench.lines.end(), "CSL251"), bench.lines.end());
    const std::string txlog = test::readBytes((bench.dir.path() / "txlog.txt").string());
    EXPECT_NE(txlog.find("Error: step 0 left out, value:12 bk:0 ka:2"), std::string::npos);
    std::size_t refused = 0;
    for (std::size_t at = txlog.find("Refused:"); at != std::string::npos; at = txlog.find("Refused:", at + 1)) ++refused;
    EXPECT_EQ(refused, 2u) << txlog;

    // A frequency that eight digits cannot hold stops the upload there: it is
    // never sent as an empty channel, which would clear the scanner's.
    doc.memdata[0][9][col::freq] = "12345.0000";
    bench.dialogs.shown.clear();
    EXPECT_FALSE(bench.send(doc, bankScope(SendPipeline::Scope::SingleBank, 0)));
    EXPECT_EQ(bench.messages(), (std::vector<std::string>{"Channel 9: the frequency \"12345.0000\" cannot be sent. The upload has stopped."}));
    EXPECT_NE(bench.scanner.memory().channel(9).freq, 0u);
}
