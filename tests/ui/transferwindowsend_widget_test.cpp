// Send Data from the main window, through the transfer window arcomm8 into the
// program's built-in virtual scanner, in virtual time: a bank sent, the
// confirmation refused, an empty bank, Delete Bank, STOP, the table check
// before the upload, and the Virtual Control's hold on the port.

// The scanner's headers come before Qt's: Qt's keyword macros would otherwise
// reach into them.
#include "sim/scannermemory.h"
#include "sim/virtualscanner.h"

#include "ui/transferwindow.h"

#include "support/mainwindowrig.h"

#include <QComboBox>
#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace kestra {
namespace {

class SendDataMenuTest : public ::testing::Test, protected test::MainWindowRig {
protected:
    void SetUp() override
    {
        start(Options::connected());

        // The scanner holds channels of its own in banks 2 and 3 and a tag for bank 3.
        sim::ScannerMemory& memory = scanner().memory();
        memory.channel(150).freq = 8510000;
        memory.channel(150).tag = "Old";
        memory.channel(201).freq = 1545000;
        memory.channel(250).freq = 4625000;
        memory.bankTags[2] = "Spare";
    }

    sim::VirtualScanner& scanner() { return ports->virtualScanner(doc.model.model()); }

    void put(int bank, int row, const char* freq, const char* tag) { test::putChannel(doc, bank, row, freq, tag); }

    // Runs body on the Send Data window once it is up (its load has run by
    // then); false when no window opened.
    bool whileOpen(const std::function<void(TransferWindow*)>& body) { return ifOpened<TransferWindow>("memsend", body); }

    // Chooses Single Bank and a bank in the window.
    static void chooseBank(TransferWindow* w, int bank)
    {
        QTest::mouseClick(w->option3D2(1), Qt::LeftButton);
        w->combo1()->setCurrentIndex(bank);
    }
    void tagsRead(TransferWindow* w)
    {
        scheduler.runUntil([w] { return w->sendPipeline()->opened(); }, 60'000);
        w->refreshStatus();
    }
    bool closesItself(TransferWindow* w) { return scheduler.runUntil([w] { return !w->isVisible(); }, 3600'000); }
};

TEST_F(SendDataMenuTest, ASingleBankGoesIntoTheScannerAndTheDocumentStaysAsItWas)
{
    put(1, 1, "0155.1000", "Fire dispatch");
    doc.memdata[1][1][col::atten] = "1";
    put(1, 40, "0460.2500", "Police");
    doc.memdata[1][40][col::lockout] = "1";
    // Bank 2 on show, with a channel typed into the grid.
    clickTab(1);
    ASSERT_EQ(doc.currentBank, 1);
    typeInto(2, col::freq, "162.55");
    // What the store holds once it has the grid; the send leaves it so.
    ASSERT_TRUE(table->createbank());
    doc.dirty = false;
    const auto before = doc.memdata;

    bool closedByItself = false;
    ASSERT_TRUE(whileOpen([&](TransferWindow* w) {
        EXPECT_EQ(w->windowTitle(), "Send Data");
        EXPECT_EQ(w->command5()->text(), "&Send Data");
        EXPECT_EQ(w->command3()->text(), "&Delete Bank");
        EXPECT_TRUE(w->command1()->isHidden());
        tagsRead(w);
        EXPECT_EQ(w->combo1()->itemText(2), "201 - 300 / 3  -  EMPTY / Spare");

        // Delete Bank is there for a single bank only.
        QTest::mouseClick(w->option3D2(0), Qt::LeftButton);
        EXPECT_FALSE(w->command3()->isEnabled());
        chooseBank(w, 1);
        EXPECT_TRUE(w->command3()->isEnabled());

        dialogs.answers = {Answer::Yes};
        QTest::mouseClick(w->command5(), Qt::LeftButton);
        ASSERT_EQ(dialogs.shown.size(), 1u);
        EXPECT_EQ(dialogs.shown[0].text, "Please confirm data upload.\r\nChannels: 100 / 200\r\nAre you sure?");
        EXPECT_EQ(dialogs.shown[0].buttons, Buttons::YesNo);
        EXPECT_TRUE(w->runStarted());
        EXPECT_FALSE(w->frame3D6()->isEnabled());
        EXPECT_FALSE(w->command5()->isEnabled());
        EXPECT_FALSE(w->command3()->isEnabled());
        closedByItself = closesItself(w) && w->runFinished();
    }));
    EXPECT_TRUE(closedByItself);
    EXPECT_EQ(dialogs.shown.size(), 1u);

    const sim::ScannerMemory& memory = scanner().memory();
    EXPECT_EQ(memory.channel(101).freq, 1551000u);
    EXPECT_EQ(memory.channel(101).tag, "Fire dispatch");
    EXPECT_TRUE(memory.channel(101).atten);
    EXPECT_FALSE(memory.channel(101).lockout);
    EXPECT_EQ(memory.channel(102).freq, 1625500u);   // the typed one
    EXPECT_EQ(memory.channel(140).freq, 4602500u);
    EXPECT_EQ(memory.channel(140).tag, "Police");
    EXPECT_TRUE(memory.channel(140).lockout);
    EXPECT_TRUE(memory.channel(150).empty());        // empty in the document: cleared
    EXPECT_EQ(memory.channel(201).freq, 1545000u);   // another bank: not touched
    EXPECT_TRUE(std::filesystem::exists(dir.path() / "txlog.txt"));

    EXPECT_FALSE(doc.dirty);
    EXPECT_TRUE(doc.memdata == before);
    EXPECT_EQ(cell(1, col::tag), "Fire dispatch");
}

TEST_F(SendDataMenuTest, NothingGoesOutForANoOrForAnEmptyBank)
{
    put(1, 1, "0155.1000", "Fire dispatch");
    // Bank 1 is on show and has only a channel typed into the grid: the store
    // takes the grid before the window opens, so the bank is not empty there.
    typeInto(1, col::freq, "146.52");
    ASSERT_TRUE(whileOpen([&](TransferWindow* w) {
        EXPECT_EQ(w->combo1()->itemText(0), "1 - 100 / 1");
        EXPECT_EQ(w->combo1()->itemText(2), "201 - 300 / 3  -  EMPTY");
        tagsRead(w);
        chooseBank(w, 1);
        dialogs.answers = {Answer::No};
        QTest::mouseClick(w->command5(), Qt::LeftButton);
        ASSERT_EQ(dialogs.shown.size(), 1u);
        EXPECT_EQ(dialogs.shown[0].buttons, Buttons::YesNo);
        EXPECT_FALSE(w->runStarted());
        EXPECT_TRUE(w->command5()->isEnabled());
        EXPECT_TRUE(w->command3()->isEnabled());
        scheduler.advance(60'000);
        EXPECT_TRUE(w->isVisible());

        // Bank 3 has nothing in the document: no question, nothing sent.
        dialogs.shown.clear();
        chooseBank(w, 2);
        QTest::mouseClick(w->command5(), Qt::LeftButton);
        ASSERT_EQ(dialogs.shown.size(), 1u);
        EXPECT_EQ(dialogs.shown[0].text, "There is nothing to send!");
        EXPECT_FALSE(w->runStarted());
        EXPECT_TRUE(w->command5()->isEnabled());
    }));
    const sim::ScannerMemory& memory = scanner().memory();
    EXPECT_TRUE(memory.channel(101).empty());
    EXPECT_EQ(memory.channel(150).freq, 8510000u);
    EXPECT_EQ(memory.channel(150).tag, "Old");
    EXPECT_EQ(memory.channel(201).freq, 1545000u);
}

TEST_F(SendDataMenuTest, DeleteBankClearsTheBankInTheScannerAndResetsTheChoice)
{
    put(2, 1, "0154.5000", "Kept in the file");
    doc.dirty = false;
    ASSERT_TRUE(whileOpen([&](TransferWindow* w) {
        tagsRead(w);
        chooseBank(w, 2);
        dialogs.answers = {Answer::Yes};
        QTest::mouseClick(w->command3(), Qt::LeftButton);
        ASSERT_EQ(dialogs.shown.size(), 1u);
        EXPECT_EQ(dialogs.shown[0].text,
                  "You selected to delete all data in bank 3.\r\nChannels: 201 - 300\r\nAre you sure?");
        for (int i = 0; i < 3; ++i) EXPECT_FALSE(w->option3D2(i)->isChecked()) << i;
        EXPECT_EQ(w->combo1()->currentIndex(), -1);
        EXPECT_FALSE(w->command3()->isEnabled());
        EXPECT_TRUE(w->command5()->isEnabled());
        EXPECT_TRUE(w->frame3D6()->isEnabled());
        EXPECT_TRUE(w->isVisible());
        EXPECT_FALSE(w->runStarted());
    }));
    const sim::ScannerMemory& memory = scanner().memory();
    EXPECT_TRUE(memory.channel(201).empty());
    EXPECT_TRUE(memory.channel(250).empty());
    EXPECT_EQ(memory.channel(150).freq, 8510000u);
    EXPECT_EQ(doc.memdata[2][1][col::freq], "0154.5000");
    EXPECT_FALSE(doc.dirty);
}

TEST_F(SendDataMenuTest, StopMidRunGivesSendDataBack)
{
    put(0, 1, "0146.5200", "Calling");
    put(5, 1, "0853.0000", "Not reached");
    table->fillgrid();
    ASSERT_TRUE(whileOpen([&](TransferWindow* w) {
        tagsRead(w);
        QTest::mouseClick(w->option3D2(0), Qt::LeftButton);
        QTest::mouseClick(w->command5(), Qt::LeftButton);
        ASSERT_TRUE(w->runStarted());
        scheduler.runUntil([w] { return w->engine().chanid >= 150; }, 3600'000);
        QTest::mouseClick(w->command3d1(), Qt::LeftButton);

        EXPECT_EQ(w->engine().stopflag, 1);
        EXPECT_TRUE(w->command5()->isEnabled());
        EXPECT_TRUE(w->command1()->isHidden());
        EXPECT_TRUE(w->frame3D6()->isEnabled());
        EXPECT_TRUE(w->isVisible());
        const int at = w->engine().chanid;
        scheduler.advance(60'000);
        EXPECT_EQ(w->engine().chanid, at);
        EXPECT_FALSE(w->runFinished());
    }));
    const sim::ScannerMemory& memory = scanner().memory();
    EXPECT_EQ(memory.channel(1).freq, 1465200u);
    EXPECT_TRUE(memory.channel(501).empty());
    EXPECT_EQ(memory.channel(201).freq, 1545000u);
}

TEST_F(SendDataMenuTest, WithLeadingZerosHiddenEveryChannelStillGoesOutWhole)
{
    // The grid shows "25.0000" and the store takes the grid's text: the wire
    // form comes from the padded frequency all the same.
    settings.zero = 1;
    put(0, 1, "0025.0000", "Low");
    put(0, 2, "0155.0062", "Odd step");
    doc.memdata[0][2][col::step] = "8";
    put(0, 3, "0460.2500", "Police");
    table->fillgrid();
    ASSERT_EQ(cell(1, col::freq), "25.0000");
    ASSERT_TRUE(whileOpen([&](TransferWindow* w) {
        tagsRead(w);
        chooseBank(w, 0);
        dialogs.answers = {Answer::Yes};
        QTest::mouseClick(w->command5(), Qt::LeftButton);
        closesItself(w);
    }));
    EXPECT_EQ(messages().size(), 1u);  // the confirmation only
    const sim::ScannerMemory& memory = scanner().memory();
    EXPECT_EQ(memory.channel(1).freq, 250000u);
    EXPECT_EQ(memory.channel(2).freq, 1550062u);
    EXPECT_EQ(memory.channel(2).step, sim::Step::k6_25);  // kept by keying it in
    EXPECT_EQ(memory.channel(3).tag, "Police");

}

// Read Data, Send Data and Rs232 setup: none opens while the Virtual Control
// holds the port, from the menu or the toolbar, and each opens once it is gone.
using PortGuardTest = SendDataMenuTest;

TEST_F(PortGuardTest, NoPortWindowOpensWhileTheVirtualControlRuns)
{
    for (const char* key : {"menread", "memsend", "comset"}) {
        SCOPED_TRACE(key);
        table->vcrunning = true;
        dialogs.shown.clear();
        EXPECT_FALSE(ifOpened<QDialog>(key, [](QDialog*) {}));
        std::size_t tries = 1;
        if (QAction* button = toolbarButton(key)) {
            EXPECT_TRUE(button->isEnabled());
            button->trigger();
            ++tries;
        }
        EXPECT_EQ(messages(), std::vector<std::string>(tries, MemTable::kVcRunning));
        table->vcrunning = false;
        EXPECT_TRUE(ifOpened<QDialog>(key, [](QDialog*) {}));
    }
}

TEST_F(SendDataMenuTest, TheTableCheckRunsBeforeTheUploadWhenChosen)
{
    // Outside the coverage: the check takes it down to 956 MHz.
    put(0, 5, "1000.0000", "Too high");
    table->fillgrid();
    doc.dirty = false;
    auto sendBankOne = [&] {
        return whileOpen([&](TransferWindow* w) {
            tagsRead(w);
            chooseBank(w, 0);
            QTest::mouseClick(w->command5(), Qt::LeftButton);
            closesItself(w);
        });
    };

    settings.option3 = 0;
    ASSERT_TRUE(sendBankOne());
    EXPECT_NE(scanner().memory().channel(5).freq, 9560000u);
    EXPECT_EQ(doc.memdata[0][5][col::freq], "1000.0000");
    EXPECT_FALSE(doc.dirty);

    settings.option3 = 1;
    ASSERT_TRUE(sendBankOne());
    EXPECT_EQ(scanner().memory().channel(5).freq, 9560000u);
    EXPECT_EQ(scanner().memory().channel(5).tag, "Too high");
    EXPECT_EQ(doc.memdata[0][5][col::freq], "0956.0000");
    EXPECT_EQ(cell(5, col::freq), "0956.0000");
    EXPECT_TRUE(doc.dirty);   // the check corrected the document
}

} // namespace
} // namespace kestra
