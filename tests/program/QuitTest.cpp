#include "tests/program/WholeProgramTest.h"

using AutoQuit = WholeProgramTest;

TEST_F(AutoQuit, WaitsForTheFilesThatWaitBehindADialog) {
    WriteUnfinishedSeries("film.mov");
    const std::string song = WriteSeries("song.flac");
    Program& program = Start({"film.mov.001"});
    AwaitUnfinished("film.mov");
    program.OnlyWindow();
    desktop.Press({"ctrl+question"});
    program.Dialog();
    EXPECT_EQ(StartAgain({"song.flac.001"}), 0);
    FinishDownload("film.mov");
    Await("the film shown", [&] { return desktop.Shown().size() == 1; });
    program.Answer({"Return"});
    EXPECT_EQ(program.End(), 0); // after the song
    EXPECT_TRUE(Holds(File("song.flac"), song));
}

TEST_F(AutoQuit, ComesWithAStopToo) {
    WriteUnfinishedSeries("film.mov");
    Program& program = Start({"film.mov.001"});
    AwaitUnfinished("film.mov");
    program.ClickStop(0);
    EXPECT_EQ(program.End(kAtOnce), 0);
    EXPECT_FALSE(Exists("film.mov"));
    EXPECT_TRUE(Holds(Trashed("film.mov"), ReadFile(File("film.mov.001"))));
    EXPECT_TRUE(Exists("film.mov.002.download"));
    EXPECT_TRUE(desktop.Shown().empty());
}

using QuitQuestion = WholeProgramTest;

TEST_F(QuitQuestion, CancelLetsEverythingRunOn) {
    const std::string film = WriteUnfinishedSeries("film.mov");
    Program& program = Start({"film.mov.001"});
    AwaitUnfinished("film.mov");
    program.CloseMainWindow();
    program.Answer({"Escape"});
    FinishDownload("film.mov");
    EXPECT_EQ(program.End(), 0); // of itself, after the glue
    EXPECT_TRUE(Holds(File("film.mov"), film));
}

// They lie asleep. One that still copied might see its stop before the process ends, and begin to move its files to the
// Trash.
TEST_F(QuitQuestion, QuitEndsManyOperationsAtOnceAndLeavesTheirFilesAsTheyStand) {
    constexpr int kOperations = 20;
    Words bases, parts;
    for (int i = 0; i < kOperations; ++i) {
        bases.push_back("film" + std::to_string(100 + i) + ".mov");
        parts.push_back(bases.back() + ".001");
        WriteUnfinishedSeries(bases.back());
    }
    Program& program = Start(parts);
    for (const std::string& base : bases)
        AwaitUnfinished(base);
    program.CloseMainWindow();
    program.Dialog();
    desktop.Press({"Return"});
    EXPECT_EQ(program.End(kAtOnce), 0);
    for (const std::string& base : bases) {
        EXPECT_TRUE(Holds(File(base), ReadFile(File(base + ".001"))));
        EXPECT_TRUE(Exists(base + ".002.download"));
    }
}

// The list has become empty behind the question, which neither goes away nor lets the program end by itself.
TEST_F(QuitQuestion, StandsOnWhenNothingIsLeftAndBothAnswersCount) {
    Words shown;
    for (const std::string key : {"Escape", "Return"}) {
        const std::string base = key + ".mov";
        shown.push_back(File(base));
        const std::string film = WriteUnfinishedSeries(base);
        Program& program = Start({base + ".001"});
        AwaitUnfinished(base);
        program.CloseMainWindow();
        const WindowId question = program.Dialog();
        FinishDownload(base);
        Await("the film shown", [&] { return desktop.Shown() == shown; });
        EXPECT_TRUE(Holds(File(base), film));
        EXPECT_EQ(StartAgain({}), 0); // by then the program would have ended
        EXPECT_EQ(program.Dialog(), question);
        desktop.Press({key});
        if (key == "Escape") {
            program.OnlyWindow();
            EXPECT_EQ(StartAgain({}), 0);
            program.CloseMainWindow(); // which asks no more
        }
        EXPECT_EQ(program.End(kAtOnce), 0) << key;
    }
}
