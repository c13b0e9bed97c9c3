#include "tests/program/WholeProgramTest.h"

using namespace std::chrono_literals;

using Stop = WholeProgramTest;

namespace {

constexpr std::uintmax_t kMegabyte = 1048576;
constexpr auto kAtOnce = 2s; // with room for a busy machine

} // namespace

TEST_F(Stop, AGlueThatWaitsForADownloadIsStoppedByItsButton) {
    const std::string film = WriteUnfinishedSeries("film.mov");
    const std::string firstPart = ReadFile(File("film.mov.001"));
    Program& program = Start({"film.mov.001"});
    AwaitUnfinished("film.mov");

    const std::string idle = program.PictureOfStop(0);
    program.PointAtStop(0);
    Await("a stop button that shows the pointer", [&] { return program.PictureOfStop(0) != idle; });
    program.ClickStop(0);
    EXPECT_EQ(program.End(kAtOnce), 0); // with its last row gone

    EXPECT_FALSE(Exists("film.mov"));
    EXPECT_TRUE(Holds(Trashed("film.mov"), firstPart));
    EXPECT_TRUE(Holds(File("film.mov.001"), firstPart));
    EXPECT_TRUE(Exists("film.mov.002.download"));
    EXPECT_TRUE(desktop.Shown().empty());
}

TEST_F(Stop, TheWaitForADownloadEndsSoonAfterThePartIsThere) {
    const std::string film = WriteUnfinishedSeries("film.mov");
    Start({"film.mov.001"});
    AwaitUnfinished("film.mov");
    EXPECT_EQ(StartAgain({}), 0); // which takes long enough for the glue to lie asleep
    FinishDownload("film.mov");
    Await(
        "the rest of the film", [&] { return Holds(File("film.mov"), film); }, kAtOnce);
}

TEST_F(Stop, ARunningCutIsStoppedByItsButton) {
    const std::uintmax_t size =
        std::uintmax_t{16} * 1024 * kMegabyte; // many seconds of work, though no room on the disk
    WriteFile(File("huge.iso"), "");
    std::filesystem::resize_file(File("huge.iso"), size);
    Program& program = Start({"huge.iso"});
    program.CutAt("10");
    Await("a finished part", [&] { return Exists("huge.iso.002"); });
    program.ClickStop(0);
    EXPECT_EQ(program.End(), 0); // with its last row gone

    for (const auto& entry : std::filesystem::directory_iterator(File("")))
        EXPECT_EQ(entry.path().filename(), "huge.iso");
    EXPECT_EQ(std::filesystem::file_size(File("huge.iso")), size);
    EXPECT_EQ(std::filesystem::file_size(Trashed("huge.iso.001")), 10 * kMegabyte);
    EXPECT_TRUE(desktop.Shown().empty());
}
