#include "tests/update/UpdateTest.h"

#include "framework/windows/ProgressBar.h"
#include "update/HTTPSocket.h"

#include <QTest>

namespace {

namespace fs = std::filesystem;

constexpr const char* kServerError = "An error has occurred.The server's reply could not be understood.";

std::string ConnectionError(int code) {
    return "An error has occurred.The server could not be reached (error " + std::to_string(code) + ").";
}

class UpdateDownload : public UpdateTest {
protected:
    std::string Downloaded(const std::string& name) const { return ReadFile(downloads / name); }
    bool IsThere(const std::string& name) const { return fs::exists(downloads / name); }
    std::vector<std::string> Told() { return std::exchange(messages, {}); }
};

} // namespace

TEST_F(UpdateDownload, ShowsHowFarItIsAndOverwritesWhatIsThere) {
    const std::string bytes = Pattern(300'000);
    WriteFile(downloads / "o.zip", std::string(400'000, 'x'));
    New<FolderItem>(downloads / "o.zip")->SetMacType("Bitt");
    Download("o.zip", [&](winUpdate& window) {
        EXPECT_FALSE(window.pusDownload()->Visible());
        EXPECT_TRUE(window.proDownload()->Visible());
        LoopbackPeer peer = Served();
        EXPECT_TRUE(request.starts_with("GET /file HTTP/1.0\r\n")) << request;
        peer.Send("HTTP/1.0 200 OK\r\nContent-Length: 300000\r\n\r\n" + bytes.substr(0, 100'000));
        EXPECT_TRUE(WaitUntil([&] { return window.proDownload()->Value() == 100'000; }));
        EXPECT_EQ(window.proDownload()->Maximum(), 300'000);
        EXPECT_EQ(AskedOfDesktop(), "");
        peer.Send(bytes.substr(100'000));
        peer.Close();
        EXPECT_TRUE(WaitUntil([&] { return !IsShown(window); }));
    });
    EXPECT_EQ(Downloaded("o.zip"), bytes);
    EXPECT_EQ(New<FolderItem>(downloads / "o.zip")->MacType(), "????");
}

// The status alone counts; what the connection cuts off counts as whole.
TEST_F(UpdateDownload, EndsAsItsStatusSays) {
    DownloadAll("cut.zip", "HTTP/1.0 200 OK\r\nContent-Length: 9\r\n\r\nabc");
    EXPECT_EQ(Downloaded("cut.zip"), "abc");
    DownloadAll("plain.zip", Reply("abc"));
    EXPECT_EQ(Downloaded("plain.zip"), "abc");
    EXPECT_EQ(Told(), std::vector<std::string>{});
    AskedOfDesktop();

    for (const char* const status : {"404 Not Found", "302 Found", "401 Unauthorized", "407 Proxy", "500 Oh"}) {
        DownloadAll("page.html", Reply("error page", status));
        EXPECT_FALSE(IsThere("page.html")) << status;
        EXPECT_EQ(Told(), std::vector<std::string>{kServerError}) << status;
    }
    DownloadAll("nothing", "");
    EXPECT_FALSE(IsThere("nothing"));
    EXPECT_EQ(Told(), std::vector<std::string>{kServerError});
    EXPECT_EQ(AskedOfDesktop(), "");
}

TEST_F(UpdateDownload, WhoseFileCannotBeMadeFailsWithCode1AndWritesNowhere) {
    fs::create_directory(downloads / "folder");
    const auto fails = [this](const std::string& name) {
        Download(name, [](winUpdate& window) { EXPECT_TRUE(WaitUntil([&] { return !IsShown(window); })); });
        EXPECT_EQ(Told(), std::vector<std::string>{ConnectionError(1)}) << name;
        EXPECT_FALSE(server.HasClient()) << name;
    };
    for (const char* const name : {"", "..", "../escaped", "/tmp/ombrivel-escaped", "folder", "folder/inside"})
        fails(name);
    EXPECT_FALSE(fs::exists(home / "escaped") || fs::exists("/tmp/ombrivel-escaped"));
    EXPECT_TRUE(fs::is_empty(downloads / "folder"));

    fs::remove_all(downloads);
    fails("o.zip");
    EXPECT_FALSE(fs::exists(downloads));
    WriteFile(downloads, "a file");
    fails("o.zip");
    EXPECT_EQ(ReadFile(downloads), "a file");
}

TEST_F(UpdateDownload, ThatFindsNoServerTellsTheCodeAndLeavesTheEmptyFile) {
    Check(Reply("Ombrivel 9\nVersion\n127.0.0.1:1/o\no.zip"), false, [](winUpdate& window) {
        window.pusDownload()->Push();
        EXPECT_TRUE(WaitUntil([&] { return !IsShown(window); }));
    });
    EXPECT_EQ(Told(), std::vector<std::string>{ConnectionError(100)});
    EXPECT_TRUE(IsThere("o.zip"));
    EXPECT_EQ(Downloaded("o.zip"), "");
}

TEST_F(UpdateDownload, CanBeCancelledBeforeItsServerAnswers) {
    const LoopbackServer deaf(0); // whose queue is full
    const Ref<HTTPSocket> other = New<HTTPSocket>();
    other->Get(deaf.Url("/"));
    EXPECT_TRUE(WaitUntil([&] { return deaf.HasClient(); }));
    Check(Reply("Ombrivel 9\nVersion\n" + deaf.Host() + "/o\nearly.zip"), false, [&](winUpdate& window) {
        QWidget& shown = *NativeWindow::Of(window).widget;
        EXPECT_TRUE(WaitUntil([&] { return shown.isActiveWindow() && shown.focusWidget() != nullptr; }));
        QTest::keyClick(shown.focusWidget(), Qt::Key_Return);
        QTest::keyClick(shown.focusWidget() == nullptr ? &shown : shown.focusWidget(), Qt::Key_Return);
        EXPECT_TRUE(shown.isVisible()) << "the button has gone, and no other takes its place";
        EXPECT_TRUE(IsThere("early.zip"));
        EXPECT_FALSE(window.tcpDownload()->IsConnected());
        window.CancelButton->Push();
        EXPECT_FALSE(IsShown(window));
    });
    other->Close();
    EXPECT_EQ(Downloaded("early.zip"), "");
    EXPECT_EQ(Told(), std::vector<std::string>{});
    EXPECT_EQ(AskedOfDesktop(), "");
}
