#include "framework/text/Number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cinttypes>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view WithoutLeadingBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

struct Leading {
    double number = 0;
    std::size_t size = 0; // characters read, 0 if the text does not begin with a number
};

// The value of a decimal number that a double can't hold: the largest double, or 0 for one that is too small.
double Saturated(const std::string& digits) {
    static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
    return std::min(strtod_l(digits.c_str(), nullptr, plain), std::numeric_limits<double>::max());
}

// Only digits and a point may follow the sign: from_chars would also take "inf" and "nan".
Leading ReadLeading(std::string_view text) {
    const bool sign = !text.empty() && (text[0] == '+' || text[0] == '-');
    const std::string_view digits = text.substr(sign ? 1 : 0);
    if (digits.empty() || std::string_view("0123456789.").find(digits[0]) == std::string_view::npos)
        return {};
    double number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (end == digits.data())
        return {};
    const std::string_view read(digits.data(), static_cast<std::size_t>(end - digits.data()));
    if (error == std::errc::result_out_of_range)
        number = Saturated(std::string(read));
    return {text[0] == '-' ? -number : number, read.size() + (sign ? 1 : 0)};
}

std::string WholeDigits(double number) {
    std::array<char, 512> digits{};
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed, 0).ptr;
    return {digits.data(), end};
}

} // namespace

std::string Str(int32_t number) {
    return std::to_string(number);
}

std::string Str(double number) {
    if (number == 0)
        return "0"; // also for a negative zero, which a rounded small negative gives
    if (std::isfinite(number) && number == std::trunc(number))
        return WholeDigits(number);
    std::array<char, 64> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    return {digits.data(), end};
}

double Val(std::string_view text) {
    return ReadLeading(WithoutLeadingBlanks(text)).number;
}

std::string Format(double number, std::string_view mask) {
    std::string digits = WholeDigits(std::fabs(std::round(number)));
    if (digits.size() < mask.size())
        digits.insert(0, mask.size() - digits.size(), '0');
    return number < 0 ? "-" + digits : digits;
}

std::string Hex(int32_t number) {
    std::array<char, 16> digits{};
    const int size = std::snprintf(digits.data(), digits.size(), "%" PRIX32, static_cast<uint32_t>(number));
    return {digits.data(), static_cast<std::size_t>(size)};
}

bool IsNumeric(std::string_view text) {
    const std::string_view trimmed = WithoutLeadingBlanks(text);
    const Leading leading = ReadLeading(trimmed);
    return leading.size > 0 && WithoutLeadingBlanks(trimmed.substr(leading.size)).empty();
}

double Ceil(double number) {
    return std::ceil(number);
}

double Round(double number) {
    return std::round(number);
}

int32_t RuntimeCvtReal64ToSInt32(double number) {
    if (std::isnan(number))
        return 0;
    if (number >= 2147483648.0)
        return std::numeric_limits<int32_t>::max();
    if (number <= -2147483649.0)
        return std::numeric_limits<int32_t>::min();
    return static_cast<int32_t>(number);
}

double RuntimeCvtUInt64ToReal64(uint64_t number) {
    return static_cast<double>(number);
}
