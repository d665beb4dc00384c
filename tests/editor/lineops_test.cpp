#include "editor/lineops.h"

#include "core/text.h"
#include "support/tablerig.h"

#include <gtest/gtest.h>

using namespace kestra;

namespace {

struct Editor : test::TableRig {
    LineOperations ops{table};
    int freqCol = gridCol(col::freq), tagCol = gridCol(col::tag);

    void channel(int row, const std::string& freq, const std::string& tag = "")
    {
        grid.setText(row, freqCol, freq);
        grid.setText(row, tagCol, tag);
    }
    std::string freq(int row) const { return grid.text(row, freqCol); }
    std::string tag(int row) const { return grid.text(row, tagCol); }
    void selectRows(int top, int bottom) { grid.setSelection({top, 1, bottom, 1}); }
};

} // namespace

TEST(LineUndo, FollowsTheEditedBankAcrossTabsAndKeepsItsCopy)
{
    Editor e;
    e.settings.expert = 1;
    e.channel(1, "155", "Fire");
    e.selectRows(1, 1);
    e.ops.clearSelectedLines();
    EXPECT_EQ(e.freq(1), "");
    EXPECT_TRUE(e.doc.dirty);

    e.table.changeBank(1);
    e.ops.tabundo();  // bank 2 has no copy: nothing comes back
    EXPECT_EQ(e.freq(1), "");
    EXPECT_EQ(Val(e.doc.memdata[0][1][col::freq]), 0);

    e.table.changeBank(0);
    e.ops.tabundo();
    EXPECT_EQ(e.freq(1), "0155.0000");
    EXPECT_EQ(e.tag(1), "Fire");

    e.grid.setText(1, e.tagCol, "Police");
    e.ops.tabundo();  // the copy is not used up
    EXPECT_EQ(e.tag(1), "Fire");
    EXPECT_TRUE(e.ops.canUndo(0));
}

TEST(LineQuestions, NoLeavesTheBankAndExpertAsksNothing)
{
    Editor e;
    e.channel(1, "155", "A");
    e.channel(2, "156", "B");
    e.selectRows(1, 1);
    e.dialogs.answers = {Answer::No, Answer::No, Answer::No};
    e.ops.clearSelectedLines();
    e.ops.removeSelectedLines();
    e.ops.clearCurrentBank();
    EXPECT_EQ(e.freq(1), "155");
    ASSERT_EQ(e.dialogs.shown.size(), 3u);
    EXPECT_EQ(e.dialogs.shown[0].text, "Are you sure?");
    EXPECT_EQ(e.dialogs.shown[2].text, "This will clear the current bank.\r\nAre you sure?");

    e.settings.expert = 1;
    e.ops.removeSelectedLines();
    EXPECT_EQ(e.dialogs.shown.size(), 3u);
    EXPECT_EQ(e.freq(1), "0156.0000");
    EXPECT_EQ(e.tag(1), "B");
    EXPECT_EQ(e.doc.memdata[0][100][col::freq], "Empty");

    e.dialogs.answers = {Answer::Yes};
    e.ops.clearCurrentBank();
    EXPECT_EQ(e.freq(1), "");
}

TEST(InsertEmptyLine, AQuestionBeforeTheLastChannelIsPushedOut)
{
    Editor e;
    e.channel(1, "155", "A");
    e.channel(100, "462.5625", "Last");
    e.grid.select(1, 1);
    e.dialogs.answers = {Answer::No};
    e.ops.insertEmptyLine();
    ASSERT_EQ(e.messages(), std::vector<std::string>{"Channel 100 contains data.\r\nThis data will be lost.\r\nContinue?"});
    EXPECT_EQ(e.dialogs.shown[0].title, "Warning");
    EXPECT_EQ(e.tag(1), "A");
    EXPECT_EQ(e.tag(100), "Last");

    e.dialogs.answers = {Answer::Yes};
    e.ops.insertEmptyLine();
    EXPECT_EQ(e.freq(1), "");
    EXPECT_EQ(e.tag(2), "A");
    EXPECT_EQ(e.freq(100), "");
}

TEST(FillSeries, CountsOnFromTheFinalDigitsOfTheTag)
{
    Editor e;
    e.channel(1, "155", "Unit 9  ");
    e.grid.setSelection({1, e.tagCol, 3, e.tagCol});
    e.ops.fillSeries();
    EXPECT_EQ(e.tag(2), "Unit 10");
    EXPECT_EQ(e.tag(3), "Unit 11");

    e.grid.setText(5, e.tagCol, "Tower");
    e.grid.setSelection({5, e.tagCol, 7, e.tagCol});
    e.ops.fillSeries();
    EXPECT_EQ(e.tag(6), "");

    e.grid.setText(5, e.tagCol, "Ch1234567");  // six digits at most
    e.ops.fillSeries();
    EXPECT_EQ(e.tag(6), "Ch1234568");

    e.grid.setText(6, e.tagCol, "");
    e.grid.setSelection({5, e.tagCol - 1, 6, e.tagCol});  // not the Tag column alone
    e.ops.fillSeries();
    EXPECT_EQ(e.tag(6), "");

    e.ops.fillDown();
    EXPECT_EQ(e.tag(6), "Ch1234567");
}

TEST(Clipboard, CopyPasteAndCutMoveBlocksOfCells)
{
    Editor e;
    e.channel(1, "155", "A");
    e.channel(2, "156", "B");
    e.grid.setSelection({1, e.freqCol, 2, e.tagCol});
    const std::string text = e.ops.copycells();
    EXPECT_EQ(text, "155\tA\r\n156\tB\r\n");

    e.grid.select(5, e.freqCol);
    e.ops.pastecells(text);
    EXPECT_EQ(e.freq(5), "155");
    EXPECT_EQ(e.tag(6), "B");
    EXPECT_EQ(e.grid.selection(), (GridSelection{5, e.freqCol, 6, e.tagCol}));
    EXPECT_EQ(e.freq(7), "");

    e.grid.select(100, e.freqCol);  // what falls outside the grid is dropped
    e.ops.pastecells(text);
    EXPECT_EQ(e.freq(100), "155");

    e.grid.setSelection({5, e.freqCol, 6, e.tagCol});
    EXPECT_EQ(e.ops.cutcells(), text);
    EXPECT_EQ(e.freq(5), "");
    EXPECT_EQ(e.tag(6), "");
    e.ops.pastecells("");  // nothing read from the clipboard
    EXPECT_EQ(e.freq(5), "");

    e.grid.setSelection({1, e.tagCol, 1, e.tagCol});
    const std::string line = e.ops.copyLines();
    EXPECT_EQ(line.substr(0, 4), "155\t");
    EXPECT_EQ(e.ops.rememberedSelection(), (GridSelection{1, e.tagCol, 1, e.tagCol}));
    e.grid.select(9, e.tagCol);
    e.ops.pasteLines(line);
    EXPECT_EQ(e.freq(9), "155");
    EXPECT_EQ(e.tag(9), "A");

    // Text from other programs ends its lines with LF alone (or CR alone);
    // a quote in it never reaches a cell.
    for (const char* lines : {"Alpha\nBravo \"2\"\n", "Alpha\rBravo \"2\"", "Alpha\r\nBravo \"2\"\r\n"}) {
        e.grid.select(20, e.tagCol);
        e.ops.pastecells(lines);
        EXPECT_EQ(e.tag(20), "Alpha");
        EXPECT_EQ(e.tag(21), "Bravo '2'");
        EXPECT_EQ(e.tag(22), "");
    }
}

TEST(ShiftChannel, MovesOneLineAndShiftdirSwapsTheDirections)
{
    Editor e;
    e.channel(1, "155", "A");
    e.channel(2, "156", "B");
    e.grid.select(2, 1);
    e.ops.shiftUp();
    EXPECT_EQ(e.tag(1), "B");
    EXPECT_EQ(e.tag(2), "A");
    EXPECT_EQ(e.grid.selection().row, 1);
    e.ops.shiftUp();  // nothing above row 1
    EXPECT_EQ(e.tag(1), "B");

    e.settings.shiftdir = 1;
    e.ops.shiftUp();  // now down
    EXPECT_EQ(e.tag(2), "B");
    e.grid.setSelection({1, 1, 2, 1});  // a block does not shift
    e.ops.shiftDown();
    EXPECT_EQ(e.tag(1), "A");
    EXPECT_EQ(e.tag(2), "B");
}

TEST(ClearLockoutChannels, EmptiesOnlyLockedOutChannels)
{
    Editor e;
    e.channel(1, "155", "Locked");
    e.channel(2, "156", "Open");
    const int lockCol = e.gridCol(col::lockout);
    e.grid.setText(1, lockCol, "On");
    e.grid.setText(2, lockCol, "Off");
    e.ops.clearLockoutChannels();
    EXPECT_EQ(e.freq(1), "");
    EXPECT_EQ(e.doc.memdata[0][1][col::tag], "Locked");
    EXPECT_EQ(e.tag(2), "Open");
}
