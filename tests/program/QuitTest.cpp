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
    AwaitShown({"film.mov"});
    program.Answer({"Return"});
    EXPECT_EQ(program.End(), 0); // after the song
    EXPECT_TRUE(Holds(File("song.flac"), song));
}

TEST_F(AutoQuit, ComesWithAStopToo) {
    WriteUnfinishedSeries("film.mov");
    Program& program = Start({"film.mov.001"});
    AwaitUnfinished("film.mov");
    program.Click(Program::kFirstStop);
    EXPECT_EQ(program.End(kAtOnce), 0);
    EXPECT_FALSE(Exists("film.mov"));
    EXPECT_TRUE(Holds(Trashed("film.mov"), ReadFile(File("film.mov.001"))));
    EXPECT_TRUE(Exists("film.mov.002.download"));
    EXPECT_TRUE(desktop.Shown().empty());
}

using QuitQuestion = WholeProgramTest;

// They lie asleep. One that still copied might see its stop before the process ends, and begin to move its files to the
// Trash.
TEST_F(QuitQuestion, CancelLetsEverythingRunOnAndQuitEndsItAtOnceAndLeavesTheFilesAsTheyStand) {
    Words bases, parts;
    for (int i = 0; i < 20; ++i) {
        bases.push_back("film" + std::to_string(100 + i) + ".mov");
        parts.push_back(bases.back() + ".001");
        WriteUnfinishedSeries(bases.back());
    }
    const std::string song = WriteUnfinishedSeries("song.flac");
    parts.push_back("song.flac.001");
    Program& program = Start(parts);
    for (const std::string& base : bases)
        AwaitUnfinished(base);
    AwaitUnfinished("song.flac");
    program.CloseMainWindow();
    program.Answer({"Escape"});
    FinishDownload("song.flac");
    AwaitShown({"song.flac"});
    EXPECT_TRUE(Holds(File("song.flac"), song));

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
        shown.push_back(base);
        WriteUnfinishedSeries(base);
        Program& program = Start({base + ".001"});
        AwaitUnfinished(base);
        program.CloseMainWindow();
        const WindowId question = program.Dialog();
        FinishDownload(base);
        AwaitShown(shown);
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
