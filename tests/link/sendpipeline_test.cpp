#include "link/readpipeline.h"
#include "link/sendpipeline.h"

#include "core/text.h"
#include "editor/bandplan.h"
#include "platform/fake/scripteddialogs.h"
#include "platform/fake/virtualscheduler.h"
#include "sim/virtualport.h"
#include "sim/virtualscanner.h"
#include "support/testfiles.h"

#include <gtest/gtest.h>

using namespace kestra;

namespace {

// One virtual scanner, and a transfer window's engine that can be opened on
// it for a send or a read, as the program does.
struct Bench {
    kestra::test::TempDir dir;
    VirtualScheduler scheduler;
    ScriptedDialogs dialogs;
    Settings settings;
    sim::VirtualScanner scanner;
    std::shared_ptr<VirtualDevice> device = std::make_shared<VirtualDevice>();
    std::vector<std::string> lines;  // what the scanner was sent

    explicit Bench(Model model) : scanner(model, 19200)
    {
        device->respond = [this](std::string_view b) {
            std::string partial;
            for (char c : b)
                if (c != '\r' && c != '\n') partial += c;
            if (!partial.empty()) lines.push_back(partial);
            return scanner.receive(b);
        };
        device->baud = [this] { return scanner.baudRate(); };
        settings.delay1 = 25;
    }

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

    Document read(Model model)
    {
        Document doc;
        doc.clearstores();
        doc.model = ModelSwitches::of(model);
        VirtualPort port(scheduler, device);
        ExchangeEngine engine(port, scheduler, dialogs, settings, 1, 19200, ExchangeEngine::Caption::ReadData);
        ReadPipeline pipeline(engine, doc, dialogs, scheduler, dir.path());
        engine.openForm(doc.model.bc785d);
        pipeline.open();
        scheduler.runUntil([&] { return pipeline.tagsread && engine.commstate == 0; }, 60'000);
        for (int b = 0; b < 10; ++b)
            if (pipeline.tagsread) doc.banktags[b] = pipeline.tags[b] == "_" ? " " : pipeline.tags[b];
        ReadPipeline::Options options;
        options.scope = ReadPipeline::Scope::AllBanks;
        EXPECT_TRUE(pipeline.readData(options));
        EXPECT_TRUE(scheduler.runUntil([&] { return pipeline.finished; }, 48 * 3600 * 1000));
        return doc;
    }
};

SendPipeline::Options allBanks()
{
    SendPipeline::Options o;
    o.scope = SendPipeline::Scope::AllBanks;
    return o;
}

// A document with every kind of channel content the model can hold.
Document everyKind(Model model)
{
    Document doc;
    doc.clearstores();
    doc.model = ModelSwitches::of(model);
    const bool x96 = doc.model.x96 == 1;
    const bool bc785d = doc.model.bc785d == 1;
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
            line[col::record] = std::to_string((n / 2) % 2);
            line[col::recordHidden] = line[col::record];
            line[col::delay] = bc785d ? std::to_string(n % 8) : std::to_string(n % 8);
            line[col::beep] = std::to_string((n / 3) % 2);
            line[col::tone] = std::to_string(n % 3 == 0 ? 150 + n % 38 : (n % 5 == 0 ? 188 + n % 104 : n % 143));
            line[col::lockout] = std::to_string((n / 4) % 2);
            line[col::atten] = std::to_string((n / 5) % 2);
            line[col::mode] = std::to_string(n % 4);
            const int steps[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
            int step = steps[n % 10];
            if (!x96 && (step == 8 || step == 9)) step = n % 7;
            line[col::step] = std::to_string(step);
        }
    }
    doc.memdata[9][100] = doc.memdata[0][2];
    doc.memdata[9][100][col::freq] = "0851.0125";
    doc.memdata[9][100][col::trunk] = "1";
    return doc;
}

} // namespace

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
    EXPECT_EQ(SendPipeline::txdOf("Empty"), std::nullopt);
    EXPECT_EQ(SendPipeline::txdOf("416.0000"), std::nullopt);
}

TEST(SendPipeline, TheDocumentGoesToTheScannerAndComesBackOnEveryModel)
{
    for (Model model : {Model::BC250D, Model::BC296D, Model::BC785D, Model::BC796D, Model::UBC3300}) {
        SCOPED_TRACE(modelName(model));
        Bench bench(model);
        bench.settings.expert = 1;
        Document source = everyKind(model);
        ASSERT_TRUE(bench.send(source, allBanks()));
        EXPECT_TRUE(bench.dialogs.shown.empty());
        const Document back = bench.read(model);
        const bool bc785d = ModelSwitches::of(model).bc785d == 1;
        for (int b = 0; b < 10; ++b) {
            std::string tag = source.banktags[b];
            std::replace(tag.begin(), tag.end(), ',', ';');  // the tag read turns commas into semicolons
            EXPECT_EQ(back.banktags[b], tag);
            EXPECT_EQ(back.priochan[b], source.priochan[b]);
            for (int r = 1; r <= 100; ++r) {
                SCOPED_TRACE(std::to_string(b * 100 + r));
                const auto& want = source.memdata[b][r];
                const auto& got = back.memdata[b][r];
                if (Val(want[col::freq]) == 0) {
                    ASSERT_EQ(got[col::freq], "0000.0000");
                    continue;
                }
                ASSERT_EQ(got[col::freq], want[col::freq]);
                std::string tag = want[col::tag].substr(0, 16);
                std::replace(tag.begin(), tag.end(), '"', ' ');  // a quote comes back as a blank
                EXPECT_EQ(got[col::tag], tag);
                EXPECT_EQ(got[col::trunk], want[col::trunk]);
                EXPECT_EQ(got[col::mode], want[col::mode]);
                // A frequency sent by "PM" takes the scanner's own step of its band.
                EXPECT_EQ(got[col::step], findBand(builtinPlan(1), Val(want[col::freq]))->step);
                // The BC2xx family has one delay: any other comes back as 2 seconds.
                EXPECT_EQ(got[col::delay], bc785d || want[col::delay] == "0" ? want[col::delay] : "2");
                EXPECT_EQ(got[col::beep], want[col::beep]);
                EXPECT_EQ(got[col::lockout], want[col::lockout]);
                EXPECT_EQ(got[col::atten], want[col::atten]);
                EXPECT_EQ(got[bc785d ? col::record : col::recordHidden], want[col::record]);
                EXPECT_EQ(toneText(repairToneCode(got[col::tone])), toneText(want[col::tone]));
            }
        }
    }
}

TEST(SendPipeline, KeyedUploadKeepsEveryStep)
{
    // "Advanced Frequency Upload" keys every frequency in; the automatic one
    // keys only those whose wanted step is not the band's own.
    for (const bool automatic : {false, true}) {
        SCOPED_TRACE(automatic ? "automatic" : "always");
        Bench bench(Model::BC796D);
        bench.settings.expert = 1;
        (automatic ? bench.settings.option2 : bench.settings.khz9) = 1;
        Document source = everyKind(Model::BC796D);
        ASSERT_TRUE(bench.send(source, allBanks()));
        int full = 0, byBand = 0;
        for (int b = 0; b < 10; ++b)
            for (int r = 1; r <= 100; ++r)
                if (Val(source.memdata[b][r][col::freq]) != 0) {
                    ++full;
                    byBand += findBand(builtinPlan(1), Val(source.memdata[b][r][col::freq]))->step == source.memdata[b][r][col::step];
                }
        EXPECT_EQ(std::count(bench.lines.begin(), bench.lines.end(), "KEY14"), automatic ? full - byBand : full);
        const Document back = bench.read(Model::BC796D);
        for (int b = 0; b < 10; ++b)
            for (int r = 1; r <= 100; ++r) {
                const auto& want = source.memdata[b][r];
                if (Val(want[col::freq]) == 0) continue;
                ASSERT_EQ(back.memdata[b][r][col::freq], want[col::freq]);
                // "Auto" is not read back: the cell keeps what the clearing left.
                ASSERT_EQ(back.memdata[b][r][col::step], want[col::step] == "7" ? " " : want[col::step]);
            }
    }
}

TEST(SendPipeline, AnEmptyChannelIsOneExchangeAndChannelOneThousandIsZero)
{
    Bench bench(Model::BC785D);
    bench.settings.expert = 1;
    Document doc = everyKind(Model::BC785D);
    for (int r = 1; r < 100; ++r) doc.memdata[9][r][col::freq] = "0";
    doc.memdata[9][100][col::beep] = "0";
    SendPipeline::Options o;
    o.scope = SendPipeline::Scope::SingleBank;
    o.bank = 9;
    ASSERT_TRUE(bench.send(doc, o)) << (bench.dialogs.shown.empty() ? "" : bench.dialogs.shown.back().text);
    const auto& lines = bench.lines;
    EXPECT_NE(std::find(lines.begin(), lines.end(), "PM901 00000000"), lines.end());
    EXPECT_NE(std::find(lines.begin(), lines.end(), "PM000T08510125"), lines.end());
    EXPECT_NE(std::find(lines.begin(), lines.end(), "BAF C 1000"), lines.end());
    EXPECT_NE(std::find(lines.begin(), lines.end(), "BAF C 000"), lines.end());
    // Between two empty channels nothing but their "PM".
    const auto at = std::find(lines.begin(), lines.end(), "PM950 00000000");
    ASSERT_NE(at, lines.end());
    EXPECT_EQ(*(at + 1), "PM951 00000000");
}

TEST(SendPipeline, ConfirmationsAndRefusals)
{
    Bench bench(Model::BC250D);
    Document doc = everyKind(Model::BC250D);
    bench.dialogs.answers = {Answer::No};
    EXPECT_FALSE(bench.send(doc, allBanks()));
    ASSERT_EQ(bench.dialogs.shown.size(), 1u);
    EXPECT_EQ(bench.dialogs.shown[0].text, "Please confirm data upload.\r\nChannels: 0 / 1000\r\nAre you sure?");
    EXPECT_EQ(bench.dialogs.shown[0].buttons, Buttons::YesNo);

    doc.onebankread = 1;
    bench.dialogs.answers = {Answer::Yes, Answer::No};
    EXPECT_FALSE(bench.send(doc, allBanks()));
    EXPECT_EQ(bench.dialogs.shown.back().text,
              "WARNING: Please re-confirm data upload.\r\nYou previously downloaded 1 bank and now you want to upload all "
              "banks.\r\nAll remaining channels will be cleared!\r\nAre you sure?");
    EXPECT_EQ(doc.onebankread, 1);

    Document empty;
    empty.clearstores();
    empty.model = ModelSwitches::of(Model::BC250D);
    SendPipeline::Options single;
    single.scope = SendPipeline::Scope::SingleBank;
    single.bank = 4;
    EXPECT_FALSE(bench.send(empty, single));
    EXPECT_EQ(bench.dialogs.shown.back().text, "There is nothing to send!");
    SendPipeline::Options none;
    none.frequencies = false;
    EXPECT_FALSE(bench.send(empty, none));
    EXPECT_EQ(bench.dialogs.shown.back().text, "Please select which data you want to upload.");
}

TEST(SendPipeline, DeleteBankClearsItsHundredChannels)
{
    Bench bench(Model::BC796D);
    bench.settings.expert = 1;
    Document doc = everyKind(Model::BC796D);
    ASSERT_TRUE(bench.send(doc, allBanks()));
    VirtualPort port(bench.scheduler, bench.device);
    ExchangeEngine engine(port, bench.scheduler, bench.dialogs, bench.settings, 1, 19200, ExchangeEngine::Caption::SendData);
    SendPipeline pipeline(engine, doc, bench.settings, bench.dialogs, bench.scheduler, bench.dir.path());
    engine.openport();
    SendPipeline::Options o;
    o.scope = SendPipeline::Scope::SingleBank;
    o.bank = 2;
    ASSERT_TRUE(pipeline.deleteBank(o));
    bench.scheduler.advance(1000);
    EXPECT_TRUE(bench.scanner.memory().channel(201).empty());
    EXPECT_TRUE(bench.scanner.memory().channel(300).empty());
    EXPECT_FALSE(bench.scanner.memory().channel(102).empty());
    EXPECT_FALSE(bench.scanner.memory().channel(302).empty());
    o.scope = SendPipeline::Scope::AllBanks;
    EXPECT_FALSE(pipeline.deleteBank(o));
    EXPECT_EQ(bench.dialogs.shown.back().text, "Please select which bank you want to delete.");
}

TEST(SendPipeline, ACellOutsideItsListSendsNothingAndTheWatchdogEndsTheRun)
{
    Bench bench(Model::BC785D);
    bench.settings.expert = 1;
    Document doc = everyKind(Model::BC785D);
    doc.memdata[0][2][col::step] = "12";  // no such step
    SendPipeline::Options o;
    o.scope = SendPipeline::Scope::SingleBank;
    o.bank = 0;
    EXPECT_FALSE(bench.send(doc, o));
    ASSERT_FALSE(bench.dialogs.shown.empty());
    EXPECT_EQ(bench.dialogs.shown.back().text,
              "Communication Timeout. Please check if scanner is switched on/connected/in remote mode.");
    // The channel was started ten times: once, and nine times by the watchdog.
    EXPECT_EQ(std::count_if(bench.lines.begin(), bench.lines.end(), [](const std::string& l) { return l.rfind("PM002", 0) == 0; }), 10);
}
