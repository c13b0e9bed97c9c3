#include "tests/program/WholeProgramTest.h"

using AutoQuit = WholeProgramTest;

TEST_F(AutoQuit, WaitsForACutThatWaitsBehindADialogAndAGlueDoesNot) {
    const std::string letter = Pattern(1000);
    WriteFile(File("letter.txt"), letter);
    const std::string song = WriteSeries("song.flac");
    Program& program = StartUnfinished("film.mov");
    program.CloseMainWindow();
    const WindowId question = program.Dialog();
    EXPECT_EQ(StartAgain({"letter.txt", "song.flac.001"}), 0);
    AwaitShown({"song.flac"});
    EXPECT_EQ(program.Dialog(), question);
    FinishDownload("film.mov");
    AwaitShown({"song.flac", "film.mov"});
    program.Answer({"Escape"});
    program.Answer({"Return"});
    EXPECT_EQ(program.End(), 0);
    EXPECT_TRUE(Holds(File("song.flac"), song));
    EXPECT_TRUE(Holds(File("letter.txt.001"), letter));
}

// The second part has gone to the Trash with its series when its turn comes.
TEST_F(AutoQuit, ComesAfterACutThatIsCalledOffAndAFileThatHasGone) {
    WriteSeries("film.mov");
    WriteFile(File("letter.txt"), "x");
    Program& program = Start({"film.mov.001", "letter.txt", "film.mov.002"});
    program.Dialog();
    AwaitShown({"film.mov"});
    program.Answer({"Escape"});
    EXPECT_EQ(program.End(), 0);
    EXPECT_EQ(program.Errors(), "ombrivel: " + File("film.mov.002").string() + ": no such file\n");
    EXPECT_FALSE(Exists("film 1.mov") || Exists("film.mov.002"));
}

// As when the starts before it have glued its part, and have ended.
TEST_F(AutoQuit, ComesAtOnceWhenNoneOfTheFilesOfAStartIsThere) {
    const auto told = [&](const std::string& name) { return "ombrivel: " + File(name).string() + ": no such file\n"; };
    for (const bool wanted : {false, true}) {
        Prefer({.AutoQuit = wanted, .SearchForUpdates = false});
        Program& program = Start({"gone", "gone.001"});
        if (!wanted) {
            program.OnlyWindow();
            desktop.Press({"ctrl+q"});
        }
        EXPECT_EQ(program.End(), 0);
        EXPECT_EQ(program.Errors(), told("gone") + told("gone.001"));
    }
}

TEST_F(AutoQuit, IsNotCalledOffByStartsForFilesThatAreNotThere) {
    const std::string gone = "ombrivel: " + File("gone.001").string() + ": no such file\n";
    Program& program = StartUnfinished("film.mov");
    Program& second = Start({"gone.001"});
    EXPECT_EQ(second.End(), 0);
    EXPECT_EQ(second.Errors(), gone); // where it was typed, and only there
    EXPECT_EQ(program.Errors(), "");
    desktop.Run({"dbus-send", "--print-reply", "--dest=example.halvrick.Ombrivel", "/example/halvrick/Ombrivel",
                 "org.freedesktop.Application.Open", "array:string:file://" + File("gone.001").string()});
    FinishDownload("film.mov");
    EXPECT_EQ(program.End(), 0);
    EXPECT_EQ(program.Errors(), gone);
}

using QuitQuestion = WholeProgramTest;

// They lie asleep. One that still copied might see its stop before the process ends, and begin to move its files to the
// Trash.
TEST_F(QuitQuestion, CancelLetsAllRunOnAndQuitEndsAllAtOnceAsItStands) {
    for (const char* const base : {"film.mov", "disk.iso"})
        WriteUnfinishedSeries(base);
    Program& program = Start({"film.mov.001", "disk.iso.001"});
    AwaitUnfinished("film.mov");
    AwaitUnfinished("disk.iso");
    program.CloseMainWindow();
    program.Answer({"Escape"});
    FinishDownload("disk.iso");
    AwaitShown({"disk.iso"});

    program.CloseMainWindow();
    program.Dialog();
    desktop.Press({"Return"});
    EXPECT_EQ(program.End(), 0);
    EXPECT_TRUE(Holds(File("film.mov"), ReadFile(File("film.mov.001"))));
    EXPECT_TRUE(Exists("film.mov.002.download"));
}

// The list has become empty behind the question, which neither goes away nor lets the program end by itself.
TEST_F(QuitQuestion, StandsOnWhenNothingIsLeftAndQuitsAllTheSame) {
    WriteFile(File("letter.txt"), "x");
    Program& program = StartUnfinished("film.mov");
    program.CloseMainWindow();
    const WindowId question = program.Dialog();
    FinishDownload("film.mov");
    AwaitShown({"film.mov"});
    EXPECT_EQ(StartAgain({"letter.txt"}), 0); // by then it would have ended
    EXPECT_EQ(program.Dialog(), question);
    desktop.Press({"Return"});
    EXPECT_EQ(program.End(), 0);
    const std::string unasked = File("letter.txt").string() + ": the program ended before it was cut\n";
    EXPECT_EQ(program.Errors(), "ombrivel: " + unasked);
}
