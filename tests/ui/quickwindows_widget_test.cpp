// Priority Channels, Setup Bank Tags and Easy Program from the main window's
// menus, on the built-in scanner in virtual time, driven with keys and clicks.

// The scanner's headers come before Qt's: Qt's keyword macros would otherwise
// reach into them.
#include "sim/virtualscanner.h"

#include "ui/banktagswindow.h"
#include "ui/easyprogramwindow.h"
#include "ui/mainwindow.h"
#include "ui/prioritywindow.h"

#include "support/mainwindowrig.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <gtest/gtest.h>

namespace kestra {
namespace {

struct QuickWindowsTest : ::testing::Test, test::MainWindowRig {
    sim::VirtualScanner& scanner() { return ports->virtualScanner(Model::BC785D); }
    void SetUp() override
    {
        Options options = Options::connected();
        options.beforeWindow = [this] { doc.model = ModelSwitches::of(Model::BC785D); };
        start(options);
    }
};

TEST_F(QuickWindowsTest, PriorityChannelsAreReadAndAFieldOutOfItsBankIsSentAsItsFirstChannel)
{
    scanner().memory().priority[1] = 140;
    whileOpen<PriorityWindow>("mnu_prioch", [&](PriorityWindow* w) {
        EXPECT_EQ(w->windowTitle(), "Priority Channels:");
        QTest::mouseClick(w->readButton(), Qt::LeftButton);
        EXPECT_EQ(w->field(1)->text(), "140");
        w->field(0)->clear();
        QTest::keyClicks(w->field(0), "0x");
        EXPECT_EQ(w->field(0)->text(), "0");
        QTest::mouseClick(w->sendButton(), Qt::LeftButton);
        EXPECT_EQ(w->field(0)->text(), "1") << "the bank's first channel, visible in the field";
        EXPECT_EQ(scanner().memory().priority[0], 1);
        EXPECT_EQ(scanner().memory().priority[1], 140);
        w->accept();
    });
}

TEST_F(QuickWindowsTest, BankTagsGoToTheScannerAtUpdateAndIntoTheDocumentAtOk)
{
    whileOpen<BankTagsWindow>("tbtags", [&](BankTagsWindow* w) {
        w->tag(0)->clear();
        QTest::keyClicks(w->tag(0), "County FIRE");
        QTest::mouseClick(w->updateButton(), Qt::LeftButton);
        EXPECT_EQ(scanner().memory().bankTags[0], "County FIRE");
        w->accept();
    });
    EXPECT_EQ(doc.banktags[0], "County FIRE");
    EXPECT_TRUE(doc.dirty);
}

TEST_F(QuickWindowsTest, EasyProgramSetsTheTickedFlagsOfOneBankAndLeavesTheFrequencies)
{
    for (int c : {100, 101, 150, 200, 201}) scanner().memory().channel(c).freq = 1550000 + c * 125;
    for (int c : {100, 101, 150, 200, 201}) scanner().memory().channel(c).lockout = false;
    whileOpen<EasyProgramWindow>("setdelay", [&](EasyProgramWindow* w) {
        w->findChildren<QRadioButton*>().at(1)->click();  // "Single Bank:"
        w->bankList()->setCurrentIndex(1);
        EXPECT_EQ(w->startField()->text(), "101");
        EXPECT_EQ(w->endField()->text(), "200");
        w->tick(EasyProgramWindow::Lockout)->click();
        w->choice(EasyProgramWindow::Lockout)->setCurrentIndex(0);  // On
        w->tick(EasyProgramWindow::Atten)->click();
        w->choice(EasyProgramWindow::Atten)->setCurrentIndex(0);
        QTest::mouseClick(w->startButton(), Qt::LeftButton);
        w->accept();
    });
    for (int c : {101, 150, 200}) {
        EXPECT_TRUE(scanner().memory().channel(c).lockout) << c;
        EXPECT_TRUE(scanner().memory().channel(c).atten) << c;
        EXPECT_EQ(scanner().memory().channel(c).freq, 1550000u + c * 125) << c;
    }
    for (int c : {100, 201}) EXPECT_FALSE(scanner().memory().channel(c).lockout) << c;
}

} // namespace
} // namespace kestra
