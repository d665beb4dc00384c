#include "editor/cellentry.h"

#include "editor/frequencyentry.h"

#include "support/tablerig.h"

#include <gtest/gtest.h>

using namespace kestra;
using Texts = std::vector<std::string>;

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
    // The cell after each of n presses of the space bar.
    Texts spaces(int row, int storeColumn, int n, bool shift = false)
    {
        Texts seen;
        for (int i = 0; i < n; ++i) seen.push_back(space(row, storeColumn, shift));
        return seen;
    }
    // The cell after each key typed.
    Texts typed(int row, int storeColumn, const std::string& keys)
    {
        Texts seen;
        for (char k : keys) {
            type(row, storeColumn, k);
            seen.push_back(cell(row, storeColumn));
        }
        return seen;
    }
};

} // namespace

// ---- list columns -------------------------------------------------------------------

TEST(CellEntryLists, TheLongDelayListScrollsBothWaysAndTheShortOneTakesOnlyItsOwn)
{
    Cells c(Model::BC785D);
    c.put(1, col::delay, "None");
    EXPECT_EQ(c.spaces(1, col::delay, 8), (Texts{"1", "2", "4", "Inf.", "-2", "-5", "-10", "None"}));
    EXPECT_EQ(c.spaces(1, col::delay, 2, true), (Texts{"-10", "-5"}));

    Cells short250(Model::BC250D);
    short250.put(2, col::delay, "-5");   // set on the other kind of model
    EXPECT_EQ(short250.space(2, col::delay), "None");
    EXPECT_TRUE(short250.doc.dirty);
}

TEST(CellEntryLists, StepListHasTheNarrowStepsOnlyOnModelsWithThem)
{
    Cells narrow(Model::BC250D);
    const auto steps = narrow.entry.choices(col::step);
    EXPECT_EQ(steps, (Texts{"5.0", "7.5", "10.0", "12.5", "25.0", "50.0", "100.0", "Auto"}));
    narrow.put(1, col::step, "Auto");
    EXPECT_EQ(narrow.space(1, col::step), "5.0");

    Cells wide(Model::BC296D);
    const auto wideSteps = wide.entry.choices(col::step);
    EXPECT_EQ(wideSteps.size(), 10u);
    EXPECT_NE(std::find(wideSteps.begin(), wideSteps.end(), "6.25"), wideSteps.end());
    EXPECT_NE(std::find(wideSteps.begin(), wideSteps.end(), "20.0"), wideSteps.end());
    wide.put(1, col::step, "Auto");
    EXPECT_EQ(wide.spaces(1, col::step, 3), (Texts{"6.25", "20.0", "5.0"}));
    EXPECT_EQ(wide.space(1, col::step, true), "20.0");
}

TEST(CellEntryLists, ToneLockoutFastScrollAndWrap)
{
    Cells c(Model::BC796D);
    c.put(1, col::tone, "100.0");
    EXPECT_EQ(c.typed(1, col::tone, "Ll"), (Texts{"100.0-", "100.0"}));
    c.put(2, col::tone, "023");
    EXPECT_EQ(c.typed(2, col::tone, "L"), Texts{"023-"});

    // Nothing to lock out on "None" or a blank cell.
    c.put(3, col::tone, "None");
    EXPECT_EQ(c.typed(3, col::tone, "L"), Texts{"None"});
    EXPECT_EQ(c.typed(4, col::tone, "L"), Texts{""});

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
    EXPECT_EQ(c.typed(1, col::mode, "aWnFwMX1"), (Texts{"AM", "WFM", "NFM", "FM", "WFM", "FM", "FM", "FM"}));
    EXPECT_EQ(c.type(1, col::mode, 'a'), CellEntry::KeyResult::Handled);
    EXPECT_EQ(c.spaces(1, col::mode, 4), (Texts{"NFM", "FM", "WFM", "AM"}));
    EXPECT_FALSE(c.entry.editing());   // a list column opens no editor
}

TEST(CellEntryLists, OnOffKeysAndToggle)
{
    Cells c(Model::BC785D);
    for (int storeColumn : {col::trunk, col::record, col::beep, col::lockout, col::atten}) {
        SCOPED_TRACE(storeColumn);
        c.doc.dirty = false;
        EXPECT_EQ(c.spaces(1, storeColumn, 2), (Texts{"On", "Off"}));  // blank counts as Off
        EXPECT_EQ(c.typed(1, storeColumn, "1fN0"), (Texts{"On", "Off", "On", "Off"}));
        EXPECT_TRUE(c.doc.dirty);

        // A key that leaves the cell as it is does not mark the document.
        c.doc.dirty = false;
        EXPECT_EQ(c.typed(1, storeColumn, "0Q"), (Texts{"Off", "Off"}));
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
    EXPECT_EQ(c.cells(col::freq, 1, 3), (Texts{"0146.0000", "", ""}));
    EXPECT_EQ(c.cell(2, col::mode), "FM");
    EXPECT_TRUE(c.doc.dirty);

    // Without their operations Shift+Delete, Ctrl+D and Ctrl+U change nothing.
    c.doc.dirty = false;
    c.grid.select(4, c.gridCol(col::mode));
    const Keystroke lineKeys[] = {Keystroke::of(Kind::Delete, /*shift=*/true), {Kind::Character, 'd', false, true},
                                  {Kind::Character, 'U', false, true}};
    for (const Keystroke& k : lineKeys) c.entry.key(k);
    EXPECT_EQ(c.cell(4, col::mode), "FM");
    EXPECT_FALSE(c.doc.dirty);

    std::string called;
    c.entry.clearSelectedLines = [&called] { called += "clear "; };
    c.entry.shiftChannelDown = [&called] { called += "down "; };
    c.entry.shiftChannelUp = [&called] { called += "up "; };
    for (const Keystroke& k : lineKeys) c.entry.key(k);
    EXPECT_EQ(c.entry.key({Kind::Character, 'x', false, true}), CellEntry::KeyResult::Ignored);
    EXPECT_EQ(called, "clear down up ");
    EXPECT_EQ(c.cell(4, col::mode), "FM");
}

// ---- Text1 ----------------------------------------------------------------------------------

TEST(CellEntryText, AKeyStartsAFreshEntryAndEnterOrF2EditTheCellsText)
{
    Cells c;
    c.put(1, col::freq, "0146.0000");
    EXPECT_EQ(c.type(1, col::freq, '5'), CellEntry::KeyResult::EditorOpened);
    EXPECT_EQ(c.entry.edit().text, "5");
    EXPECT_EQ(c.entry.edit().row, 1);
    EXPECT_EQ(c.entry.edit().col, c.gridCol(col::freq));
    c.entry.drop();
    EXPECT_EQ(c.cell(1, col::freq), "0146.0000");

    c.press(1, col::freq, Keystroke::of(Kind::Backspace));
    EXPECT_EQ(c.entry.edit().text, "");
    c.press(1, col::freq, Keystroke::of(Kind::Enter));
    EXPECT_EQ(c.entry.edit().text, "0146.0000");
    c.press(1, col::freq, Keystroke::of(Kind::Edit));
    EXPECT_EQ(c.entry.edit().text, "0146.0000");

    // A cell cleared on purpose is typed into as a blank one.
    c.put(2, col::tag, "Empty");
    c.type(2, col::tag, 'K');
    EXPECT_EQ(c.entry.edit().text, "K");
    EXPECT_EQ(c.cell(2, col::tag), "");
    c.put(3, col::tag, "Air");
    c.press(3, col::tag, Keystroke::of(Kind::Space));
    EXPECT_EQ(c.entry.edit().text, " ");
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
    EXPECT_EQ(c.cells(col::step, 1, 8), (Texts{"5.0", "5.0", "Auto", "Auto", "Auto", "Auto", "5.0", "5.0"}));
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
    // The short delay list toggles; grid column 5 is Beep Alert here and Record in the other layout.
    EXPECT_EQ(short250.entry.smartInfo(4).title, "Delay:");
    EXPECT_EQ(short250.entry.smartInfo(4).text, "Use double click or spacebar to toggle between Off/On. ");
    EXPECT_EQ(long785.entry.smartInfo(4).title, "Delay Time:");
    EXPECT_EQ(short250.entry.smartInfo(5).title, "Beep Alert:");
    EXPECT_EQ(long785.entry.smartInfo(5).title, "Record output:");
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
    EXPECT_EQ(c.cells(col::mode, 1, 4), (Texts{"FM", "AM", "AM", "FM"}));
    EXPECT_EQ(c.cell(3, col::step), "25.0");

    c.grid.select(5, 3);   // one row: all 100
    bandplanCurrentBank(c.table);
    EXPECT_EQ(c.cells(col::mode, 1, 6), Texts(6, "AM"));

    c.doc.cell(4, 1, col::freq) = "0120.0000";
    c.doc.cell(4, 1, col::mode) = "0";
    c.doc.dirty = false;
    bandplanAllBanks(c.table);
    EXPECT_EQ(c.doc.cell(4, 1, col::mode), "2");
    EXPECT_TRUE(c.doc.dirty);
}
