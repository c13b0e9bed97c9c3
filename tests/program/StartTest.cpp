#include "tests/program/WholeProgramTest.h"

#include <csignal>

using AStart = WholeProgramTest;
using SecondStart = WholeProgramTest;

TEST_F(AStart, NeedsADisplayAndTellsInOneLineThatThereIsNone) {
    for (const std::string display : {"", "nowhere"}) {
        environment["DISPLAY"] = display;
        Program& program = Start({});
        EXPECT_EQ(program.End(), 1);
        const std::string line = "ombrivel: the program could not start: no display: could not connect to display";
        EXPECT_EQ(program.Errors(), line + (display.empty() ? "" : " ") + display + "\n");
    }
}

TEST_F(SecondStart, TellsOfAnInstanceThatHangsAndNothingIsOpenedTwice) {
    const std::string film = WriteSeries("film.mov");
    Program& hung = Start({});
    hung.OnlyWindow();
    kill(hung.Id(), SIGSTOP);
    Program& second = Start({"film.mov.001"});
    second.OnlyWindow();
    desktop.Press({"Return"});
    EXPECT_EQ(second.End(), 1);
    EXPECT_EQ(second.Errors(), "ombrivel: the program could not start: it is running already, but does not answer\n");
    EXPECT_FALSE(Exists("film.mov"));
    kill(hung.Id(), SIGCONT);
    AwaitShown({"film.mov"});
    EXPECT_TRUE(Holds(File("film.mov"), film));
}
