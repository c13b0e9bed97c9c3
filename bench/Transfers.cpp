#include "bench/Cost.h"
#include "bench/Measures.h"
#include "bench/Operations.h"
#include "bench/Scratch.h"

#include <cmath>
#include <unistd.h>

namespace {

constexpr uint64_t kGiB = 1ULL << 30U;
constexpr int32_t kPartSize = 100 * 1048576;

struct Bounds {
    double cut, glue;
};

void MeasureOn(const std::string& place, const std::string& folder, uint64_t size, const BenchOptions& options,
               const Bounds& bounds, Report& report) {
    const Scratch scratch(folder);
    MakeFile(scratch.At("film"), size);
    const std::string measure = " " + std::to_string(size / 1048576) + " MiB, " + place;
    const bool shares = bounds.cut < 1;
    const int rounds = shares ? options.FewRounds() : options.rounds;

    const auto clearParts = [&] {
        scratch.RemoveAll("film", "film");
        FreeBytes(scratch.Path()); // waits for the space to be free
    };
    const Comparison cut = Compare(
        rounds,
        [&] {
            clearParts();
            return CostOf([&] { Cut(scratch.At("film"), kPartSize); });
        },
        [&] {
            clearParts();
            return CostOfCommand({"split", "-b", std::to_string(kPartSize), "-d", "-a", "3", "film", "film."},
                                 scratch.Path());
        });
    report.Add("cut" + measure, "wall, ratio to split", cut.wall, bounds.cut);
    report.Add("cut" + measure, "processor, ratio to split", cut.cpu, bounds.cut);

    scratch.RemoveAll("film", "film");
    const uint64_t before = FreeBytes(scratch.Path());
    Cut(scratch.At("film"), kPartSize);
    if (shares)
        report.Add("cut" + measure, "free space taken, share of the file",
                   (double(before) - double(FreeBytes(scratch.Path()))) / double(size), 0.05);
    unlink(scratch.At("film").c_str());

    // Where blocks can be shared, cat by itself shares them too: through a pipe it copies.
    const std::string catCommand =
        shares ? "cat film.[0-9][0-9][0-9] | cat > film" : "exec cat film.[0-9][0-9][0-9] > film";
    const std::string peer = shares ? "ratio to cat through a pipe" : "ratio to cat";
    const auto clearTarget = [&] {
        unlink(scratch.At("film").c_str());
        FreeBytes(scratch.Path());
    };
    const Comparison glue = Compare(
        rounds,
        [&] {
            clearTarget();
            return CostOf([&] { Glue(scratch.At("film.001")); });
        },
        [&] {
            clearTarget();
            return CostOfCommand({"sh", "-c", catCommand}, scratch.Path());
        });
    report.Add("glue" + measure, "wall, " + peer, glue.wall, bounds.glue);
    report.Add("glue" + measure, "processor, " + peer, glue.cpu, bounds.glue);
}

void MeasureOnSharing(const std::string& kind, uint64_t size, const BenchOptions& options, Report& report) {
    const Scratch scratch(options.folder);
    const LoopMount mount(kind, scratch.Path(), size * 5 / 2 + kGiB);
    if (mount.Mounted())
        MeasureOn(kind, mount.Point(), size, options, {0.05, 0.05}, report);
    else
        report.Skip("cut and glue, " + kind, "no such file system can be mounted here");
}

} // namespace

void MeasureTransfers(const BenchOptions& options, Report& report) {
    const auto size = static_cast<uint64_t>(std::llround(4 * options.scale * double(kGiB) / kPartSize)) * kPartSize;
    const WarmMemory warm(size * 4); // the file, its parts, and images that hold them
    MeasureOn("disk", options.folder, size, options, {1.0, 1.05}, report);
    if (access("/dev/shm", W_OK) == 0)
        MeasureOn("tmpfs", "/dev/shm", size, options, {1.0, 1.05}, report);
    else
        report.Skip("cut and glue, tmpfs", "/dev/shm is not there");
    MeasureOnSharing("btrfs", size, options, report);
    MeasureOnSharing("xfs", size, options, report);
}
