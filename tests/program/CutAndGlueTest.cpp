#include "tests/program/WholeProgramTest.h"

namespace {

constexpr std::size_t kMegabyte = 1048576;

} // namespace

using CutAndGlue = WholeProgramTest;

TEST_F(CutAndGlue, ByTheDialogAndByAnOpenedPartAfterWhichTheProgramEnds) {
    const std::string name = "a\xff\xfe b\n\xf0\x9f\x98\x80 %41.mov"; // whose bytes stay as they are
    const std::string film = Pattern(kMegabyte * 5 / 2);
    const std::pair<std::string, std::string> parts[] = {{name + ".001", film.substr(0, kMegabyte)},
                                                         {name + ".002", film.substr(kMegabyte, kMegabyte)},
                                                         {name + ".003", film.substr(2 * kMegabyte)}};
    WriteFile(File(name), film);
    Program& cut = Start({name});
    EXPECT_EQ(desktop.Do({"getwindowname", std::to_string(cut.Dialog())}), " \n") << "the dialog has no title";
    // Only digits type, and no key edits or moves: 01 is left, selected as a whole. An empty field can't be confirmed.
    desktop.Press({"ctrl+a", "ctrl+x", "Return", "0", "Left", "1", "ctrl+a", "period", "minus", "e", "space", "alt+x"});
    desktop.Press({"BackSpace", "Delete", "ctrl+BackSpace", "ctrl+Delete", "alt+BackSpace", "ctrl+u", "ctrl+z"});
    desktop.Press({"Left", "Right", "Home", "End", "Up", "Down", "Prior", "Next", "shift+Left", "ctrl+Home", "alt+Up"});
    cut.Answer({"ctrl+x", "ctrl+v", "Return"});
    EXPECT_EQ(cut.End(), 0);
    for (const auto& [part, slice] : parts)
        EXPECT_TRUE(Holds(File(part), slice)) << part;
    EXPECT_FALSE(Exists(name + ".004"));
    EXPECT_TRUE(Holds(File(name), film));
    AwaitShown({name + ".001"});

    std::filesystem::remove(File(name));
    EXPECT_EQ(Start({name + ".002"}).End(), 0);
    EXPECT_TRUE(Holds(File(name), film));
    for (const auto& [part, slice] : parts) {
        EXPECT_FALSE(Exists(part));
        EXPECT_TRUE(Holds(Trashed(part), slice)) << part;
    }
    AwaitShown({name + ".001", name});
}

TEST_F(CutAndGlue, WithoutASessionBusTheFolderIsOpenedInPlaceOfTheFile) {
    const std::string film = WriteSeries("film.mov");
    environment.erase("DBUS_SESSION_BUS_ADDRESS");
    EXPECT_EQ(Start({"film.mov.001"}).End(), 0);
    EXPECT_TRUE(Holds(File("film.mov"), film));
    Await("the folder opened", [&] { return desktop.Opened() == Words{File("film.mov").parent_path()}; });
    EXPECT_FALSE(Exists("../home/bus-wanted"));
}
