#include "tests/program/WholeProgramTest.h"

using Fault = WholeProgramTest;

namespace {

constexpr std::size_t kMegabyte = 1048576;

bool Tells(Program& program, const std::string& line) {
    const auto lines = Lines(program.Run().Errors());
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

} // namespace

TEST_F(Fault, CutsThatCannotBeDoneLeaveTheirRowsAndTheProgramRunsOn) {
    Prefer({.AutoQuit = false, .SearchForUpdates = false});
    WriteFile(File("empty.bin"), "");
    std::filesystem::create_directory(File("folder"));
    WriteFile(File("vanishing.bin"), Noise(1000));
    const std::string film = WriteSeries("film.mov");
    Program& program = Start({"empty.bin", "folder", "vanishing.bin"});
    program.Answer({"Return"});
    program.Answer({"Return"});
    program.Dialog();
    std::filesystem::remove(File("vanishing.bin"));
    program.Answer({"Return"});
    Await("a line about it", [&] { return Tells(program, "ombrivel: thread: nil object"); });

    EXPECT_EQ(StartAgain({"film.mov.001"}), 0);
    Await("the film shown", [&] { return desktop.Shown() == Words{File("film.mov")}; });
    EXPECT_TRUE(Holds(File("film.mov"), film));
    for (const std::string part : {"empty.bin.001", "folder.001", "vanishing.bin.001"})
        EXPECT_FALSE(Exists(part));

    program.CloseMainWindow();
    program.Dialog(); // the rows that stay count as running
    desktop.Press({"Return"});
    EXPECT_EQ(program.End(), 0);
}

TEST_F(Fault, AFileThatIsNotThereIsToldAndTheProgramStartsAsWithoutOne) {
    WriteSeries("film.mov");
    Program& program = Start({"missing.bin"});
    program.MainWindow();
    EXPECT_TRUE(Tells(program, "ombrivel: missing.bin: no such file"));

    EXPECT_EQ(StartAgain({"film.mov.001"}), 0);
    Await("the film shown", [&] { return desktop.Shown() == Words{File("film.mov")}; });
    EXPECT_EQ(StartAgain({}), 0); // no file started this run: it does not end by itself
    program.CloseMainWindow();
    EXPECT_EQ(program.End(), 0);
}

class CutDialog : public WholeProgramTest {
protected:
    std::string PictureOfPartCount(Program& program) { return desktop.Picture(program.Dialog(), 254, 78, 125, 20); }
};

TEST_F(CutDialog, TakesDigitsAndPastedTextAndNothingElse) {
    Prefer({.AutoQuit = false, .SearchForUpdates = false});
    const std::string typed = Noise(30 * kMegabyte);
    const std::string pasted = Noise(2 * kMegabyte);
    WriteFile(File("cancelled.bin"), Noise(1000));
    WriteFile(File("closed.bin"), Noise(1000));
    WriteFile(File("typed.bin"), typed);
    WriteFile(File("pasted.bin"), pasted);
    desktop.Pretend({"clipboard", "1.44"});
    Program& program = Start({"cancelled.bin", "closed.bin", "typed.bin", "pasted.bin"});
    program.Answer({"Escape"});
    program.Answer({"alt+F4"});

    const std::string atHundred = PictureOfPartCount(program);
    desktop.Press({"ctrl+a", "1"});
    Await("another number of parts", [&] { return PictureOfPartCount(program) != atHundred; });
    desktop.Press({"ctrl+u", "ctrl+k", "ctrl+z", "ctrl+BackSpace", "alt+Up"});
    program.Answer({"period", "BackSpace", "Delete", "Left", "Home", "minus", "e", "space", "2", "Return"});

    program.Dialog();
    program.Answer({"ctrl+a", "ctrl+v", "Return"});
    Await("both cuts done", [&] { return desktop.Shown().size() == 2; });
    EXPECT_TRUE(Holds(File("typed.bin.001"), typed.substr(0, 12 * kMegabyte)));
    EXPECT_TRUE(Holds(File("typed.bin.003"), typed.substr(24 * kMegabyte)));
    EXPECT_FALSE(Exists("typed.bin.004"));
    EXPECT_TRUE(Holds(File("pasted.bin.001"), pasted.substr(0, 1'509'949)));
    EXPECT_TRUE(Holds(File("pasted.bin.002"), pasted.substr(1'509'949)));
    EXPECT_FALSE(Exists("cancelled.bin.001"));
    EXPECT_FALSE(Exists("closed.bin.001"));
}
