// Copy, move and swap of IDs, lists and whole banks' lists, and the list tags.

#include "trunk/idlistedit.h"
#include "trunk/trunkids.h"

#include <gtest/gtest.h>

namespace kestra {
namespace {

Document filled()
{
    Document doc;
    for (int b = 0; b < kChannelBanks; ++b) {
        doc.banktags[b] = "Tag" + std::to_string(b);
        for (int s = 0; s < 100; ++s)
            if ((s + b) % 3 == 0) doc.trunkids[b][s] = {std::to_string(b * 1000 + s), "t" + std::to_string(s), "1", "0", "r"};
        for (int l = 0; l < 10; ++l) doc.trunklisttags[b][l] = "L" + std::to_string(b) + "." + std::to_string(l);
    }
    doc.trunkset[2].trunktype = "6";
    return doc;
}

TEST(IdListEdit, IdsAndListsMoveWithinTheBankAndSwapTwiceRestores)
{
    Document doc = filled();
    const Document start = doc;
    const IdListChoice copyIds{IdOperation::Copy, IdUnit::Ids, IdScope::ActiveBank};

    auto entries = idListEntries(doc, IdUnit::Ids, IdScope::ActiveBank, 0);
    ASSERT_EQ(entries.size(), 100u);
    EXPECT_EQ(entries[0], "1 : 0 - t0");   // store row 0: the tenth of list 1
    EXPECT_EQ(entries[93], "10 : 93 - t93");

    applyIdListChoice(doc, copyIds, 0, 3, 4);
    EXPECT_EQ(doc.trunkids[0][4], start.trunkids[0][3]);
    applyIdListChoice(doc, {IdOperation::Move, IdUnit::Ids, IdScope::ActiveBank}, 0, 6, 6);
    EXPECT_EQ(doc.trunkids[0][6], TrunkIdEntry{});   // a move onto itself empties the row
    applyIdListChoice(doc, copyIds, 0, -1, 4);      // no selection: nothing
    applyIdListChoice(doc, copyIds, 0, 3, 100);
    EXPECT_EQ(doc.trunkids[0][4], start.trunkids[0][3]);

    doc = start;
    const IdListChoice swapLists{IdOperation::Swap, IdUnit::Lists, IdScope::ActiveBank};
    EXPECT_EQ(idListEntries(doc, IdUnit::Lists, IdScope::ActiveBank, 1)[2], "3: L1.2");
    applyIdListChoice(doc, swapLists, 1, 2, 7);
    EXPECT_EQ(doc.trunkids[1][70], start.trunkids[1][20]);
    EXPECT_EQ(doc.trunkids[1][29], start.trunkids[1][79]);
    EXPECT_EQ(doc.trunklisttags[1][7], "L1.2");
    applyIdListChoice(doc, swapLists, 1, 2, 7);
    EXPECT_EQ(doc.trunkids, start.trunkids);
    EXPECT_EQ(doc.trunklisttags, start.trunklisttags);

    applyIdListChoice(doc, {IdOperation::Move, IdUnit::Lists, IdScope::ActiveBank}, 1, 0, 9);
    for (int s = 0; s < 10; ++s) {
        EXPECT_EQ(doc.trunkids[1][90 + s], start.trunkids[1][s]);
        EXPECT_EQ(doc.trunkids[1][s], TrunkIdEntry{});
    }
    EXPECT_EQ(doc.trunklisttags[1][0], " ");
    EXPECT_EQ(doc.trunklisttags[1][9], "L1.0");
}

TEST(IdListEdit, BetweenBanksWholeBanksOrSingleListsMove)
{
    Document doc = filled();
    const Document start = doc;
    auto banks = idListEntries(doc, IdUnit::Ids, IdScope::AllBanks, 0);
    ASSERT_EQ(banks.size(), 10u);
    EXPECT_EQ(banks[2], "Bank 3 - Tag2 - Edacs");
    auto lists = idListEntries(doc, IdUnit::Lists, IdScope::AllBanks, 0);
    ASSERT_EQ(lists.size(), 100u);
    EXPECT_EQ(lists[23], "Bank 3 - 4: L2.3");

    applyIdListChoice(doc, {IdOperation::Copy, IdUnit::Ids, IdScope::AllBanks}, 0, 2, 5);
    EXPECT_EQ(doc.trunkids[5], start.trunkids[2]);
    EXPECT_EQ(doc.trunklisttags[5], start.trunklisttags[2]);
    EXPECT_EQ(doc.trunkids[2], start.trunkids[2]);

    applyIdListChoice(doc, {IdOperation::Move, IdUnit::Lists, IdScope::AllBanks}, 0, 23, 91);
    for (int p = 0; p < 10; ++p) {
        EXPECT_EQ(doc.trunkids[9][10 + p], start.trunkids[2][30 + p]);
        EXPECT_EQ(doc.trunkids[2][30 + p], TrunkIdEntry{});
    }
    EXPECT_EQ(doc.trunklisttags[9][1], "L2.3");
    EXPECT_EQ(doc.trunklisttags[2][3], " ");
    EXPECT_EQ(doc.trunkids[9][20], start.trunkids[9][20]);
}

TEST(IdListEdit, ListTagDefaultsAndKeys)
{
    EXPECT_EQ(defaultListTag(2, 7), "Bank 3 List 7");
    Document doc;
    defaultListTagsAllBanks(doc);
    EXPECT_EQ(doc.trunklisttags[9][9], "Bank 10 List 10");
    EXPECT_EQ(doc.trunklisttags[0][0], "Bank 1 List 1");
    EXPECT_FALSE(listTagKeyAccepted(','));
    EXPECT_FALSE(listTagKeyAccepted('"'));
    EXPECT_FALSE(listTagKeyAccepted('\t'));
    EXPECT_FALSE(listTagKeyAccepted('\x80'));
    EXPECT_TRUE(listTagKeyAccepted('\b'));
    EXPECT_TRUE(listTagKeyAccepted('z'));
}

} // namespace
} // namespace kestra
