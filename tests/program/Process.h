#pragma once

#include "tests/support/Bytes.h"

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <sys/types.h>
#include <vector>

using Environment = std::map<std::string, std::string>;
using Words = std::vector<std::string>;

constexpr std::chrono::seconds kPatience{20};
constexpr std::chrono::seconds kAtOnce{2}; // with room for a busy machine

// Looks again and again until it is so. Throws, which fails the test, when the time limit passes first.
void Await(const std::string& what, const std::function<bool()>& isSo, std::chrono::milliseconds limit = kPatience);

std::vector<std::string> Lines(const std::string& text);

// A child process. Its output goes to files, in which the tests look. It never outlives the test binary, not even one
// that is killed.
class Process {
public:
    struct Setting {
        Environment environment;
        std::filesystem::path folder; // to run in
        std::filesystem::path log;    // both outputs go here, with ".out" and ".err" appended
    };

    Process(const Words& command, const Setting& setting);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    pid_t Id() const { return id_; }
    std::string Output() const;
    std::string Errors() const;
    void Signal(int signal);

    // Nothing while it runs; 128 and the signal's number if a signal ended it.
    std::optional<int> ExitCode();
    // Waits for something that this process brings about. Does not wait on when the process has ended.
    void Await(const std::string& what, const std::function<bool()>& isSo);
    // Waits for the end.
    int Wait(std::chrono::milliseconds limit = kPatience);

private:
    std::string name_;
    std::filesystem::path log_;
    pid_t id_ = -1;
    std::optional<int> exitCode_;
};

// Takes over what our children leave behind (helpers that put themselves into the background), so that EndOrphans finds
// it.
void AdoptOrphans();
void EndOrphans();
