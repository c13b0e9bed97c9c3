#include "bench/Cost.h"
#include "bench/Measures.h"
#include "bench/Operations.h"
#include "bench/Scratch.h"
#include "core/App.h"
#include "engine/claThread.h"
#include "framework/files/FolderItem.h"
#include "framework/threads/MainThread.h"
#include "framework/threads/Thread.h"
#include "framework/threads/Timer.h"
#include "ui/claFilePerform.h"
#include "ui/claFilePerformInfo.h"
#include "ui/winMain.h"

#include <malloc.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

constexpr int kOperations = 16;
constexpr int32_t kPartSize = 100 * 1048576;

// Fires every millisecond on the main thread and notes how long it had to wait for its turn.
class Pulse : public Timer {
public:
    Pulse() {
        SetPeriod(1);
        SetMode(TimerMode::Repeating);
    }

    std::vector<double> gaps; // milliseconds

protected:
    void Event_Action() override {
        const auto now = std::chrono::steady_clock::now();
        if (last_.time_since_epoch().count() != 0)
            gaps.push_back(std::chrono::duration<double, std::milli>(now - last_).count());
        last_ = now;
    }

private:
    std::chrono::steady_clock::time_point last_;
};

double Percentile(std::vector<double> values, double share) {
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[static_cast<std::size_t>(share * double(values.size() - 1))];
}

// The gap that 99 of 100 stay below, while `work` runs.
double GapDuring(const std::function<void()>& work) {
    auto pulse = OnMainThread([] { return New<Pulse>(); });
    work();
    return OnMainThread([&] {
        const double gap = Percentile(pulse->gaps, 0.99);
        pulse = nullptr;
        return gap;
    });
}

// Kibibytes of /proc/self/status.
double MemoryField(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind(name + ":", 0) == 0)
            return std::stod(line.substr(name.size() + 1));
    }
    return 0;
}

double PeakDuring(const std::function<void()>& work) {
    std::ofstream("/proc/self/clear_refs") << "5"; // begins a new peak
    work();
    return MemoryField("VmHWM");
}

// One file under a name in each of as many folders as there are operations.
std::vector<std::string> MakeFilms(const Scratch& scratch, uint64_t size) {
    MakeFile(scratch.At("film"), size);
    std::vector<std::string> films;
    for (int i = 0; i < kOperations; ++i) {
        std::filesystem::create_directory(scratch.At(std::to_string(i)));
        films.push_back(scratch.At(std::to_string(i) + "/film"));
        std::filesystem::create_hard_link(scratch.At("film"), films.back());
    }
    return films;
}

// Mebibytes per operation above the idle program.
double MemoryPerOperation(const std::string& folder, uint64_t size) {
    const Scratch scratch(folder);
    const std::vector<std::string> films = MakeFilms(scratch, size);
    malloc_trim(0);
    const double idle = MemoryField("VmRSS");
    const double peak = PeakDuring([&] {
        for (const std::string& film : films)
            BeginCut(film, kPartSize);
        Thread::WaitForAll();
    });
    return (peak - idle) / 1024 / kOperations;
}

// What the whole process does a second.
struct Idleness {
    double core, wakeups; // per cent, and sleeps that ended
};

Idleness WhileWaiting(const std::string& folder, int glues) {
    const Scratch scratch(folder);
    for (int i = 0; i < glues; ++i) {
        const std::string film = scratch.At(std::to_string(i) + " film");
        MakeFile(film + ".001", 1);
        MakeFile(film + ".002.crdownload", 1);
        RunOnMainThread([&film] { App::Instance()->DecodeFile(New<FolderItem>(film + ".001")); });
    }
    usleep(3000000);
    rusage before{}, after{};
    getrusage(RUSAGE_SELF, &before);
    const Cost cost = CostOf([] { usleep(10000000); });
    getrusage(RUSAGE_SELF, &after);
    RunOnMainThread([] {
        for (const Ref<claFilePerformInfo>& row : winMain::Instance()->canPerform()->Info) {
            row->PerformThread->Stop = true;
            row->PerformThread->Resume();
        }
    });
    Thread::WaitForAll();
    return {100 * cost.cpu / cost.wall, double(after.ru_nvcsw - before.ru_nvcsw) / cost.wall};
}

} // namespace

void MeasureLiveliness(const BenchOptions& options, Report& report) {
    RunOnMainThread([] { winMain::Instance()->Show(); });
    const auto megabyte = [&options](double count) {
        return static_cast<uint64_t>(count * options.scale + 1) * 1048576;
    };
    {
        const Scratch scratch(options.folder);
        const std::vector<std::string> films = MakeFilms(scratch, megabyte(512));
        const double idle = GapDuring([] { usleep(2000000); });
        const double busy = GapDuring([&] {
            for (const std::string& film : films)
                BeginCut(film, 10 * 1048576);
            Thread::WaitForAll();
        });
        report.Add("event loop, idle", "99 % of the gaps below, ms", idle, 20);
        report.Add("event loop, 16 operations", "99 % of the gaps below, ms", busy, 20);
    }
    const Idleness hundred = WhileWaiting(options.folder, 100);
    report.Add("100 glues that wait", "% of a core", hundred.core, 1);
    report.Add("100 glues that wait", "wake-ups a second", hundred.wakeups, 150);
    report.Add("500 glues that wait", "% of a core", WhileWaiting(options.folder, 500).core, 5);
    MemoryPerOperation(options.folder, megabyte(16)); // what a first use allocates for good is not per operation
    report.Add("memory, 64 MiB files", "MiB per operation", MemoryPerOperation(options.folder, megabyte(64)), 1);
    report.Add("memory, 1 GiB files", "MiB per operation", MemoryPerOperation(options.folder, megabyte(1024)), 1);
}
