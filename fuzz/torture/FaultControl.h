#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace Torture {

// The calls that faults.cpp stands in for. Thread is the making of one by the main thread.
enum class Call : uint8_t { Open, Read, Write, Allocate, Clone, KernelCopy, Rename, Sync, Close, Stat, Thread };
constexpr std::size_t kCalls = 11;
constexpr const char* kCallNames[kCalls] = {"open",   "read",  "write", "fallocate", "clone", "kernel copy",
                                            "rename", "fsync", "close", "fstat",     "thread"};

// A hard fault is an error that there is no way around; a soft one is a short count, an interruption, or a refusal of
// what can be done otherwise.
enum Severity : uint8_t { Hard, Soft };

constexpr uint32_t kOften = 65536; // a rate of always

// Lies in a file that the process under torture and its runner both map. Only files below the folder are concerned.
struct FaultControl {
    std::atomic<uint32_t> armed;
    std::atomic<uint64_t> random;
    std::atomic<uint32_t> rates[kCalls][2]; // of kOften, by severity
    std::atomic<uint32_t> hits[kCalls][2];
    char folder[1024]; // with a slash at its end
};

constexpr const char* kControlVariable = "OMBRIVEL_FAULTS"; // names that file

} // namespace Torture
