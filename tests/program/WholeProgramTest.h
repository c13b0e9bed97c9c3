#pragma once

#include "tests/program/Program.h"

#include <gtest/gtest.h>

#include <memory>

// The settings of a preferences file, with the defaults of a new one.
struct Settings {
    bool AutoQuit = true, LaunchArchives = true, MovePartsToTrash = true, ShowFilesAfter = true,
         SearchForUpdates = true;
};

// A test of the whole program: the real binary in a real window, on a desktop of the test's own, with files on a real
// disk. The scratch folder of a test that fails stays, with a picture of the screen.
class WholeProgramTest : public ::testing::Test {
protected:
    WholeProgramTest();
    ~WholeProgramTest() override;
    void TearDown() override;

    // Starts the program in the folder of the files.
    Program& Start(const Words& files);
    // Starts the program while another one runs, and waits until it ends, having handed its files over.
    int StartAgain(const Words& files);

    std::filesystem::path File(const std::string& name) const { return files_ / name; }
    std::filesystem::path Trashed(const std::string& name) const { return desktop.Trash() / name; }
    bool Exists(const std::string& name) const { return std::filesystem::exists(File(name)); }
    // Whether the file is there and holds just that.
    static bool Holds(const std::filesystem::path& file, const std::string& bytes);

    // A series of two parts, of which the second is still being downloaded: its glue waits until FinishDownload, or for
    // ever. Gives what the parts hold together.
    std::string WriteUnfinishedSeries(const std::string& base);
    void FinishDownload(const std::string& base);
    // Waits until the glue of such a series has nothing left to do but wait.
    void AwaitUnfinished(const std::string& base);
    // A series that is complete. Gives what its parts hold together.
    std::string WriteSeries(const std::string& base);

    std::filesystem::path PreferencesFile() const;
    static std::string PreferencesBytes(const Settings& settings, const std::string& language);
    void Prefer(const Settings& settings);

private:
    std::filesystem::path scratch_;
    std::filesystem::path files_;

protected:
    Desktop desktop;
    std::filesystem::path executable; // what is started
    Environment environment;          // in which it is started

private:
    std::unique_ptr<Program> NewRun(const Words& files);

    std::vector<std::unique_ptr<Program>> programs_; // end before their desktop does
    int starts_ = 0;
};
