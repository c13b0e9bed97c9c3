#include "tests/program/WholeProgramTest.h"

using Stop = WholeProgramTest;

TEST_F(Stop, AGlueThatWaitsForADownloadIsStoppedByItsButton) {
    WriteUnfinishedSeries("film.mov");
    const std::string firstPart = ReadFile(File("film.mov.001"));
    Program& program = Start({"film.mov.001"});
    AwaitUnfinished("film.mov");

    const std::string idle = program.PictureOfContent();
    program.PointAtStop(0);
    Await("a stop button that shows the pointer", [&] { return program.PictureOfContent() != idle; });
    program.ClickStop(0);
    EXPECT_EQ(program.End(kAtOnce), 0); // with its last row gone

    EXPECT_FALSE(Exists("film.mov"));
    EXPECT_TRUE(Holds(Trashed("film.mov"), firstPart));
    EXPECT_TRUE(Holds(File("film.mov.001"), firstPart));
    EXPECT_TRUE(Exists("film.mov.002.download"));
    EXPECT_TRUE(desktop.Shown().empty());
}
