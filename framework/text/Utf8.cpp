#include "framework/text/Utf8.h"

#include <glib.h>

#include <array>

namespace {

constexpr char32_t kStrayByte = 0x110000;
constexpr char32_t kReplacement = 0xFFFD;

struct Form {
    std::size_t size;
    char32_t lead;    // payload bits of the first byte
    char32_t minimum; // smaller code points would be overlong
};

Form FormOf(unsigned char first) {
    if (first >= 0xC2 && first <= 0xDF)
        return {2, char32_t(first & 0x1FU), 0x80};
    if (first >= 0xE0 && first <= 0xEF)
        return {3, char32_t(first & 0x0FU), 0x800};
    if (first >= 0xF0 && first <= 0xF4)
        return {4, char32_t(first & 0x07U), 0x10000};
    return {0, 0, 0};
}

bool IsScalar(char32_t code) {
    return code < 0x110000 && (code < 0xD800 || code > 0xDFFF);
}

} // namespace

Utf8Char Utf8At(std::string_view text, std::size_t at) {
    const auto first = static_cast<unsigned char>(text[at]);
    if (first < 0x80)
        return {first, 1};
    const Utf8Char stray{kStrayByte + first, 1};
    const Form form = FormOf(first);
    if (form.size == 0 || at + form.size > text.size())
        return stray;
    char32_t code = form.lead;
    for (std::size_t i = 1; i < form.size; ++i) {
        const auto byte = static_cast<unsigned char>(text[at + i]);
        if ((byte & 0xC0U) != 0x80)
            return stray;
        code = (code << 6U) | (byte & 0x3FU);
    }
    if (code < form.minimum || !IsScalar(code))
        return stray;
    return {code, form.size};
}

std::string_view Utf8Beginning(std::string_view text, std::size_t most) {
    if (most >= text.size())
        return text;
    for (std::size_t back = 1; back < 4 && back <= most; ++back) {
        if (Utf8At(text, most - back).size > back)
            return text.substr(0, most - back);
    }
    return text.substr(0, most);
}

void AppendUtf8(std::string& text, char32_t code) {
    if (code < 0x80) {
        text.push_back(static_cast<char>(code));
        return;
    }
    std::array<char, 4> bytes{};
    const int size = g_unichar_to_utf8(IsScalar(code) ? code : kReplacement, bytes.data());
    text.append(bytes.data(), static_cast<std::size_t>(size));
}
