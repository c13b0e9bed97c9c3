#include "tests/program/WholeProgramTest.h"

#include <csignal>

namespace fs = std::filesystem;

using Preferences = WholeProgramTest;

TEST_F(Preferences, ArePutToUseAndSavedWhenASignalEndsTheWork) {
    const Settings settings{
        .AutoQuit = false, .MovePartsToTrash = false, .ShowFilesAfter = false, .SearchForUpdates = false};
    WriteFile(PreferencesFile(), PreferencesBytes(settings, "Klingon"));
    const std::string film = WriteSeries("film.mov");
    Program& program = Start({"film.mov.001"});
    Await("the film", [&] { return Holds(File("film.mov"), film); });
    // The one that follows in the same run is the proof that the first has not ended it.
    WriteSeries("letters.zip");
    EXPECT_EQ(StartAgain({"letters.zip.001"}), 0);
    Await("the archive opened", [&] { return desktop.Opened() == Words{File("letters.zip")}; });
    EXPECT_TRUE(Exists("film.mov.001"));
    EXPECT_TRUE(Exists("letters.zip.002"));
    EXPECT_TRUE(desktop.Shown().empty());

    WriteUnfinishedSeries("song.flac");
    EXPECT_EQ(StartAgain({"song.flac.001"}), 0);
    AwaitUnfinished("song.flac");
    fs::remove(PreferencesFile()); // so that what is there afterwards has been saved
    kill(program.Id(), SIGTERM);
    EXPECT_EQ(program.End(), 0);
    EXPECT_EQ(ReadFile(PreferencesFile()), PreferencesBytes(settings, "English")); // the language is the system's
}

TEST_F(Preferences, ShiftHeldAtTheStartResetsThem) {
    Prefer({.AutoQuit = false, .MovePartsToTrash = false, .ShowFilesAfter = false});
    WriteSeries("film.mov");
    desktop.Do({"keydown", "shift"});
    EXPECT_EQ(Start({"film.mov.001"}).End(), 0);
    EXPECT_TRUE(fs::exists(Trashed("film.mov.001")));
    EXPECT_EQ(ReadFile(PreferencesFile()), PreferencesBytes({}, "English"));
}

// The toolkit ends the process while workers run through the program's code.
TEST_F(Preferences, AreSavedWhenTheDisplayGoesInTheMiddleOfAGlue) {
    const Settings settings{.AutoQuit = false, .MovePartsToTrash = false, .SearchForUpdates = false};
    Prefer(settings);
    for (int part = 1001; part < 2000; ++part)
        WriteFile(File("film.mov." + std::to_string(part).substr(1)), "a");
    Program& program = Start({"film.mov.001"});
    Await("a glue under way", [&] { return Exists("film.mov"); });
    fs::remove(PreferencesFile());
    desktop.LoseDisplay();
    EXPECT_EQ(program.End(), 1);
    EXPECT_EQ(ReadFile(PreferencesFile()), PreferencesBytes(settings, "English"));
}
