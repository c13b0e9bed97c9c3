#include "bench/Cost.h"
#include "bench/Measures.h"
#include "bench/Operations.h"
#include "bench/Scratch.h"
#include "engine/PartNames.h"
#include "tests/slowfs/SlowFileSystem.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <string_view>
#include <tuple>

namespace {

constexpr int32_t kMiB = 1048576;
constexpr int32_t kSmallPart = kMiB / 16;

bool DropCaches() {
    sync();
    const int control = open("/proc/sys/vm/drop_caches", O_WRONLY | O_CLOEXEC);
    const std::string_view all = "3";
    const bool dropped = control >= 0 && write(control, all.data(), all.size()) == ssize_t(all.size());
    if (control >= 0)
        close(control);
    return dropped;
}

std::vector<std::string> Split(int32_t partSize) {
    return {"split", "-b", std::to_string(partSize), "-d", "-a", "3", "film", "film."};
}

struct Bounds {
    double cut, glue;
};

void MeasureCold(int32_t partSize, int parts, const BenchOptions& options, const Bounds& bounds, Report& report) {
    const uint64_t size = uint64_t(parts) * uint64_t(partSize);
    const Scratch scratch(options.folder);
    MakeFile(scratch.At("film"), size);
    const WarmMemory warm(size * 2);
    const std::string measure =
        " " + std::to_string(parts) + " parts of " + std::to_string(partSize / 1024) + " KiB, cold disk";

    const auto clearParts = [&scratch] {
        scratch.RemoveAll("film", "film");
        FreeBytes(scratch.Path());
        DropCaches();
    };
    const auto cut = [&] {
        clearParts();
        return CostOf([&] { Cut(scratch.At("film"), partSize); });
    };
    const Comparison cuts = Compare(options.FewRounds(), cut, [&] {
        clearParts();
        return CostOfCommand(Split(partSize), scratch.Path());
    });
    report.Add("cut into" + measure, "wall, ratio to split", cuts.wall, bounds.cut);

    cut();
    const auto clearTarget = [&scratch] {
        unlink(scratch.At("film").c_str());
        FreeBytes(scratch.Path());
        DropCaches();
    };
    const Comparison glues = Compare(
        options.FewRounds(),
        [&] {
            clearTarget();
            return CostOf([&] { Glue(scratch.At("film.001")); });
        },
        [&] {
            clearTarget();
            return CostOfCommand({"sh", "-c", "exec cat film.[0-9][0-9][0-9] > film"}, scratch.Path());
        });
    report.Add("glue from" + measure, "wall, ratio to cat", glues.wall, bounds.glue);
}

// Both sides end when the bytes have reached the device.
void MeasureSlow(const std::string& place, const std::string& folder, const BenchOptions& options, Report& report) {
    constexpr int32_t kSize = 10 * kMiB;
    MakeFile(folder + "/film", kSize);
    const auto clear = [&folder] {
        for (int part = 1; part <= kSize / kSmallPart; ++part)
            unlink((folder + "/" + PartName("film", part)).c_str());
        FreeBytes(folder); // what is still to be said of these files would meet the next sync
    };
    for (const int32_t size : {kSize / 2, kSmallPart}) {
        std::vector<std::string> command{"sh", "-c", R"("$@" && sync -f film)", "sh"};
        const std::vector<std::string> split = Split(size);
        command.insert(command.end(), split.begin(), split.end());
        const Comparison cuts = Compare(
            options.FewRounds(),
            [&] {
                clear();
                return CostOf([&] { Cut(folder + "/film", size); });
            },
            [&] {
                clear();
                return CostOfCommand(command, folder);
            });
        report.Add("cut 10 MiB in parts of " + std::to_string(size / 1024) + " KiB, slow " + place,
                   "wall, ratio to split and sync", cuts.wall, 1.2);
    }
}

void MeasureSlow(const BenchOptions& options, Report& report) {
    const Scratch scratch(options.folder);
    const Scratch diskScratch(options.folder);
    const SlowFileSystem server(scratch.Path(), true);
    const SlowFileSystem device(diskScratch.Path(), false);
    const LoopMount disk("ext4", device.Point(), uint64_t{64} * kMiB);
    if (!server.Mounted() || !device.Mounted() || !disk.Mounted()) {
        report.Skip("cut, slow server and disk", "no file system of one's own, or no image, can be mounted here");
        return;
    }
    for (const auto& [name, slow, place] :
         {std::tuple("server", &server, server.Point()), {"disk", &device, disk.Point()}}) {
        slow->Tell("rate write 5000000");
        MeasureSlow(name, place, options, report);
        slow->Tell("");
    }
}

} // namespace

void MeasureDevices(const BenchOptions& options, Report& report) {
    if (DropCaches()) {
        MeasureCold(100 * kMiB, std::max(1, static_cast<int>(30 * options.scale)), options, {0.6, 0.7}, report);
        MeasureCold(kSmallPart, 900, options, {1.0, 0.8}, report);
    } else {
        report.Skip("cut and glue, cold disk", "the caches can't be dropped here");
    }
    MeasureSlow(options, report);
}
