#include "framework/files/TextStream.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace {

constexpr std::size_t kBlock = std::size_t(64) * 1024;

bool EndsLine(char byte) {
    return byte == '\n' || byte == '\r';
}

} // namespace

std::string TextInputStream::ReadLine() {
    std::string line;
    while (HasMore()) {
        const auto rest = block_.begin() + static_cast<std::ptrdiff_t>(next_);
        const auto end = std::find_if(rest, block_.end(), EndsLine);
        line.append(rest, end);
        next_ = static_cast<std::size_t>(end - block_.begin());
        if (end == block_.end())
            continue;
        const bool mayBePair = block_[next_++] == '\r';
        if (mayBePair && HasMore() && block_[next_] == '\n')
            ++next_;
        break;
    }
    return line;
}

bool TextInputStream::AtEOF() {
    return !HasMore();
}

void TextInputStream::Close() {
    if (descriptor_ >= 0)
        ::close(descriptor_);
    descriptor_ = -1;
    next_ = block_.size();
}

bool TextInputStream::HasMore() {
    if (next_ < block_.size())
        return true;
    block_.resize(kBlock);
    ssize_t size = -1;
    do
        size = read(descriptor_, block_.data(), block_.size());
    while (size < 0 && errno == EINTR);
    block_.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    next_ = 0;
    return !block_.empty();
}

void TextOutputStream::Close() {
    if (descriptor_ >= 0)
        ::close(std::exchange(descriptor_, -1));
}
