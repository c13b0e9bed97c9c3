// Measures the program against the plain tools that do the same work, in one run.

#include "bench/Measures.h"
#include "bench/Scratch.h"
#include "core/App.h"
#include "framework/threads/MainThread.h"
#include "settings/claPreferences.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <string>
#include <thread>

namespace {

const char* const kUsage = "usage: ombrivel-bench [--folder DIR] [--scale X] [--rounds N] [--only NAME] [--json FILE]\n"
                           "  --only takes one of: transfers devices parts liveliness start lookup\n";

struct Arguments {
    BenchOptions options;
    std::string json;
};

Arguments Parse(int count, char** words) {
    Arguments arguments{{"build/bench", 1, 15, ""}, "build/bench.json"};
    for (int i = 1; i < count; i += 2) {
        const std::string name = i + 1 < count ? words[i] : "";
        const std::string value = i + 1 < count ? words[i + 1] : "";
        if (name == "--folder")
            arguments.options.folder = value;
        else if (name == "--scale")
            arguments.options.scale = std::stod(value);
        else if (name == "--rounds")
            arguments.options.rounds = std::stoi(value);
        else if (name == "--only")
            arguments.options.only = value;
        else if (name == "--json")
            arguments.json = value;
        else {
            std::fputs(kUsage, stderr);
            std::_Exit(2);
        }
    }
    return arguments;
}

// Where the program that is measured is at home.
std::unique_ptr<Scratch> home;

[[noreturn]] void End(int exitCode) {
    home = nullptr;
    std::fflush(nullptr);
    std::_Exit(exitCode);
}

// Nothing but the moving of bytes is to be measured.
void QuietPreferences() {
    claPreferences& preferences = *App::Instance()->Preferences;
    preferences.MovePartsToTrash = false;
    preferences.LaunchArchives = false;
    preferences.ShowFilesAfter = false;
    preferences.AutoQuit = false;
}

void Measure(const Arguments& arguments) {
    RunOnMainThread(QuietPreferences);
    Report report;
    const auto wanted = [&](const char* name) {
        return arguments.options.only.empty() || arguments.options.only == name;
    };
    try {
        if (wanted("lookup"))
            MeasureLookup(arguments.options, report);
        if (wanted("start"))
            MeasureStart(arguments.options, report);
        if (wanted("liveliness"))
            MeasureLiveliness(arguments.options, report);
        if (wanted("parts"))
            MeasureManyParts(arguments.options, report);
        if (wanted("devices"))
            MeasureDevices(arguments.options, report);
        if (wanted("transfers"))
            MeasureTransfers(arguments.options, report);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        End(2);
    }
    End(report.Write(arguments.json) ? 0 : 1);
}

} // namespace

int main(int count, char** words) {
    const Arguments arguments = Parse(count, words);
    home = std::make_unique<Scratch>(arguments.options.folder);
    // The user's own preferences, trash and running instance stay out of it.
    setenv("HOME", home->Path().c_str(), 1);
    setenv("XDG_CONFIG_HOME", home->Path().c_str(), 1);
    setenv("XDG_DATA_HOME", home->Path().c_str(), 1);
    setenv("XDG_RUNTIME_DIR", home->Path().c_str(), 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    unsetenv("DBUS_SESSION_BUS_ADDRESS");

    PostToMainThread([arguments] { std::thread(Measure, arguments).detach(); });
    return RunApplication(1, words, OmbrivelIdentity(), Startup);
}
