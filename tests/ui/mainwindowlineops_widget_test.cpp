// The line operations of the Edit, Options and pop-up menus on the real main
// window: undo across bank tabs, inserting a line, filling a series and the
// system clipboard.

#include "ui/widgets/gridmodel.h"

#include "support/mainwindowrig.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QTabBar>
#include <QTableView>
#include <QTest>

#include <gtest/gtest.h>

namespace kestra {
namespace {

using LineOpsWindowTest = test::ModelWindowTest<Model::BC250D>;

TEST_F(LineOpsWindowTest, UndoAfterATabChangeBringsBackTheTextBeforeTheEdit)
{
    typeInto(1, col::freq, "155");
    ASSERT_EQ(cell(1, col::freq), "0155.0000");
    typeInto(2, col::freq, "460");
    ASSERT_EQ(cell(2, col::freq), "0460.0000");

    window->tabbed1()->setCurrentIndex(1);
    EXPECT_EQ(doc.currentBank, 1);
    EXPECT_EQ(cell(2, col::freq), "");
    window->tabbed1()->setCurrentIndex(0);
    ASSERT_EQ(cell(2, col::freq), "0460.0000");

    trigger("tabundo");
    EXPECT_EQ(cell(2, col::freq), "");
    EXPECT_EQ(cell(1, col::freq), "0155.0000");
}

TEST_F(LineOpsWindowTest, ASecondUndoRestoresTheSameTextAgain)
{
    typeInto(1, col::freq, "155");
    typeInto(1, col::freq, "460");
    trigger("tabundo");
    ASSERT_EQ(cell(1, col::freq), "0155.0000");
    // A change that took no copy of its own: the kept copy still brings back 155.
    doc.memdata[0][1][col::freq] = "162.5";
    window->table().fillgrid();
    ASSERT_EQ(cell(1, col::freq), "0162.5000");
    trigger("tabundo");
    EXPECT_EQ(cell(1, col::freq), "0155.0000");
}

TEST_F(LineOpsWindowTest, UndoClosesTheOpenEditFirst)
{
    typeInto(1, col::freq, "155");
    select(2, col::freq);
    QTest::keyClicks(view(), "460");
    ASSERT_TRUE(window->text1()->isVisible());
    trigger("tabundo");
    EXPECT_FALSE(window->text1()->isVisible());
    EXPECT_EQ(cell(2, col::freq), "");
    EXPECT_EQ(cell(1, col::freq), "0155.0000");
}

TEST_F(LineOpsWindowTest, InsertEmptyLineShiftsDownAndAsksOnlyWhenChannel100HoldsData)
{
    typeInto(5, col::freq, "155");
    typeInto(6, col::freq, "156");
    select(5, col::freq);
    trigger("memtab_inslin");
    EXPECT_EQ(cell(5, col::freq), "");
    EXPECT_EQ(cell(6, col::freq), "0155.0000");
    EXPECT_EQ(cell(7, col::freq), "0156.0000");
    EXPECT_TRUE(doc.dirty);

    // At row 100 itself: only the last line is emptied, with a question if it holds data.
    typeInto(99, col::freq, "157");
    select(100, col::freq);
    trigger("memtab_inslin");
    EXPECT_TRUE(messages().empty());
    EXPECT_EQ(cell(99, col::freq), "0157.0000");
    typeInto(100, col::freq, "158");
    select(100, col::freq);
    dialogs.answers = {Answer::No};
    trigger("memtab_inslin");
    EXPECT_EQ(messages(), std::vector<std::string>{"Channel 100 contains data.\r\nThis data will be lost.\r\nContinue?"});
    EXPECT_EQ(cell(100, col::freq), "0158.0000");
    dialogs.answers = {Answer::Yes};
    trigger("memtab_inslin");
    EXPECT_EQ(cell(100, col::freq), "");
    EXPECT_EQ(cell(99, col::freq), "0157.0000");
}

TEST_F(LineOpsWindowTest, RemoveAllEmptyLinesClosesTheGapsOfTheBank)
{
    typeInto(5, col::freq, "156");
    typeInto(5, col::tag, "Fire");
    typeInto(100, col::freq, "158");
    trigger("memtab_remlines");
    const char* packed[] = {"0156.0000", "0158.0000", ""};
    for (int row = 1; row <= 3; ++row) EXPECT_EQ(cell(row, col::freq), packed[row - 1]) << row;
    EXPECT_EQ(cell(1, col::tag).trimmed(), "Fire");
    EXPECT_EQ(cell(100, col::freq), "");
    EXPECT_EQ(doc.memdata[0][100][col::freq], "Empty");
}

TEST_F(LineOpsWindowTest, FillSeriesThroughTheMenuCountsOn)
{
    typeInto(1, col::tag, "Unit 9");
    ASSERT_EQ(cell(1, col::tag).trimmed(), "Unit 9");
    grid.setSelection({1, column(col::tag), 3, column(col::tag)});
    trigger("menu_fs");
    EXPECT_EQ(cell(2, col::tag), "Unit 10");
    EXPECT_EQ(cell(3, col::tag), "Unit 11");
    EXPECT_EQ(cell(4, col::tag), "");
}

TEST_F(LineOpsWindowTest, PasteLineSpecialInsertsTheCopiedLinesAndAsksBeforePushingAChannelOut)
{
    typeInto(1, col::freq, "155");
    typeInto(2, col::freq, "156");
    typeInto(3, col::freq, "157");
    grid.setSelection({1, column(col::freq), 2, column(col::freq)});
    trigger("copy_line");
    select(2, col::freq);
    trigger("paste_special");
    EXPECT_TRUE(messages().empty());
    const char* expected[] = {"0155.0000", "0155.0000", "0156.0000", "0156.0000", "0157.0000", ""};
    for (int row = 1; row <= 6; ++row) EXPECT_EQ(cell(row, col::freq), expected[row - 1]) << row;

    trigger("tabundo");
    EXPECT_EQ(cell(2, col::freq), "0156.0000");
    EXPECT_EQ(cell(4, col::freq), "");

    typeInto(99, col::freq, "160");
    select(1, col::freq);
    dialogs.answers = {Answer::No};
    trigger("paste_special");
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_EQ(messages().back(), "Channel 99 contains data.\r\nThis data will be lost.\r\nContinue?");
    EXPECT_EQ(cell(1, col::freq), "0155.0000");
    EXPECT_EQ(cell(2, col::freq), "0156.0000");
}

TEST_F(LineOpsWindowTest, TagToolsCentreOrLeftAlignEveryTagOfTheBank)
{
    const char* tags[] = {"Fire", "Fire1", "Engine7", "Ambulance Dispatch"};
    for (int row = 1; row <= 4; ++row) {
        typeInto(row, col::freq, "155");
        typeInto(row, col::tag, tags[row - 1]);
    }
    trigger("center_tags");
    // (16 - length) / 2 leading blanks, halves to even; a long tag is cut first.
    EXPECT_EQ(cell(1, col::tag), "      Fire");
    EXPECT_EQ(cell(2, col::tag), "      Fire1");
    EXPECT_EQ(cell(3, col::tag), "    Engine7");
    EXPECT_EQ(cell(4, col::tag), "Ambulance Dispat");
    EXPECT_EQ(cell(5, col::tag), "");

    trigger("rem_space");
    EXPECT_EQ(cell(1, col::tag), "Fire");
    EXPECT_EQ(cell(3, col::tag), "Engine7");
}

TEST_F(LineOpsWindowTest, FillLineWithDefaultDataOverwritesTheSelectedLines)
{
    DefaultData& defaults = window->table().defdata;
    defaults.enabled[DefaultData::Delay] = 1;
    defaults.value[DefaultData::Delay] = {1, 1};
    const std::vector<std::string> delays = DefaultData::fieldList(DefaultData::Delay, doc.model.bc785d);
    ASSERT_GE(delays.size(), 2u);
    const QString before = QString::fromStdString(delays[0]);
    const std::string delay = delays[1];
    for (int row : {5, 6, 7}) grid.setText(row, column(col::delay), delays[0]);
    grid.setSelection({5, column(col::freq), 6, column(col::freq)});
    QAction* button = toolbarButton("filldefault");
    ASSERT_NE(button, nullptr);
    ASSERT_TRUE(button->isEnabled());
    button->trigger();
    EXPECT_EQ(cell(5, col::delay).toStdString(), delay);
    EXPECT_EQ(cell(6, col::delay).toStdString(), delay);
    EXPECT_EQ(cell(7, col::delay), before);

    trigger("tabselect");
    EXPECT_EQ(grid.selection().top(), 1);
    EXPECT_EQ(grid.selection().bottom(), 100);
    EXPECT_EQ(view()->selectionModel()->selectedIndexes().size(), 100 * (grid.cols() - 1));
}

TEST_F(LineOpsWindowTest, CopyAndPasteGoThroughTheSystemClipboard)
{
    QClipboard* clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    typeInto(2, col::tag, "Fire");
    select(2, col::tag);
    trigger("tab_copy");
    EXPECT_EQ(clipboard->text(), "Fire\r\n");

    select(5, col::tag);
    trigger("tabpaste");
    EXPECT_EQ(cell(5, col::tag), "Fire");
    EXPECT_EQ(cell(2, col::tag), "Fire");

    clipboard->setText("Police");
    select(6, col::tag);
    trigger("tab_paste");
    EXPECT_EQ(cell(6, col::tag), "Police");

    select(2, col::tag);
    trigger("tab_cut");
    EXPECT_EQ(clipboard->text(), "Fire\r\n");
    EXPECT_EQ(cell(2, col::tag), "");

    select(5, col::tag);
    trigger("pop_delete");
    EXPECT_EQ(cell(5, col::tag), "");
    EXPECT_EQ(clipboard->text(), "Fire\r\n");
}

TEST_F(LineOpsWindowTest, CtrlDShiftsTheChannelDown)
{
    typeInto(3, col::freq, "155");
    select(3, col::freq);
    QTest::keyClick(view(), Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(cell(3, col::freq), "");
    EXPECT_EQ(cell(4, col::freq), "0155.0000");
}

} // namespace
} // namespace kestra
