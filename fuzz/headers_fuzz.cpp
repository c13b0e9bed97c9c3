// Any bytes as message headers: they are read, changed and written without a fault, and the end of the headers is found
// at the same place in whatever pieces the text comes.

#include "framework/text/Text.h"
#include "fuzz/OwnFile.h"
#include "update/HeaderEnd.h"
#include "update/InternetHeaders.h"

#include <array>
#include <string>

namespace {

using Place = std::optional<HeaderEnd::Place>;

// What HeaderEnd is to find, in a text that comes byte by byte: looks at the whole text each time.
Place SlowlyFound(const std::string& text) {
    const InternetHeaders headers;
    const std::string lineEnd = headers.DetermineEOLCharacter(text);
    for (const std::string& blankLine : std::array<std::string, 4>{lineEnd + lineEnd, "\n\n", "\r\n\r\n", "\r\r"}) {
        const std::size_t at = text.find(blankLine);
        if (at != std::string::npos)
            return HeaderEnd::Place{at, blankLine.size()};
    }
    return {};
}

void FindTheEnd(const std::string& text) {
    HeaderEnd end;
    for (std::size_t size = 0; size <= text.size(); ++size) {
        const std::string part = text.substr(0, size);
        const Place found = end.Find(part);
        const Place expected = SlowlyFound(part);
        Require(found.has_value() == expected.has_value());
        if (found) {
            Require(found->position == expected->position && found->blankLine == expected->blankLine);
            return;
        }
    }
}

// What is to be read of a block: unfolds and splits the whole text first.
void ReadSlowly(const std::string& text, InternetHeaders& headers) {
    const std::string lineEnd = headers.DetermineEOLCharacter(text);
    const std::string unfolded = ReplaceAll(ReplaceAll(text, lineEnd + " ", " "), lineEnd + "\t", " ");
    for (const std::string_view line : Split(unfolded, lineEnd)) {
        const std::size_t colon = line.find(':');
        if (colon != std::string_view::npos)
            headers.AppendHeader(std::string(line.substr(0, colon)), LTrim(line.substr(colon + 1)));
    }
}

// Before the headers are taken out of their block, and after.
void Compare(const InternetHeaders& read, const InternetHeaders& expected) {
    Require(read.Count() == expected.Count());
    for (int32_t position = 0; position < std::min(expected.Count(), 64); ++position) {
        const std::string name = expected.Name(position);
        const int32_t last = expected.NameCount(name) - 1;
        Require(read.NameCount(name) == last + 1);
        Require(read.Value(name) == expected.Value(name) && read.Value(name, last) == expected.Value(name, last));
    }
    Require(read.FormatHTTPHeaders() == expected.FormatHTTPHeaders());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    FindTheEnd(text.substr(0, 256));

    InternetHeaders headers;
    headers.ParseHeaders(text);
    Require(headers.Source() == text);
    InternetHeaders expected;
    ReadSlowly(text, expected);
    Compare(headers, expected);
    const int32_t count = headers.Count();
    headers.FormatEmailHeaders();
    headers.FormatHTTPHeaders();
    for (int32_t position = count; position-- > 0;) {
        const std::string name = headers.Name(position);
        const int32_t named = headers.NameCount(name);
        Require(named > 0);
        if (position % 3 == 0) {
            headers.Delete(name, named - 1);
            Require(headers.NameCount(name) == named - 1);
        } else if (position % 3 == 1) {
            headers.AppendHeader(name, "x");
            Require(headers.NameCount(name) == named + 1 && headers.Value(name, named) == "x");
        } else {
            headers.SetHeader(name, "y");
            Require(headers.NameCount(name) == 1 && headers.CommaSeparatedValues(name) == "y");
        }
        position = std::min(position, headers.Count());
    }
    return 0;
}
