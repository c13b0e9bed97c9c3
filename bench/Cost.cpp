#include "bench/Cost.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <numeric>
#include <stdexcept>

namespace {

double Seconds(const timeval& time) {
    return double(time.tv_sec) + double(time.tv_usec) / 1e6;
}

double ProcessorTime(const rusage& usage) {
    return Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
}

double Now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// What else the machine does mostly adds to a cost, so the dearer half of the rounds tells little. The mean of the
// other half wavers less from run to run than the least or the median of all.
double Typical(const std::vector<Cost>& costs, double Cost::*figure) {
    std::vector<double> sorted(costs.size());
    std::transform(costs.begin(), costs.end(), sorted.begin(), [figure](const Cost& cost) { return cost.*figure; });
    std::sort(sorted.begin(), sorted.end());
    sorted.resize((sorted.size() + 1) / 2);
    return std::accumulate(sorted.begin(), sorted.end(), 0.0) / double(sorted.size());
}

Ratio RatioOf(const std::vector<Cost>& ours, const std::vector<Cost>& peers, double Cost::*figure) {
    const double mine = Typical(ours, figure);
    const double theirs = Typical(peers, figure);
    return {mine / theirs, mine, theirs};
}

[[noreturn]] void Become(const std::vector<std::string>& words, const std::string& folder) {
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (const std::string& word : words)
        pointers.push_back(const_cast<char*>(word.c_str()));
    pointers.push_back(nullptr);
    if (chdir(folder.c_str()) == 0)
        execvp(pointers[0], pointers.data());
    _exit(127);
}

} // namespace

Cost CostOf(const std::function<void()>& work) {
    rusage before{};
    rusage after{};
    getrusage(RUSAGE_SELF, &before);
    const double start = Now();
    work();
    const double wall = Now() - start;
    getrusage(RUSAGE_SELF, &after);
    return {wall, ProcessorTime(after) - ProcessorTime(before)};
}

Cost CostOfCommand(const std::vector<std::string>& words, const std::string& folder) {
    const double start = Now();
    const pid_t child = vfork();
    if (child == 0)
        Become(words, folder);
    int status = 0;
    rusage usage{};
    if (child > 0)
        wait4(child, &status, 0, &usage);
    const double wall = Now() - start;
    if (child < 0 || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        throw std::runtime_error(words[0] + " failed");
    return {wall, ProcessorTime(usage)};
}

Comparison Compare(int rounds, const std::function<Cost()>& ours, const std::function<Cost()>& peer) {
    std::vector<Cost> mine;
    std::vector<Cost> theirs;
    for (int round = 0; round < rounds; ++round) {
        // In turn, as each finds the memory as the other has left it.
        if (round % 2 == 0)
            mine.push_back(ours());
        theirs.push_back(peer());
        if (round % 2 != 0)
            mine.push_back(ours());
    }
    return {RatioOf(mine, theirs, &Cost::wall), RatioOf(mine, theirs, &Cost::cpu)};
}
