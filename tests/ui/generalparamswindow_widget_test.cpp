// The window bc780set from Options > Other Options on the built-in scanner in
// virtual time: its lists follow the scanner, a choice typed into a list goes
// back to it, FIPS codes are typed, stored and sent, and the reset needs
// "RESET" and a yes.

// The scanner's headers come before Qt's: Qt's keyword macros would otherwise
// reach into them.
#include "sim/virtualscanner.h"

#include "ui/generalparamswindow.h"
#include "ui/mainwindow.h"

#include "support/mainwindowrig.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace kestra {
namespace {

struct GeneralParamsWindowTest : ::testing::Test, test::MainWindowRig {};

TEST_F(GeneralParamsWindowTest, ListsFollowTheScannerAndChoicesCodesAndResetGoBack)
{
    Options options = Options::connected();
    options.beforeWindow = [this] { doc.model = ModelSwitches::of(Model::BC785D); };
    start(options);
    sim::VirtualScanner& scanner = ports->virtualScanner(Model::BC785D);
    scanner.memory().general.keyBeep = false;
    scanner.memory().general.sqMode = 1;
    scanner.memory().fips[4] = "048201";
    scanner.memory().channel(12).freq = 1550000;

    whileOpen<GeneralParamsWindow>("other82", [&](GeneralParamsWindow* w) {
        EXPECT_EQ(w->windowTitle(), "BC785/796 General parameters");
        EXPECT_EQ(w->resetButton()->text(), "Reset BC785/796D");
        QTest::mouseClick(w->readButton(), Qt::LeftButton);
        EXPECT_EQ(w->progress()->text(), "11 / 11");
        EXPECT_EQ(w->option(3)->currentText(), "off");      // Key Beep
        EXPECT_EQ(w->option(6)->currentText(), "Tone SQ");  // SQ Mode
        EXPECT_EQ(w->option(7)->currentIndex(), -1) << "the BC785D has no APCO card entry";
        EXPECT_EQ(w->fipsBox(5)->text(), "048201");

        // Keys into the list and the boxes, as the user types them.
        w->option(6)->setFocus();
        QTest::keyClick(w->option(6), Qt::Key_Up);
        EXPECT_EQ(w->option(6)->currentText(), "CSQ");
        w->fipsBox(15)->setFocus();
        QTest::keyClicks(w->fipsBox(15), "12ab34-56");
        EXPECT_EQ(w->fipsBox(15)->text(), "123456");
        QTest::mouseClick(w->storeButton(), Qt::LeftButton);
        EXPECT_EQ(scanner.memory().fips[14], "123456");
        QTest::mouseClick(w->sendButton(), Qt::LeftButton);
        EXPECT_EQ(scanner.memory().general.sqMode, 0);
        EXPECT_FALSE(scanner.memory().general.keyBeep);

        QTest::keyClicks(w->resetBox(), "reset");
        QTest::mouseClick(w->resetButton(), Qt::LeftButton);
        EXPECT_TRUE(dialogs.shown.empty()) << "lower case is refused in silence";
        w->resetBox()->clear();
        QTest::keyClicks(w->resetBox(), "RESET");
        dialogs.answers.push_back(Answer::Yes);
        QTest::mouseClick(w->resetButton(), Qt::LeftButton);
        ASSERT_EQ(dialogs.shown.size(), 1u);
        EXPECT_EQ(dialogs.shown[0].text, GeneralParams::kResetWarning);
        EXPECT_TRUE(scanner.memory().channel(12).empty());
        EXPECT_TRUE(w->resetBox()->text().isEmpty());
        w->accept();
    });
    EXPECT_EQ(doc.fipscodes[15], "123456");
    EXPECT_EQ(doc.fipscodes[5], "048201");
}

} // namespace
} // namespace kestra
