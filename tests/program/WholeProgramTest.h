#pragma once

#include "tests/program/Program.h"

#include <gtest/gtest.h>

#include <unistd.h>

// The settings of a preferences file, with the defaults of a new one.
struct Settings {
    bool AutoQuit = true, LaunchArchives = true, MovePartsToTrash = true, ShowFilesAfter = true,
         SearchForUpdates = true;
};

// A test of the whole program: the real binary in a real window, on a desktop of the test's own, with files on a real
// disk. The scratch folder of a test that fails stays, with a picture of the screen.
class WholeProgramTest : public ::testing::Test {
    // Another one for every run: a helper of the last one may still be about to write down what it opens.
    const std::filesystem::path scratch_ =
        std::filesystem::path(OMBRIVEL_SCRATCH) /
        (::testing::UnitTest::GetInstance()->current_test_info()->name() + std::to_string(getpid()));

protected:
    WholeProgramTest() {
        std::filesystem::create_directories(File(""));
        Prefer({.SearchForUpdates = false}); // most tests have no business with a network
        environment["XDG_ACTIVATION_TOKEN"] = "a launcher's";
    }

    void TearDown() override {
        if (HasFailure()) {
            desktop.Run({"import", "-silent", "-window", "root", scratch_ / "screen.png"});
            std::printf("The screen, the files and the outputs are in %s\n", scratch_.c_str());
            for (const auto& program : programs_)
                std::printf("A run of the program told: %s\n", program->Errors().c_str());
        }
        programs_.clear();
        if (!HasFailure())
            std::filesystem::remove_all(scratch_);
    }

    // Starts the program in the folder of the files.
    Program& Start(const Words& files) {
        Words command{executable};
        command.insert(command.end(), files.begin(), files.end());
        const std::filesystem::path log = scratch_ / "logs" / ("program" + std::to_string(programs_.size()));
        programs_.push_back(std::make_unique<Program>(desktop, command, Process::Setting{environment, File(""), log}));
        return *programs_.back();
    }
    // Starts the program while another one runs, and waits until it ends, having handed its files over.
    int StartAgain(const Words& files) { return Start(files).End(); }
    // Glues such a series (see below) as far as it goes.
    Program& StartUnfinished(const std::string& base) {
        WriteUnfinishedSeries(base);
        Program& program = Start({base + ".001"});
        AwaitUnfinished(base);
        return program;
    }

    std::filesystem::path File(const std::string& name) const { return scratch_ / "files" / name; }
    std::filesystem::path Trashed(const std::string& name) const { return desktop.Trash() / name; }
    bool Exists(const std::string& name) const { return std::filesystem::exists(File(name)); }
    static bool Holds(const std::filesystem::path& file, const std::string& bytes) { return ReadFile(file) == bytes; }
    // Asked for by a helper, which may come to it after the program's end.
    void AwaitShown(const Words& names) const {
        Words paths;
        for (const std::string& name : names)
            paths.push_back(File(name));
        Await("the file shown", [&] { return desktop.Shown() == paths; });
    }

    // A series of two parts. Gives what they hold together.
    std::string WriteSeries(const std::string& base) const {
        constexpr std::size_t kPartSize = 300'000;
        const std::string whole = Pattern(kPartSize * 2 - base.size());
        WriteFile(File(base + ".001"), whole.substr(0, kPartSize));
        WriteFile(File(base + ".002"), whole.substr(kPartSize));
        return whole;
    }
    // The second part is still being downloaded: the glue waits until FinishDownload, or for ever.
    void WriteUnfinishedSeries(const std::string& base) const {
        WriteSeries(base);
        std::filesystem::rename(File(base + ".002"), File(base + ".002.download"));
    }
    void FinishDownload(const std::string& base) const {
        std::filesystem::rename(File(base + ".002.download"), File(base + ".002"));
    }
    // Waits until the glue of such a series has nothing left to do but wait.
    void AwaitUnfinished(const std::string& base) const {
        Await("the first part in " + base, [&] { return Holds(File(base), ReadFile(File(base + ".001"))); });
    }

    std::filesystem::path PreferencesFile() const {
        return desktop.Configuration() / "Ombrivel " OMBRIVEL_LONG_VERSION " Preferences";
    }
    static std::string PreferencesBytes(const Settings& settings, const std::string& language) {
        std::string bytes;
        for (const std::string& text : {std::string("Ombrivel Preferences Version " OMBRIVEL_LONG_VERSION), language})
            bytes += static_cast<char>(text.size()) + text;
        for (const bool value : {settings.AutoQuit, settings.LaunchArchives, settings.MovePartsToTrash,
                                 settings.ShowFilesAfter, settings.SearchForUpdates})
            bytes += value ? '\1' : '\0';
        return bytes;
    }
    void Prefer(const Settings& settings) const { WriteFile(PreferencesFile(), PreferencesBytes(settings, "English")); }

    Desktop desktop{scratch_};
    std::filesystem::path executable = OMBRIVEL_PROGRAM; // what is started
    Environment environment = desktop.Variables();       // in which it is started

private:
    std::vector<std::unique_ptr<Program>> programs_; // end before their desktop does
};
