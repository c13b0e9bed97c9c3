#include "framework/text/Number.h"

#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>

namespace {

constexpr double kLargest = 1.7976931348623157e308;

void ReadsAndPrintsNumbers() {
    // clang-format off
    const std::pair<const char*, double> numbers[] = {
        {"0", 0}, {"007", 7}, {"-1.5", -1.5}, {"+2", 2}, {"1.44", 1.44}, {".5", 0.5}, {"1.", 1}, {"1e3", 1000},
        {"1E-2", 0.01}, {" 12\t", 12}, {"1e400", kLargest}, {"-1.5e999", -kLargest}, {"0.5e-400", 0}};
    const std::pair<const char*, double> others[] = {
        {"", 0}, {" ", 0}, {".", 0}, {"+", 0}, {"-.", 0}, {"- 1", 0}, {"--1", 0}, {"1e", 1}, {"1 2", 1}, {"12abc", 12},
        {"abc12", 0}, {"1,000", 1}, {"1,5", 1}, {"0x10", 0}, {"inf", 0}, {"-nan", 0}, {"٣", 0}, {"1.5.2", 1.5}};
    const std::pair<double, const char*> printed[] = {
        {15, "15"}, {-1024, "-1024"}, {-0.0, "0"}, {0.1, "0.1"}, {1234567.25, "1234567.25"},
        {1e30, "1000000000000000019884624838656"}};
    // clang-format on
    for (const auto& [text, value] : numbers)
        EXPECT_TRUE(IsNumeric(text) && Val(text) == value) << text;
    for (const auto& [text, value] : others)
        EXPECT_TRUE(!IsNumeric(text) && Val(text) == value) << text;
    for (const auto& [number, text] : printed)
        EXPECT_EQ(Str(number), text);
    EXPECT_EQ(Str(INT32_MIN), "-2147483648");
    EXPECT_EQ(Format(0, "000") + Format(7, "000") + Format(1000, "000") + Format(2147483647, "000"),
              "00000710002147483647");
}

TEST(Number, ReadsAndPrints) {
    ReadsAndPrintsNumbers();
}

TEST(Number, ReadsAndPrintsTheSameWhereOthersWriteAComma) {
    const TestFolder folder; // the locale is made here: few systems have it
    const std::string make = "localedef -i de_DE -f UTF-8 " + folder.Path("comma.UTF-8") + " 2>/dev/null";
    setenv("LOCPATH", folder.Path().c_str(), 1);
    if (std::system(make.c_str()) != 0 || std::setlocale(LC_ALL, "comma.UTF-8") == nullptr)
        GTEST_SKIP() << "no such locale can be made here";
    EXPECT_STREQ(std::localeconv()->decimal_point, ",");
    ReadsAndPrintsNumbers();
    std::setlocale(LC_ALL, "C.UTF-8");
}

TEST(Number, BecomesA32BitIntegerWhateverItIs) {
    for (const double large : {2147483647.5, 2147483648.0, HUGE_VAL})
        EXPECT_EQ(RuntimeCvtReal64ToSInt32(large), INT32_MAX) << large;
    for (const double small : {-2147483648.9, -2147483649.0, -HUGE_VAL})
        EXPECT_EQ(RuntimeCvtReal64ToSInt32(small), INT32_MIN) << small;
    EXPECT_EQ(RuntimeCvtReal64ToSInt32(1.44 * 1024 * 1024), 1509949);
    EXPECT_EQ(RuntimeCvtReal64ToSInt32(-1.99) + RuntimeCvtReal64ToSInt32(std::nan("")), -1);
}

} // namespace
