#include "framework/text/Text.h"
#include "framework/text/Number.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <tuple>

namespace {

using namespace std::string_literals;

// 2, 3 and 4 bytes to a character, a byte of no character in front, a cut-off one at the end: six by our count.
const std::string kOdd = "\xFFä€𝄞\xE2\x82";

TEST(Text, CutsBetweenCharactersAndTakesAStrayByteForOne) {
    EXPECT_EQ(Len("\xC0\xAF\xED\xA0\x80\xF4\x90\x80\x80"), 9) << "overlong, half of a pair, beyond Unicode";
    EXPECT_EQ(Left(kOdd, 2) + "|" + Left(kOdd, 0) + Left(kOdd, -1), "\xFFä|");
    EXPECT_EQ(Right(kOdd, 3) + "|" + Right(kOdd, -1), "𝄞\xE2\x82|");
    EXPECT_EQ(Mid(kOdd, 3, 2) + "|" + Mid(kOdd, 5) + "|" + Mid(kOdd, 99) + Mid(kOdd, 3, -1), "€𝄞|\xE2\x82|");
    for (const std::string& whole : {Left(kOdd, 99), Right(kOdd, 99), Mid(kOdd, 0), Mid(kOdd, -5, INT32_MAX)})
        EXPECT_EQ(whole, kOdd);
    EXPECT_EQ(Displayable(kOdd + "\n\x7F\u0085\u2028…"), "\uFFFDä€𝄞\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD…");
    EXPECT_EQ(Displayable("\u200E\u200F\u2027\u202A\u202E\u202F\u2065\u2066\u2069\u206A"),
              "\u200E\u200F\u2027\uFFFD\uFFFD\u202F\u2065\uFFFD\uFFFD\u206A");
}

TEST(Text, FindsAndComparesWithoutRegardToCase) {
    EXPECT_EQ(InStr(2, "äöÄÖ.MOV", "ö.mov"), 4);
    EXPECT_EQ(InStr(0, "\u212Alm", "klm"), 1) << "the Kelvin sign takes three bytes, its small letter one";
    EXPECT_EQ(InStr(0, "ä", "\xA4"), 0) << "a byte inside a character is no match";
    const std::tuple<std::string, std::string, int> table[] = {
        {"film.MOV", "FILM.mov", 0}, {"ÄÉЖΩ", "äéжω", 0}, {"Σ", "ς", 0},
        {"film", "film2", -1},       {"ss", "ß", -1},     {"A", "b", -1},
        {"ÿ", "\xFF", -1},           {"\xFE", "\xFF", -1}};
    for (const auto& [one, other, order] : table) {
        EXPECT_EQ(RuntimeStringCompare(one, other), order) << one << " " << other;
        EXPECT_EQ(RuntimeStringCompare(other, one), -order) << one << " " << other;
        EXPECT_EQ(FoldedCase(one) == FoldedCase(other), order == 0) << one << " " << other;
    }
}

constexpr double kLargest = 1.7976931348623157e308;

TEST(Text, OfNumbersIsTheSameWhereOthersWriteAComma) {
    // A locale of its own, as a bare machine has none, nor what the usual ones are made of. It has numbers only, and
    // localedef complains of what it lacks.
    const TestFolder folder;
    folder.Write("characters", "<code_set_name> COMMA\nCHARMAP\n<U002C> \\x2c COMMA\nEND CHARMAP\n");
    folder.Write("source", "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \"\"\ngrouping -1\nEND LC_NUMERIC\n");
    const std::string make = "cd '" + folder.Path() + "' && localedef -c -i source -f ./characters ./comma 2>/dev/null";
    std::ignore = std::system(make.c_str());
    setenv("LOCPATH", folder.Path().c_str(), 1);
    ASSERT_NE(std::setlocale(LC_NUMERIC, "comma"), nullptr);
    // clang-format off
    const std::tuple<const char*, double, bool> read[] = {
        {"007", 7, true}, {"-1.5", -1.5, true}, {"+2", 2, true}, {".5", 0.5, true}, {"1.", 1, true}, {"1E-2", 0.01, true},
        {" 12\t", 12, true}, {"1e400", kLargest, true}, {"-1.5e999", -kLargest, true}, {"0.5e-400", 0, true},
        {"", 0, false}, {".", 0, false}, {"+", 0, false}, {"- 1", 0, false}, {"--1", 0, false}, {"1e", 1, false},
        {"1 2", 1, false}, {"12abc", 12, false}, {"abc12", 0, false}, {"1,5", 1, false}, {"0x10", 0, false},
        {"inf", 0, false}, {"-nan", 0, false}, {"٣", 0, false}, {"1.5.2", 1.5, false}};
    const std::pair<double, int32_t> cutDown[] = {
        {2147483647.5, INT32_MAX}, {HUGE_VAL, INT32_MAX}, {-2147483648.9, INT32_MIN}, {-HUGE_VAL, INT32_MIN},
        {-1.99, -1}, {NAN, 0}};
    // clang-format on
    for (const auto& [text, value, whole] : read)
        EXPECT_TRUE(Val(text) == value && IsNumeric(text) == whole) << text;
    for (const auto& [number, whole] : cutDown)
        EXPECT_EQ(RuntimeCvtReal64ToSInt32(number), whole) << number;
    EXPECT_EQ(Str(-0.0) + "|" + Str(0.1) + "|" + Str(1e30), "0|0.1|1000000000000000019884624838656");
    EXPECT_EQ(Format(7, "000") + Format(1000, "000"), "0071000");
    std::setlocale(LC_NUMERIC, "C.UTF-8");
}

} // namespace
