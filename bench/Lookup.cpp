#include "bench/Cost.h"
#include "bench/Measures.h"
#include "bench/Scratch.h"
#include "framework/files/FolderItem.h"
#include "framework/files/SpecialFolder.h"
#include "framework/threads/MainThread.h"
#include "settings/Multilingual.h"

#include <fstream>

namespace {

constexpr int kLookups = 200000;

// Seconds for many lookups, spread over a file of that many keys.
double TimeWith(const Scratch& scratch, int keys) {
    std::ofstream file(scratch.At("strings.txt"));
    for (int i = 0; i < keys; ++i)
        file << "Key" << i << ": text of the key\n";
    file.close();
    return OnMainThread([&] {
        Multilingual::LoadLanguageFile(New<FolderItem>(scratch.At("strings.txt")));
        const auto lookups = [keys] {
            for (int i = 0; i < kLookups; ++i)
                Multilingual::GetString("Key" + std::to_string((i * 7) % keys % 100));
        };
        lookups();
        return CostOf(lookups).cpu;
    });
}

} // namespace

void MeasureLookup(const BenchOptions& options, Report& report) {
    const Scratch scratch(options.folder);
    const double few = TimeWith(scratch, 100);
    const double many = TimeWith(scratch, 100000);
    report.Add("text by key, 100,000 keys", "time, multiple of 100 keys", many / few, 2);
    RunOnMainThread([] {
        Multilingual::LoadLanguageFile(
            SpecialFolder::Resources()->Child("Multilingual")->Child("English")->Child("strings.txt"));
    });
}
