#pragma once

#include "fuzz/torture/FaultControl.h"

#include <array>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace Torture {

// What is done, by the user or by other programs. `which` is a source or a series, `part` the number of a part and
// `amount` as each says; whatever is not there is left out.
enum class Verb : uint8_t {
    Cut,            // amount: bytes of a part
    Glue,           // by the part at that place
    Wait,           // amount: microseconds
    Stop,           // which: row
    FinishDownload, // of the next part of a series
    GrowDownload,
    GiveUpDownload,
    Appear, // the part behind the last of a series comes, all at once
    Grow,   // part 0: a source, else a part; amount: bytes
    Shrink,
    Vanish,
    Replace,
    PutInTheWay, // part 0: of a series' target, else of a cut's part; amount: file, link or folder
    Quit,
    Kill
};

struct Step {
    Verb verb;
    uint32_t which = 0, part = 0, amount = 0;
};

struct Source {
    std::string name;
    uint32_t size = 0;
};

// Endings of downloads that are told in another way: ".part" with eight characters put in before the first point, and
// the part itself with a file beside it.
constexpr const char* kSalted = "salted .part";
constexpr const char* kControlled = ".aria2";

struct Series {
    std::string base;
    uint32_t first = 1;
    std::vector<uint32_t> sizes{}; // of its parts
    uint32_t there = 0;            // so many of them; the others are still being downloaded
    std::string ending{};          // of a download
};

// One run of the engine or of the program.
struct Session {
    bool wholeProgram = false;
    bool completes = true; // downloads, at the end; else what waits is stopped
    std::string preferences{};
    std::array<std::array<uint32_t, 2>, kCalls> rates{};
    std::vector<Step> steps{};
};

struct Plan {
    uint64_t seed = 0;
    std::string ground{}; // file system
    uint32_t room = 0;    // bytes left on a small one
    std::vector<Source> sources{};
    std::vector<Series> series{};
    std::vector<Session> sessions{};
};

// What the seed tells. The grounds are those that there are.
Plan Draw(uint64_t seed, const std::vector<std::string>& grounds, bool hasProgram);
std::ostream& operator<<(std::ostream& out, const Plan& plan);

// Smaller ones, each with something left out.
std::vector<Plan> Shorter(const Plan& plan);

} // namespace Torture
