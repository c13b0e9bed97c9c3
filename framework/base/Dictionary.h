#pragma once

#include "framework/base/Ref.h"
#include "framework/text/Text.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Values by key. Keys are found without regard to case and keep the order in which they came. Whatever they are, the
// time of an operation grows with the logarithm of their number only: no hash, for which servers could choose names
// that collide. Used by one thread at a time.
template <class V>
class Dictionary : public Object {
public:
    bool HasKey(std::string_view key) const { return places_.contains(FoldedCase(key)); }

    // The value of a key that is there; another key throws std::out_of_range.
    const V& Value(std::string_view key) const { return entries_[places_.at(FoldedCase(key))]->second; }
    V Lookup(std::string_view key, V otherwise) const {
        const auto place = places_.find(FoldedCase(key));
        return place == places_.end() ? std::move(otherwise) : entries_[place->second]->second;
    }

    // Adds the key behind the others, or gives one that is there another value in its place.
    void SetValue(std::string_view key, V value) {
        const auto [place, added] = places_.try_emplace(FoldedCase(key), entries_.size());
        if (added)
            entries_.emplace_back(std::in_place, key, std::move(value));
        else
            entries_[place->second]->second = std::move(value);
    }

    void Remove(std::string_view key) {
        const auto place = places_.find(FoldedCase(key));
        if (place == places_.end())
            return;
        entries_[place->second].reset();
        places_.erase(place);
    }

    void Clear() {
        entries_.clear();
        places_.clear();
    }

    int32_t Count() const { return static_cast<int32_t>(places_.size()); }

    // The key at a position from 0, spelled as it first came; another position throws std::out_of_range.
    const std::string& Key(int32_t position) const {
        CloseGaps();
        return entries_.at(static_cast<std::size_t>(position))->first;
    }

private:
    // What has been removed leaves a gap, closed when next a position counts.
    void CloseGaps() const {
        if (entries_.size() == places_.size())
            return;
        std::erase(entries_, std::nullopt);
        for (std::size_t i = 0; i < entries_.size(); ++i)
            places_[FoldedCase(entries_[i]->first)] = i;
    }

    mutable std::vector<std::optional<std::pair<std::string, V>>> entries_;
    mutable std::map<std::string, std::size_t> places_; // by folded key
};
