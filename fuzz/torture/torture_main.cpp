// Plays random histories of cuts and glues on a disk that fails, until the time is over or something does not hold.
// See docs/torture.md.

#include "fuzz/torture/History.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <mutex>
#include <random>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace Torture;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kShorteningTime{40};
constexpr int kTries = 3; // of a plan, as no two runs of it are the same

struct Options {
    std::chrono::seconds time{60};
    std::optional<uint64_t> seed; // only this one, again and again
    unsigned jobs = 2;
};

struct Found {
    Plan plan;
    std::string what;
};

Options OptionsFrom(int count, char** words) {
    Options options;
    for (int i = 1; i < count; ++i) {
        const std::string word = words[i];
        if (word == "--seed" && i + 1 < count)
            options.seed = std::stoull(words[++i]);
        else if (word == "--jobs" && i + 1 < count)
            options.jobs = static_cast<unsigned>(std::stoul(words[++i]));
        else
            options.time = std::chrono::seconds(std::stoul(word));
    }
    return options;
}

// The first of these seeds; further ones follow.
uint64_t AnySeed() {
    return std::random_device()() % 1'000'000 * uint64_t{100'000};
}

class Runner {
public:
    Runner(const Options& options, const std::string& folder)
        : options_(options), folder_(folder), next_(options.seed.value_or(AnySeed())) {}

    // Nothing if all held.
    std::optional<Found> Run() {
        {
            std::vector<std::jthread> jobs;
            for (unsigned job = 0; job < options_.jobs; ++job)
                jobs.emplace_back([this, job] { Work(folder_ + "/" + std::to_string(job)); });
        }
        return found_;
    }

    const Tally& Done() const { return tally_; }

private:
    void Work(const std::string& folder) {
        Stage stage(folder);
        while (Clock::now() < end_ && !isOver_) {
            const uint64_t seed = options_.seed ? *options_.seed : next_++;
            const Plan plan = Draw(seed, stage.Grounds(), stage.HasProgram());
            const std::optional<std::string> what = stage.Play(plan, tally_);
            if (what && !isOver_.exchange(true))
                Take(stage, {plan, *what});
        }
    }

    void Take(Stage& stage, Found found) {
        std::cout << "Found with seed " << found.plan.seed << ":\n" << found.what << "shortening it ..." << std::endl;
        const auto end = Clock::now() + kShorteningTime;
        for (bool shortened = true; shortened && Clock::now() < end;) {
            const std::vector<Plan> plans = Shorter(found.plan);
            shortened = std::any_of(plans.begin(), plans.end(), [&](const Plan& plan) {
                return Clock::now() < end && StillFails(stage, plan, found);
            });
        }
        found_ = std::move(found);
    }

    static bool StillFails(Stage& stage, const Plan& plan, Found& found) {
        Tally uncounted;
        for (int i = 0; i < kTries; ++i) {
            if (const std::optional<std::string> what = stage.Play(plan, uncounted)) {
                found = {plan, *what};
                return true;
            }
        }
        return false;
    }

    const Options options_;
    const std::string folder_;
    const Clock::time_point end_ = Clock::now() + options_.time;
    std::atomic<uint64_t> next_;
    std::atomic<bool> isOver_{false};
    Tally tally_;
    std::optional<Found> found_; // by who set isOver_
};

void Report(const Tally& tally, std::chrono::duration<double> time) {
    uint64_t hard = 0, soft = 0;
    for (std::size_t call = 0; call < kCalls; ++call) {
        hard += tally.faults[call][Hard];
        soft += tally.faults[call][Soft];
        std::cout << kCallNames[call] << " " << tally.faults[call][Hard] << "+" << tally.faults[call][Soft]
                  << (call + 1 < kCalls ? ", " : "\n");
    }
    std::cout << tally.histories << " histories (" << double(tally.histories) / time.count() << " a second) of "
              << tally.sessions << " sessions, " << tally.programs << " of them the whole program's, and "
              << tally.operations << " rows; " << tally.kills << " kills, " << hard << " hard and " << soft
              << " soft faults" << std::endl;
}

// What a sanitizer is to be told, unless the caller has. GLib has no frame pointers, so what it leaks is known for its
// own by the slower way only.
void TellSanitizers() {
    setenv("LSAN_OPTIONS", "suppressions=" OMBRIVEL_SUPPRESSIONS "/lsan.supp:print_suppressions=0", 0);
    setenv("TSAN_OPTIONS", "halt_on_error=1:suppressions=" OMBRIVEL_SUPPRESSIONS "/tsan.supp", 0);
    const char* const given = std::getenv("ASAN_OPTIONS");
    const std::string options = given == nullptr ? "" : given;
    setenv("ASAN_OPTIONS", (options + ":verify_asan_link_order=0:fast_unwind_on_malloc=0").c_str(), 1);
}

} // namespace

int main(int count, char** words) {
    const Options options = OptionsFrom(count, words);
    std::signal(SIGPIPE, SIG_IGN);
    TellSanitizers();
    KeepMountsToOneself();
    std::string folder = OMBRIVEL_TORTURE_SCRATCH;
    fs::create_directories(folder);
    folder += "/XXXXXX";
    if (mkdtemp(folder.data()) == nullptr)
        return 2;
    const auto begin = Clock::now();
    Runner runner(options, folder);
    const std::optional<Found> found = runner.Run();
    Report(runner.Done(), Clock::now() - begin);
    std::error_code busy;
    fs::remove_all(folder, busy);
    if (!found)
        return 0;
    std::cout << found->what << found->plan << "Run it again with --seed " << found->plan.seed << std::endl;
    return 1;
}
