#include "platform/cp1252.h"

#include <gtest/gtest.h>

#include <string>

namespace kestra {
namespace {

TEST(Cp1252, EveryByteSurvivesTheRoundTrip)
{
    for (int b = 0; b < 256; ++b) {
        const std::string one(1, static_cast<char>(b));
        EXPECT_EQ(cp1252FromUtf8(utf8FromCp1252(one)), one) << "byte " << b;
    }
    std::string all;
    for (int b = 0; b < 256; ++b) all += static_cast<char>(b);
    EXPECT_EQ(cp1252FromUtf8(utf8FromCp1252(all)), all);
}

TEST(Cp1252, BytesMapToTheirCharacters)
{
    EXPECT_EQ(utf8FromCp1252("A\x80"), "A\xE2\x82\xAC");         // euro sign
    EXPECT_EQ(utf8FromCp1252("\x85"), "\xE2\x80\xA6");           // ellipsis
    EXPECT_EQ(utf8FromCp1252("\x8A\x9F"), "\xC5\xA0\xC5\xB8");   // S caron, Y diaeresis
    EXPECT_EQ(utf8FromCp1252("\xA0\xE9\xFF"), "\xC2\xA0\xC3\xA9\xC3\xBF");
    EXPECT_EQ(utf8FromCp1252("\x81\x8D\x8F\x90\x9D"), "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D");
    EXPECT_EQ(utf8FromCp1252(std::string("a\0b", 3)), std::string("a\0b", 3));
}

TEST(Cp1252, WhatTheCodePageLacksAndMalformedUtf8BecomeQuestionMarksByteForByte)
{
    EXPECT_EQ(cp1252FromUtf8("\xE4\xB8\xAD"), "?");              // U+4E2D
    EXPECT_EQ(cp1252FromUtf8("x\xF0\x9F\x93\xBBy"), "x?y");      // U+1F4FB, one character
    EXPECT_EQ(cp1252FromUtf8("\xC2\x80\xC2\x9F"), "??");          // C1 codes the page gives to other characters
    EXPECT_EQ(cp1252FromUtf8("\xE2\x82\xAC 5"), "\x80 5");
    EXPECT_EQ(cp1252FromUtf8("\xE2\x80\x9C" "a" "\xE2\x80\x9D"), "\x93" "a" "\x94");
    EXPECT_EQ(cp1252FromUtf8("a\xFF" "b"), "a?b");
    EXPECT_EQ(cp1252FromUtf8("\x80"), "?");                       // stray continuation
    EXPECT_EQ(cp1252FromUtf8("\xE2\x82"), "??");                  // cut off at the end
    EXPECT_EQ(cp1252FromUtf8("\xE2\x82" "A"), "??A");             // cut off before a character
    EXPECT_EQ(cp1252FromUtf8("\xC0\xAF"), "??");                  // overlong "/"
    EXPECT_EQ(cp1252FromUtf8("\xE0\x80\xAF"), "???");             // overlong "/"
    EXPECT_EQ(cp1252FromUtf8("\xED\xA0\x80"), "???");             // surrogate
    EXPECT_EQ(cp1252FromUtf8("\xF4\x90\x80\x80"), "????");        // beyond U+10FFFF
    EXPECT_EQ(cp1252FromUtf8("\xC3"), "?");
    EXPECT_EQ(cp1252FromUtf8(""), "");
}

} // namespace
} // namespace kestra
