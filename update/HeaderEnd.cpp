#include "update/HeaderEnd.h"

#include <array>
#include <string>

namespace {

constexpr std::size_t kLongestBlankLine = 4;

} // namespace

std::string_view HeaderEnd::LineEnd() const {
    if (hasBoth_)
        return "\r\n";
    if (hasLineFeed_)
        return "\n";
    return hasReturn_ ? "\r" : "\r\n";
}

std::optional<HeaderEnd::Place> HeaderEnd::Find(std::string_view text) {
    // A pair or a blank line that is new may have begun in what was searched before.
    const auto holds = [&](std::string_view part) {
        return text.find(part, searched_ - std::min<std::size_t>(searched_, 1)) != std::string_view::npos;
    };
    hasBoth_ = hasBoth_ || holds("\r\n");
    hasLineFeed_ = hasLineFeed_ || holds("\n");
    hasReturn_ = hasReturn_ || holds("\r");
    const std::size_t from = searched_ - std::min(searched_, kLongestBlankLine - 1);
    searched_ = text.size();

    const std::string own = std::string(LineEnd()).append(LineEnd());
    for (const std::string_view blankLine : std::array<std::string_view, 4>{own, "\n\n", "\r\n\r\n", "\r\r"}) {
        const std::size_t at = text.find(blankLine, from);
        if (at != std::string_view::npos)
            return Place{at, blankLine.size()};
    }
    return {};
}
