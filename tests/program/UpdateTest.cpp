#include "tests/program/WholeProgramTest.h"
#include "tests/support/Loopback.h"

#include <set>

namespace {

namespace fs = std::filesystem;

constexpr const char* kWebServer = "/usr/sbin/nginx";

class Updates : public WholeProgramTest {
protected:
    Updates() {
        fs::create_directory(desktop.Downloads());
        environment["OMBRIVEL_TEST_UPDATE_HOST"] = server.Host();
        Prefer({});
    }

    static std::string Record(const std::string& host) {
        return "Ombrivel 9\nVersion\nhttp://" + host + "/files/o.zip\nOmbrivel-9.zip";
    }

    // Whoever asks next gets that. The connection stays until the peer goes.
    LoopbackPeer Answer(const std::string& body) {
        Await("a request", [this] { return server.HasInput(); });
        LoopbackPeer peer = server.Accept();
        peer.Read();
        peer.Send("HTTP/1.0 200 OK\r\n\r\n" + body);
        return peer;
    }

    // Presses these keys in the dialog that the next answer opens, the last of which begins the download.
    LoopbackPeer Download(Program& program, const Words& keys) {
        Answer(Record(server.Host()));
        program.Dialog();
        desktop.Press(keys);
        LoopbackPeer peer = Answer("abc");
        Await("the beginning of the file", [this] { return Holds(download, "abc"); });
        return peer;
    }

    LoopbackServer server;
    const fs::path download = desktop.Downloads() / "Ombrivel-9.zip";
};

} // namespace

TEST_F(Updates, AWebServerServesTheCheckAtTheStartAndTheDownload) {
    if (!fs::exists(kWebServer))
        GTEST_SKIP() << "nginx is not installed";
    server.Close(); // whose port is free now
    const std::string bytes = Pattern(8 << 20);
    fs::create_directories(File("site/services"));
    fs::create_directories(File("site/files"));
    WriteFile(File("site/services/update.php"), Record(server.Host()));
    WriteFile(File("site/files/o.zip"), bytes);
    WriteFile(download, bytes + "more, of an earlier download");
    std::string http = "access_log off; server { root site; listen " + server.Host() + "; }";
    for (const std::string kind : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"})
        http.append(kind).append("_temp_path ").append(kind).append(";");
    WriteFile(File("web.conf"), "daemon off; master_process off; pid web.pid; events {} http { " + http + " }");
    Process web({kWebServer, "-p", File("").string(), "-c", "web.conf", "-e", "web-errors"},
                {{}, File(""), File("web-output")});
    Await("a server that listens", [this] { return Exists("web.pid"); });
    Program& program = Start({});
    program.Dialog();
    desktop.Press({"Return"});
    // Each has a program of its own, and the second may be the first to write down what it got.
    Await("the file and its folder opened", [this] {
        const Words opened = desktop.Opened();
        return std::set(opened.begin(), opened.end()) == std::set<std::string>{download, desktop.Downloads()};
    });
    EXPECT_TRUE(Holds(download, bytes));
    program.OnlyWindow();
}

TEST_F(Updates, AreCheckedForInSilenceAtTheStartAndFromTheMenuAndLeftByKeysWithTheBoxUntickedForGood) {
    Program& program = Start({});
    const auto ask = [&] { // by the item above the last, in the last menu
        program.OpenMenus({"F10", "Left"});
        desktop.Press({"Up", "Up", "Return"});
    };
    Answer("false");
    ask();
    Answer("false");
    program.Answer({"Return"});
    ask();
    // From the button over the other one to the box; and the fourth is no way out.
    const LoopbackPeer peer = Download(program, {"Tab", "Tab", "space", "alt+F4", "Return"});
    desktop.Press({"Escape"});
    program.OnlyWindow();
    EXPECT_TRUE(peer.HasInput()) << "the end of the connection";
    desktop.Press({"ctrl+q"});
    EXPECT_EQ(program.End(), 0);
    EXPECT_EQ(ReadFile(PreferencesFile()), PreferencesBytes({.SearchForUpdates = false}, "English"));
    EXPECT_TRUE(Holds(download, "abc"));
    EXPECT_EQ(desktop.Opened(), Words{});
}

TEST_F(Updates, AreNoReasonToStayWhenTheLastOperationEndsInTheMiddleOfADownload) {
    WriteUnfinishedSeries("film.mov");
    Program& program = Start({"film.mov.001"});
    const LoopbackPeer peer = Download(program, {"Return", "Return"}); // the button has gone, none takes its place
    FinishDownload("film.mov");
    EXPECT_EQ(program.End(), 0);
    EXPECT_EQ(desktop.Opened(), Words{});
}
