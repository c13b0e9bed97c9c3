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

constexpr std::chrono::seconds kPatience{40}; // with room for a busy machine

// Looks again and again until it is so. Throws, which fails the test, when the time limit passes first.
void Await(const std::string& what, const std::function<bool()>& isSo, std::chrono::milliseconds limit = kPatience);

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
    std::string Output() const { return ReadFile(log_ + ".out"); }
    std::string Errors() const { return ReadFile(log_ + ".err"); }

    // Nothing while it runs; 128 and the signal's number if a signal ended it.
    std::optional<int> ExitCode();
    // Waits for the end and gives the exit code.
    int End(std::chrono::milliseconds limit = kPatience);

private:
    std::string log_;
    pid_t id_ = -1;
    std::optional<int> exitCode_;
};

// Waits until scripts/virtual-desktop has started its desktop. Gives the variables that lead there, none if it fails.
Environment AwaitDesktop(Process& process);
