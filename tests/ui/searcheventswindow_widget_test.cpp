// The range editor sevent from the main window, against the program's
// built-in virtual scanner in virtual time: ranges typed in, normalised and
// sent, found in the scanner's memory and its MEM dump, read back; presets;
// Cancel; and the Active Banks dialog feeding Send Data.

// The scanner's headers come before Qt's: Qt's keyword macros would otherwise
// reach into them.
#include "sim/documentmapping.h"
#include "sim/scannermemory.h"
#include "sim/virtualscanner.h"

#include "ui/activebankswindow.h"
#include "ui/searcheventswindow.h"
#include "ui/transferwindow.h"

#include "support/mainwindowrig.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace kestra {
namespace {

using sim::Modulation;
using sim::Step;

class SearchEventsTest : public ::testing::TestWithParam<Model>, protected test::MainWindowRig {
protected:
    void startConnected(const std::function<void()>& files = {})
    {
        Options options = Options::connected();
        options.beforeTable = files;
        options.beforeWindow = [this] { doc.model = ModelSwitches::of(GetParam()); };
        start(options);
    }
    sim::VirtualScanner& scanner() { return ports->virtualScanner(doc.model.model()); }

    static void type(QLineEdit* box, const char* keys)
    {
        box->selectAll();
        QTest::keyClick(box, Qt::Key_Delete);
        QTest::keyClicks(box, keys);
    }
    static void choose(QComboBox* list, const char* text)
    {
        const int i = list->findText(text);
        ASSERT_GE(i, 0) << text;
        list->setCurrentIndex(i);
    }
    static void click(SearchEventsWindow* w, const char* name) { QTest::mouseClick(w->button(name), Qt::LeftButton); }
};

// The step only some models have: 20 kHz on the UBC3300, 6.25 kHz on the x96 models.
std::pair<const char*, Step> ownStep(const ModelSwitches& m)
{
    if (m.ubc33 == 1) return {"20", Step::k20};
    if (m.x96 == 1) return {"6.25", Step::k6_25};
    return {"5", Step::k5};
}

TEST_P(SearchEventsTest, RangesGoToTheScannerAsItCanTuneThemAndComeBackEqual)
{
    startConnected();
    const ModelSwitches model = doc.model;
    const auto [stepText, step] = ownStep(model);
    SearchRangeData expected{};
    whileOpen<SearchEventsWindow>("redit", [&](SearchEventsWindow* w) {
        EXPECT_EQ(w->windowTitle(), "Search Events:");
        EXPECT_EQ(w->stepList(0)->count(), 10 + (model.x96 == 1 || model.ubc33 == 1 ? 1 : 0) + model.ubc33);
        // Letters are refused by the limit boxes.
        type(w->startBox(0), "1o000");
        type(w->endBox(0), "1250");
        choose(w->modeList(0), "NFM");
        choose(w->stepList(0), "12.5");
        type(w->tagBox(0), "Gap");
        type(w->startBox(1), "600");
        type(w->endBox(1), "851.5");
        choose(w->modeList(1), "WFM");
        choose(w->stepList(1), "Auto");
        type(w->tagBox(1), "Upper");
        type(w->startBox(2), "20");
        type(w->endBox(2), "1400");
        type(w->tagBox(2), "Wide");          // mode "-": no menu walk
        type(w->startBox(3), "162.55");
        type(w->endBox(3), "162.4");
        choose(w->modeList(3), "AM");
        choose(w->stepList(3), stepText);
        type(w->tagBox(3), "Marine");
        EXPECT_TRUE(w->button("Apply")->isEnabled());

        click(w, "Command5");
        EXPECT_EQ(dialogs.shown.size(), 0u);
        // The boxes show what went.
        const char* sent[4][2] = {{"956", "1250"}, {"512", "851.5"}, {"25", "1300"}, {"162.55", "162.4"}};
        for (int r = 0; r < 4; ++r) {
            EXPECT_EQ(w->startBox(r)->text(), sent[r][0]) << r;
            EXPECT_EQ(w->endBox(r)->text(), sent[r][1]) << r;
        }
        EXPECT_EQ(w->startBox(9)->text(), "0");

        const sim::ScannerMemory& memory = scanner().memory();
        EXPECT_EQ(memory.search[0].lower, 9560000u);
        EXPECT_EQ(memory.search[0].upper, 12500000u);
        EXPECT_EQ(memory.search[0].mode, Modulation::NFM);
        EXPECT_EQ(memory.search[0].step, Step::k12_5);
        EXPECT_EQ(memory.search[0].tag, "Gap");
        EXPECT_EQ(memory.search[1].lower, 5120000u);
        EXPECT_EQ(memory.search[1].mode, Modulation::WFM);
        EXPECT_EQ(memory.search[1].step, Step::Auto);
        EXPECT_EQ(memory.search[2].lower, 250000u);
        EXPECT_EQ(memory.search[2].upper, 13000000u);
        EXPECT_EQ(memory.search[2].mode, Modulation::Auto);   // untouched
        EXPECT_EQ(memory.search[3].mode, Modulation::AM);
        EXPECT_EQ(memory.search[3].step, step);
        EXPECT_EQ(memory.search[3].tag, "Marine");

        // The scanner's MEM dump carries the same ranges.
        Document dumped;
        ASSERT_EQ(readMem(dumped, sim::memFileText(memory), 0).status, MemLoadStatus::Loaded);
        expected = dumped.srcdata;
        EXPECT_EQ(expected[0][0], "0956.0000");
        EXPECT_EQ(expected[0][1], "1250.0000");
        EXPECT_EQ(expected[1][0], "0512.0000");
        EXPECT_EQ(expected[3][3], std::to_string(w->stepList(3)->findText(stepText)));
        EXPECT_EQ(expected[0][2], "4");

        // Cleared, then read back from the scanner.
        click(w, "Command6");
        EXPECT_EQ(w->startBox(0)->text(), "");
        click(w, "Command3");
        EXPECT_EQ(w->startBox(0)->text(), "0956.0000");
        EXPECT_EQ(w->endBox(1)->text(), "0851.5000");
        EXPECT_EQ(w->startBox(2)->text(), "0025.0000");
        EXPECT_EQ(w->endBox(2)->text(), "1300.0000");
        EXPECT_EQ(w->startBox(9)->text(), "0000.0000");
        EXPECT_EQ(w->modeList(0)->currentText(), "NFM");
        EXPECT_EQ(w->stepList(0)->currentText(), "12.5");
        EXPECT_EQ(w->modeList(1)->currentText(), "WFM");
        EXPECT_EQ(w->stepList(1)->currentText(), "Auto");
        EXPECT_EQ(w->modeList(3)->currentText(), "AM");
        EXPECT_EQ(w->stepList(3)->currentText(), stepText);
        EXPECT_EQ(w->tagBox(0)->text(), "Gap");
        EXPECT_EQ(w->tagBox(3)->text(), "Marine");
        QTest::mouseClick(w->button("Command1"), Qt::LeftButton);
    });
    EXPECT_TRUE(doc.dirty);
    // Equal to the dump; the ranges without limits only in limits and tag, as
    // the dump calls their mode and step no choice while the menu shows Auto.
    for (int r = 0; r < 10; ++r)
        for (int f : {0, 1, 2, 3, 4})
            if (r < 4 || f == 0 || f == 1 || f == 4) {
                EXPECT_EQ(doc.srcdata[r][f], expected[r][f]) << r << "," << f;
            }
}

INSTANTIATE_TEST_SUITE_P(AllModels, SearchEventsTest,
                         ::testing::Values(Model::BC250D, Model::BC296D, Model::BC785D, Model::BC796D, Model::UBC3300),
                         [](const auto& info) { return std::string(modelName(info.param)); });

using SearchEventsOneModel = SearchEventsTest;

TEST_P(SearchEventsOneModel, PresetsFillARowAndCancelKeepsTheStore)
{
    startConnected([this] {
        test::writeBytes(dir.path() / "SEARCH.TXT",
                         "Search presets\r\n\r\nstart,end,mode,step,tag,x\r\n"
                         "\"0118.0000\",\"0137.0000\",\"AM\",\"25\",\"Air band\",\"\"\r\n"
                         "\"0156.0000\",\"0162.0000\",\"nfm\",\"12.5\",\"Marine\",\"\"\r\n");
    });
    doc.srcdata[0][0] = "0025.0000";
    const auto before = doc.srcdata;
    whileOpen<SearchEventsWindow>("redit", [&](SearchEventsWindow* w) {
        EXPECT_TRUE(w->presetList(0)->isHidden());
        click(w, "Command4");
        ASSERT_FALSE(w->presetList(0)->isHidden());
        ASSERT_EQ(w->presetList(4)->count(), 2);
        EXPECT_EQ(w->presetList(4)->itemText(0), "0118.0000 - 0137.0000 - Air band");
        emit w->presetList(4)->activated(0);
        EXPECT_EQ(w->startBox(4)->text(), "0118.0000");
        EXPECT_EQ(w->tagBox(4)->text(), "Air band");
        EXPECT_EQ(w->modeList(4)->currentText(), "AM");
        EXPECT_EQ(w->stepList(4)->currentText(), "25");
        // A lower-case mode names no mode.
        emit w->presetList(5)->activated(1);
        EXPECT_EQ(w->modeList(5)->currentText(), "-");
        EXPECT_EQ(w->stepList(5)->currentText(), "12.5");
        click(w, "Command3");   // a read, then Cancel
        EXPECT_EQ(w->startBox(0)->text(), "0000.0000");
        click(w, "Command2");
    });
    EXPECT_EQ(doc.srcdata, before);
    EXPECT_FALSE(doc.dirty);

    // With the Virtual Control holding the port the editor does not open.
    table->vcrunning = true;
    EXPECT_FALSE(ifOpened<SearchEventsWindow>("redit", [](SearchEventsWindow*) {}));
    EXPECT_EQ(messages().back(), "Not possible while Virtual Control is running");
}

INSTANTIATE_TEST_SUITE_P(BC250D, SearchEventsOneModel, ::testing::Values(Model::BC250D));

// Active Banks: the dialog's rows reach the scanner's lists when Send Data
// runs with "Upload Active Bank settings" on, and not when it is off.
TEST_P(SearchEventsOneModel, ActiveBanksReachTheScannerOnlyWithTheUploadOption)
{
    startConnected();
    whileOpen<ActiveBanksWindow>("set_search", [&](ActiveBanksWindow* w) {
        EXPECT_EQ(w->windowTitle(), "Active Banks:");
        QTest::mouseClick(w->button("Command4"), Qt::LeftButton);   // All search ranges
        QTest::mouseClick(w->box(2), Qt::LeftButton);               // scan bank 3
        QTest::mouseClick(w->box(5), Qt::LeftButton);               // scan bank 6
        QTest::mouseClick(w->button("Command2"), Qt::LeftButton);   // Cancel
    });
    EXPECT_EQ(doc.banklockm, (std::array<std::int16_t, 10>{}));
    EXPECT_EQ(doc.banklocks, (std::array<std::int16_t, 10>{}));
    whileOpen<ActiveBanksWindow>("set_search", [&](ActiveBanksWindow* w) {
        QTest::mouseClick(w->button("Command4"), Qt::LeftButton);
        QTest::mouseClick(w->box(17), Qt::LeftButton);               // range 8 off again
        QTest::mouseClick(w->box(2), Qt::LeftButton);
        QTest::mouseClick(w->box(5), Qt::LeftButton);
        QTest::mouseClick(w->button("Command1"), Qt::LeftButton);
    });
    EXPECT_EQ(doc.banklockm, (std::array<std::int16_t, 10>{0, 0, 1, 0, 0, 1, 0, 0, 0, 0}));
    EXPECT_EQ(doc.banklocks, (std::array<std::int16_t, 10>{1, 1, 1, 1, 1, 1, 1, 0, 1, 1}));

    const auto sendNothing = [this] {
        ifOpened<TransferWindow>("memsend", [this](TransferWindow* w) {
            scheduler.runUntil([w] { return w->sendPipeline()->opened(); }, 60'000);
            for (int k = 0; k < 4; ++k) w->check3D3(k)->setChecked(false);
            QTest::mouseClick(w->command5(), Qt::LeftButton);
        });
    };
    std::array<bool, 10> all{};
    all.fill(true);
    settings.linkbank = 0;
    sendNothing();
    EXPECT_EQ(scanner().memory().scanBanks, all);
    EXPECT_EQ(scanner().memory().searchRanges, all);
    settings.linkbank = 1;
    sendNothing();
    EXPECT_EQ(scanner().memory().scanBanks, (std::array<bool, 10>{false, false, true, false, false, true, false, false, false, false}));
    EXPECT_EQ(scanner().memory().searchRanges, (std::array<bool, 10>{true, true, true, true, true, true, true, false, true, true}));
    EXPECT_EQ(messages().back(), "Please select which data you want to upload.");
}

} // namespace
} // namespace kestra
