#include "editor/banktools.h"

#include "core/text.h"
#include "editor/lineops.h"
#include "support/tablerig.h"

#include <gtest/gtest.h>

using namespace kestra;
using Texts = std::vector<std::string>;

namespace {

struct Bench : test::TableRig {
    LineOperations lineOps{table};
    BankTools tools{table, lineOps};

    // A channel of the bank on view, typed into the grid.
    void channel(int row, const std::string& freq, const std::string& tag = "", const std::string& trunk = "")
    {
        put(row, col::freq, freq);
        put(row, col::tag, tag);
        put(row, col::trunk, trunk);
    }
    // A channel of a bank not on view, as the store holds it.
    void inStore(int bank, int row, const std::string& freq, const std::string& tag, const std::string& comment = "")
    {
        auto& line = doc.memdata[bank][row];
        line[col::freq] = freq;
        line[col::tag] = tag;
        line[col::tone] = "0";
        line[col::comment] = comment;
    }
    std::string freq(int row) const { return cell(row, col::freq); }
    std::string tag(int row) const { return cell(row, col::tag); }
    void selectRows(int top, int bottom) { grid.setSelection({top, 1, bottom, 1}); }
};

} // namespace

TEST(BankSort, WholeRowsMoveAndEmptiesEndTheRangeInBothDirections)
{
    Bench b;
    b.channel(1, "460", "C");
    b.channel(3, "155", "A");
    b.channel(4, "851", "D");
    b.channel(6, "162", "B");
    b.doc.memdata[0][2][col::comment] = "left over";
    b.doc.memdata[0][3][col::comment] = "fire";
    b.selectRows(7, 7);  // one row: the whole bank
    b.tools.sortAscending();

    EXPECT_EQ(b.freq(1), "0155.0000");
    EXPECT_EQ(b.cells(col::tag, 1, 4), (Texts{"A", "B", "C", "D"}));
    EXPECT_EQ(b.doc.memdata[0][1][col::comment], "fire");
    EXPECT_EQ(b.stored(col::comment, 5, 6), (Texts{"", ""}));
    EXPECT_EQ(b.cells(col::freq, 5, 6), (Texts{"", ""}));
    EXPECT_EQ(b.stored(col::freq, 5, 6), (Texts{"Empty", "Empty"}));
    EXPECT_TRUE(b.doc.dirty);
    // The Undo of the window brings back the bank as it was.
    b.lineOps.tabundo();
    EXPECT_EQ(b.tag(1), "C");
    EXPECT_EQ(b.tag(6), "B");

    // A range of rows sorts only those rows; its empties still go to its end.
    b.channel(7, "300", "E");
    b.selectRows(2, 4);
    b.tools.sortDescending();
    EXPECT_EQ(b.cells(col::tag, 1, 7), (Texts{"C", "D", "A", "", "", "B", "E"}));
    EXPECT_EQ(b.freq(4), "");
    EXPECT_TRUE(b.dialogs.shown.empty());
}

TEST(BankSort, EdacsBanksAskFirstByTypeAndOption6)
{
    struct Case {
        const char* type;
        int option6;
        bool trunked;
        bool asks;
    };
    const Case cases[] = {
        {"6", 0, true, true},  {"6", 1, true, true},   {"7", 0, true, true}, {"7", 1, true, false},
        {"9", 0, true, false}, {"6", 0, false, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "type " << c.type << " option6 " << c.option6 << " trunk " << c.trunked);
        Bench b;
        b.doc.trunkset[0].trunktype = c.type;
        b.settings.option6 = c.option6;
        b.channel(1, "866", "high", c.trunked ? "On" : "Off");
        b.channel(2, "851", "low");
        b.dialogs.answers = {Answer::No};
        b.tools.sortAscending();
        ASSERT_EQ(b.dialogs.shown.size(), c.asks ? 1u : 0u);
        if (c.asks) {
            EXPECT_EQ(b.dialogs.shown[0].text, "WARNING:\r\nThis bank contains an EDACS trunk system!\r\n"
                                               "Sorting this bank can cause problems.\r\n\r\n"
                                               "Do you want to sort this bank anyway?");
            EXPECT_EQ(b.dialogs.shown[0].buttons, Buttons::YesNo);
        }
        // No leaves the bank; without the question it is sorted.
        EXPECT_EQ(b.tag(1), c.asks ? "high" : "low");
    }
}

TEST(Duplicates, PairsBySameFrequencyWithOrWithoutSubtoneUntilCancel)
{
    Bench b;
    b.channel(1, "155.1", "A");
    b.channel(4, "155.1", "B");
    b.channel(9, "460", "C");
    b.grid.setText(1, b.gridCol(col::tone), "67.0");
    b.inStore(2, 5, "0155.1000", "other bank");
    b.inStore(2, 6, "0460.0000", "also");

    b.tools.findDuplicates(BankTools::Scope::CurrentBank, false);
    EXPECT_EQ(b.messages(), std::vector<std::string>{"Duplicate Channel Found: 1 and 4 / Frequency: 0155.1000"});
    EXPECT_EQ(b.dialogs.shown[0].buttons, Buttons::OkCancel);

    // With the subtone, channel 1 (67.0) and 4 (none) no longer match; 4 and 205 do.
    b.dialogs.shown.clear();
    b.tools.findDuplicates(BankTools::Scope::AllBanks, true);
    EXPECT_EQ(b.messages(), (std::vector<std::string>{"Duplicate Channel Found: 4 and 205 / Frequency: 0155.1000",
                                                      "Duplicate Channel Found: 9 and 206 / Frequency: 0460.0000"}));
    EXPECT_EQ(test::crlfLines(test::readBytes(b.dir.path() / "dupl.txt")), b.messages());

    // Cancel ends the search; the report holds what was shown.
    b.dialogs.shown.clear();
    b.dialogs.answers = {Answer::Cancel};
    b.tools.findDuplicates(BankTools::Scope::AllBanks, false);
    EXPECT_EQ(b.messages(), std::vector<std::string>{"Duplicate Channel Found: 1 and 4 / Frequency: 0155.1000"});
    EXPECT_EQ(test::crlfLines(test::readBytes(b.dir.path() / "dupl.txt")), b.messages());
}

TEST(Duplicates, RemoveEmptiesEveryLaterChannelOfTheSameFrequency)
{
    Bench b;
    b.channel(1, "155.1", "A");
    b.channel(2, "155.1", "B");
    b.channel(3, "460", "C");
    b.channel(5, "155.1", "D");
    b.tools.removeDuplicates();
    EXPECT_EQ(b.cells(col::freq, 1, 5), (Texts{"0155.1000", "", "0460.0000", "", ""}));
    EXPECT_EQ(Val(b.doc.memdata[0][5][col::freq]), 0);
    EXPECT_TRUE(b.doc.dirty);

    b.lineOps.tabundo();
    EXPECT_EQ(b.freq(2), "0155.1000");
    EXPECT_EQ(b.freq(5), "0155.1000");
}

TEST(Replace, FirstHitInAnyCaseCutTo16InTheScope)
{
    Bench b;
    b.channel(1, "155", "Fire fire");
    b.channel(2, "156", "Police");
    b.inStore(3, 1, "0460.0000", "FIRE North");

    EXPECT_EQ(b.tools.replaceTags("", "x", BankTools::Scope::AllBanks), 0);
    EXPECT_FALSE(b.doc.dirty);

    EXPECT_EQ(b.tools.replaceTags("FIRE", "Brandweer Oost", BankTools::Scope::CurrentBank), 1);
    EXPECT_EQ(b.tag(1), "Brandweer Oost f");  // the second "fire" stays, the rest is cut at 16
    EXPECT_EQ(b.doc.memdata[3][1][col::tag], "FIRE North");
    EXPECT_TRUE(b.doc.dirty);

    EXPECT_EQ(b.tools.replaceTags("north", "N", BankTools::Scope::AllBanks), 1);
    EXPECT_EQ(b.doc.memdata[3][1][col::tag], "FIRE N");
    EXPECT_EQ(b.tag(2), "Police");

    // Undo on the other bank's tab brings its tag back.
    b.table.changeBank(3);
    b.lineOps.tabundo();
    EXPECT_EQ(b.doc.memdata[3][1][col::tag], "FIRE North");
}

TEST(FindData, GoesOnBehindTheLastHitAcrossBanksAndStartsOver)
{
    Bench b;
    b.channel(3, "155.1", "A");
    b.inStore(0, 7, "0", "empty channel", "Water");  // an empty channel is no hit
    b.inStore(4, 2, "0460.0000", "B", "Waterworks");
    b.inStore(9, 100, "0851.0000", "C", "water tower");

    ASSERT_TRUE(b.tools.findNext("WATER", BankTools::Scope::AllBanks, BankTools::Field::Comments));
    EXPECT_EQ(b.doc.currentBank, 4);
    EXPECT_EQ(b.grid.selection().top(), 2);
    EXPECT_EQ(b.tag(2), "B");
    EXPECT_EQ(b.dialogs.shown.back().text, "Channel #402\r\nin bank 5\r\ncontains this data.");

    ASSERT_TRUE(b.tools.findNext("WATER", BankTools::Scope::AllBanks, BankTools::Field::Comments));
    EXPECT_EQ(b.doc.currentBank, 9);
    EXPECT_EQ(b.grid.selection().top(), 100);
    EXPECT_EQ(b.dialogs.shown.back().text, "Channel #1000\r\nin bank 10\r\ncontains this data.");

    // Behind the last hit there is none: the search starts over.
    ASSERT_TRUE(b.tools.findNext("WATER", BankTools::Scope::AllBanks, BankTools::Field::Comments));
    EXPECT_EQ(b.doc.currentBank, 4);

    // The current bank only, in the frequency column.
    b.table.changeBank(0);
    ASSERT_TRUE(b.tools.findNext("155.1", BankTools::Scope::CurrentBank, BankTools::Field::Frequency));
    EXPECT_EQ(b.doc.currentBank, 0);
    EXPECT_EQ(b.grid.selection().top(), 3);
    EXPECT_FALSE(b.tools.findNext("460", BankTools::Scope::CurrentBank, BankTools::Field::Frequency));
    const std::size_t shown = b.dialogs.shown.size();
    EXPECT_FALSE(b.tools.findNext("", BankTools::Scope::AllBanks, BankTools::Field::Comments));
    EXPECT_EQ(b.dialogs.shown.size(), shown);
}
