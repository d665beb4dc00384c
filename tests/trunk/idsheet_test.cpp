// The working sheet of the ID window: load and commit through the row
// mapping, sorting and its undo, the line operations, the clipboard and the
// tag tools.

#include "trunk/idsheet.h"
#include "trunk/trunkids.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kestra {
namespace {

using S = TrunkIdSheet;

std::vector<std::string> column(const TrunkIdSheet& sheet, int col, int first, int last)
{
    std::vector<std::string> texts;
    for (int r = first; r <= last; ++r) texts.push_back(sheet.grid().text(r, col));
    return texts;
}

TEST(TrunkIdSheet, LoadShowsTheListsInEditingOrderAndCommitKeepsWhatTheStoreCarries)
{
    Document doc;
    doc.trunkset[2].trunktype = "1";
    doc.trunkids[2][0] = {"000010", "tenth", "1", "0", "r0"};
    doc.trunkids[2][1] = {"000001", "first", "", "1", ""};
    doc.trunkids[2][90] = {"000100", "last", "0", "0", "r90"};
    doc.trunklisttags[2][0] = "Police";
    doc.trunklisttags[2][9] = "Fire";
    doc.trunkids[5][3] = {"12-034", "other", "1", "1", "x"};
    const auto before = doc.trunkids;

    TrunkIdSheet sheet(doc);
    sheet.load(2);
    const Grid& g = sheet.grid();
    EXPECT_EQ(g.text(1, S::kIdCol), "000001");
    EXPECT_EQ(g.text(10, S::kIdCol), "000010");
    EXPECT_EQ(g.text(100, S::kIdCol), "000100");
    EXPECT_EQ(g.text(10, S::kRecordCol), "On");
    EXPECT_EQ(g.text(1, S::kRecordCol), " ");
    EXPECT_EQ(g.text(1, S::kBeepCol), "On");
    EXPECT_EQ(g.text(10, S::kListTagCol), "Police");
    EXPECT_EQ(g.text(11, S::kListTagCol), "");
    EXPECT_EQ(g.text(100, S::kListTagCol), "Fire");
    EXPECT_EQ(g.text(100, 0), "10-10");

    // Unchanged, a commit leaves every field as it was, flags and the reserved column too.
    sheet.commit();
    EXPECT_EQ(doc.trunkids, before);
    EXPECT_FALSE(sheet.storeChanged());

    // A 17-character tag is stored with 16 and a pasted quote becomes a blank.
    sheet.grid().select(2, S::kTagCol);
    sheet.paste("Dispatch \"North\"X");
    sheet.grid().select(2, S::kIdCol);
    for (char k : std::string("77")) sheet.typeKey(k);
    sheet.setFlag(S::kRecordCol, true);
    sheet.toggleFlag(10, S::kRecordCol);
    // The bank on view changes: its IDs are checked and kept in the working copy.
    sheet.showBank(5);
    EXPECT_EQ(sheet.grid().text(3, S::kTagCol), "other");
    EXPECT_EQ(doc.trunkids[2][2][0], "");   // not committed yet
    sheet.showBank(2);
    EXPECT_EQ(sheet.grid().text(2, S::kIdCol), "000077");
    sheet.commit();
    EXPECT_EQ(doc.trunkids[2][2], (TrunkIdEntry{"000077", "Dispatch  North ", "1", "", ""}));
    EXPECT_EQ(doc.trunkids[2][0][idcol::record], "0");
    EXPECT_EQ(doc.trunkids[2][0][idcol::reserved], "r0");
    EXPECT_EQ(doc.trunkids[5], before[5]);
    EXPECT_TRUE(sheet.storeChanged());

    sheet.revert();
    EXPECT_EQ(doc.trunkids, before);
}

TEST(TrunkIdSheet, SortsPutEmptiesLastAndUndoGoesBackOneSort)
{
    Document doc;
    doc.trunkset[0].trunktype = "1";
    const char* ids[] = {"000300", "", "000020", "000100", "", "000005"};
    const char* tags[] = {"c", "lonely", "B", "", "", "a"};
    for (int r = 1; r <= 6; ++r) doc.trunkids[0][storeRowOf(r)] = {ids[r - 1], tags[r - 1], r == 1 ? "1" : "0", "0", ""};
    TrunkIdSheet sheet(doc);
    sheet.load(0);

    sheet.sortIds(true);
    EXPECT_EQ(column(sheet, S::kIdCol, 1, 7),
              (std::vector<std::string>{"000005", "000020", "000100", "000300", "", "", ""}));
    EXPECT_EQ(sheet.grid().text(4, S::kRecordCol), "On");   // the row's cells travel together
    EXPECT_EQ(sheet.grid().text(5, S::kTagCol), "lonely");
    EXPECT_EQ(sheet.grid().text(100, S::kIdCol), "");

    sheet.sortTags(false);
    EXPECT_EQ(column(sheet, S::kTagCol, 1, 5), (std::vector<std::string>{"lonely", "c", "B", "a", ""}));
    sheet.undoSort();
    EXPECT_EQ(column(sheet, S::kIdCol, 1, 4), (std::vector<std::string>{"000005", "000020", "000100", "000300"}));
    sheet.sortIds(false);
    EXPECT_EQ(column(sheet, S::kIdCol, 1, 5), (std::vector<std::string>{"000300", "000100", "000020", "000005", ""}));

    // The undo copy belongs to the bank it was taken on.
    sheet.showBank(1);
    sheet.undoSort();
    EXPECT_EQ(sheet.grid().text(1, S::kIdCol), "");
}

TEST(TrunkIdSheet, PasteIsCutAtTheLastRowAndTheBeepColumn)
{
    Document doc;
    TrunkIdSheet sheet(doc);
    sheet.load(0);
    std::string twelve;
    for (int i = 1; i <= 12; ++i) twelve += std::to_string(100 + i) + "\tTag " + std::to_string(i) + "\tOn\t \tlist\tmore\r\n";

    // Twelve lines into the last list of ten: ten are written, the two further are dropped.
    sheet.grid().select(91, S::kIdCol);
    sheet.paste(twelve);
    EXPECT_EQ(sheet.grid().text(91, S::kIdCol), "101");
    EXPECT_EQ(sheet.grid().text(100, S::kTagCol), "Tag 10");
    EXPECT_EQ(sheet.grid().text(100, S::kRecordCol), "On");
    EXPECT_EQ(sheet.grid().text(100, S::kListTagCol), "");   // never written
    const GridSelection sel = sheet.grid().selection();
    EXPECT_EQ(sel.top(), 91);
    EXPECT_EQ(sel.bottom(), 100);
    EXPECT_EQ(sel.right(), S::kBeepCol);

    // From row 1 the block runs on across the boundary into the second list.
    sheet.grid().select(1, S::kTagCol);
    sheet.paste("a\tOn\t\xE9On\r\nb\n\r\nc\r\n");
    EXPECT_EQ(column(sheet, S::kTagCol, 1, 4), (std::vector<std::string>{"a", "b", "c", ""}));
    EXPECT_EQ(sheet.grid().text(1, S::kBeepCol), "On");   // the character of code 233 is dropped
    EXPECT_EQ(sheet.grid().text(2, S::kRecordCol), " ");   // a short line leaves the rest

    // Copy and Cut give what Paste takes; Delete leaves the scan list tags.
    sheet.grid().setSelection({91, S::kIdCol, 92, S::kListTagCol});
    EXPECT_EQ(sheet.copy(), "101\tTag 1\tOn\t \t\r102\tTag 2\tOn\t \t");
    const std::string cut = sheet.cut();
    EXPECT_EQ(sheet.grid().text(91, S::kIdCol), "");
    sheet.grid().select(1, S::kIdCol);
    sheet.paste(cut);
    EXPECT_EQ(sheet.grid().text(2, S::kTagCol), "Tag 2");

    sheet.paste("");   // a failed clipboard read changes nothing
    EXPECT_EQ(sheet.grid().text(1, S::kIdCol), "101");
}

TEST(TrunkIdSheet, LineOperationsCrossListBoundariesAndEnterStopsOnTheLastRow)
{
    Document doc;
    doc.trunkset[0].trunktype = "8";
    for (int r = 8; r <= 12; ++r) doc.trunkids[0][storeRowOf(r)] = {std::to_string(100000 + r), "t" + std::to_string(r), "0", "0", ""};
    doc.trunkids[0][90][0] = "100100";
    TrunkIdSheet sheet(doc);
    sheet.load(0);
    Grid& g = sheet.grid();

    g.select(9, S::kIdCol);
    sheet.removeId();
    EXPECT_EQ(column(sheet, S::kIdCol, 8, 11), (std::vector<std::string>{"100008", "100010", "100011", "100012"}));
    EXPECT_EQ(g.text(99, S::kIdCol), "100100");
    EXPECT_EQ(g.text(100, S::kIdCol), "");
    sheet.insertId();
    EXPECT_EQ(column(sheet, S::kIdCol, 8, 10), (std::vector<std::string>{"100008", "", "100010"}));
    EXPECT_EQ(g.text(100, S::kIdCol), "100100");
    sheet.insertId();
    EXPECT_EQ(g.text(100, S::kIdCol), "");   // the last row is lost

    g.select(11, S::kTagCol);
    sheet.moveUp();
    EXPECT_EQ(g.text(10, S::kTagCol), "t10");
    EXPECT_EQ(g.selection().row, 10);
    sheet.moveDown();
    sheet.moveDown();
    EXPECT_EQ(column(sheet, S::kTagCol, 10, 12), (std::vector<std::string>{"", "t11", "t10"}));
    g.setSelection({12, 1, 13, 1});   // two rows: nothing happens
    sheet.moveDown();
    EXPECT_EQ(g.text(12, S::kTagCol), "t10");
    g.select(1, 1);
    sheet.moveUp();
    EXPECT_EQ(g.selection().row, 1);

    g.select(100, S::kIdCol);
    sheet.typeKey('5');
    sheet.enter();
    EXPECT_EQ(g.text(100, S::kIdCol), "001005");
    EXPECT_EQ(g.selection().row, 100);
    // Tab stays inside the grid.
    EXPECT_FALSE(sheet.moveColumn(-1));
    EXPECT_TRUE(sheet.moveColumn(4));
    EXPECT_FALSE(sheet.moveColumn(1));
}

TEST(TrunkIdSheet, TagToolsCentreRoundingHalvesToEvenAndReplaceTheFirstMatch)
{
    Document doc;
    const char* tags[] = {"A", "AB", "ABC", "  ABCDEFGHIJKLMNOPQ", "aaa", ""};
    for (int r = 1; r <= 6; ++r) doc.trunkids[0][storeRowOf(r)][idcol::tag] = tags[r - 1];
    TrunkIdSheet sheet(doc);
    sheet.load(0);

    sheet.centerTags();
    EXPECT_EQ(column(sheet, S::kTagCol, 1, 6),
              (std::vector<std::string>{std::string(8, ' ') + "A", std::string(7, ' ') + "AB",
                                        std::string(6, ' ') + "ABC", " ABCDEFGHIJKLMN", "      aaa", ""}));
    sheet.alignLeft();
    EXPECT_EQ(sheet.grid().text(1, S::kTagCol), "A");

    sheet.replaceTagText("a", "bb");
    EXPECT_EQ(sheet.grid().text(5, S::kTagCol), "bbaa");
    sheet.replaceTagText("N", "0123456789");
    EXPECT_EQ(sheet.grid().text(4, S::kTagCol), "ABCDEFGHIJKLM012");
    sheet.replaceTagText("", "x");
    EXPECT_EQ(sheet.grid().text(6, S::kTagCol), "");
}

} // namespace
} // namespace kestra
