// The ID normalisers of each trunk system, the keys an ID takes, and the
// mapping of the editing rows onto the store.

#include "trunk/idsheet.h"
#include "trunk/trunkids.h"

#include <gtest/gtest.h>

namespace kestra {
namespace {

struct NormCase {
    int type;
    const char* in;
    const char* out;
};

TEST(TrunkIdNormalisers, EachSystemGivesItsStoredForm)
{
    const NormCase cases[] = {
        // Motorola Type 1 (type 2): fleet-subfleet passes, ICALLs padded, above 65536 is "0".
        {2, "100-01", "100-01"}, {2, "1001", "1001"}, {2, "65536", "65536"}, {2, "65537", "0"},
        {2, "i12", "i00012"}, {2, "I5", "i00005"}, {2, "i65536", "i65536"}, {2, "i65537", "i00000"},
        {2, "i", "i"}, {2, "i1234567", "i1234567"}, {2, "0x3E8", "0x3E8"},
        // Motorola Type 2 (types 1, 3, 4, 5): six digits, "7" marks an ICALL.
        {1, "7", "000007"}, {3, "123", "000123"}, {4, "i5", "700005"}, {5, "I123", "700123"},
        {1, "765536", "0"}, {1, "765535", "765535"}, {1, "70000", "0"}, {1, "65536", "0"},
        {1, "65535", "065535"}, {1, "700000", "700000"}, {1, "i65536", "700000"}, {1, "7123", "007123"},
        {1, " 42 ", "000042"}, {1, "1234567", "0"}, {1, "0x3E8", "00x3E8"},
        // EDACS (types 6, 7): AFS clamped, decimal 1..2047, ICALL up to 16383.
        {6, "1-23", "01-15"}, {6, "16-16", "15-15"}, {7, "12-3", "12-03"}, {6, "-5", "00-05"},
        {6, "103-45", "03-15"}, {6, "12345-6", ""}, {6, "03-158", "03-157"}, {6, "00----", ""},
        {6, "2-15-3", "02-15-"}, {6, "2047", "2047"}, {6, "2048", "0"}, {6, "0", "0"},
        {6, "i16383", "i16383"}, {6, "i16384", "i00000"}, {7, "i12", "i00012"},
        // LT (type 8): padded to AHHUUU, area, home repeater and user clamped in that order.
        {8, "5", "001005"}, {8, "12", "001012"}, {8, "212345", "112254"}, {8, "135999", "120254"},
        {8, "100005", "101005"}, {8, "1234567", "120254"}, {8, "0", "0"}, {8, "", "0"},
        // No normaliser: the text stays.
        {0, "abc", "abc"}, {9, "1-2", "1-2"},
    };
    for (const NormCase& c : cases)
        EXPECT_EQ(normaliseId(c.type, c.in), c.out) << "type " << c.type << " \"" << c.in << '"';
}

TEST(TrunkIdNormalisers, TypedKeysAreFilteredCappedAndNormalisedAtEnter)
{
    const NormCase cases[] = {
        {6, "1-23", "01-15"},     {6, "0x3E8", "038"},       {2, "100-01", "100-01"},
        {1, "7a-5", "000075"},    {8, "2-15-3", "002153"},   {1, "123456789", "0"},
        {1, "12\b3", "000013"},   {3, "I42", "700042"},      {6, "  ", ""},
    };
    for (const NormCase& c : cases) {
        Document doc;
        doc.trunkset[4].trunktype = std::to_string(c.type);
        TrunkIdSheet sheet(doc);
        sheet.load(4);
        for (const char* k = c.in; *k; ++k) sheet.typeKey(*k);
        sheet.enter();
        EXPECT_EQ(sheet.grid().text(1, TrunkIdSheet::kIdCol), c.out) << "type " << c.type << " keys \"" << c.in << '"';
        EXPECT_EQ(sheet.grid().selection().row, 2);
    }
    // Blanks and characters of code 128 or above are cut before the normaliser runs.
    EXPECT_EQ(checkedId(1, " \xE9" "12 "), "000012");
    EXPECT_EQ(checkedId(8, "   "), "");
    EXPECT_TRUE(idKeyAccepted(7, '-'));
    EXPECT_FALSE(idKeyAccepted(8, '-'));
    EXPECT_FALSE(tagKeyAccepted(','));
    EXPECT_FALSE(tagKeyAccepted('"'));
    EXPECT_TRUE(tagKeyAccepted('~'));
}

TEST(TrunkIdRows, TheTenthOfAListIsStoredFirst)
{
    EXPECT_EQ(storeRowOf(1), 1);
    EXPECT_EQ(storeRowOf(9), 9);
    EXPECT_EQ(storeRowOf(10), 0);
    EXPECT_EQ(storeRowOf(20), 10);
    EXPECT_EQ(storeRowOf(100), 90);
    std::array<bool, 100> seen{};
    for (int r = 1; r <= 100; ++r) {
        const int s = storeRowOf(r);
        ASSERT_TRUE(s >= 0 && s < 100);
        EXPECT_FALSE(seen[s]) << r;
        seen[s] = true;
        EXPECT_EQ(editRowOf(s), r);
        EXPECT_EQ(listOfStoreRow(s), (r - 1) / 10) << r;
    }
    EXPECT_EQ(idRowLabel(1), "1-1");
    EXPECT_EQ(idRowLabel(10), "1-10");
    EXPECT_EQ(idRowLabel(100), "10-10");
}

} // namespace
} // namespace kestra
