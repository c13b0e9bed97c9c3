#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Numbers and their texts, the same in every locale. All are pure and safe on every thread.

// Decimal text. A double without a fraction prints plain digits, whatever its size; others print as short as reads
// back.
std::string Str(int32_t number);
std::string Str(double number);

// The number at the start of the text (blanks before it are passed over), 0 when there is none. Saturates at the
// largest double.
double Val(std::string_view text);

// Text of `number` by a mask of zeros: the whole number, with at least as many digits as the mask has, never cut off.
std::string Format(double number, std::string_view mask);

// Hexadecimal digits in capitals, no more than needed; of a negative number, those of its 32 bits.
std::string Hex(int32_t number);

// True if the whole text reads as a decimal number: sign, digits, point, exponent, blanks around it.
bool IsNumeric(std::string_view text);

double Ceil(double number);
// To the nearest whole number, halves away from zero.
double Round(double number);

// Drops the fraction, saturates at both ends, and gives 0 for what is not a number.
int32_t RuntimeCvtReal64ToSInt32(double number);
double RuntimeCvtUInt64ToReal64(uint64_t number);
