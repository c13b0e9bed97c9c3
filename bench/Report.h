#pragma once

#include "bench/Cost.h"

#include <string>
#include <vector>

// The table of results.
class Report {
public:
    // A figure with the most that it may be. `what` says what the figure is, with its unit.
    void Add(const std::string& measure, const std::string& what, double figure, double atMost);
    void Add(const std::string& measure, const std::string& what, const Ratio& ratio, double atMost);
    // A measure that could not be taken here, and why.
    void Skip(const std::string& measure, const std::string& reason);

    // Writes the table to standard output, and the same as JSON to a file. True if every figure is within its bound.
    bool Write(const std::string& jsonPath) const;

private:
    struct Row {
        std::string measure, what;
        double figure, atMost;
        std::string milliseconds; // of both sides
        bool skipped;
        bool Holds() const { return skipped || figure <= atMost; }
    };
    void AddRow(const Row& row);

    std::vector<Row> rows_;
};
