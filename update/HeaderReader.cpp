#include "update/HeaderReader.h"

#include "framework/text/Text.h"
#include "framework/threads/Yield.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t kNowhere = std::string_view::npos;
constexpr std::size_t kStep = std::size_t(1) << 20;

} // namespace

HeaderReader::HeaderReader(std::shared_ptr<const std::string> block, std::string lineEnd)
    : held_(std::move(block)), block_(*held_), lineEnd_(std::move(lineEnd)) {}

bool HeaderReader::Next() {
    do {
        if (!NextLine())
            return false;
        colon_ = line_.find(':');
        RuntimeBackgroundTask();
    } while (colon_ == kNowhere);
    return true;
}

// Goes to the next line, with all that are folded into it.
bool HeaderReader::NextLine() {
    if (next_ == kNowhere)
        return false;
    const std::size_t start = next_;
    folded_ = false;
    std::size_t end = FindInSteps(block_, lineEnd_, start);
    while (end != kNowhere) {
        next_ = end + lineEnd_.size();
        const bool folds = next_ < block_.size() && (block_[next_] == ' ' || block_[next_] == '\t');
        if (!folds)
            break;
        folded_ = true;
        end = FindInSteps(block_, lineEnd_, next_);
        RuntimeBackgroundTask();
    }
    if (end == kNowhere)
        next_ = kNowhere;
    line_ = block_.substr(start, end == kNowhere ? end : end - start);
    return true;
}

bool HeaderReader::IsNamed(std::string_view name) const {
    return RuntimeStringCompare(Name(), name) == 0;
}

std::string HeaderReader::Name() const {
    return Unfolded(line_.substr(0, colon_));
}

std::string HeaderReader::Value() const {
    return LTrim(Unfolded(line_.substr(colon_ + 1)));
}

// One blank stands for each fold.
std::string HeaderReader::Unfolded(std::string_view text) const {
    std::string whole;
    whole.reserve(text.size());
    std::size_t from = 0;
    while (folded_) {
        const std::size_t fold = FindInSteps(text, lineEnd_, from);
        if (fold == kNowhere)
            break;
        whole.append(text.substr(from, fold - from)).push_back(' ');
        from = fold + lineEnd_.size() + 1;
        RuntimeBackgroundTask();
    }
    return whole.append(text.substr(from));
}

std::size_t FindInSteps(std::string_view text, std::string_view what, std::size_t from) {
    while (from < text.size()) {
        const std::size_t found = text.substr(from, kStep + what.size() - 1).find(what);
        if (found != kNowhere)
            return from + found;
        from += std::min(kStep, text.size() - from);
        RuntimeBackgroundTask();
    }
    return kNowhere;
}
