#include "tests/program/WholeProgramTest.h"
#include "tests/support/Loopback.h"

#include <set>

namespace {

namespace fs = std::filesystem;

class Updates : public WholeProgramTest {
protected:
    Updates() {
        fs::create_directory(desktop.Downloads());
        environment["OMBRIVEL_TEST_UPDATE_HOST"] = server.Host();
        Prefer({});
    }

    // Whoever asks next gets that. The connection stays until the peer goes.
    LoopbackPeer Answer(const std::string& body) {
        Await("a request", [this] { return server.HasInput(); });
        LoopbackPeer peer = server.Accept();
        peer.Read();
        peer.Send("HTTP/1.0 200 OK\r\n\r\n" + body);
        return peer;
    }

    // Asks by the item above the last, in the last menu.
    void Ask(const Program& program) const {
        program.OpenMenus({"F10", "Left"});
        desktop.Press({"Up", "Up", "Return"});
    }

    // Asks, and presses these keys in the dialog that this opens, the last of which begins the download.
    LoopbackPeer Download(const Program& program, const Words& keys) {
        Ask(program);
        Answer(record);
        program.Dialog();
        desktop.Press(keys);
        LoopbackPeer peer = Answer("abc");
        Await("the beginning of the file", [this] { return Holds(download, "abc"); });
        return peer;
    }

    LoopbackServer server;
    const std::string record = "Ombrivel 9\nVersion\nhttp://" + server.Host() + "/services/o.zip\nOmbrivel-9.zip";
    const fs::path download = desktop.Downloads() / "Ombrivel-9.zip";
};

} // namespace

TEST_F(Updates, AreCheckedForAtTheStartUntilTheirBoxIsUnticked) {
    Program& first = Start({});
    Answer("false"); // which nobody is told of who did not ask
    Ask(first);
    Answer("false");
    first.Answer({"Return"});
    Download(first, {"Return"}).Close();
    // Each has a program of its own, and the second may be the first to write down what it got.
    const std::set<std::string> whole{download, desktop.Downloads()};
    Await("the file and its folder opened", [&] {
        const Words opened = desktop.Opened();
        return std::set(opened.begin(), opened.end()) == whole;
    });
    fs::remove(download);
    // From the button over the other one to the box; and the fourth is no way out.
    const LoopbackPeer peer = Download(first, {"Tab", "Tab", "space", "alt+F4", "Return"});
    desktop.Press({"Escape"});
    first.OnlyWindow();
    EXPECT_TRUE(peer.HasInput()) << "the end of the connection";
    desktop.Press({"ctrl+q"});
    EXPECT_EQ(first.End(), 0);
    EXPECT_EQ(ReadFile(PreferencesFile()), PreferencesBytes({.SearchForUpdates = false}, "English"));

    Program& second = StartUnfinished("film.mov");
    const LoopbackPeer last = Download(second, {"Return", "Return"}); // the button has gone, none takes its place
    EXPECT_FALSE(server.HasInput()) << "nobody else has asked";
    FinishDownload("film.mov");
    EXPECT_EQ(second.End(), 0) << "a download is no reason to stay";
    EXPECT_TRUE(Holds(download, "abc"));
    EXPECT_EQ(desktop.Opened().size(), whole.size()) << "what was not finished is not opened";
}
