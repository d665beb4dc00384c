// Reset Trunk systems of the Software Options window.

#include "trunk/trunksystems.h"

#include <gtest/gtest.h>

namespace kestra {
namespace {

TEST(ResetTrunkSystems, EveryBankLosesItsTypeAndKeepsItsParameters)
{
    Document doc;
    const char* types[] = {"1", "2", "", "4", "5", "6", "7", "8", "9", "3"};
    for (int b = 0; b < kChannelBanks; ++b) {
        doc.trunkset[b].trunktype = types[b];
        doc.trunkset[b].trunkfields[5] = std::to_string(b);
        doc.trunkset[b].trunkblocks[1][2] = "0851.0125";
        doc.trunkids[b][0][0] = "1234";
    }
    doc.cell(3, 7, 1) = "0460.2500";
    doc.dirty = false;

    resetTrunkSystems(doc);

    for (int b = 0; b < kChannelBanks; ++b) {
        SCOPED_TRACE(b);
        EXPECT_EQ(doc.trunkset[b].trunktype, "0");
        EXPECT_EQ(doc.trunkset[b].trunkfields[5], std::to_string(b));
        EXPECT_EQ(doc.trunkset[b].trunkblocks[1][2], "0851.0125");
        EXPECT_EQ(doc.trunkids[b][0][0], "1234");
    }
    EXPECT_EQ(doc.cell(3, 7, 1), "0460.2500");
    EXPECT_FALSE(doc.dirty);
}

} // namespace
} // namespace kestra
