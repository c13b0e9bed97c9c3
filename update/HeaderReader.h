#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

// Reads the headers of a block one after the other where they stand, so that they take no memory of their own, however
// many there are. Folded lines are one header; lines without a colon are passed over. Serves events meanwhile.
class HeaderReader {
public:
    HeaderReader(std::shared_ptr<const std::string> block, std::string lineEnd);

    // Goes to the next header, to the first at first. False behind the last.
    bool Next();
    bool IsNamed(std::string_view name) const; // without regard to case
    std::string Name() const;
    std::string Value() const; // without white space at its start

private:
    bool NextLine();
    std::string Unfolded(std::string_view text) const;

    const std::shared_ptr<const std::string> held_; // whatever the events do
    const std::string_view block_;
    const std::string lineEnd_;
    std::size_t next_ = 0;  // where the next line begins, npos behind the last
    std::string_view line_; // still folded
    bool folded_ = false;
    std::size_t colon_ = 0;
};

// text.find(what, from), which serves events meanwhile: a long text may be full of beginnings of what is looked for.
std::size_t FindInSteps(std::string_view text, std::string_view what, std::size_t from = 0);
