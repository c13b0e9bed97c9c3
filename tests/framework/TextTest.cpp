#include "framework/text/Text.h"
#include "framework/text/Encoding.h"

#include <gtest/gtest.h>

namespace {

// 2, 3 and 4 bytes to a character, a byte of no character in front, a cut-off one at the end: six by our count.
const std::string kOdd = "\xFFä€𝄞\xE2\x82";

TEST(Text, CutsBetweenCharactersAndTakesAStrayByteForOne) {
    EXPECT_EQ(Len(kOdd), 6);
    EXPECT_EQ(Len("\xC0\xAF\xED\xA0\x80\xF4\x90\x80\x80"), 9) << "overlong, half of a pair, beyond Unicode";
    EXPECT_EQ(Left(kOdd, 2) + "|" + Left(kOdd, 0) + Left(kOdd, -1), "\xFFä|");
    EXPECT_EQ(Right(kOdd, 3) + "|" + Right(kOdd, -1), "𝄞\xE2\x82|");
    EXPECT_EQ(Mid(kOdd, 3, 2) + "|" + Mid(kOdd, 5) + "|" + Mid(kOdd, 99) + Mid(kOdd, 3, -1), "€𝄞|\xE2\x82|");
    for (const std::string& whole : {Left(kOdd, 99), Right(kOdd, 99), Mid(kOdd, 0), Mid(kOdd, -5, INT32_MAX)})
        EXPECT_EQ(whole, kOdd);
    // Position 0 stands before the first character: this is how the text before a point is had.
    EXPECT_EQ(Mid("film.mov", 0, 5) + "|" + Mid("film", 0, 1) + "|" + Mid("film", -1, 3), "film||f");
    EXPECT_EQ(Displayable(kOdd + "\n\t\x7F\u0085\u2028…"), "\uFFFDä€𝄞\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD…");
}

TEST(Text, FindsAndComparesWithoutRegardToCase) {
    EXPECT_EQ(InStr(0, "film.mov.001", "."), 5);
    EXPECT_EQ(InStr(6, "film.mov.001", "."), 9);
    EXPECT_EQ(InStr(0, "äÖ.MOV", "ö.mov"), 2);
    EXPECT_EQ(InStr(0, "\u212Alm", "klm"), 1) << "the Kelvin sign takes three bytes, its small letter one";
    EXPECT_EQ(InStr(0, "ä", "\xA4"), 0) << "a byte inside a character is no match";
    EXPECT_EQ(InStr(0, "", ".") + InStr(0, "film", ".") + InStr(99, "a.b", "."), 0);
    using Pair = std::pair<std::string, std::string>;
    for (const auto& [one, other] : {Pair("film.MOV", "FILM.mov"), {"ÄÉЖΩ", "äéжω"}, {"Σ", "ς"}, {"\xFF", "\xFF"}}) {
        EXPECT_EQ(RuntimeStringCompare(one, other), 0) << one;
        EXPECT_EQ(FoldedCase(one), FoldedCase(other)) << one;
    }
    for (const auto& [one, other] : {Pair("film", "film2"), {"ss", "ß"}, {"A", "b"}, {"ÿ", "\xFF"}, {"\xFE", "\xFF"}}) {
        EXPECT_EQ(RuntimeStringCompare(one, other), -1) << one << " " << other;
        EXPECT_EQ(RuntimeStringCompare(other, one), 1) << one << " " << other;
        EXPECT_NE(FoldedCase(one), FoldedCase(other)) << one << " " << other;
    }
}

TEST(Text, CutsIntoFieldsAndReplaces) {
    const std::string line = "MAC  Foo"; // two separators enclose an empty field
    EXPECT_EQ(NthField(line, " ", 1) + "|" + NthField(line, " ", 2) + "|" + NthField(line, " ", 3), "MAC||Foo");
    EXPECT_EQ(NthField(line, " ", 4) + NthField(line, " ", 0) + NthField(line, "", 2), "");
    EXPECT_EQ(Replace("aXbX", "X", "XX") + ReplaceAll("aXbX", "X", "XX"), "aXXbXaXXbXX");
    EXPECT_EQ(ReplaceAll("aaa", "aa", "a") + ReplaceAll("b", "", "-") + Replace("c", "C", "-"), "aabc");
    EXPECT_EQ(Split(",a,,b", ","), (std::vector<std::string>{"", "a", "", "b"}));
    EXPECT_EQ(Split("a", "").size() + Split("", ",").size(), 2U);
    EXPECT_EQ(ReplaceLineEndings("\r\n\n\r\r\na\r", "|"), "||||a|");
    EXPECT_EQ(LTrim(" \t\r\n a ") + LTrim(" \n"), "a ");
}

TEST(Text, TurnsBytesIntoPublishedEncodings) {
    EXPECT_EQ(EncodeBase64(MD5("abc"), 0), "kAFQmDzST7DWlj99KOF/cg==");
    EXPECT_EQ(EncodeBase64("abcdef", 4) + EncodeBase64("", 4) + EncodeBase64("abc", 4), "YWJj\r\nZGVmYWJj");
}

} // namespace
