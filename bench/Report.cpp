#include "bench/Report.h"

#include <algorithm>
#include <cstdio>

void Report::Add(const std::string& measure, const std::string& what, double figure, double atMost) {
    rows_.push_back({measure, what, figure, atMost, false});
    std::fprintf(stderr, "%s, %s: %.3f (at most %.3g)\n", measure.c_str(), what.c_str(), figure, atMost);
}

void Report::Skip(const std::string& measure, const std::string& reason) {
    rows_.push_back({measure, reason, 0, 0, true});
    std::fprintf(stderr, "%s: skipped: %s\n", measure.c_str(), reason.c_str());
}

bool Report::Write(const std::string& jsonPath) const {
    std::printf("\n| Measure | Figure | Measured | At most | |\n|---|---|---|---|---|\n");
    std::FILE* const json = std::fopen(jsonPath.c_str(), "w");
    if (json == nullptr) {
        std::perror(jsonPath.c_str());
        return false;
    }
    std::fprintf(json, "[");
    const char* separator = "\n";
    for (const Row& row : rows_) {
        if (row.skipped) {
            std::printf("| %s | skipped: %s | | | |\n", row.measure.c_str(), row.what.c_str());
            std::fprintf(json, "%s  {\"measure\": \"%s\", \"skipped\": \"%s\"}", separator, row.measure.c_str(),
                         row.what.c_str());
        } else {
            std::printf("| %s | %s | %.3f | %.3g | %s |\n", row.measure.c_str(), row.what.c_str(), row.figure,
                        row.atMost, row.Holds() ? "holds" : "FAILS");
            std::fprintf(json,
                         "%s  {\"measure\": \"%s\", \"figure\": \"%s\", \"measured\": %.6f, \"at_most\": %.6f, "
                         "\"holds\": %s}",
                         separator, row.measure.c_str(), row.what.c_str(), row.figure, row.atMost,
                         row.Holds() ? "true" : "false");
        }
        separator = ",\n";
    }
    std::fprintf(json, "\n]\n");
    std::fclose(json);
    return std::all_of(rows_.begin(), rows_.end(), [](const Row& row) { return row.Holds(); });
}
