#include "fuzz/torture/Judge.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <optional>

namespace Torture {

namespace {

constexpr uint32_t kMostVariants = 12;

// Whether these are the bytes with some left out.
bool IsWithHoles(const std::string& bytes, const std::string& whole) {
    std::size_t at = 0;
    for (const char byte : whole) {
        if (at < bytes.size() && bytes[at] == byte)
            ++at;
    }
    return at == bytes.size();
}

// Parts one behind the other from that number on, as they stand at the end of a glue.
std::string Joined(const SeriesNow& series, uint32_t number) {
    std::string whole;
    for (auto part = series.parts.find(number); part != series.parts.end(); part = series.parts.find(++number))
        whole += part->second;
    return whole;
}

// Whether the bytes are all of the parts up to one that may have been the last: to number `sureEnd` they were there.
bool EndsBehindAPart(const std::string& bytes, const SeriesNow& series, uint32_t number, uint32_t sureEnd) {
    std::size_t at = 0;
    for (;; ++number) {
        if (at == bytes.size() && number >= sureEnd)
            return true;
        const auto part = series.parts.find(number);
        if (part == series.parts.end() || bytes.compare(at, part->second.size(), part->second) != 0)
            return false;
        at += part->second.size();
    }
}

bool IsSameTime(const timespec& one, const timespec& other) {
    return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
}

class Hearing {
public:
    Hearing(World& world, const Facts& facts) : world_(world), facts_(facts) {
        for (const Entry& entry : EntriesIn(world.Folder()))
            here_.emplace(entry.status.st_ino, entry);
        for (const std::string& trash : facts.trashes)
            for (const Entry& entry : TrashedIn(trash))
                trashed_.emplace(entry.status.st_ino, entry);
    }

    std::vector<std::string> Findings() {
        for (const Thing& thing : world_.Things())
            if (!thing.gone)
                LookAt(thing);
        for (const auto& [inode, entry] : here_)
            if (!known_.contains(inode))
                LookAtMade(entry, false);
        for (const auto& [inode, entry] : trashed_)
            if (!known_.contains(inode))
                LookAtMade(entry, true);
        for (const Row& row : facts_.rows)
            if (row.ended && !row.stopped)
                LookAtFinished(row);
        for (const std::string& base : facts_.glued)
            LookForTargetOf(base);
        for (const ino_t inode : toForget_)
            world_.Forget(inode);
        return findings_;
    }

private:
    void Find(const std::string& what) { findings_.push_back(what); }

    void LookAt(const Thing& thing) {
        const std::string name = "\"" + thing.entry.name + "\"";
        const ino_t inode = thing.entry.status.st_ino;
        const auto here = here_.find(inode), trashed = trashed_.find(inode);
        known_.insert(inode);
        if (here == here_.end() && trashed == trashed_.end()) {
            Find(name + " is neither where it was nor in the Trash");
            return;
        }
        const Entry& now = here == here_.end() ? trashed->second : here->second;
        if (now.name != thing.entry.name)
            Find(name + " is called \"" + now.name + "\" now");
        if (BytesOf(now) != (S_ISDIR(now.status.st_mode) ? "" : thing.bytes))
            Find(name + " has other bytes");
        if (!IsSameTime(now.status.st_mtim, thing.entry.status.st_mtim) ||
            now.status.st_mode != thing.entry.status.st_mode)
            Find(name + " has another time or mode");
        if (here == here_.end()) {
            if (!MayBeTrashed(thing))
                Find(name + " went to the Trash");
            toForget_.push_back(inode);
        }
    }

    bool MayBeTrashed(const Thing& thing) const {
        if (MayStandInTheWay(thing.entry.name))
            return true;
        if (!facts_.trashesParts)
            return false;
        for (const SeriesNow& series : world_.AllSeries())
            if (NumberIn(thing.entry.name, series.base) >= 0 && MayBeFinished(series))
                return true;
        return false;
    }

    // Of a cut whose source has changed, so that it needs more names than it has looked for, or of any that was put
    // there meanwhile.
    bool MayStandInTheWay(const std::string& name) const {
        for (const Thing& thing : world_.Things())
            if (thing.inTheWay && thing.entry.name == name && !facts_.cuts.empty())
                return true;
        for (const SourceNow& source : world_.Sources()) {
            std::string base = source.name;
            for (uint32_t i = 1; i <= kMostVariants; base = Variant(base, i++))
                if (source.blurred && !facts_.cuts.empty() && NumberIn(name, base) >= 0)
                    return true;
        }
        return false;
    }

    // Some glue of it came to its end, as far as one can know.
    bool MayBeFinished(const SeriesNow& series) const {
        if (!facts_.seesRows || facts_.brokenOff)
            return true;
        return std::any_of(facts_.rows.begin(), facts_.rows.end(), [&](const Row& row) {
            if (row.cuts || row.base != series.base || !row.ended)
                return false;
            return !row.stopped || EntryCalled(row.name, here_) != nullptr;
        });
    }

    const Entry* EntryCalled(const std::string& name, const std::map<ino_t, Entry>& among) const {
        for (const auto& [inode, entry] : among)
            if (entry.name == name && !known_.contains(inode))
                return &entry;
        return nullptr;
    }

    // What the program has made.
    void LookAtMade(const Entry& entry, bool isTrashed) {
        const std::string name = "\"" + entry.name + "\"" + (isTrashed ? " in the Trash" : "");
        if (!S_ISREG(entry.status.st_mode)) {
            Find(name + " is no file");
            return;
        }
        if (isTrashed && !MayBringToTrash(entry.name) && !MayStandInTheWay(entry.name))
            Find(name + " was not stopped");
        if (!IsOfARow(entry.name))
            Find(name + " was made for no row");
        const std::string bytes = BytesOf(entry);
        if (!IsTarget(entry.name, bytes) && !IsPart(entry.name, bytes))
            Find(name + " is nothing that a cut or a glue makes (" + Compared(entry.name, bytes) + ")");
    }

    std::string Compared(const std::string& name, const std::string& bytes) const {
        std::string text = std::to_string(bytes.size()) + " bytes";
        for (const SeriesNow& series : world_.AllSeries()) {
            const std::string whole = Joined(series, series.parts.contains(0) ? 0 : 1);
            const auto same =
                std::mismatch(bytes.begin(), bytes.end(), whole.begin(), whole.end()).first - bytes.begin();
            if (same > 0 || name == series.base)
                text += ", of " + std::to_string(whole.size()) + " of its series alike " + std::to_string(same);
        }
        return text;
    }

    bool IsOfARow(const std::string& name) const {
        return !facts_.seesRows || facts_.brokenOff ||
               std::any_of(facts_.rows.begin(), facts_.rows.end(), [&name](const Row& row) {
                   return row.cuts ? NumberIn(name, row.base) > 0 : name == row.name;
               });
    }

    bool MayComeOf(const std::string& bytes, const std::string& whole) const {
        return whole.starts_with(bytes) || (facts_.lostBytes && IsWithHoles(bytes, whole));
    }

    // What was stopped, or made by a cut and used up by a glue.
    bool MayBringToTrash(const std::string& name) const {
        return facts_.brokenOff || !facts_.seesRows ||
               std::any_of(facts_.rows.begin(), facts_.rows.end(), [&](const Row& row) {
                   return row.stopped || (facts_.trashesParts && !row.cuts && NumberIn(name, row.base) >= 0);
               });
    }

    static bool IsTargetName(const std::string& name, const std::string& base) {
        bool fits = name == base;
        for (uint32_t n = 1; n <= kMostVariants && !fits; ++n)
            fits = name == Variant(base, n);
        return fits;
    }

    bool IsTarget(const std::string& name, const std::string& bytes) const {
        for (const SeriesNow& series : world_.AllSeries()) {
            if (!IsTargetName(name, series.base))
                continue;
            // A second glue may come when some of the first parts are in the Trash.
            for (const uint32_t first : {0U, 1U})
                if (series.blurred || MayComeOf(bytes, Joined(series, first)))
                    return true;
        }
        return false;
    }

    std::vector<uint32_t> SizesOf(const std::string& source, const std::string& base) const {
        std::vector<uint32_t> sizes;
        for (const Row& row : facts_.rows) // several, if the first could make no part
            if (row.cuts && row.base == base)
                sizes.push_back(static_cast<uint32_t>(row.partSize));
        for (const auto& [name, size] : facts_.cuts)
            if (name == source && (!facts_.seesRows || facts_.brokenOff))
                sizes.push_back(size);
        return sizes;
    }

    bool IsPart(const std::string& name, const std::string& bytes) const {
        for (const SourceNow& source : world_.Sources()) {
            std::string base = source.name;
            for (uint32_t i = 1; i <= kMostVariants; base = Variant(base, i++)) {
                const int64_t number = NumberIn(name, base);
                if (number < 1)
                    continue;
                for (const uint32_t size : SizesOf(source.name, base))
                    if (source.blurred || IsSlice(source.bytes, size, number, bytes))
                        return true;
            }
        }
        return false;
    }

    bool IsSlice(const std::string& source, uint32_t size, int64_t number, const std::string& bytes) const {
        const auto at = static_cast<std::size_t>(number - 1) * size;
        return at < source.size() && MayComeOf(bytes, source.substr(at, size));
    }

    void LookAtFinished(const Row& row) {
        const std::optional<std::string> broken = row.cuts ? NotWholeOfCut(row) : NotWholeOfGlue(row);
        if (!broken)
            return;
        if (!facts_.lostBytes)
            Find("the " + std::string(row.cuts ? "cut" : "glue") + " of \"" + row.name + "\" is not whole: " + *broken);
        else if (!facts_.brokenOff && !IsTold(row))
            Find("nobody was told that \"" + *broken + "\" is not whole");
    }

    // Of a cut the first part is told that may not be whole.
    bool IsTold(const Row& row) const {
        const std::string quoted = "\xE2\x80\x9C" + (row.cuts ? row.base + "." : row.name + "\xE2\x80\x9D");
        return facts_.asked.find("notify") != std::string::npos && facts_.asked.find(quoted) != std::string::npos;
    }

    // Each gives the name of the first file that is not what it should be.
    std::optional<std::string> NotWholeOfGlue(const Row& row) const {
        const auto isIts = [&row](const SeriesNow& series) { return series.base == row.base; };
        const auto& all = world_.AllSeries();
        const auto series = std::find_if(all.begin(), all.end(), isIts);
        const Entry* const target = EntryCalled(row.name, here_);
        if (series == all.end() || series->blurred)
            return {};
        if (target == nullptr)
            return row.name;
        const auto glues = std::count_if(facts_.rows.begin(), facts_.rows.end(),
                                         [&](const Row& other) { return other.base == row.base; });
        const std::string bytes = BytesOf(*target);
        if (glues == 1) {
            const uint32_t first = series->parts.contains(0) ? 0 : 1;
            return EndsBehindAPart(bytes, *series, first, series->sureEnd) ? std::nullopt : std::optional(row.name);
        }
        for (const uint32_t first : {0U, 1U})
            if (EndsBehindAPart(bytes, *series, first, 0))
                return {};
        return row.name;
    }

    std::optional<std::string> NotWholeOfCut(const Row& row) const {
        const auto isIts = [&row](const SourceNow& source) { return source.name == row.name; };
        const auto& all = world_.Sources();
        const auto source = std::find_if(all.begin(), all.end(), isIts);
        if (source == all.end() || source->blurred)
            return {};
        const auto size = static_cast<std::size_t>(row.partSize);
        uint32_t number = 0;
        for (std::size_t at = 0; at < source->bytes.size(); at += size) {
            const std::string name = NumberedPart(row.base, ++number);
            const Entry* const part = EntryCalled(name, here_);
            if (part == nullptr ? !WasConsumed(row.base) : BytesOf(*part) != source->bytes.substr(at, size))
                return name;
        }
        return {};
    }

    void LookForTargetOf(const std::string& base) {
        for (const SeriesNow& series : world_.AllSeries()) {
            const uint32_t first = series.parts.contains(0) ? 0 : 1;
            const auto isWhole = [&](const auto& made) {
                return !known_.contains(made.first) && IsTargetName(made.second.name, base) &&
                       EndsBehindAPart(BytesOf(made.second), series, first, series.sureEnd);
            };
            if (series.base == base && !series.blurred && std::none_of(here_.begin(), here_.end(), isWhole))
                Find("there is no whole \"" + base + "\"");
        }
    }

    // By a glue that came while the cut's parts were there.
    bool WasConsumed(const std::string& base) const {
        return std::any_of(facts_.rows.begin(), facts_.rows.end(),
                           [&](const Row& row) { return !row.cuts && row.base == base; });
    }

    World& world_;
    const Facts& facts_;
    std::map<ino_t, Entry> here_, trashed_;
    std::set<ino_t> known_;
    std::vector<ino_t> toForget_;
    std::vector<std::string> findings_;
};

} // namespace

std::vector<std::string> Judge(World& world, const Facts& facts) {
    return Hearing(world, facts).Findings();
}

} // namespace Torture
