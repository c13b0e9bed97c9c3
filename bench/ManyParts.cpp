#include "bench/Cost.h"
#include "bench/Measures.h"
#include "bench/Operations.h"
#include "bench/Scratch.h"

#include <unistd.h>

#include <algorithm>

namespace {

constexpr int32_t kPartSize = 64 * 1024;

void RemoveParts(const Scratch& scratch) {
    scratch.RemoveAll("film.", "film");
}

void RemoveTarget(const Scratch& scratch) {
    unlink(scratch.At("film").c_str());
    sync();
}

Cost CutOnce(const Scratch& scratch) {
    RemoveParts(scratch);
    return CostOf([&] { Cut(scratch.At("film"), kPartSize); });
}

Cost GlueOnce(const Scratch& scratch) {
    RemoveTarget(scratch);
    return CostOf([&] { Glue(scratch.At("film.001")); });
}

struct Pair {
    double cut, glue; // least of three runs, seconds
};

Pair TimesFor(const std::string& folder, int parts) {
    const Scratch scratch(folder);
    MakeFile(scratch.At("film"), uint64_t(parts) * kPartSize);
    Pair least{1e9, 1e9};
    for (int run = 0; run < 3; ++run) {
        least.cut = std::min(least.cut, CutOnce(scratch).wall);
        least.glue = std::min(least.glue, GlueOnce(scratch).wall);
    }
    return least;
}

} // namespace

void MeasureManyParts(const BenchOptions& options, Report& report) {
    const int parts = static_cast<int>(20000 * options.scale);
    const std::string measure = " " + std::to_string(parts) + " parts of 64 KiB";
    const WarmMemory warm(uint64_t(parts) * kPartSize * 3); // the whole, its parts and what holds them
    {
        const Scratch scratch(options.folder);
        MakeFile(scratch.At("film"), uint64_t(parts) * kPartSize);
        const Comparison cut = Compare(
            options.FewRounds(), [&] { return CutOnce(scratch); },
            [&] {
                RemoveParts(scratch);
                return CostOfCommand({"split", "-b", std::to_string(kPartSize), "-d", "-a", "6", "film", "film."},
                                     scratch.Path());
            });
        report.Add("cut into" + measure, "wall, ratio to split", cut.wall, 1.5);
        RemoveParts(scratch);
        Cut(scratch.At("film"), kPartSize);
        const Comparison glue = Compare(
            options.FewRounds(), [&] { return GlueOnce(scratch); },
            [&] {
                RemoveTarget(scratch);
                // In the order of the numbers, which is not that of the names from part 1000 on.
                return CostOfCommand({"sh", "-c", "ls -v film.* | xargs -n 100000 cat > film"}, scratch.Path());
            });
        report.Add("glue from" + measure, "wall, ratio to cat", glue.wall, 1.5);
    }
    const Pair few = TimesFor(options.folder, parts / 10);
    const Pair many = TimesFor(options.folder, parts);
    report.Add("cut, ten times the parts", "time, multiple", many.cut / few.cut, 15);
    report.Add("glue, ten times the parts", "time, multiple", many.glue / few.glue, 15);
}
