#include "link/readpipeline.h"

#include "core/text.h"
#include "platform/fake/scripteddialogs.h"
#include "platform/fake/virtualscheduler.h"
#include "sim/documentmapping.h"
#include "sim/virtualport.h"
#include "sim/virtualscanner.h"
#include "support/testfiles.h"

#include <gtest/gtest.h>

using namespace kestra;

namespace {

// The transfer window's engine and the read pipeline, on a virtual scanner.
struct ReadRig {
    kestra::test::TempDir dir;
    VirtualScheduler scheduler;
    ScriptedDialogs dialogs;
    Settings settings;
    sim::VirtualScanner scanner;
    std::shared_ptr<VirtualDevice> device = std::make_shared<VirtualDevice>();
    VirtualPort port{scheduler, device};
    std::unique_ptr<ExchangeEngine> engine;
    Document doc;
    std::unique_ptr<ReadPipeline> pipeline;

    explicit ReadRig(Model model, const std::string& faults = "") : scanner(model, 19200)
    {
        device->respond = [this](std::string_view b) { return scanner.receive(b); };
        device->baud = [this] { return scanner.baudRate(); };
        device->faults = *LineFaults::parse(faults);
        engine = std::make_unique<ExchangeEngine>(port, scheduler, dialogs, settings, 1, 19200,
                                                  ExchangeEngine::Caption::ReadData);
        doc.model = ModelSwitches::of(model);
        doc.clearstores();
        pipeline = std::make_unique<ReadPipeline>(*engine, doc, dialogs, scheduler, dir.path());
        engine->openForm(doc.model.bc785d);
    }
    bool read(const ReadPipeline::Options& options)
    {
        if (!pipeline->readData(options)) return false;
        return scheduler.runUntil([this] { return pipeline->finished || engine->stopflag == 1; }, 24 * 3600 * 1000);
    }
    std::vector<std::string> messages() const
    {
        std::vector<std::string> m;
        for (const auto& s : dialogs.shown) m.push_back(s.text);
        return m;
    }
};

Document sourceDocument(Model model)
{
    Document doc;
    doc.clearstores();
    doc.model = ModelSwitches::of(model);
    const bool x96 = doc.model.x96 == 1;
    const bool long785 = doc.model.bc785d == 1;
    int n = 0;
    for (int b = 0; b < 10; ++b)
        for (int r = (b == 0 ? 1 : 3); r <= 100; r += 13 + b) {
            auto& line = doc.memdata[b][r];
            ++n;
            line[col::freq] = padfreq(std::to_string(146 + n % 300) + "." + std::to_string(1000 + (n * 125) % 9000), 8, 5);
            line[col::tag] = "Ch " + std::to_string(n) + (n % 5 == 0 ? " \"q\"" : "");
            line[col::trunk] = std::to_string(n % 2);
            line[col::delay] = long785 ? std::to_string(n % 8) : (n % 2 ? "2" : "0");
            line[col::record] = std::to_string((n / 2) % 2);
            line[col::recordHidden] = std::to_string((n / 2) % 2);
            line[col::beep] = std::to_string((n / 3) % 2);
            line[col::tone] = std::to_string(n % 5 == 0 ? 150 + n % 38 : n % 143);
            line[col::lockout] = std::to_string((n / 4) % 2);
            line[col::atten] = std::to_string((n / 5) % 2);
            line[col::mode] = std::to_string(n % 4);
            const int steps[] = {0, 1, 2, 3, 4, 5, 6, 8, 9};
            line[col::step] = std::to_string(steps[n % (x96 ? 9 : 7)]);
        }
    doc.memdata[9][100] = doc.memdata[0][1];  // channel 1000
    doc.memdata[9][100][col::freq] = "0851.0125";
    doc.memdata[9][100][col::tag] = "Last one";
    return doc;
}

} // namespace

TEST(ReadPipeline, OpeningReadsTheBankTagsAndTrunkTypes)
{
    ReadRig rig(Model::BC796D);
    for (int b = 0; b < 10; ++b) rig.scanner.memory().bankTags[b] = b == 3 ? "Fire, EMS" : "Bank " + std::string(1, 'A' + b);
    rig.pipeline->open();
    rig.scheduler.runUntil([&] { return rig.engine->status.text3 == "Trunk type read Ok"; }, 60'000);
    EXPECT_TRUE(rig.pipeline->tagsread);
    EXPECT_EQ(rig.pipeline->tags[3], "Fire; EMS");
    EXPECT_EQ(rig.pipeline->combo1Lines()[3], "301 - 400 / 4 / Fire; EMS");
    EXPECT_EQ(rig.engine->status.text3, "Trunk type read Ok");
    EXPECT_TRUE(rig.messages().empty());
}

TEST(ReadPipeline, AllBanksBringsEveryChannelBackOnEveryModel)
{
    for (Model model : {Model::BC250D, Model::BC296D, Model::BC785D, Model::BC796D, Model::UBC3300}) {
        SCOPED_TRACE(modelName(model));
        ReadRig rig(model);
        const Document source = sourceDocument(model);
        sim::fillFromDocument(rig.scanner.memory(), source);
        ReadPipeline::Options options;
        options.scope = ReadPipeline::Scope::AllBanks;
        ASSERT_TRUE(rig.read(options));
        EXPECT_TRUE(rig.messages().empty());
        const bool bc785d = ModelSwitches::of(model).bc785d == 1;
        for (int b = 0; b < 10; ++b)
            for (int r = 1; r <= 100; ++r) {
                const auto& want = source.memdata[b][r];
                const auto& got = rig.doc.memdata[b][r];
                SCOPED_TRACE(std::to_string(b * 100 + r));
                if (Val(want[col::freq]) == 0) {
                    ASSERT_EQ(got[col::freq], "0000.0000");
                    ASSERT_EQ(got[col::tag], " ");  // the rest of a cleared channel stays
                    continue;
                }
                ASSERT_EQ(got[col::freq], want[col::freq]);
                std::string tag = want[col::tag];
                std::replace(tag.begin(), tag.end(), '"', ' ');  // a quote comes back as a blank
                EXPECT_EQ(got[col::tag], tag);
                EXPECT_EQ(got[col::trunk], want[col::trunk]);
                EXPECT_EQ(got[col::mode], want[col::mode]);
                EXPECT_EQ(got[col::step], want[col::step]);
                EXPECT_EQ(got[col::delay], want[col::delay]);
                EXPECT_EQ(got[col::beep], want[col::beep]);
                EXPECT_EQ(got[col::lockout], want[col::lockout]);
                EXPECT_EQ(got[col::atten], want[col::atten]);
                EXPECT_EQ(got[bc785d ? col::record : col::recordHidden], want[col::record]);
                EXPECT_EQ(toneText(repairToneCode(got[col::tone])), toneText(want[col::tone]));
            }
        for (int b = 0; b < 10; ++b) EXPECT_EQ(rig.doc.priochan[b], rig.scanner.memory().priority[b]);
    }
}

TEST(ReadPipeline, KindsNotBuiltYetAreNamedInTheirOrder)
{
    ReadPipeline::Options o;
    EXPECT_EQ(o.kindsNotAvailable(), "");
    o.searchEvents = true;
    o.trunkIds = true;
    EXPECT_EQ(o.kindsNotAvailable(), "Not yet available in this version: Trunk Id's Search Events");
}

TEST(ReadPipeline, AFlakyLineStillReadsEveryChannelRight)
{
    // Lost and split replies over a whole read: each lost reply restarts its
    // channel, and each finished channel clears the count of retries.
    ReadRig rig(Model::BC796D, "drop=0.04,split=0.4,delay=30,seed=11");
    const Document source = sourceDocument(Model::BC796D);
    sim::fillFromDocument(rig.scanner.memory(), source);
    ReadPipeline::Options options;
    options.scope = ReadPipeline::Scope::AllBanks;
    ASSERT_TRUE(rig.read(options));
    EXPECT_TRUE(rig.pipeline->finished);
    EXPECT_TRUE(rig.messages().empty());
    for (int b = 0; b < 10; ++b)
        for (int r = 1; r <= 100; ++r) {
            const auto& want = source.memdata[b][r];
            if (Val(want[col::freq]) == 0) continue;
            ASSERT_EQ(rig.doc.memdata[b][r][col::freq], want[col::freq]) << b * 100 + r;
            std::string tag = want[col::tag];
            std::replace(tag.begin(), tag.end(), '"', ' ');
            ASSERT_EQ(rig.doc.memdata[b][r][col::tag], tag) << b * 100 + r;
        }
}
