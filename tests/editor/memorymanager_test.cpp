#include "editor/memorymanager.h"

#include "core/text.h"
#include "editor/lineops.h"
#include "support/tablerig.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

using namespace kestra;
using Op = MemoryJob::Operation;
using Part = MemoryJob::BankPart;

namespace {

std::string& cellOf(Document& doc, int channel, int column)
{
    return doc.memdata[(channel - 1) / 100][(channel - 1) % 100 + 1][column];
}

// Every channel 1..1100 filled: frequency "<n>.5000", tag "T<n>", comment "C<n>".
Document numbered()
{
    Document doc;
    for (int n = 1; n <= kLastChannel; ++n) {
        cellOf(doc, n, col::freq) = std::to_string(n) + ".5000";
        cellOf(doc, n, col::tag) = "T" + std::to_string(n);
        cellOf(doc, n, col::mode) = std::to_string(n % 4);
        cellOf(doc, n, col::comment) = "C" + std::to_string(n);
    }
    return doc;
}

// The channel's number as its frequency tells it, 0 for an empty channel.
int origin(Document& doc, int channel) { return static_cast<int>(Val(cellOf(doc, channel, col::freq))); }
using Ints = std::vector<int>;
Ints origins(Document& doc, int first, int last)
{
    Ints seen;
    for (int n = first; n <= last; ++n) seen.push_back(origin(doc, n));
    return seen;
}

MemoryJob channels(Op op, int first, int last, int to, bool tags = true)
{
    return {.operation = op, .copyTags = tags, .fromFirst = first, .fromLast = last, .toFirst = to};
}

MemoryJob banks(Op op, int from, int to, Part part, bool tags = true)
{
    return {.operation = op, .unit = MemoryJob::Unit::Banks, .part = part, .copyTags = tags, .fromBank = from, .toBank = to};
}

} // namespace

TEST(MemoryChannels, CopyOverOverlappingRangesReadsTheChannelsAsTheyWere)
{
    Document doc = numbered();
    EXPECT_TRUE(runMemoryJob(doc, channels(Op::Copy, 1, 10, 4)).changed);
    EXPECT_EQ(origins(doc, 1, 14), (Ints{1, 2, 3, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 14}));
    EXPECT_EQ(cellOf(doc, 13, col::comment), "C10");

    // Downwards, with the ends given the wrong way round.
    Document down = numbered();
    runMemoryJob(down, channels(Op::Copy, 112, 103, 101));
    EXPECT_EQ(origins(down, 101, 112), (Ints{103, 104, 105, 106, 107, 108, 109, 110, 111, 112, 111, 112}));
}

TEST(MemoryChannels, MoveEmptiesOnlyTheSourceChannelsTheDestinationDoesNotCover)
{
    Document doc = numbered();
    runMemoryJob(doc, channels(Op::Move, 1, 10, 5));
    for (int n = 1; n <= 4; ++n) {
        EXPECT_EQ(cellOf(doc, n, col::freq), "Empty") << n;
        EXPECT_TRUE(doc.isEmpty(0, n));
        EXPECT_EQ(cellOf(doc, n, col::tag), " ");
    }
    EXPECT_EQ(origins(doc, 5, 15), (Ints{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 15}));

    // Across banks: Bank 1 rows 99..100 go to Bank 3 rows 1..2.
    Document across = numbered();
    runMemoryJob(across, channels(Op::Move, 99, 100, 201));
    EXPECT_EQ(across.memdata[2][1][col::freq], "99.5000");
    EXPECT_EQ(across.memdata[2][2][col::tag], "T100");
    EXPECT_TRUE(across.isEmpty(0, 99));
    EXPECT_TRUE(across.isEmpty(0, 100));
    EXPECT_EQ(origin(across, 101), 101);
}

TEST(MemoryChannels, SwapExchangesRangesAndASecondSwapRestoresThem)
{
    const Document start = numbered();
    Document doc = start;
    runMemoryJob(doc, channels(Op::Swap, 1, 5, 501));
    EXPECT_EQ(origin(doc, 1), 501);
    EXPECT_EQ(origin(doc, 505), 5);
    runMemoryJob(doc, channels(Op::Swap, 1, 5, 501));
    EXPECT_EQ(doc.memdata, start.memdata);

    // Overlapping ranges turn round their union: nothing is lost and the
    // swap the other way brings everything back.
    runMemoryJob(doc, channels(Op::Swap, 1, 10, 5));
    EXPECT_EQ(origins(doc, 1, 14), (Ints{11, 12, 13, 14, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
    runMemoryJob(doc, channels(Op::Swap, 5, 14, 1));
    EXPECT_EQ(doc.memdata, start.memdata);
}

TEST(MemoryChannels, WithoutCopyTagsEveryPlaceKeepsItsTag)
{
    Document doc = numbered();
    runMemoryJob(doc, channels(Op::Copy, 1, 2, 301, false));
    EXPECT_EQ(origin(doc, 301), 1);
    EXPECT_EQ(cellOf(doc, 301, col::tag), "T301");
    EXPECT_EQ(cellOf(doc, 301, col::comment), "C1");

    runMemoryJob(doc, channels(Op::Swap, 11, 12, 21, false));
    EXPECT_EQ(origin(doc, 11), 21);
    EXPECT_EQ(cellOf(doc, 11, col::tag), "T11");
    EXPECT_EQ(origin(doc, 21), 11);
    EXPECT_EQ(cellOf(doc, 21, col::tag), "T21");

    runMemoryJob(doc, channels(Op::Copy, 31, 31, 41, true));
    EXPECT_EQ(cellOf(doc, 41, col::tag), "T31");
}

TEST(MemoryChannels, ARangeIntoTheDummyBankIsCutAtChannel1100)
{
    Document doc = numbered();
    const MemoryOutcome outcome = runMemoryJob(doc, channels(Op::Move, 1, 20, 1095));
    EXPECT_EQ(doc.memdata[kDummyBank][95][col::freq], "1.5000");
    EXPECT_EQ(doc.memdata[kDummyBank][100][col::tag], "T6");
    // Only the channels that went are emptied.
    EXPECT_TRUE(doc.isEmpty(0, 6));
    EXPECT_EQ(origin(doc, 7), 7);
    EXPECT_EQ(outcome.note, "Channel 1100 is the last channel: only 6 of the 20 channels were moved.");
    EXPECT_EQ(outcome.done, "Channels 1-6 moved to channels 1095-1100.");

    const Document before = doc;
    const MemoryOutcome same = runMemoryJob(doc, channels(Op::Move, 50, 60, 50));
    EXPECT_FALSE(same.changed);
    EXPECT_FALSE(same.note.empty());
    EXPECT_EQ(doc.memdata, before.memdata);
}

TEST(MemoryBanks, TrunkSettingsAloneLeaveTheChannelsAndTheTagWhereTheyAre)
{
    Document doc = numbered();
    doc.trunkset[1].trunktype = "2";
    doc.trunkset[1].trunkfields[3] = "7";
    doc.trunkset[1].trunkblocks[0][2] = "4";
    doc.trunkids[1][0] = {"1", "2", "3", "4", "Fire"};
    doc.trunklisttags[1][0] = "County";
    doc.banktags[1] = "Trunked";
    const Document before = doc;
    const auto trunk = [](const Document& d, int b) {
        return std::tie(d.trunkset[b].trunktype, d.trunkset[b].trunkfields, d.trunkset[b].trunkblocks, d.trunkids[b],
                        d.trunklisttags[b]);
    };

    runMemoryJob(doc, banks(Op::Copy, 1, 6, Part::TrunkSettings));
    EXPECT_TRUE(trunk(doc, 6) == trunk(before, 1));
    EXPECT_EQ(doc.memdata, before.memdata);
    EXPECT_EQ(doc.banktags, before.banktags);

    runMemoryJob(doc, banks(Op::Move, 6, 8, Part::TrunkSettings));
    EXPECT_TRUE(trunk(doc, 8) == trunk(before, 1));
    EXPECT_EQ(doc.trunkset[6].trunktype, "0");
    EXPECT_EQ(doc.trunkids[6][0][4], "");
    EXPECT_EQ(doc.trunklisttags[6][0], "");
}

TEST(MemoryBanks, AMoveCarriesChannelsTagLockoutsAndPriorityChannelAndEmptiesTheSource)
{
    Document doc = numbered();
    doc.banktags[2] = "Police";
    doc.banklockm[2] = 1;
    doc.banklocks[2] = 1;
    doc.priochan[2] = 237;
    doc.trunkset[2].trunktype = "3";
    runMemoryJob(doc, banks(Op::Move, 2, 4, Part::ChannelsAndTrunkSettings));
    EXPECT_EQ(origin(doc, 401), 201);
    EXPECT_EQ(origin(doc, 500), 300);
    const auto bank = [&](int b) {
        return std::make_tuple(doc.banktags[b], doc.banklockm[b], doc.banklocks[b], doc.priochan[b], doc.trunkset[b].trunktype);
    };
    EXPECT_EQ(bank(4), std::make_tuple("Police", 1, 1, 437, "3"));
    for (int r = 1; r <= kChannelRows; ++r) ASSERT_EQ(doc.memdata[2][r][col::freq], "Empty");
    EXPECT_EQ(bank(2), std::make_tuple("Bank 3", 0, 0, 201, "0"));

    // Swapped without Copy Tags, each bank keeps its tag.
    runMemoryJob(doc, banks(Op::Swap, 4, 0, Part::Channels, false));
    EXPECT_EQ(origin(doc, 1), 201);
    EXPECT_EQ(origin(doc, 401), 1);
    EXPECT_EQ(doc.banktags[4], "Police");
    EXPECT_EQ(doc.priochan[0], 37);
    EXPECT_EQ(doc.priochan[4], 401);
}

TEST(MemoryBanks, TheDummyBankTakesChannelsOnly)
{
    Document doc = numbered();
    doc.trunkset[0].trunktype = "2";
    const MemoryOutcome both = runMemoryJob(doc, banks(Op::Copy, 0, kDummyBank, Part::ChannelsAndTrunkSettings));
    EXPECT_TRUE(both.changed);
    EXPECT_EQ(origin(doc, 1001), 1);
    EXPECT_EQ(both.note, "The Dummy bank has no trunk settings: only the channels were copied.");

    const Document before = doc;
    const MemoryOutcome trunkOnly = runMemoryJob(doc, banks(Op::Swap, kDummyBank, 3, Part::TrunkSettings));
    EXPECT_FALSE(trunkOnly.changed);
    EXPECT_EQ(trunkOnly.note, "The Dummy bank has no trunk settings: nothing was changed.");
    EXPECT_EQ(doc.trunkset[3].trunktype, before.trunkset[3].trunktype);
    EXPECT_EQ(doc.memdata, before.memdata);
}

TEST(MemoryManagerRun, KeepsUndoCopiesOfTheChangedBanksAndTellsOfTheCut)
{
    test::TableRig r;
    LineOperations ops{r.table};
    const int freqCol = r.gridCol(col::freq);
    r.grid.setText(1, freqCol, "155");
    r.grid.setText(2, freqCol, "156");
    r.doc.memdata[kDummyBank][99][col::freq] = "460.0000";

    MemoryManager manager(r.table, &ops);
    const MemoryOutcome outcome = manager.perform(channels(Op::Move, 1, 2, 1100, false));
    EXPECT_TRUE(outcome.changed);
    EXPECT_EQ(r.settings.copytags, 0);
    // The grid went into the store first and shows the store after.
    EXPECT_EQ(r.doc.memdata[kDummyBank][100][col::freq], "0155.0000");
    EXPECT_EQ(r.grid.text(1, freqCol), "");
    EXPECT_EQ(r.grid.text(2, freqCol), "0156.0000");
    EXPECT_TRUE(r.doc.dirty);
    ASSERT_EQ(r.dialogs.shown.size(), 1u);
    EXPECT_EQ(r.dialogs.shown[0].text, "Channel 1100 is the last channel: only 1 of the 2 channels were moved.");

    // Undo of each changed bank brings back the channels before the move.
    EXPECT_TRUE(ops.canUndo(0));
    EXPECT_TRUE(ops.canUndo(kDummyBank));
    EXPECT_FALSE(ops.canUndo(1));
    ops.tabundo();
    EXPECT_EQ(r.grid.text(1, freqCol), "0155.0000");
    r.table.changeBank(kDummyBank);
    ops.tabundo();
    EXPECT_TRUE(r.doc.isEmpty(kDummyBank, 100));
    EXPECT_EQ(Val(r.doc.memdata[kDummyBank][99][col::freq]), 460);
}
