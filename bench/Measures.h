#pragma once

#include "bench/Report.h"

#include <string>

// What to measure, and at which size.
struct BenchOptions {
    std::string folder; // on the disk to measure
    double scale = 1;   // 1 for the sizes that count, less for a quick look
    int rounds = 15;    // of what takes seconds
    std::string only;   // part of a measure's name, or empty for all

    int FewRounds() const { return (rounds + 4) / 5; } // of what takes longer
};

// Each adds its rows to the report. They run on a thread of their own beside the main thread with its windows.
void MeasureTransfers(const BenchOptions& options, Report& report);  // cut and glue on disk, tmpfs, btrfs, XFS
void MeasureManyParts(const BenchOptions& options, Report& report);  // 20,000 small parts
void MeasureDevices(const BenchOptions& options, Report& report);    // a cold disk, and a slow device
void MeasureLiveliness(const BenchOptions& options, Report& report); // event loop and memory under 16 operations
void MeasureStart(const BenchOptions& options, Report& report);      // start to first paint
void MeasureLookup(const BenchOptions& options, Report& report);     // texts by key
