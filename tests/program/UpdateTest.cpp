#include "tests/program/RealServers.h"
#include "tests/program/WholeProgramTest.h"
#include "tests/support/Loopback.h"

#include <set>

namespace {

namespace fs = std::filesystem;

class Updates : public WholeProgramTest {
protected:
    Updates() { fs::create_directory(desktop.Downloads()); }

    static std::string Record(const std::string& host) {
        return "Ombrivel 9\nVersion\nhttp://" + host + "/files/o.zip\nOmbrivel-9.zip";
    }

    // Whoever asks next gets that. The connection stays until the peer goes.
    LoopbackPeer Answer(const std::string& body) {
        Await("a request", [this] { return server.HasClient(); });
        LoopbackPeer peer = server.Accept();
        peer.ReadRequest();
        peer.Send("HTTP/1.0 200 OK\r\n\r\n" + body);
        return peer;
    }

    void AskFromMenu(Program& program) const {
        program.OnlyWindow();
        desktop.Press({"F10", "Left", "Up", "Up", "Return"}); // in the last menu, the item above the last
    }

    // With a server of the test's own.
    Program& StartAndCheck(const Words& files) {
        environment["OMBRIVEL_TEST_UPDATE_HOST"] = server.Host();
        Prefer({});
        return Start(files);
    }

    LoopbackServer server;
    const fs::path download = desktop.Downloads() / "Ombrivel-9.zip";
};

} // namespace

TEST_F(Updates, AWebServerServesTheCheckAtTheStartAndTheDownload) {
    if (!RealServer::AreThere())
        GTEST_SKIP() << "nginx and tinyproxy are not installed";
    const std::string bytes = Pattern(8 << 20);
    const fs::path site = File("site");
    fs::create_directories(site / "services");
    fs::create_directories(site / "files");
    WriteFile(site / "files/o.zip", bytes);
    const RealServer web = RealServer::Web(File(""));
    WriteFile(site / "services/update.php", Record(web.Host()));
    environment["OMBRIVEL_TEST_UPDATE_HOST"] = web.Host();
    Prefer({});
    Program& program = Start({});
    program.Dialog();
    desktop.Press({"Return"});
    // Two programs are started for it, and the second may be the first.
    Await("the file and its folder opened", [this] {
        const Words opened = desktop.Opened();
        return std::set(opened.begin(), opened.end()) == std::set<std::string>{download, desktop.Downloads()};
    });
    EXPECT_TRUE(Holds(download, bytes));
    program.OnlyWindow();
}

TEST_F(Updates, ACheckAtTheStartIsSilentAndOneFromTheMenuAlwaysAnswers) {
    Program& program = StartAndCheck({});
    Answer("false");
    AskFromMenu(program);
    Answer("false");
    program.Answer({"Return"});
    program.OnlyWindow();
}

TEST_F(Updates, ADownloadIsCancelledByKeysAndTheBoxUntickedForGood) {
    Program& program = StartAndCheck({});
    Answer(Record(server.Host()));
    program.Dialog();
    desktop.Press({"Tab", "Tab", "space"}); // from the button over the other one to the box
    desktop.Press({"alt+F4"});              // which is no way out
    desktop.Press({"Return"});
    const LoopbackPeer peer = Answer("abc");
    Await("the beginning of the file", [this] { return Holds(download, "abc"); });
    desktop.Press({"Escape"});
    program.OnlyWindow();
    EXPECT_TRUE(peer.HasInput()) << "the end of the connection";
    desktop.Press({"ctrl+q"});
    EXPECT_EQ(program.End(), 0);
    EXPECT_EQ(ReadFile(PreferencesFile()), PreferencesBytes({.SearchForUpdates = false}, "English"));
    EXPECT_TRUE(Holds(download, "abc"));
    EXPECT_EQ(desktop.Opened(), Words{});
}

TEST_F(Updates, TheEndOfTheLastOperationEndsTheProgramInTheMiddleOfADownload) {
    const std::string film = WriteUnfinishedSeries("film.mov");
    Program& program = StartAndCheck({"film.mov.001"});
    Answer(Record(server.Host()));
    program.Dialog();
    desktop.Press({"Return"});
    const LoopbackPeer peer = Answer("abc");
    Await("the beginning of the file", [this] { return Holds(download, "abc"); });
    FinishDownload("film.mov");
    EXPECT_EQ(program.End(), 0);
    EXPECT_TRUE(Holds(File("film.mov"), film));
    EXPECT_EQ(desktop.Opened(), Words{});
}
