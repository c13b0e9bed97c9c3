// The program on a Wayland compositor without a screen.

#include "tests/program/WholeProgramTest.h"

using Wayland = WholeProgramTest;

TEST_F(Wayland, ServesItsStartsUnderItsIdAndEnds) {
    desktop.Serve({"weston", "--backend=headless-backend.so", "--socket=weston", "--idle-time=0"});
    const std::filesystem::path socket = environment["XDG_RUNTIME_DIR"] + "/weston";
    Await("the compositor", [&] { return std::filesystem::exists(socket); });
    environment.erase("DISPLAY");
    environment.insert({{"WAYLAND_DISPLAY", "weston"}, {"QT_QPA_PLATFORM", "wayland"}, {"WAYLAND_DEBUG", "client"}});
    const std::string song = WriteSeries("song.mp3");
    Program& program = StartUnfinished("film.mov");
    environment["XDG_ACTIVATION_TOKEN"] = "of a launcher";
    EXPECT_EQ(StartAgain({"song.mp3.001"}), 0);
    Await("the other file", [&] { return Holds(File("song.mp3"), song); });
    FinishDownload("film.mov");
    EXPECT_EQ(program.End(), 0);
    EXPECT_NE(program.Errors().find("set_app_id(\"example.halvrick.Ombrivel\")"), std::string::npos);
}
