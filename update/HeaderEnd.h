#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

// Looks for the blank line that ends the headers of a reply, in a text that grows: each byte is looked at a set number
// of times, in however many pieces it comes. The kind of line end is that of the whole text so far, and its blank line
// goes before those of other kinds: behind headers with line feeds, a CR LF CR LF in the body counts first if it comes
// in one piece with them. Kept on purpose, see docs/reading.md.
class HeaderEnd {
public:
    struct Place {
        std::size_t position = 0;  // of the line end in front of the blank line, from 0
        std::size_t blankLine = 0; // bytes of both line ends
    };

    // `text` begins with the text of the call before, which had no blank line.
    std::optional<Place> Find(std::string_view text);

private:
    std::string_view LineEnd() const;

    std::size_t searched_ = 0;
    bool hasBoth_ = false, hasLineFeed_ = false, hasReturn_ = false;
};
