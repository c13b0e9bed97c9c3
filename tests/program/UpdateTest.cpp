#include "tests/program/RealServers.h"
#include "tests/program/WholeProgramTest.h"
#include "tests/support/Loopback.h"

#include <set>

using namespace std::chrono_literals;

namespace {

namespace fs = std::filesystem;

class Updates : public WholeProgramTest {
protected:
    Updates() { fs::create_directory(desktop.Downloads()); }

    fs::path Downloaded(const std::string& name) const { return desktop.Downloads() / name; }

    static std::string Record(const std::string& host, const std::string& name) {
        return "Ombrivel 9\nVersion\nhttp://" + host + "/files/" + name + "\n" + name;
    }

    // Whoever asks next gets that. The connection stays until the peer goes.
    static LoopbackPeer Answer(LoopbackServer& server, const std::string& body) {
        Await("a request", [&server] { return server.HasClient(); });
        LoopbackPeer peer = server.Accept();
        peer.ReadRequest();
        peer.Send("HTTP/1.0 200 OK\r\n\r\n" + body);
        return peer;
    }

    void AskFromMenu(Program& program) const {
        program.MainWindowInFront();
        desktop.Press({"F10", "Left", "Up", "Up", "Return"}); // in the last menu, the item above the last
    }

    void AwaitMainWindowAlone(Program& program) const {
        program.Run().Await("the main window alone", [&] {
            return desktop.WindowsOf(program.Run()) == std::vector<WindowId>{program.MainWindow()} &&
                   desktop.ActiveWindow() == program.MainWindow();
        });
    }
};

} // namespace

TEST_F(Updates, AWebServerServesTheCheckAtTheStartAndTheDownload) {
    if (!RealServer::AreThere())
        GTEST_SKIP() << "nginx and tinyproxy are not installed";
    const std::string bytes = Noise(8 << 20);
    const fs::path site = File("site");
    fs::create_directories(site / "services");
    fs::create_directories(site / "files");
    WriteFile(site / "files/Ombrivel-9.zip", bytes);
    const WebServer server(File(""));
    WriteFile(site / "services/update.php", Record(server.Host(), "Ombrivel-9.zip"));
    UseUpdateServer(server.Host());
    Prefer({});
    Program& program = Start({});
    program.Dialog();
    desktop.Press({"Return"});
    // Two programs are started for it, and the second may be the first.
    Await("the file and its folder opened", [this] {
        const Words opened = desktop.Opened();
        return std::set(opened.begin(), opened.end()) ==
               std::set<std::string>{Downloaded("Ombrivel-9.zip"), desktop.Downloads()};
    });
    EXPECT_TRUE(Holds(Downloaded("Ombrivel-9.zip"), bytes));
    AwaitMainWindowAlone(program);

    // A file that the server does not have.
    WriteFile(site / "services/update.php", Record(server.Host(), "Ombrivel-10.zip"));
    AskFromMenu(program);
    const WindowId offer = program.Dialog();
    desktop.Press({"Return"});
    program.Run().Await("a message", [&] {
        const WindowId front = program.Dialog();
        return front != offer && desktop.WindowsOf(program.Run()).size() == 3;
    });
    EXPECT_TRUE(fs::exists(Downloaded("Ombrivel-10.zip")));
    desktop.Press({"Return"});
    AwaitMainWindowAlone(program);
    EXPECT_FALSE(fs::exists(Downloaded("Ombrivel-10.zip")));
}

TEST_F(Updates, ACheckAtTheStartIsSilentAndOneFromTheMenuAlwaysAnswers) {
    LoopbackServer server;
    UseUpdateServer(server.Host());
    Prefer({});
    Program& program = Start({});
    Answer(server, "false");
    AskFromMenu(program);
    Answer(server, "false");
    program.Answer({"Return"});
    AwaitMainWindowAlone(program);
    server.Stop();
    AskFromMenu(program);
    program.Answer({"Return"});
    AwaitMainWindowAlone(program);
}

TEST_F(Updates, ADownloadIsCancelledByKeysAndTheBoxUntickedForGood) {
    LoopbackServer server;
    UseUpdateServer(server.Host());
    Prefer({});
    Program& program = Start({});
    Answer(server, Record(server.Host(), "Ombrivel-9.zip"));
    program.Dialog();
    desktop.Press({"Tab", "Tab", "space"}); // from the button over the other one to the box
    desktop.Press({"alt+F4"});              // which is no way out
    desktop.Press({"Return"});
    const LoopbackPeer peer = Answer(server, "abc");
    Await("the beginning of the file", [this] { return Holds(Downloaded("Ombrivel-9.zip"), "abc"); });
    desktop.Press({"Escape"});
    AwaitMainWindowAlone(program);
    EXPECT_TRUE(peer.HasInput()) << "the end of the connection";
    desktop.Press({"ctrl+q"});
    EXPECT_EQ(program.End(), 0);
    EXPECT_EQ(ReadFile(PreferencesFile()), PreferencesBytes({.SearchForUpdates = false}, "English"));
    EXPECT_TRUE(Holds(Downloaded("Ombrivel-9.zip"), "abc"));
    EXPECT_EQ(desktop.Opened(), Words{});
}

TEST_F(Updates, TheEndOfTheLastOperationEndsTheProgramInTheMiddleOfADownload) {
    LoopbackServer server;
    UseUpdateServer(server.Host());
    Prefer({});
    const std::string film = WriteUnfinishedSeries("film.mov");
    Program& program = Start({"film.mov.001"});
    Answer(server, Record(server.Host(), "Ombrivel-9.zip"));
    program.Dialog();
    desktop.Press({"Return"});
    const LoopbackPeer peer = Answer(server, "abc");
    Await("the beginning of the file", [this] { return Holds(Downloaded("Ombrivel-9.zip"), "abc"); });
    FinishDownload("film.mov");
    EXPECT_EQ(program.End(), 0);
    EXPECT_TRUE(Holds(File("film.mov"), film));
    EXPECT_EQ(desktop.Opened(), Words{});
}
