#pragma once

#include "tests/program/Program.h"

#include <gtest/gtest.h>

// The settings of a preferences file, with the defaults of a new one.
struct Settings {
    bool AutoQuit = true, LaunchArchives = true, MovePartsToTrash = true, ShowFilesAfter = true,
         SearchForUpdates = true;
};

// A test of the whole program: the real binary in a real window, on a desktop of the test's own, with files on a real
// disk. The scratch folder of a test that fails stays, with a picture of the screen.
class WholeProgramTest : public ::testing::Test {
    const std::filesystem::path scratch_;

protected:
    WholeProgramTest();
    void TearDown() override;

    // Starts the program in the folder of the files.
    Program& Start(const Words& files);
    // Starts the program while another one runs, and waits until it ends, having handed its files over.
    int StartAgain(const Words& files) { return Start(files).End(); }
    // Glues such a series (see below) as far as it goes.
    Program& StartUnfinished(const std::string& base);

    std::filesystem::path File(const std::string& name) const { return scratch_ / "files" / name; }
    std::filesystem::path Trashed(const std::string& name) const { return desktop.Trash() / name; }
    bool Exists(const std::string& name) const { return std::filesystem::exists(File(name)); }
    static bool Holds(const std::filesystem::path& file, const std::string& bytes) { return ReadFile(file) == bytes; }
    // Asked for by a helper, which may come to it after the program's end.
    void AwaitShown(const Words& names) const;

    // A series of two parts. Gives what they hold together.
    std::string WriteSeries(const std::string& base) const;
    // The second part is still being downloaded: the glue waits until FinishDownload, or for ever.
    void WriteUnfinishedSeries(const std::string& base) const;
    void FinishDownload(const std::string& base) const;
    // Waits until the glue of such a series has nothing left to do but wait.
    void AwaitUnfinished(const std::string& base) const;

    std::filesystem::path PreferencesFile() const {
        return desktop.Configuration() / "Ombrivel " OMBRIVEL_LONG_VERSION " Preferences";
    }
    static std::string PreferencesBytes(const Settings& settings, const std::string& language);
    void Prefer(const Settings& settings) const { WriteFile(PreferencesFile(), PreferencesBytes(settings, "English")); }

    Desktop desktop{scratch_};
    std::filesystem::path executable = OMBRIVEL_PROGRAM; // what is started
    Environment environment = desktop.Variables();       // in which it is started

private:
    std::vector<std::unique_ptr<Program>> programs_; // end before their desktop does
};
