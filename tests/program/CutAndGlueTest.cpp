#include "tests/program/WholeProgramTest.h"

using CutAndGlue = WholeProgramTest;

namespace {

constexpr std::size_t kMegabyte = 1048576;

} // namespace

TEST_F(CutAndGlue, AFileNamedAtStartIsCutInTheDialogAndTheProgramEndsByItself) {
    const std::string film = Pattern(kMegabyte * 5 / 2);
    WriteFile(File("film.mov"), film);
    Program& program = Start({"film.mov"});
    EXPECT_EQ(desktop.TitleOf(program.Dialog()), " ") << "the dialog has no title";
    program.Answer({"ctrl+a", "1", "ctrl+u", "ctrl+k", "ctrl+BackSpace", "period", "Return"}); // digits only are typed
    EXPECT_EQ(program.End(), 0);

    EXPECT_TRUE(Holds(File("film.mov.001"), film.substr(0, kMegabyte)));
    EXPECT_TRUE(Holds(File("film.mov.002"), film.substr(kMegabyte, kMegabyte)));
    EXPECT_TRUE(Holds(File("film.mov.003"), film.substr(2 * kMegabyte)));
    EXPECT_FALSE(Exists("film.mov.004"));
    EXPECT_TRUE(Holds(File("film.mov"), film));
    // Asked for by a helper, which may come to it after the program's end.
    Await("the first part shown", [&] { return desktop.Shown() == Words{File("film.mov.001")}; });
}

TEST_F(CutAndGlue, AfterAStartWithoutAFileTheToolbarServesAndTheProgramStaysWhenAllIsDone) {
    const std::string film = Pattern(kMegabyte / 2);
    WriteFile(File("film.mov"), film);
    Program& program = Start({});
    program.ClickTool(Program::kCutTool);
    program.Dialog();
    desktop.Do({"type", "film.mov"});
    program.Answer({"Return"});
    program.Answer({"Return"});
    Await("the part shown", [&] { return desktop.Shown() == Words{File("film.mov.001")}; });
    EXPECT_TRUE(Holds(File("film.mov.001"), film));

    program.ClickTool(Program::kGlueTool);
    program.Dialog();
    desktop.Do({"type", "film.mov.001"});
    program.Answer({"Return"});
    Await("the film shown", [&] { return desktop.Shown().size() == 2; });
    EXPECT_EQ(desktop.Shown().back(), File("film 1.mov")); // the source is in the way
    EXPECT_TRUE(Holds(File("film 1.mov"), film));

    EXPECT_EQ(StartAgain({}), 0); // somebody is there to answer, whose list is empty by then
    program.CloseMainWindow();
    EXPECT_EQ(program.End(), 0);
}

TEST_F(CutAndGlue, APartNamedAtStartIsGluedAndThePartsGoToTheTrash) {
    const std::string film = WriteSeries("film.mov");
    EXPECT_EQ(Start({"film.mov.002"}).End(), 0);

    EXPECT_TRUE(Holds(File("film.mov"), film));
    Await("the film shown", [&] { return desktop.Shown() == Words{File("film.mov")}; });
    std::string trashed;
    for (const std::string part : {"film.mov.001", "film.mov.002", "film.mov.003"}) {
        EXPECT_FALSE(Exists(part));
        trashed += ReadFile(Trashed(part));
    }
    EXPECT_TRUE(trashed == film);
}

TEST_F(CutAndGlue, AFileThatIsNotThereIsToldAndTheProgramStartsAsWithoutOne) {
    WriteSeries("film.mov");
    Program& program = Start({"missing.bin"});
    program.MainWindow();
    EXPECT_EQ(program.Run().Errors(), "ombrivel: missing.bin: no such file\n");

    EXPECT_EQ(StartAgain({"film.mov.001"}), 0);
    Await("the film shown", [&] { return desktop.Shown() == Words{File("film.mov")}; });
    EXPECT_EQ(StartAgain({}), 0); // no file started this run: it does not end by itself
    program.CloseMainWindow();
    EXPECT_EQ(program.End(), 0);
}

TEST_F(CutAndGlue, FilesNamedTogetherAreAllServedBeforeTheProgramEndsByItself) {
    const std::string song = Pattern(2000);
    WriteFile(File("letter.txt"), Pattern(1000));
    WriteFile(File("song.flac"), song);
    const std::string film = WriteSeries("film.mov");
    const std::string disk = WriteSeries("disk.iso");
    Program& program = Start({"letter.txt", "song.flac", "film.mov.001", "film.mov.002", "disk.iso.001"});
    program.Answer({"Return"});
    Await("the first cut's end", [&] { return desktop.Shown() == Words{File("letter.txt.001")}; });
    program.Answer({"Return"}); // the second dialog stands on, though nothing runs behind it
    EXPECT_EQ(program.End(), 0);

    EXPECT_TRUE(Holds(File("song.flac.001"), song));
    EXPECT_TRUE(Holds(File("film.mov"), film));
    EXPECT_TRUE(Holds(File("disk.iso"), disk));
    EXPECT_FALSE(Exists("film 1.mov")); // one series, one glue
}

TEST_F(CutAndGlue, AStartIsItsOwnMasterWhenTheRunningProgramEndsInsteadOfAnswering) {
    const std::string film = WriteSeries("film.mov");
    desktop.Pretend({"ending-instance"});
    EXPECT_EQ(Start({"film.mov.001"}).End(), 0);
    EXPECT_TRUE(Holds(File("film.mov"), film));
}

TEST_F(CutAndGlue, WithoutASessionBusTheProgramRunsAndOpensTheFolderInPlaceOfShowingTheFile) {
    const std::string film = WriteSeries("film.mov");
    environment.erase("DBUS_SESSION_BUS_ADDRESS");
    EXPECT_EQ(Start({"film.mov.001"}).End(), 0);
    EXPECT_TRUE(Holds(File("film.mov"), film));
    Await("the folder opened", [&] { return desktop.Opened() == Words{File("film.mov").parent_path()}; });
}

TEST_F(CutAndGlue, NamesKeepTheirBytesWhateverTheyAre) {
    Prefer({.AutoQuit = false, .SearchForUpdates = false});
    const std::string name = "a\xff\xfe b\n\xf0\x9f\x98\x80 %41.mov";
    const std::string film = Pattern(kMegabyte * 3 / 2);
    WriteFile(File(name), film);
    Program& program = Start({name});
    program.Answer({"ctrl+a", "1", "Return"});
    Await("the first part shown", [&] { return desktop.Shown() == Words{File(name + ".001")}; });
    EXPECT_TRUE(Holds(File(name + ".001"), film.substr(0, kMegabyte)));
    EXPECT_TRUE(Holds(File(name + ".002"), film.substr(kMegabyte)));

    std::filesystem::remove(File(name));
    EXPECT_EQ(StartAgain({name + ".001"}), 0);
    Await("the whole file shown", [&] { return desktop.Shown().size() == 2; });
    EXPECT_EQ(desktop.Shown().back(), File(name).string());
    EXPECT_TRUE(Holds(File(name), film));
    EXPECT_TRUE(Holds(Trashed(name + ".001"), film.substr(0, kMegabyte)));
    EXPECT_TRUE(Holds(Trashed(name + ".002"), film.substr(kMegabyte)));
}
