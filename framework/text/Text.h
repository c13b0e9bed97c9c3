#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Text is UTF-8 in a byte string. These functions count characters (code points), from 1. A byte that is not part of
// valid UTF-8 counts as one character and is carried along unchanged, so file names of any bytes pass through whole.
// All are pure and safe on every thread.

int32_t Len(std::string_view text);

// The first or last `count` characters; all of them when there are fewer, none when `count` is not above 0.
std::string Left(std::string_view text, int32_t count);
std::string Right(std::string_view text, int32_t count);

// From position `start` to the end; a start below 1 gives the whole text.
std::string Mid(std::string_view text, int32_t start);

// The span of `count` positions from `start`. Positions below 1 stand before the first character and hold nothing, so
// Mid(s, 0, p) with p the position of a character is the text before that character.
std::string Mid(std::string_view text, int32_t start, int32_t count);

// Position of the first occurrence of `find` at or after `start`, without regard to case, or 0. A start of 0 searches
// from the beginning.
int32_t InStr(int32_t start, std::string_view text, std::string_view find);

// Replaces the first occurrence, or every one, of `find`. These compare exactly; an empty `find` changes nothing.
std::string Replace(std::string_view text, std::string_view find, std::string_view replacement);
std::string ReplaceAll(std::string_view text, std::string_view find, std::string_view replacement);

// The field of that number, from 1, of `text` cut at every `separator`; empty where there is none.
std::string NthField(std::string_view text, std::string_view separator, int32_t number);

// All fields of `text` cut at every `separator`, where they lie in it: one more than there are separators.
std::vector<std::string_view> Split(std::string_view text, std::string_view separator);

// The character with that code point, as text; and the code of the first character, 0 of an empty text.
std::string Chr(int32_t code);
int32_t Asc(std::string_view text);

// The text without the white space at its start.
std::string LTrim(std::string_view text);

// The platform's line ending, and the carriage return that alone ended lines on old Macintosh systems.
std::string EndOfLine();
std::string EndOfLineMacintosh();

// Every CR LF, CR and LF replaced by `ending`.
std::string ReplaceLineEndings(std::string_view text, std::string_view ending);

// Compares without regard to case, by Unicode's simple case folding: 0 when equal, else below or above 0.
int RuntimeStringCompare(std::string_view left, std::string_view right);

// The text with its case folded away: two texts compare equal exactly if these are the same bytes.
std::string FoldedCase(std::string_view text);

// A text that can be shown: every byte that is not valid UTF-8, and every line break, override of the direction or
// other control character, becomes a replacement sign.
std::string Displayable(std::string_view text);
