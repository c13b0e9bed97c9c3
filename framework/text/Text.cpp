#include "framework/text/Text.h"

#include "framework/text/Utf8.h"

#include <QChar>

#include <algorithm>

namespace {

char32_t Folded(char32_t code) {
    if (code < 0x80)
        return code >= 'A' && code <= 'Z' ? code + 0x20 : code;
    return code < 0x110000 ? QChar::toCaseFolded(code) : code;
}

// Byte offset behind the first `count` characters.
std::size_t OffsetAfter(std::string_view text, int64_t count) {
    std::size_t at = 0;
    for (; count > 0 && at < text.size(); --count)
        at += Utf8At(text, at).size;
    return at;
}

// Byte length of the match if `text` continues with `find` at `at`, without regard to case; npos if it does not. Two
// spellings of one text need not have the same number of bytes.
std::size_t MatchSize(std::string_view text, std::size_t at, std::string_view find) {
    std::size_t in = at;
    for (std::size_t i = 0; i < find.size();) {
        if (in >= text.size())
            return std::string_view::npos;
        const Utf8Char wanted = Utf8At(find, i);
        const Utf8Char here = Utf8At(text, in);
        if (Folded(wanted.code) != Folded(here.code))
            return std::string_view::npos;
        i += wanted.size;
        in += here.size;
    }
    return in - at;
}

// Line and paragraph separators among them, and the marks that set or isolate a direction: behind one, a name's ending
// reads as another.
bool IsControl(char32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || (code >= 0x2028 && code <= 0x202E) ||
           (code >= 0x2066 && code <= 0x2069);
}

} // namespace

int32_t Len(std::string_view text) {
    int32_t count = 0;
    for (std::size_t at = 0; at < text.size(); at += Utf8At(text, at).size)
        ++count;
    return count;
}

std::string Left(std::string_view text, int32_t count) {
    return std::string(text.substr(0, OffsetAfter(text, count)));
}

std::string Right(std::string_view text, int32_t count) {
    return std::string(text.substr(OffsetAfter(text, int64_t(Len(text)) - std::max(count, 0))));
}

std::string Mid(std::string_view text, int32_t start) {
    return std::string(text.substr(OffsetAfter(text, int64_t(start) - 1)));
}

std::string Mid(std::string_view text, int32_t start, int32_t count) {
    const int64_t first = std::max<int64_t>(start, 1);
    const int64_t end = int64_t(start) + std::max(count, 0);
    if (end <= first)
        return {};
    const std::string_view tail = text.substr(OffsetAfter(text, first - 1));
    return std::string(tail.substr(0, OffsetAfter(tail, end - first)));
}

int32_t InStr(int32_t start, std::string_view text, std::string_view find) {
    int32_t position = std::max(start, 1);
    for (std::size_t at = OffsetAfter(text, int64_t(position) - 1); at < text.size(); ++position) {
        if (MatchSize(text, at, find) != std::string_view::npos)
            return position;
        at += Utf8At(text, at).size;
    }
    return 0;
}

std::string Replace(std::string_view text, std::string_view find, std::string_view replacement) {
    const std::size_t at = find.empty() ? std::string_view::npos : text.find(find);
    std::string result(text);
    if (at != std::string_view::npos)
        result.replace(at, find.size(), replacement);
    return result;
}

std::string ReplaceAll(std::string_view text, std::string_view find, std::string_view replacement) {
    if (find.empty())
        return std::string(text);
    std::string result;
    std::size_t from = 0;
    for (std::size_t at = text.find(find); at != std::string_view::npos; at = text.find(find, from)) {
        result.append(text.substr(from, at - from)).append(replacement);
        from = at + find.size();
    }
    return result.append(text.substr(from));
}

std::string NthField(std::string_view text, std::string_view separator, int32_t number) {
    if (number < 1 || separator.empty())
        return number == 1 ? std::string(text) : std::string();
    std::size_t from = 0;
    for (; number > 1; --number) {
        const std::size_t cut = text.find(separator, from);
        if (cut == std::string_view::npos)
            return {};
        from = cut + separator.size();
    }
    return std::string(text.substr(from, text.find(separator, from) - from));
}

std::vector<std::string_view> Split(std::string_view text, std::string_view separator) {
    std::vector<std::string_view> fields;
    std::size_t from = 0;
    for (std::size_t cut = 0; !separator.empty() && (cut = text.find(separator, from)) != std::string_view::npos;) {
        fields.emplace_back(text.substr(from, cut - from));
        from = cut + separator.size();
    }
    fields.emplace_back(text.substr(from));
    return fields;
}

std::string Chr(int32_t code) {
    std::string text;
    AppendUtf8(text, static_cast<char32_t>(code));
    return text;
}

int32_t Asc(std::string_view text) {
    return text.empty() ? 0 : static_cast<int32_t>(Utf8At(text, 0).code);
}

std::string LTrim(std::string_view text) {
    const auto isBlank = [](char character) { return character == ' ' || (character >= '\t' && character <= '\r'); };
    return {std::find_if_not(text.begin(), text.end(), isBlank), text.end()};
}

std::string EndOfLine() {
    return "\n";
}

std::string EndOfLineMacintosh() {
    return "\r";
}

std::string ReplaceLineEndings(std::string_view text, std::string_view ending) {
    std::string replaced;
    replaced.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '\r' && text[at] != '\n') {
            replaced.push_back(text[at]);
            continue;
        }
        replaced.append(ending);
        if (text.substr(at, 2) == "\r\n")
            ++at;
    }
    return replaced;
}

int RuntimeStringCompare(std::string_view left, std::string_view right) {
    std::size_t l = 0;
    std::size_t r = 0;
    while (l < left.size() && r < right.size()) {
        const Utf8Char a = Utf8At(left, l);
        const Utf8Char b = Utf8At(right, r);
        const char32_t x = Folded(a.code);
        const char32_t y = Folded(b.code);
        if (x != y)
            return x < y ? -1 : 1;
        l += a.size;
        r += b.size;
    }
    if (l < left.size())
        return 1;
    return r < right.size() ? -1 : 0;
}

std::string FoldedCase(std::string_view text) {
    std::string folded;
    folded.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const Utf8Char here = Utf8At(text, at);
        if (here.IsStrayByte())
            folded.push_back(text[at]);
        else
            AppendUtf8(folded, Folded(here.code));
        at += here.size;
    }
    return folded;
}

std::string Displayable(std::string_view text) {
    std::string shown;
    shown.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const Utf8Char here = Utf8At(text, at);
        if (here.IsStrayByte() || IsControl(here.code))
            AppendUtf8(shown, 0xFFFD);
        else
            shown.append(text.substr(at, here.size));
        at += here.size;
    }
    return shown;
}
