#include "tests/program/WholeProgramTest.h"

namespace {

constexpr int kListMiddleX = 250, kListMiddleY = 200;

class Drop : public WholeProgramTest {
protected:
    // Drags the files out of another program's window and drops them on the list. Returns when that program is done
    // with it.
    void DropOnList(Program& program, const Words& files) {
        Words words{"drag"};
        for (const std::string& file : files)
            words.push_back("file://" + File(file).string());
        Process& source = desktop.Pretend(words);
        const auto says = [&](const std::string& word) { return source.Output().ends_with(word + "\n"); };
        Await("the window to drag from", [&] { return !desktop.WindowsOf(source).empty(); });
        const WindowId window = desktop.WindowsOf(source)[0];
        desktop.MoveTo(window, 50, 50);
        desktop.Do({"mousedown", "1"});
        desktop.MoveTo(window, 90, 70);
        int nudge = 0;
        Await("the list to accept the drag", [&] {
            desktop.MoveTo(program.MainWindow(), kListMiddleX + ++nudge % 20, kListMiddleY);
            return says("accepted");
        });
        desktop.Do({"mouseup", "1"});
        Await("the end of the drag", [&] { return says("ended"); });
    }
};

} // namespace

TEST_F(Drop, FilesAreServedOneAfterTheOtherAndTheSourceIsNotKeptWaiting) {
    const std::string film = WriteSeries("film.mov");
    const std::string song = Pattern(1000);
    WriteFile(File("letter.txt"), Pattern(500));
    WriteFile(File("song.flac"), song);
    Program& program = Start({});
    // Comes back while the first dialog stands.
    DropOnList(program, {"letter.txt", "film.mov.002", "song.flac"});

    program.Dialog();
    EXPECT_FALSE(Exists("film.mov"));
    program.Answer({"Escape"});
    program.Dialog();
    Await("the film shown", [&] { return desktop.Shown() == Words{File("film.mov")}; });
    EXPECT_FALSE(Exists("song.flac.001"));
    program.Answer({"Return"});
    Await("the song's part shown", [&] { return desktop.Shown().size() == 2; });

    EXPECT_EQ(desktop.Shown().back(), File("song.flac.001"));
    EXPECT_TRUE(Holds(File("film.mov"), film));
    EXPECT_TRUE(Holds(File("song.flac.001"), song));
    EXPECT_FALSE(Exists("letter.txt.001"));
}
