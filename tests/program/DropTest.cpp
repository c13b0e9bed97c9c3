#include "tests/program/WholeProgramTest.h"

namespace {

class Drop : public WholeProgramTest {
protected:
    // Drags the files out of another program's window and drops them on the list. Returns when that program is done
    // with it.
    void DropOnList(const Program& program, const Words& files) {
        Words words{"drag"};
        for (const std::string& file : files)
            words.push_back("file://" + File(file).string());
        const Process& source = desktop.Pretend(words);
        const auto says = [&](const std::string& word) { return source.Output().ends_with(word + "\n"); };
        Await("the window to drag from", [&] { return !desktop.WindowsOf(source).empty(); });
        desktop.Do({"mousemove", "50", "50", "mousedown", "1", "mousemove", "90", "70"});
        int nudge = 0;
        Await("the list to accept the drag", [&] {
            program.PointAt({Program::kList.x + ++nudge % 20, Program::kList.y});
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
    AwaitShown({"film.mov"});
    EXPECT_FALSE(Exists("song.flac.001"));
    program.Answer({"Return"});
    AwaitShown({"film.mov", "song.flac.001"});

    EXPECT_TRUE(Holds(File("film.mov"), film));
    EXPECT_TRUE(Holds(File("song.flac.001"), song));
    EXPECT_FALSE(Exists("letter.txt.001"));
    program.CloseMainWindow(); // no file started this run: it has not ended by itself
    EXPECT_EQ(program.End(), 0);
}
