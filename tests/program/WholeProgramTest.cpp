#include "tests/program/WholeProgramTest.h"

#include <unistd.h>

namespace fs = std::filesystem;

// The folder is another one for every run: a helper of the last one may still be about to write down what it opens.
WholeProgramTest::WholeProgramTest()
    : scratch_(fs::path(OMBRIVEL_SCRATCH) /
               (::testing::UnitTest::GetInstance()->current_test_info()->name() + std::to_string(getpid()))) {
    fs::create_directories(File(""));
    Prefer({.SearchForUpdates = false}); // most tests have no business with a network
    environment["XDG_ACTIVATION_TOKEN"] = "a launcher's";
}

void WholeProgramTest::TearDown() {
    if (HasFailure()) {
        desktop.Run({"import", "-silent", "-window", "root", scratch_ / "screen.png"});
        std::printf("The screen, the files and the outputs are in %s\n", scratch_.c_str());
        for (const auto& program : programs_)
            std::printf("A run of the program told: %s\n", program->Errors().c_str());
    }
    programs_.clear();
    if (!HasFailure())
        fs::remove_all(scratch_);
}

Program& WholeProgramTest::Start(const Words& files) {
    Words command{executable};
    command.insert(command.end(), files.begin(), files.end());
    const fs::path log = scratch_ / "logs" / ("program" + std::to_string(programs_.size()));
    programs_.push_back(std::make_unique<Program>(desktop, command, Process::Setting{environment, File(""), log}));
    return *programs_.back();
}

Program& WholeProgramTest::StartUnfinished(const std::string& base) {
    WriteUnfinishedSeries(base);
    Program& program = Start({base + ".001"});
    AwaitUnfinished(base);
    return program;
}

void WholeProgramTest::AwaitShown(const Words& names) const {
    Words paths;
    for (const std::string& name : names)
        paths.push_back(File(name));
    Await("the file shown", [&] { return desktop.Shown() == paths; });
}

std::string WholeProgramTest::WriteSeries(const std::string& base) const {
    constexpr std::size_t kPartSize = 300'000;
    const std::string whole = Pattern(kPartSize * 2 - base.size());
    WriteFile(File(base + ".001"), whole.substr(0, kPartSize));
    WriteFile(File(base + ".002"), whole.substr(kPartSize));
    return whole;
}

void WholeProgramTest::WriteUnfinishedSeries(const std::string& base) const {
    WriteSeries(base);
    fs::rename(File(base + ".002"), File(base + ".002.download"));
}

void WholeProgramTest::FinishDownload(const std::string& base) const {
    fs::rename(File(base + ".002.download"), File(base + ".002"));
}

void WholeProgramTest::AwaitUnfinished(const std::string& base) const {
    Await("the first part in " + base, [&] { return Holds(File(base), ReadFile(File(base + ".001"))); });
}

std::string WholeProgramTest::PreferencesBytes(const Settings& settings, const std::string& language) {
    std::string bytes;
    for (const std::string& text : {std::string("Ombrivel Preferences Version " OMBRIVEL_LONG_VERSION), language})
        bytes += static_cast<char>(text.size()) + text;
    for (const bool value : {settings.AutoQuit, settings.LaunchArchives, settings.MovePartsToTrash,
                             settings.ShowFilesAfter, settings.SearchForUpdates})
        bytes += value ? '\1' : '\0';
    return bytes;
}
