#pragma once

#include "fuzz/torture/Files.h"
#include "fuzz/torture/Plan.h"

#include <map>
#include <string>
#include <vector>

namespace Torture {

// What somebody else than the program made. Known by its inode: the program may move it, and that is all.
struct Thing {
    Entry entry; // as it was last left
    std::string bytes;
    bool gone = false;     // by who made it
    bool inTheWay = false; // of a cut's part
};

// What a glue may find in one session.
struct SeriesNow {
    std::string base;
    std::string ending;                       // of its downloads
    std::map<uint32_t, std::string> parts{};  // all that have been there
    std::map<uint32_t, std::string> toCome{}; // what downloads will have brought
    uint32_t sureEnd = 0;                     // the parts below it are there for good
    bool adopted = false;                     // cut by an earlier session
    bool blurred = false;                     // no telling what a glue has met
};

struct SourceNow {
    std::string name;
    std::string bytes;
    bool blurred = false;
};

// The folder in which a history takes place, and all in it that the program must not lose. Plays what other programs
// do to it.
class World {
public:
    // Below a folder that is all its own, on the file system to be tried.
    World(const std::string& top, const Plan& plan);

    const std::string& Folder() const { return folder_; }
    const std::vector<Thing>& Things() const { return things_; }
    const std::vector<SeriesNow>& AllSeries() const { return series_; }
    const std::vector<SourceNow>& Sources() const { return sources_; }
    // A worker may have met what it can't go on with: files that went or came under its hands.
    bool IsShaken() const { return shaken_; }
    // A download that a glue may wait for will not come.
    bool HasGivenUp() const { return givenUp_; }

    // What the program has made so far is like anything else from now on.
    void BeginSession(const Session& session);
    // One of the steps that are not the program's.
    void Do(const Step& step);
    void FinishAllDownloads();
    bool HasDownloads() const;
    // The path that a cut or a glue is given; empty if there is nothing.
    std::string SourceOf(const Step& step) const;
    std::string PartOf(const Step& step) const;
    // What has been moved to the Trash is no more to be looked for.
    void Forget(ino_t inode);

private:
    Thing* Find(const std::string& name);
    bool Put(const std::string& name, const std::string& bytes, bool inTheWay = false);
    void Adopt(const Entry& entry);
    void FindAdoptedSeries();
    void BlurWhatIsCutAnew(const Session& session);
    SeriesNow* SeriesFor(const Step& step);
    void BeginDownload(SeriesNow& series, uint32_t number, const std::string& bytes);
    void FinishDownload(SeriesNow& series);
    bool TakePlace(Thing& download, const std::string& name);
    void Remove(const std::string& name);
    void GiveUpDownload(SeriesNow& series);
    void Appear(SeriesNow& series, uint32_t size);
    void PutInTheWay(const Step& step);
    // The thing that a step changes, and whose it is.
    Thing* Target(const Step& step);
    void Blur(const std::string& name);
    void Resize(Thing& thing, const Step& step);
    void Vanish(Thing& thing, const std::string& successor);
    std::string At(const std::string& name) const { return folder_ + "/" + name; }

    std::string folder_, aside_;
    std::vector<Thing> things_;
    std::vector<SeriesNow> series_;
    std::vector<SourceNow> sources_;
    std::size_t planned_ = 0; // of the series
    bool shaken_ = false, givenUp_ = false;
};

} // namespace Torture
