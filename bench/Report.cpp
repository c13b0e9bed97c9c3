#include "bench/Report.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace {

std::string Milliseconds(double seconds) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f", seconds * 1000);
    return text.data();
}

} // namespace

void Report::Add(const std::string& measure, const std::string& what, double figure, double atMost) {
    AddRow({measure, what, figure, atMost, "", false});
}

void Report::Add(const std::string& measure, const std::string& what, const Ratio& ratio, double atMost) {
    AddRow({measure, what, ratio.ratio, atMost, Milliseconds(ratio.ours) + " / " + Milliseconds(ratio.peers), false});
}

void Report::AddRow(const Row& row) {
    rows_.push_back(row);
    std::fprintf(stderr, "%s, %s: %.3f (at most %.3g) %s\n", row.measure.c_str(), row.what.c_str(), row.figure,
                 row.atMost, row.milliseconds.c_str());
}

void Report::Skip(const std::string& measure, const std::string& reason) {
    rows_.push_back({measure, reason, 0, 0, "", true});
    std::fprintf(stderr, "%s: skipped: %s\n", measure.c_str(), reason.c_str());
}

bool Report::Write(const std::string& jsonPath) const {
    std::printf(
        "\n| Measure | Figure | Measured | At most | Milliseconds, ours / peer | |\n|---|---|---|---|---|---|\n");
    std::FILE* const json = std::fopen(jsonPath.c_str(), "w");
    if (json == nullptr) {
        std::perror(jsonPath.c_str());
        return false;
    }
    std::fprintf(json, "[");
    const char* separator = "\n";
    for (const Row& row : rows_) {
        if (row.skipped) {
            std::printf("| %s | skipped: %s | | | | |\n", row.measure.c_str(), row.what.c_str());
            std::fprintf(json, "%s  {\"measure\": \"%s\", \"skipped\": \"%s\"}", separator, row.measure.c_str(),
                         row.what.c_str());
        } else {
            std::printf("| %s | %s | %.3f | %.3g | %s | %s |\n", row.measure.c_str(), row.what.c_str(), row.figure,
                        row.atMost, row.milliseconds.c_str(), row.Holds() ? "holds" : "FAILS");
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
