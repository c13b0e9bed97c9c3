#include "fuzz/torture/World.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>

namespace fs = std::filesystem;

namespace Torture {

namespace {

constexpr uint32_t kMostVariants = 12;

bool IsFile(const Thing& thing) {
    return S_ISREG(thing.entry.status.st_mode);
}

// Where what has come of a part is kept.
std::string DownloadName(const SeriesNow& series, uint32_t number) {
    const std::string part = NumberedPart(series.base, number);
    if (series.ending == kControlled)
        return part;
    if (series.ending != kSalted)
        return part + series.ending;
    const std::size_t point = part.find('.');
    return part.substr(0, point) + ".aZ09_-xY" + part.substr(point) + ".part";
}

// Whether an empty file keeps the part's name free for it.
bool HoldsPlace(const std::string& ending) {
    return ending == kSalted || ending == ".part" || ending == ".wkdownload";
}

// A cut may make many parts as it is.
std::size_t NotMuchMore(const Thing& thing, uint32_t size) {
    return std::min<std::size_t>(size, thing.bytes.size() + 1);
}

} // namespace

World::World(const std::string& top, const Plan& plan) : folder_(top + "/files"), aside_(top + "/aside") {
    fs::create_directory(folder_);
    fs::create_directory(aside_);
    for (const Source& source : plan.sources) {
        sources_.push_back({source.name, FreshBytes(source.size)});
        Put(source.name, sources_.back().bytes);
    }
    for (const Series& series : plan.series) {
        SeriesNow& now = series_.emplace_back(SeriesNow{series.base, series.ending});
        for (uint32_t i = 0; i < series.sizes.size(); ++i) {
            const uint32_t number = series.first + i;
            const std::string bytes = FreshBytes(series.sizes[i]);
            if (i < series.there)
                Put(NumberedPart(series.base, number), bytes);
            else
                BeginDownload(now, number, bytes);
        }
    }
    planned_ = series_.size();
}

Thing* World::Find(const std::string& name) {
    const auto found = std::find_if(things_.begin(), things_.end(),
                                    [&](const Thing& thing) { return !thing.gone && thing.entry.name == name; });
    return found == things_.end() ? nullptr : &*found;
}

// All at once, and never over anything.
bool World::Put(const std::string& name, const std::string& bytes, bool inTheWay) {
    const std::string made = aside_ + "/made";
    if (!Make(made, bytes))
        return false;
    Entry entry{name, At(name)};
    lstat(made.c_str(), &entry.status);
    if (!MoveToFreeName(made, entry.path)) {
        unlink(made.c_str());
        return false;
    }
    things_.push_back({entry, bytes, false, inTheWay});
    return true;
}

void World::Adopt(const Entry& entry) {
    const auto known = [&entry](const Thing& thing) {
        return !thing.gone && thing.entry.status.st_ino == entry.status.st_ino;
    };
    if (std::none_of(things_.begin(), things_.end(), known))
        things_.push_back({entry, BytesOf(entry)});
}

// A cut's parts are a series, under whichever base they have come.
void World::FindAdoptedSeries() {
    series_.resize(planned_);
    for (const SourceNow& source : sources_) {
        std::string base = source.name;
        for (uint32_t i = 1; i <= kMostVariants; base = Variant(base, i++)) {
            if (Find(NumberedPart(base, 1)) != nullptr)
                series_.push_back({.base = base, .ending = ".download", .adopted = true});
        }
    }
}

void World::BeginSession(const Session& session) {
    shaken_ = givenUp_ = false;
    for (const Entry& entry : EntriesIn(folder_))
        Adopt(entry);
    FindAdoptedSeries();
    for (SeriesNow& series : series_) {
        series.parts.clear();
        series.blurred = false;
        for (const Thing& thing : things_) {
            const int64_t number = thing.gone ? -1 : NumberIn(thing.entry.name, series.base);
            if (number < 0 || series.toCome.contains(static_cast<uint32_t>(number)))
                continue;
            series.parts[static_cast<uint32_t>(number)] = thing.bytes;
            series.blurred = series.blurred || !IsFile(thing);
            shaken_ = shaken_ || !IsFile(thing);
        }
        const bool fromZero = series.parts.contains(0) || series.toCome.contains(0);
        for (series.sureEnd = fromZero ? 0 : 1;
             series.parts.contains(series.sureEnd) || series.toCome.contains(series.sureEnd);)
            ++series.sureEnd;
        series.blurred = series.blurred || series.toCome.contains(0); // whose glue may begin at 1
    }
    for (SourceNow& source : sources_) {
        const Thing* const thing = Find(source.name);
        source.bytes = thing == nullptr ? std::string() : thing->bytes;
        source.blurred = thing == nullptr;
        shaken_ = shaken_ || source.bytes.empty();
    }
    BlurWhatIsCutAnew(session);
}

// Once a glue has brought a cut's parts to the Trash, a further cut may take their names, and a further glue those
// parts.
void World::BlurWhatIsCutAnew(const Session& session) {
    const auto count = [&session](const auto& is) {
        return std::count_if(session.steps.begin(), session.steps.end(), is);
    };
    const bool cuts = count([](const Step& step) { return step.verb == Verb::Cut; }) > 0;
    for (std::size_t i = planned_; i < series_.size(); ++i) {
        const auto glues = count([i](const Step& step) { return step.verb == Verb::Glue && step.which == i; });
        series_[i].blurred = series_[i].blurred || (cuts && glues > 1);
    }
}

SeriesNow* World::SeriesFor(const Step& step) {
    if (step.which >= series_.size())
        return nullptr;
    return &series_[step.which];
}

void World::Do(const Step& step) {
    SeriesNow* const series = SeriesFor(step);
    switch (step.verb) {
    case Verb::Wait:
        usleep(step.amount);
        return;
    case Verb::PutInTheWay:
        PutInTheWay(step);
        return;
    case Verb::FinishDownload:
        if (series != nullptr)
            FinishDownload(*series);
        return;
    case Verb::GiveUpDownload:
        if (series != nullptr)
            GiveUpDownload(*series);
        return;
    case Verb::Appear:
        if (series != nullptr)
            Appear(*series, step.amount);
        return;
    default:
        break;
    }
    Thing* const thing = Target(step);
    if (thing == nullptr || !IsFile(*thing))
        return;
    if (step.verb == Verb::Grow || step.verb == Verb::Shrink || step.verb == Verb::GrowDownload)
        Resize(*thing, step);
    else if (step.verb == Verb::Vanish)
        Vanish(*thing, "");
    else if (step.verb == Verb::Replace)
        Vanish(*thing, FreshBytes(NotMuchMore(*thing, step.amount)));
}

bool World::HasDownloads() const {
    return std::any_of(series_.begin(), series_.end(), [](const SeriesNow& series) { return !series.toCome.empty(); });
}

void World::FinishAllDownloads() {
    for (SeriesNow& series : series_)
        while (!series.toCome.empty())
            FinishDownload(series);
}

void World::BeginDownload(SeriesNow& series, uint32_t number, const std::string& bytes) {
    const std::string part = NumberedPart(series.base, number);
    const bool isReady = !HoldsPlace(series.ending) || Put(part, "");
    const bool isBegun = isReady && Put(DownloadName(series, number), bytes.substr(0, bytes.size() / 3));
    if (isBegun && (series.ending != kControlled || Put(part + kControlled, "pieces")))
        series.toCome[number] = bytes;
}

void World::FinishDownload(SeriesNow& series) {
    if (series.toCome.empty())
        return;
    const auto [number, bytes] = *series.toCome.begin();
    series.toCome.erase(series.toCome.begin());
    const std::string name = NumberedPart(series.base, number);
    Thing* const download = Find(DownloadName(series, number));
    const int file = download == nullptr ? -1 : OpenSame(download->entry);
    if (file < 0)
        return;
    const std::string rest = bytes.size() > download->bytes.size() ? bytes.substr(download->bytes.size()) : "";
    download->bytes += rest.substr(0, Append(file, rest));
    fstat(file, &download->entry.status);
    close(file);
    const std::string whole = download->bytes;
    if (series.ending == kControlled)
        Remove(name + kControlled);
    else if (!TakePlace(*download, name))
        return;
    series.parts[number] = whole;
}

// The part's own, or that of the empty file which has kept it.
bool World::TakePlace(Thing& download, const std::string& name) {
    Thing* const placeholder = Find(name);
    const std::string from = download.entry.path, to = At(name);
    if (placeholder == nullptr ? !MoveToFreeName(from, to) : rename(from.c_str(), to.c_str()) != 0)
        return false;
    if (placeholder != nullptr)
        placeholder->gone = true;
    download.entry.name = name;
    download.entry.path = to;
    return true;
}

void World::Remove(const std::string& name) {
    Thing* const thing = Find(name);
    if (thing != nullptr && unlink(thing->entry.path.c_str()) == 0)
        thing->gone = true;
}

// An empty file that has kept the name may be taken for a part from now on.
void World::GiveUpDownload(SeriesNow& series) {
    if (series.toCome.empty() || series.ending == kControlled)
        return;
    const uint32_t number = series.toCome.begin()->first;
    series.toCome.erase(number);
    series.sureEnd = std::min(series.sureEnd, number);
    shaken_ = givenUp_ = true;
    if (HoldsPlace(series.ending))
        series.parts[number] = "";
    Remove(DownloadName(series, number));
}

void World::Appear(SeriesNow& series, uint32_t size) {
    uint32_t number = 1;
    while (series.parts.contains(number) || series.toCome.contains(number))
        ++number;
    const std::string bytes = FreshBytes(size);
    if (Put(NumberedPart(series.base, number), bytes))
        series.parts[number] = bytes;
}

void World::PutInTheWay(const Step& step) {
    std::string name;
    if (step.part == 0 && step.which < series_.size())
        name = series_[step.which].base;
    else if (step.part > 0 && step.which < sources_.size())
        name = NumberedPart(sources_[step.which].name, step.part);
    if (name.empty() || Find(name) != nullptr)
        return;
    Entry entry{name, At(name)};
    constexpr uint32_t kLink = 3, kFolder = 4;
    if (step.amount == kLink ? symlink("nowhere", entry.path.c_str()) == 0
                             : step.amount == kFolder && mkdir(entry.path.c_str(), 0755) == 0) {
        lstat(entry.path.c_str(), &entry.status);
        things_.push_back({entry, BytesOf(entry), false, step.part > 0});
    } else if (step.amount < kLink) {
        Put(name, FreshBytes(std::size_t{step.amount} * 1000), step.part > 0);
    }
    shaken_ = shaken_ || step.part > 0;
    Blur(name);
}

Thing* World::Target(const Step& step) {
    if (step.verb == Verb::GrowDownload) {
        SeriesNow* const series = SeriesFor(step);
        if (series == nullptr || series->toCome.empty())
            return nullptr;
        return Find(DownloadName(*series, series->toCome.begin()->first));
    }
    if (step.part == 0)
        return step.which < sources_.size() ? Find(sources_[step.which].name) : nullptr;
    if (step.which >= series_.size())
        return nullptr;
    // The program may have made other parts of these names by now.
    const SeriesNow& series = series_[step.which];
    const bool mayBeOther = series.adopted && (step.verb == Verb::Vanish || step.verb == Verb::Replace);
    return mayBeOther || series.toCome.contains(step.part) ? nullptr : Find(NumberedPart(series.base, step.part));
}

void World::Blur(const std::string& name) {
    for (SeriesNow& series : series_)
        series.blurred = series.blurred || NumberIn(name, series.base) >= 0;
    for (SourceNow& source : sources_)
        source.blurred = source.blurred || source.name == name;
}

void World::Resize(Thing& thing, const Step& step) {
    const int file = OpenSame(thing.entry);
    if (file < 0)
        return;
    if (step.verb != Verb::GrowDownload) {
        Blur(thing.entry.name);
        shaken_ = true; // a source may have become empty
    }
    if (step.verb == Verb::Shrink) {
        thing.bytes.resize(thing.bytes.size() - std::min<std::size_t>(thing.bytes.size(), step.amount));
        if (ftruncate(file, static_cast<off_t>(thing.bytes.size())) != 0)
            std::abort();
    } else {
        const std::string more = FreshBytes(NotMuchMore(thing, step.amount));
        thing.bytes += more.substr(0, Append(file, more));
    }
    fstat(file, &thing.entry.status);
    close(file);
}

// In one step with the coming of what takes its place, if anything does: the program may be about to move it too.
void World::Vanish(Thing& thing, const std::string& successor) {
    const std::string aside = aside_ + "/vanished", path = thing.entry.path, name = thing.entry.name;
    const bool replaces = !successor.empty() && Make(aside, successor);
    Entry other{name, path};
    if (replaces)
        lstat(aside.c_str(), &other.status);
    shaken_ = true;
    for (SeriesNow& series : series_) {
        const int64_t number = NumberIn(name, series.base);
        if (number >= 0)
            series.sureEnd = std::min(series.sureEnd, static_cast<uint32_t>(number));
    }
    if (replaces)
        Blur(name);
    if (replaces ? Exchange(aside, path) : MoveToFreeName(path, aside)) {
        thing.gone = true;
        if (replaces)
            things_.push_back({other, successor}); // no use of the thing behind this
    }
    unlink(aside.c_str());
}

std::string World::SourceOf(const Step& step) const {
    return step.which < sources_.size() ? At(sources_[step.which].name) : std::string();
}

// Not a folder, which would be cut.
std::string World::PartOf(const Step& step) const {
    if (step.which >= series_.size())
        return {};
    std::vector<std::string> paths;
    for (const auto& [number, bytes] : series_[step.which].parts) {
        const std::string path = At(NumberedPart(series_[step.which].base, number));
        if (!fs::is_directory(path))
            paths.push_back(path);
    }
    return paths.empty() ? std::string() : paths[step.part % paths.size()];
}

void World::Forget(ino_t inode) {
    std::erase_if(things_, [inode](const Thing& thing) { return thing.entry.status.st_ino == inode; });
}

} // namespace Torture
