#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// One character of a byte string that is meant to be UTF-8.
struct Utf8Char {
    char32_t code;    // the code point; for a stray byte, 0x110000 + the byte, so that it equals nothing else
    std::size_t size; // bytes taken, at least 1
    bool IsStrayByte() const { return code >= 0x110000; }
};

// Reads the character at byte `at`, which must lie inside `text`. Overlong forms, surrogates and cut-off sequences are
// stray bytes. Not by GLib, which takes twice as long over Chinese text (counting the characters of a mebibyte: 2.05 ms
// in place of 1.04).
Utf8Char Utf8At(std::string_view text, std::size_t at);

// The longest beginning of at most that many bytes that ends with a whole character.
std::string_view Utf8Beginning(std::string_view text, std::size_t most);

// Appends a code point; one that Unicode does not have becomes U+FFFD.
void AppendUtf8(std::string& text, char32_t code);
