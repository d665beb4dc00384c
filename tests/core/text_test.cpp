#include "core/text.h"

#include <gtest/gtest.h>

using namespace kestra;

TEST(Val, TakesTheLongestNumericPrefixAndIsZeroWithoutOne)
{
    const std::pair<const char*, double> values[] = {
        {"146.0050", 146.005}, {"  146.0050 MHz", 146.005}, {"12L", 12}, {"-2", -2},  {"+7.5", 7.5},  {".5000", 0.5},
        {"5.", 5},             {"1E3", 1000},               {"1e-2x", 0.01}, {"3D2", 300},
        {"2E", 2},  // no exponent digits: the number ends before the E
    };
    for (const auto& [text, value] : values) EXPECT_DOUBLE_EQ(Val(text), value) << text;
    for (const char* text : {"", " ", "Empty", "None", "abc", ".", "-", "+.", "\t"}) EXPECT_EQ(Val(text), 0) << text;
}

TEST(Val, SurvivesHugeAndLongInput)
{
    EXPECT_GT(Val("1e999"), 1e300);
    EXPECT_LT(Val("-1e999"), -1e300);
    EXPECT_EQ(Val("1e-999"), 0);
    const std::string digits(100000, '9');
    EXPECT_GT(Val(digits), 1e300);
    EXPECT_EQ(IntVal(digits), LLONG_MAX);
    EXPECT_EQ(Val16(digits), 32767);
    EXPECT_EQ(Val16("-99999"), -32768);
    EXPECT_EQ(Val16("2.5"), 2);  // halves go to the even number
    EXPECT_EQ(Val16("3.5"), 4);
}

TEST(IntVal, RoundsTowardsMinusInfinity)
{
    EXPECT_EQ(IntVal("1300.9"), 1300);
    EXPECT_EQ(IntVal("-0.5"), -1);
    EXPECT_EQ(IntVal("abc"), 0);
}

TEST(TextHelpers, PositionsCountFromOne)
{
    EXPECT_EQ(InStr("PRCH0 1", "H0"), 4u);
    EXPECT_EQ(InStr("PRCH0 1", "H1"), 0u);
    EXPECT_EQ(InStr("abcabc", "b", 3), 5u);
    EXPECT_EQ(Mid("#$BT0 Police", 7), "Police");
    EXPECT_EQ(Mid("#$BT0 ", 7), "");
    EXPECT_EQ(Mid("abc", 2, 1), "b");
    EXPECT_EQ(Mid("abc", 9), "");
    EXPECT_EQ(ltrim("  a b "), "a b ");
    EXPECT_EQ(trim("  a b "), "a b");
}
