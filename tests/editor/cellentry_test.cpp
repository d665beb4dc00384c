#include "editor/cellentry.h"

#include "editor/frequencyentry.h"

#include "support/tablerig.h"

#include <gtest/gtest.h>

using namespace kestra;

namespace {

using Kind = Keystroke::Kind;

struct CountingView : MemtabView {
    int rebuilt = 0;
    void easyTagsRebuilt() override { ++rebuilt; }
};

struct Cells : test::TableRig {
    FrequencyEntry frequency{table};
    CellEntry entry{table, frequency};
    CountingView view;

    explicit Cells(Model model = Model::BC250D) : TableRig(model) { table.setView(&view); }
    const std::string& cell(int row, int storeColumn) const { return grid.text(row, gridCol(storeColumn)); }
    void put(int row, int storeColumn, const std::string& text) { grid.setText(row, gridCol(storeColumn), text); }
    // Selects the cell and presses a key on it.
    CellEntry::KeyResult press(int row, int storeColumn, Keystroke key)
    {
        grid.select(row, gridCol(storeColumn));
        return entry.key(key);
    }
    CellEntry::KeyResult type(int row, int storeColumn, char c) { return press(row, storeColumn, Keystroke::character(c)); }
    std::string space(int row, int storeColumn, bool shift = false)
    {
        press(row, storeColumn, Keystroke::of(Kind::Space, shift));
        return cell(row, storeColumn);
    }
};

} // namespace

// ---- list columns -------------------------------------------------------------------

TEST(CellEntryLists, DelayOfTheShortListKnowsOnlyNoneAndTwo)
{
    Cells c(Model::BC250D);
    EXPECT_EQ(c.space(1, col::delay), "None");   // a blank cell starts at the top of the list
    EXPECT_EQ(c.space(1, col::delay), "2");
    EXPECT_EQ(c.space(1, col::delay), "None");
    EXPECT_EQ(c.space(1, col::delay, true), "2");
    EXPECT_EQ(c.space(1, col::delay, true), "None");
    c.put(2, col::delay, "-5");   // set on the other kind of model
    EXPECT_EQ(c.space(2, col::delay), "None");
    EXPECT_TRUE(c.doc.dirty);
}

TEST(CellEntryLists, DelayOfTheLongListScrollsBothWays)
{
    Cells c(Model::BC785D);
    c.put(1, col::delay, "None");
    std::vector<std::string> seen;
    for (int i = 0; i < 8; ++i) seen.push_back(c.space(1, col::delay));
    EXPECT_EQ(seen, (std::vector<std::string>{"1", "2", "4", "Inf.", "-2", "-5", "-10", "None"}));
    EXPECT_EQ(c.space(1, col::delay, true), "-10");
    EXPECT_EQ(c.space(1, col::delay, true), "-5");
}

TEST(CellEntryLists, StepListHasTheNarrowStepsOnlyOnModelsWithThem)
{
    Cells narrow(Model::BC250D);
    const auto steps = narrow.entry.choices(col::step);
    EXPECT_EQ(steps, (std::vector<std::string>{"5.0", "7.5", "10.0", "12.5", "25.0", "50.0", "100.0", "Auto"}));
    narrow.put(1, col::step, "Auto");
    EXPECT_EQ(narrow.space(1, col::step), "5.0");

    Cells wide(Model::BC296D);
    const auto wideSteps = wide.entry.choices(col::step);
    EXPECT_EQ(wideSteps.size(), 10u);
    EXPECT_NE(std::find(wideSteps.begin(), wideSteps.end(), "6.25"), wideSteps.end());
    EXPECT_NE(std::find(wideSteps.begin(), wideSteps.end(), "20.0"), wideSteps.end());
    wide.put(1, col::step, "Auto");
    EXPECT_EQ(wide.space(1, col::step), "6.25");
    EXPECT_EQ(wide.space(1, col::step), "20.0");
    EXPECT_EQ(wide.space(1, col::step), "5.0");
    EXPECT_EQ(wide.space(1, col::step, true), "20.0");
}

TEST(CellEntryLists, ToneLockoutFastScrollAndWrap)
{
    Cells c(Model::BC796D);
    c.put(1, col::tone, "100.0");
    c.type(1, col::tone, 'L');
    EXPECT_EQ(c.cell(1, col::tone), "100.0-");
    c.type(1, col::tone, 'l');
    EXPECT_EQ(c.cell(1, col::tone), "100.0");
    c.put(2, col::tone, "023");
    c.type(2, col::tone, 'L');
    EXPECT_EQ(c.cell(2, col::tone), "023-");

    // Nothing to lock out on "None" or a blank cell.
    c.put(3, col::tone, "None");
    c.type(3, col::tone, 'L');
    EXPECT_EQ(c.cell(3, col::tone), "None");
    c.type(4, col::tone, 'L');
    EXPECT_EQ(c.cell(4, col::tone), "");

    // + and - jump ten entries, on the keypad and on the main keyboard.
    c.press(1, col::tone, Keystroke::of(Kind::NumPlus));
    EXPECT_EQ(c.cell(1, col::tone), "141.3");
    c.type(1, col::tone, '-');
    EXPECT_EQ(c.cell(1, col::tone), "100.0");
    c.press(1, col::tone, Keystroke::of(Kind::NumMinus));
    EXPECT_EQ(c.cell(1, col::tone), "71.9");

    // The list runs from "None" over the tones into the codes and round again.
    EXPECT_EQ(c.space(3, col::tone, true), "754");
    EXPECT_EQ(c.space(3, col::tone), "None");
    c.put(3, col::tone, "250.3");
    EXPECT_EQ(c.space(3, col::tone), "023");

    // A locked-out tone stays locked out while it is scrolled.
    EXPECT_EQ(c.space(2, col::tone), "025-");
    EXPECT_EQ(c.space(2, col::tone, true), "023-");
}

TEST(CellEntryLists, ModeLettersAndScroll)
{
    Cells c;
    const std::pair<char, const char*> letters[] = {{'a', "AM"}, {'W', "WFM"}, {'n', "NFM"}, {'F', "FM"}, {'w', "WFM"},
                                                    {'M', "FM"}};
    for (const auto& [letter, mode] : letters) {
        SCOPED_TRACE(letter);
        EXPECT_EQ(c.type(1, col::mode, letter), CellEntry::KeyResult::Handled);
        EXPECT_EQ(c.cell(1, col::mode), mode);
    }
    c.type(1, col::mode, 'X');
    c.type(1, col::mode, '1');
    EXPECT_EQ(c.cell(1, col::mode), "FM");
    EXPECT_EQ(c.space(1, col::mode), "WFM");
    EXPECT_EQ(c.space(1, col::mode), "AM");
    EXPECT_EQ(c.space(1, col::mode), "NFM");
    EXPECT_EQ(c.space(1, col::mode), "FM");
    EXPECT_FALSE(c.entry.editing());   // a list column opens no editor
}

TEST(CellEntryLists, OnOffKeysAndToggle)
{
    Cells c(Model::BC785D);
    for (int storeColumn : {col::trunk, col::record, col::beep, col::lockout, col::atten}) {
        SCOPED_TRACE(storeColumn);
        c.doc.dirty = false;
        EXPECT_EQ(c.space(1, storeColumn), "On");   // blank counts as Off
        EXPECT_EQ(c.space(1, storeColumn), "Off");
        c.type(1, storeColumn, '1');
        EXPECT_EQ(c.cell(1, storeColumn), "On");
        c.type(1, storeColumn, 'f');
        EXPECT_EQ(c.cell(1, storeColumn), "Off");
        c.type(1, storeColumn, 'N');
        EXPECT_EQ(c.cell(1, storeColumn), "On");
        c.type(1, storeColumn, '0');
        EXPECT_EQ(c.cell(1, storeColumn), "Off");
        EXPECT_TRUE(c.doc.dirty);

        // A key that leaves the cell as it is does not mark the document.
        c.doc.dirty = false;
        c.type(1, storeColumn, '0');
        c.type(1, storeColumn, 'Q');
        EXPECT_EQ(c.cell(1, storeColumn), "Off");
        EXPECT_FALSE(c.doc.dirty);
    }
}

// ---- keys of every column ---------------------------------------------------------------

TEST(CellEntryKeys, DeleteClearsTheSelectedCellsAndLineKeysWaitForTheirOperations)
{
    Cells c;
    for (int r = 1; r <= 4; ++r) {
        c.put(r, col::freq, "0146.0000");
        c.put(r, col::mode, "FM");
    }
    c.grid.setSelection({2, c.gridCol(col::freq), 3, c.gridCol(col::freq)});
    EXPECT_EQ(c.entry.key(Keystroke::of(Kind::Delete)), CellEntry::KeyResult::Handled);
    EXPECT_EQ(c.cell(1, col::freq), "0146.0000");
    EXPECT_EQ(c.cell(2, col::freq), "");
    EXPECT_EQ(c.cell(3, col::freq), "");
    EXPECT_EQ(c.cell(2, col::mode), "FM");
    EXPECT_TRUE(c.doc.dirty);

    // Without their operations Shift+Delete, Ctrl+D and Ctrl+U change nothing.
    c.doc.dirty = false;
    c.grid.select(4, c.gridCol(col::mode));
    c.entry.key(Keystroke::of(Kind::Delete, /*shift=*/true));
    c.entry.key({Kind::Character, 'd', false, true});
    c.entry.key({Kind::Character, 'U', false, true});
    EXPECT_EQ(c.cell(4, col::mode), "FM");
    EXPECT_FALSE(c.doc.dirty);

    std::string called;
    c.entry.clearSelectedLines = [&called] { called += "clear "; };
    c.entry.shiftChannelDown = [&called] { called += "down "; };
    c.entry.shiftChannelUp = [&called] { called += "up "; };
    c.entry.key(Keystroke::of(Kind::Delete, true));
    c.entry.key({Kind::Character, 'd', false, true});
    c.entry.key({Kind::Character, 'U', false, true});
    EXPECT_EQ(c.entry.key({Kind::Character, 'x', false, true}), CellEntry::KeyResult::Ignored);
    EXPECT_EQ(called, "clear down up ");
    EXPECT_EQ(c.cell(4, col::mode), "FM");
}

// ---- Text1 ----------------------------------------------------------------------------------

TEST(CellEntryText, TheBoxStartsWithTheCellTextAndTheKey)
{
    Cells c;
    c.put(1, col::freq, "0146.0000");
    EXPECT_EQ(c.type(1, col::freq, '5'), CellEntry::KeyResult::EditorOpened);
    EXPECT_EQ(c.entry.edit().text, "0146.00005");
    EXPECT_EQ(c.entry.edit().row, 1);
    EXPECT_EQ(c.entry.edit().col, c.gridCol(col::freq));
    c.entry.drop();
    EXPECT_EQ(c.cell(1, col::freq), "0146.0000");

    c.press(1, col::freq, Keystroke::of(Kind::Backspace));
    EXPECT_EQ(c.entry.edit().text, "0146.000");
    c.press(1, col::freq, Keystroke::of(Kind::Enter));
    EXPECT_EQ(c.entry.edit().text, "0146.0000");

    // A cell cleared on purpose is typed into as a blank one.
    c.put(2, col::tag, "Empty");
    c.type(2, col::tag, 'K');
    EXPECT_EQ(c.entry.edit().text, "K");
    EXPECT_EQ(c.cell(2, col::tag), "");
    c.put(3, col::tag, "Air");
    c.press(3, col::tag, Keystroke::of(Kind::Space));
    EXPECT_EQ(c.entry.edit().text, "Air ");
    EXPECT_FALSE(c.doc.dirty);   // nothing is changed before the box closes

    // Keys that are no characters open nothing.
    c.entry.drop();
    EXPECT_EQ(c.press(3, col::tag, Keystroke::character('\x1b')), CellEntry::KeyResult::Ignored);
    EXPECT_FALSE(c.entry.editing());
}

TEST(CellEntryText, FrequencyGoesThroughEnterfreqAndMovesOn)
{
    Cells c;
    c.settings.bandplan = 1;
    c.type(7, col::freq, '1');
    c.entry.commit("146.007", /*moveOn=*/true);
    EXPECT_FALSE(c.entry.editing());
    EXPECT_EQ(c.cell(7, col::freq), "0146.0050");
    EXPECT_EQ(c.cell(7, col::mode), "FM");
    EXPECT_EQ(c.grid.selection(), (GridSelection{8, 1, 8, 1}));
    EXPECT_TRUE(c.doc.dirty);

    // Committed without moving (focus lost, tab change).
    c.type(8, col::freq, '7');
    c.entry.commit("700", false);
    EXPECT_EQ(c.cell(8, col::freq), "0512.0000");
    EXPECT_EQ(c.grid.selection().row, 8);

    // An emptied box clears the frequency.
    c.press(8, col::freq, Keystroke::of(Kind::Backspace));
    c.entry.commit("  ", true);
    EXPECT_EQ(c.cell(8, col::freq), "");

    // The last row stays the last row.
    c.type(100, col::freq, '4');
    c.entry.commit("460.025", true);
    EXPECT_EQ(c.grid.selection().row, 100);

    // A commit without an open box does nothing.
    c.entry.commit("155", true);
    EXPECT_EQ(c.cell(100, col::freq), "0460.0250");
}

TEST(CellEntryText, TagCommitFeedsTheEasyTagListsWhenTheyAreOn)
{
    Cells c;
    c.doc.currentBank = 3;
    c.type(2, col::tag, 'P');
    c.entry.commit("  Police", true);
    EXPECT_EQ(c.cell(2, col::tag), "  Police");
    EXPECT_EQ(c.grid.selection().row, 3);
    EXPECT_TRUE(c.doc.easytags.empty());
    EXPECT_EQ(c.view.rebuilt, 0);

    c.settings.option9 = 1;
    c.type(3, col::tag, 'F');
    c.entry.commit("Fire", true);
    c.type(4, col::tag, 'P');
    c.entry.commit("  Police", true);
    EXPECT_EQ(c.doc.easytags, (std::vector<std::string>{"Fire", "Police"}));
    EXPECT_EQ(c.doc.banktaglist[3], (std::vector<std::string>{"Fire", "Police"}));
    EXPECT_TRUE(c.doc.banktaglist[0].empty());
    EXPECT_EQ(c.view.rebuilt, 2);
}

// ---- the top frame ----------------------------------------------------------------------------

TEST(CellEntryTopFrame, AChoiceWritesEverySelectedRow)
{
    Cells c(Model::BC250D);
    for (int r = 1; r <= 8; ++r) c.put(r, col::step, "5.0");
    c.grid.setSelection({6, c.gridCol(col::freq), 3, c.gridCol(col::tag)});
    c.entry.chooseFromList(col::step, "Auto");
    for (int r = 1; r <= 8; ++r) {
        SCOPED_TRACE(r);
        EXPECT_EQ(c.cell(r, col::step), r >= 3 && r <= 6 ? std::string("Auto") : std::string("5.0"));
    }
    EXPECT_TRUE(c.doc.dirty);

    c.entry.chooseFromList(col::tone, "023");
    c.entry.chooseTag("Marine");
    EXPECT_EQ(c.cell(3, col::tone), "023");
    EXPECT_EQ(c.cell(6, col::tag), "Marine");
    EXPECT_EQ(c.cell(7, col::tag), "");

    // This layout has no Record column: nothing is written anywhere.
    const Grid before = c.grid;
    c.entry.chooseFromList(col::record, "On");
    for (int r = 1; r <= 8; ++r)
        for (int g = 1; g < c.grid.cols(); ++g) EXPECT_EQ(c.grid.text(r, g), before.text(r, g));
}

TEST(CellEntryHelp, SmartInfoFollowsTheColumnOfTheLayout)
{
    Cells short250(Model::BC250D);
    Cells long785(Model::BC785D);
    EXPECT_EQ(short250.entry.smartInfo(1).title, "Frequency");
    EXPECT_EQ(short250.entry.smartInfo(1).text, "Enter frequency. Use <ENTER> to jump to next channel.");
    EXPECT_EQ(short250.entry.smartInfo(2).title, "Tag:");
    EXPECT_EQ(short250.entry.smartInfo(4).title, "Delay:");
    EXPECT_EQ(short250.entry.smartInfo(4).text, "Use double click or spacebar to toggle between Off/On. ");
    EXPECT_EQ(long785.entry.smartInfo(4).title, "Delay Time:");
    EXPECT_EQ(long785.entry.smartInfo(4).text,
              "Select from list or use double click/spacebar to scroll the list. Sets wait time before scanner "
              "resumes");
    // Grid column 5 is Beep Alert in one layout and Record in the other.
    EXPECT_EQ(short250.entry.smartInfo(5).title, "Beep Alert:");
    EXPECT_EQ(long785.entry.smartInfo(5).title, "Record output:");
    EXPECT_EQ(long785.entry.smartInfo(5).text, "Use double click or spacebar to toggle between Off/On. This option "
                                               "will activate the record output of your scanner.");
    EXPECT_EQ(short250.entry.smartInfo(6).title, "PL/DPL:");
    EXPECT_EQ(long785.entry.smartInfo(7).title, "PL/DPL:");
    EXPECT_EQ(short250.entry.smartInfo(8).text, "Use double click or spacebar to toggle between Off/On");
    EXPECT_EQ(short250.entry.smartInfo(9).title, "Mode:");
    EXPECT_EQ(short250.entry.smartInfo(10).title, "Step:");
    EXPECT_EQ(long785.entry.smartInfo(11).title, "Step:");
    EXPECT_EQ(short250.entry.smartInfo(11).title, "");   // past the last column of the layout
}

// ---- the check commands ---------------------------------------------------------------------

TEST(CellEntryChecks, CheckDataCorrectsTheStoreAndRepaintsTheGrid)
{
    Cells c;
    c.settings.bandplan = 0;
    c.doc.cell(0, 4, col::freq) = "1000";
    c.doc.cell(0, 4, col::mode) = "0";
    c.doc.cell(0, 4, col::step) = "0";
    c.doc.cell(2, 9, col::freq) = "700";   // another bank: checked as well
    c.table.fillgrid();
    EXPECT_EQ(c.cell(4, col::freq), "1000.0000");

    checkDataInTable(c.table);
    EXPECT_EQ(c.cell(4, col::freq), "0956.0000");
    EXPECT_EQ(c.doc.cell(2, 9, col::freq), "0512.0000");
    EXPECT_EQ(c.cell(4, col::mode), "FM");   // no bandplan: mode untouched
    EXPECT_TRUE(c.doc.dirty);

    c.settings.bandplan = 1;
    c.put(5, col::freq, "0120.0000");   // typed, not yet in the store
    c.put(5, col::mode, "FM");
    checkDataInTable(c.table);
    EXPECT_EQ(c.cell(5, col::mode), "AM");
}

TEST(CellEntryChecks, BandplanOfTheSelectionOrOfTheWholeBank)
{
    Cells c;
    c.settings.bandplan = 1;
    for (int r = 1; r <= 6; ++r) {
        c.put(r, col::freq, "0120.0000");   // airband: AM, 25 kHz
        c.put(r, col::mode, "FM");
        c.put(r, col::step, "5.0");
    }
    c.grid.setSelection({2, 3, 3, 3});
    bandplanCurrentBank(c.table);
    EXPECT_EQ(c.cell(1, col::mode), "FM");
    EXPECT_EQ(c.cell(2, col::mode), "AM");
    EXPECT_EQ(c.cell(3, col::step), "25.0");
    EXPECT_EQ(c.cell(4, col::mode), "FM");

    c.grid.select(5, 3);   // one row: all 100
    bandplanCurrentBank(c.table);
    EXPECT_EQ(c.cell(1, col::mode), "AM");
    EXPECT_EQ(c.cell(6, col::mode), "AM");

    c.doc.cell(4, 1, col::freq) = "0120.0000";
    c.doc.cell(4, 1, col::mode) = "0";
    c.doc.dirty = false;
    bandplanAllBanks(c.table);
    EXPECT_EQ(c.doc.cell(4, 1, col::mode), "2");
    EXPECT_TRUE(c.doc.dirty);
}
