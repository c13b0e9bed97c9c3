#pragma once

#include <functional>
#include <string>
#include <vector>

// What something cost.
struct Cost {
    double wall = 0; // seconds
    double cpu = 0;  // seconds of processor time, user and system
};

// Runs `work` in this process and measures it; processor time of all threads counts.
Cost CostOf(const std::function<void()>& work);

// Runs a command to its end, in that folder, and measures it. Throws if the command fails.
Cost CostOfCommand(const std::vector<std::string>& words, const std::string& folder);

// Two sides of a measure.
struct Ratio {
    double ratio = 0;
    double ours = 0, peers = 0; // mean of the cheaper half of the rounds, seconds
};
struct Comparison {
    Ratio wall, cpu;
};

// Pair by pair, A B B A A B ..., that many.
Comparison Compare(int rounds, const std::function<Cost()>& ours, const std::function<Cost()>& peer);
