#include "tests/program/WholeProgramTest.h"

using AStart = WholeProgramTest;

TEST_F(AStart, NeedsADisplayAndTellsInOneLineThatThereIsNone) {
    for (const std::string display : {"", "nowhere"}) {
        environment["DISPLAY"] = display;
        Program& program = Start({});
        EXPECT_EQ(program.End(), 1);
        const std::string line = "ombrivel: the program could not start: no display: could not connect to display";
        EXPECT_EQ(program.Errors(), line + (display.empty() ? "" : " ") + display + "\n");
    }
}
