// Easy Fill through the real window easy2, opened from the Options menu of the
// main window: the grid shows what it filled, across banks, and Undo brings a
// bank back.

#include "ui/easyfillwindow.h"

#include "support/mainwindowrig.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTest>

#include <gtest/gtest.h>

namespace kestra {
namespace {

struct EasyFillWindowTest : test::ModelWindowTest<Model::BC785D> {
    static void type(QLineEdit* box, const char* text)
    {
        box->selectAll();
        QTest::keyClicks(box, text);
    }
    static void click(QPushButton* button) { QTest::mouseClick(button, Qt::LeftButton); }
};

TEST_F(EasyFillWindowTest, OkFillsTheRangeWith833kHzStepsAndTheGridShowsThem)
{
    whileOpen<EasyFillWindow>("tabeasy", [&](EasyFillWindow* w) {
        EXPECT_EQ(w->windowTitle(), "Easy Fill BC785D");
        EXPECT_EQ(w->text1()->text(), "01");
        EXPECT_EQ(w->text2()->text(), "100");
        EXPECT_EQ(w->text6()->text(), "0400.0000");
        type(w->text2(), "4");
        type(w->text6(), "118.0000");
        type(w->text3(), "8.33");
        w->ef(EasyField::Mode)->setChecked(true);
        w->list(EasyField::Mode)->setCurrentText("AM");
        click(w->okButton());
    });
    EXPECT_EQ(cell(1, col::freq), "0118.0000");
    EXPECT_EQ(cell(2, col::freq), "0118.0083");
    EXPECT_EQ(cell(3, col::freq), "0118.0167");
    EXPECT_EQ(cell(4, col::freq), "0118.0250");
    EXPECT_EQ(cell(4, col::mode), "AM");
    EXPECT_EQ(cell(5, col::freq), "");
    EXPECT_TRUE(doc.dirty);
}

TEST_F(EasyFillWindowTest, ButtonsOfTheWindowSetItsControls)
{
    whileOpen<EasyFillWindow>("easypopup", [&](EasyFillWindow* w) {
        click(w->selectAllButton());
        EXPECT_TRUE(w->ef(EasyField::Step)->isChecked());
        EXPECT_EQ(w->selectAllButton()->text(), "Unselect All");
        click(w->selectAllButton());
        EXPECT_FALSE(w->ef(EasyField::Frequency)->isChecked());
        EXPECT_EQ(w->selectAllButton()->text(), "Select All");

        click(w->allChannelsButton());
        EXPECT_EQ(w->text2()->text(), "1000");
        type(w->text1(), "7");
        click(w->defaultButton());
        EXPECT_EQ(w->text1()->text(), "01");
        EXPECT_EQ(w->text2()->text(), "100");
        EXPECT_TRUE(w->ef(EasyField::Frequency)->isChecked());

        click(w->helpButton());
        ASSERT_FALSE(messages().empty());
        EXPECT_EQ(messages().back(), EasyFillWindow::kInfo);
        click(w->cancelButton());
    });
    EXPECT_FALSE(doc.dirty);
    EXPECT_EQ(cell(1, col::freq), "");
}

TEST_F(EasyFillWindowTest, AllChannelsReachTheDummyBankAndUndoBringsBanksBack)
{
    typeInto(1, col::freq, "155");
    typeInto(1, col::tag, "Fire");
    doc.dirty = false;
    settings.backena = 1;
    settings.backupdelay = 1;
    whileOpen<EasyFillWindow>("tabeasy", [&](EasyFillWindow* w) {
        type(w->text1(), "1100");
        type(w->text2(), "1");
        type(w->text6(), "100");
        type(w->text3(), "3");
        click(w->command5());
        // Apply corrects what it was given and leaves the window open.
        EXPECT_TRUE(w->isVisible());
        EXPECT_EQ(w->text1()->text(), "1");
        EXPECT_EQ(w->text2()->text(), "1100");
        EXPECT_EQ(w->text3()->text(), "5");
        // A backup minute while the window is open carries the grid into the
        // store: the grid already shows what Apply filled, so nothing is lost.
        EXPECT_EQ(cell(2, col::freq), "0100.0050");
        scheduler.advance(Backup::kTickMs);
        EXPECT_EQ(doc.memdata[0][2][col::freq], "0100.0050");
        click(w->cancelButton());
    });
    EXPECT_TRUE(doc.dirty);
    EXPECT_EQ(cell(1, col::freq), "0100.0000");
    EXPECT_EQ(cell(1, col::tag).trimmed(), "Fire");

    window->tabbed1()->setCurrentIndex(kDummyBank);
    ASSERT_EQ(doc.currentBank, kDummyBank);
    EXPECT_EQ(cell(1, col::freq), "0105.0000");
    EXPECT_EQ(cell(100, col::freq), "0105.4950");
    window->action("tabundo")->trigger();
    EXPECT_EQ(cell(100, col::freq), "");

    window->tabbed1()->setCurrentIndex(0);
    window->action("tabundo")->trigger();
    EXPECT_EQ(cell(1, col::freq), "0155.0000");
    EXPECT_EQ(cell(1, col::tag).trimmed(), "Fire");
    EXPECT_EQ(cell(2, col::freq), "");
}

} // namespace
} // namespace kestra
