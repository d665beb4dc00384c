// Cell entry on the real main window: keys typed into the grid memtabel as a
// user types them, the text box Text1, the top frame's Smart Info and combos,
// the Keyboard Shortcuts window and the check commands of the Options menu.

#include "ui/widgets/gridmodel.h"

#include "support/mainwindowrig.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QStatusBar>
#include <QTableView>
#include <QTest>
#include <QToolBar>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace kestra {
namespace {

class CellEntryWindowTest : public ::testing::Test, protected test::MainWindowRig {
protected:
    QComboBox* combo(const char* name) const { return window->findChild<QComboBox*>(name); }
    // What a user's choice in a combo does.
    static void choose(QComboBox* box, const QString& text)
    {
        const int at = box->findText(text);
        ASSERT_GE(at, 0) << text.toStdString();
        box->setCurrentIndex(at);
        emit box->activated(at);
    }
};

TEST_F(CellEntryWindowTest, TypedFrequenciesMeetTheLimitsAndMoveToTheNextChannel)
{
    startAs(Model::BC250D);
    typeInto(1, col::freq, "24.9");
    EXPECT_EQ(cell(1, col::freq), "0025.0000");
    EXPECT_EQ(grid.selection().row, 2);   // Enter went on to the next channel
    EXPECT_FALSE(window->text1()->isVisible());
    typeInto(2, col::freq, "700");
    EXPECT_EQ(cell(2, col::freq), "0512.0000");
    EXPECT_TRUE(doc.dirty);
    settings.zero = 1;
    typeInto(3, col::freq, "24.9");
    EXPECT_EQ(cell(3, col::freq), "25.0000");
}

TEST_F(CellEntryWindowTest, CapitalsShiftCtrlAndFunctionKeysTypeIntoTheBoxWithoutHarm)
{
    // Keys go where the user's keyboard sends them: to the widget with the
    // focus, which is Text1 once it is open. A key Text1 does not take (Shift
    // alone, F5, Ctrl alone) goes up to the grid and must end there.
    startAs(Model::BC785D);
    for (const int storeColumn : {col::tag, col::freq}) {
        SCOPED_TRACE(storeColumn);
        select(3, storeColumn);
        QTest::keyClicks(view(), storeColumn == col::tag ? "F" : "1");  // a capital opens the box too
        QWidget* box = QApplication::focusWidget();
        ASSERT_EQ(box, window->text1());
        for (const Qt::Key alone : {Qt::Key_Shift, Qt::Key_Control, Qt::Key_F5, Qt::Key_F2}) {
            QTest::keyPress(box, alone);
            QTest::keyRelease(box, alone);
        }
        QTest::keyClicks(box, storeColumn == col::tag ? "ire Dept" : "55.1");
        QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);  // Ctrl+A in the box selects its text
        QTest::keyClick(box, Qt::Key_End);
        QTest::keyClick(box, Qt::Key_Return);
    }
    EXPECT_EQ(cell(3, col::tag), "Fire Dept");
    EXPECT_EQ(cell(3, col::freq), "0155.1000");
    // A list column takes its letters in capitals too; keys it has no use for pass.
    select(3, col::mode);
    for (const Qt::Key alone : {Qt::Key_Shift, Qt::Key_Control, Qt::Key_F5}) QTest::keyClick(view(), alone);
    QTest::keyClicks(view(), "N");
    EXPECT_EQ(cell(3, col::mode), "NFM");
    QTest::keyClick(view(), Qt::Key_Space, Qt::ShiftModifier);
    EXPECT_NE(cell(3, col::mode), "NFM");
}

TEST_F(CellEntryWindowTest, TypingOverAFilledCellReplacesItF2EditsItAndNonsenseChangesNothing)
{
    startAs(Model::BC785D);
    typeInto(1, col::freq, "155");
    typeInto(1, col::freq, "460");                  // over the filled cell: a new entry
    EXPECT_EQ(cell(1, col::freq), "0460.0000");
    typeInto(1, col::tag, "Engine 2");
    select(1, col::tag);
    QTest::keyClick(view(), Qt::Key_F2);            // F2: the cell's text to edit
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backspace);
    QTest::keyClicks(QApplication::focusWidget(), "3");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_EQ(cell(1, col::tag), "Engine 3");
    typeInto(1, col::freq, "abc");                 // no digit: no frequency, nothing changes
    EXPECT_EQ(cell(1, col::freq), "0460.0000");
    EXPECT_NE(window->statusBar()->currentMessage().indexOf("not a frequency"), -1);
    typeInto(2, col::freq, "155,5");                // a comma as the decimal point
    EXPECT_EQ(cell(2, col::freq), "0155.5000");
    typeInto(3, col::tag, "Say \"hi\"");            // a quote never reaches the store
    EXPECT_EQ(cell(3, col::tag), "Say 'hi'");
}

TEST_F(CellEntryWindowTest, UndoAfterASortBringsEveryChannelBackWithItsComment)
{
    startAs(Model::BC785D);
    typeInto(1, col::freq, "160");
    typeInto(2, col::freq, "150");
    ASSERT_TRUE(table->createbank());
    doc.memdata[0][1][col::comment] = "about 160";
    doc.memdata[0][2][col::comment] = "about 150";
    select(1, col::freq);
    window->action("sort_allb")->trigger();
    ASSERT_EQ(doc.memdata[0][1][col::comment], "about 150");
    window->action("tabundo")->trigger();
    EXPECT_EQ(cell(1, col::freq), "0160.0000");
    EXPECT_EQ(doc.memdata[0][1][col::comment], "about 160");
    EXPECT_EQ(doc.memdata[0][2][col::comment], "about 150");
}

TEST_F(CellEntryWindowTest, TheBoxOpensOverTheCellEscapeDropsItAndAClickElsewhereKeepsIt)
{
    startAs(Model::BC250D);
    grid.setText(6, column(col::freq), "0146.5200");
    doc.dirty = false;
    select(6, col::freq);
    QTest::keyClick(view(), Qt::Key_9);
    QLineEdit* box = window->text1();
    ASSERT_TRUE(box->isVisible());
    EXPECT_EQ(box->text(), "9");   // a key typed starts a fresh entry
    EXPECT_EQ(box->geometry(), view()->visualRect(window->gridModel()->indexOfCell(6, column(col::freq))));

    QTest::keyClick(view(), Qt::Key_Escape);
    EXPECT_FALSE(box->isVisible());
    EXPECT_EQ(cell(6, col::freq), "0146.5200");
    EXPECT_EQ(grid.selection().row, 6);
    EXPECT_FALSE(doc.dirty);

    // A click elsewhere in the grid closes the box into its cell and leaves the current cell where it was clicked.
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    select(7, col::freq);
    QTest::keyClicks(view(), "146.5");
    ASSERT_TRUE(box->hasFocus());
    const QRect other = view()->visualRect(window->gridModel()->indexOfCell(9, column(col::tag)));
    QTest::mouseClick(view()->viewport(), Qt::LeftButton, {}, other.center());
    EXPECT_FALSE(box->isVisible());
    EXPECT_EQ(cell(7, col::freq), "0146.5000");
    EXPECT_EQ(grid.selection(), (GridSelection{9, column(col::tag), 9, column(col::tag)}));

    // Letters in a list column open no box.
    select(6, col::mode);
    QTest::keyClicks(view(), "xyz");
    EXPECT_FALSE(box->isVisible());
    EXPECT_EQ(grid.selection().row, 6);   // and they are no search in the grid either
}

TEST_F(CellEntryWindowTest, TagsFeedTheEasyTagCombosAndTheirChoiceFillsTheSelection)
{
    startAs(Model::BC250D, [](Settings& s) { s.option9 = 1; });
    ASSERT_TRUE(window->textcombo()->isVisible());
    EXPECT_TRUE(window->bankcombo(0)->isVisible());
    EXPECT_FALSE(window->bankcombo(1)->isVisible());

    typeInto(1, col::tag, "Police");
    typeInto(2, col::tag, "Fire");
    EXPECT_EQ(grid.selection().row, 3);
    EXPECT_EQ(window->textcombo()->count(), 2);
    EXPECT_EQ(window->textcombo()->itemText(1), "Fire");
    EXPECT_EQ(window->bankcombo(0)->count(), 2);
    EXPECT_EQ(window->bankcombo(3)->count(), 0);

    grid.setSelection({5, 1, 3, 1});
    choose(window->textcombo(), "Police");
    EXPECT_EQ(cell(3, col::tag), "Police");
    EXPECT_EQ(cell(5, col::tag), "Police");
    EXPECT_EQ(cell(6, col::tag), "");
}

TEST_F(CellEntryWindowTest, ListColumnsTakeTheirKeysAndTheDoubleClick)
{
    startAs(Model::BC250D);
    grid.setText(2, column(col::tone), "100.0");
    select(2, col::tone);
    EXPECT_EQ(window->smartTitle()->text(), "PL/DPL:");
    QTest::keyClick(view(), Qt::Key_L);
    EXPECT_EQ(cell(2, col::tone), "100.0-");
    EXPECT_EQ(combo("ctc")->currentText(), "100.0");
    QTest::keyClick(view(), Qt::Key_L);
    EXPECT_EQ(cell(2, col::tone), "100.0");
    QTest::keyClick(view(), Qt::Key_Plus, Qt::KeypadModifier);
    EXPECT_EQ(cell(2, col::tone), "141.3");
    EXPECT_TRUE(doc.dirty);

    // The short delay list: Space scrolls up, Shift-Space down, a double click as Space.
    select(3, col::delay);
    QTest::keyClick(view(), Qt::Key_Space);
    EXPECT_EQ(cell(3, col::delay), "None");
    QTest::keyClick(view(), Qt::Key_Space, Qt::ShiftModifier);
    EXPECT_EQ(cell(3, col::delay), "2");
    const QRect box = view()->visualRect(window->gridModel()->indexOfCell(3, column(col::delay)));
    // A double click: the first click's press and release, then the double click.
    QTest::mouseClick(view()->viewport(), Qt::LeftButton, {}, box.center());
    QTest::mouseDClick(view()->viewport(), Qt::LeftButton, {}, box.center());
    EXPECT_EQ(cell(3, col::delay), "None");
    EXPECT_FALSE(window->text1()->isVisible());
    EXPECT_EQ(combo("delaycombo")->count(), 2);
}

TEST_F(CellEntryWindowTest, ListCombosWriteEverySelectedRowAndFollowTheModel)
{
    startAs(Model::BC250D);
    EXPECT_EQ(combo("combostep")->findText("6.25"), -1);
    grid.setSelection({2, column(col::freq), 4, column(col::tag)});
    choose(combo("combostep"), "Auto");
    choose(combo("dcsc"), "754");
    for (int row = 1; row <= 5; ++row) {
        SCOPED_TRACE(row);
        const bool selected = row >= 2 && row <= 4;
        EXPECT_EQ(cell(row, col::step), selected ? "Auto" : "");
        EXPECT_EQ(cell(row, col::tone), selected ? "754" : "");
    }

    table->setModel(ModelSwitches::of(Model::BC296D));
    EXPECT_GE(combo("combostep")->findText("6.25"), 0);
}

TEST_F(CellEntryWindowTest, SmartInfoNamesTheActiveColumnWhileItIsOn)
{
    startAs(Model::BC785D);
    select(1, col::freq);
    EXPECT_EQ(window->smartTitle()->text(), "Frequency");
    EXPECT_EQ(window->smartText()->text(), "Enter frequency. Use <ENTER> to jump to next channel.");
    select(1, col::record);
    EXPECT_EQ(window->smartTitle()->text(), "Record output:");
    EXPECT_TRUE(window->smartBar()->isVisible());
    EXPECT_FALSE(window->textcombo()->isVisible());
}

TEST_F(CellEntryWindowTest, SmartInfoOffHidesItsBarButNotTheLists)
{
    startAs(Model::BC785D, [](Settings& s) { s.smart = 0; });
    EXPECT_FALSE(window->smartBar()->isVisible());
    EXPECT_TRUE(combo("combostep")->isVisible());
}

TEST_F(CellEntryWindowTest, KeyboardShortcutsWindowListsTheKeys)
{
    startAs(Model::BC250D);
    QAction* entry = window->action("shortkey");
    ASSERT_TRUE(entry->isEnabled());
    entry->trigger();
    auto* dialog = window->findChild<QDialog*>("shortcuts");
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->windowTitle(), "Keyboard Shortcuts");
    EXPECT_EQ(dialog->findChild<QLabel*>("Label1")->text(),
              "You can use these keyboard shortcuts,\n"
              "depending on which column is active:\n"
              "A = AM \nF = FM \nM = FM \nN = NFM \nW = WFM \n"
              "Typing = a new entry in the cell\nEnter or F2 = edit the cell's text\n"
              "CTRL + D = shift channel down \nCTRL + U = shift channel up \n"
              "0 = Off \nF = Off \n1 = On \nN = On \n"
              "Space = toggle data\nSpace = scroll list up\nShift-Space = scroll list down\n"
              "L = toggle CTCSS/DCS lockout on/off");
    dialog->close();
}

TEST_F(CellEntryWindowTest, CheckDataInTableMovesALoadedFrequencyOutOfTheGap)
{
    startAs(Model::BC250D, [](Settings& s) { s.bandplan = 0; });
    doc.cell(0, 4, col::freq) = "1000.0000";
    doc.cell(0, 4, col::tag) = "Far";
    table->fillgrid();
    ASSERT_EQ(cell(4, col::freq), "1000.0000");
    ASSERT_FALSE(doc.dirty);

    // The toolbar button and the menu entry are one command.
    QAction* button = toolbarButton("checktab");
    ASSERT_NE(button, nullptr);
    ASSERT_TRUE(button->isEnabled());
    button->trigger();
    EXPECT_EQ(cell(4, col::freq), "0956.0000");
    EXPECT_EQ(cell(4, col::tag), "Far");
    EXPECT_TRUE(doc.dirty);
    // Run again there is nothing to correct: the document stays as saved.
    doc.dirty = false;
    button->trigger();
    EXPECT_FALSE(doc.dirty);
}

TEST_F(CellEntryWindowTest, BandplanOfTheCurrentBankAndCheckDataInTableTakeTheSelectedRows)
{
    startAs(Model::BC250D, [](Settings& s) { s.bandplan = 1; });
    for (const char* entry : {"runband1", "checktab"}) {
        SCOPED_TRACE(entry);
        for (int row = 1; row <= 3; ++row) {
            grid.setText(row, column(col::freq), "0120.0000");
            grid.setText(row, column(col::mode), "FM");
        }
        grid.setSelection({1, 1, 2, 1});
        window->action(entry)->trigger();
        EXPECT_EQ(cell(1, col::mode), "AM");
        EXPECT_EQ(cell(2, col::mode), "AM");
        EXPECT_EQ(cell(3, col::mode), "FM");
    }
    window->action("runband2")->trigger();
    EXPECT_EQ(cell(3, col::mode), "AM");
}

} // namespace
} // namespace kestra
