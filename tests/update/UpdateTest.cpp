#include "core/App.h"
#include "framework/base/Program.h"
#include "framework/text/Text.h"
#include "framework/windows/CheckBox.h"
#include "framework/windows/Native.h"
#include "framework/windows/ProgressBar.h"
#include "framework/windows/TextArea.h"
#include "settings/claPreferences.h"
#include "tests/update/HTTPTest.h"
#include "update/claSearchForUpdates.h"
#include "update/winUpdate.h"

#include <QApplication>
#include <QDialog>
#include <QTimer>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

using OnOffer = std::function<void(winUpdate&)>;

const std::string kServerError = "An error has occurred.The server’s reply could not be understood.";
const std::string kConnectionError = "An error has occurred.The server could not be reached (error ";
const std::string kNothingNew = "You have the newest version of Ombrivel.";

std::string Reply(const std::string& body, const std::string& status = "200 OK") {
    return "HTTP/1.0 " + status + "\r\n\r\n" + body;
}

// The update service of the running program. Messages are noted and answered.
class UpdateTest : public HTTPTest {
protected:
    UpdateTest() {
        setenv("OMBRIVEL_TEST_UPDATE_HOST", server.Host().c_str(), 1);
        fs::create_directory(downloads);
        Look();
    }
    ~UpdateTest() override {
        fs::remove_all(downloads);
        App::Instance()->Preferences = New<claPreferences>();
        EXPECT_EQ(AskedOfDesktop(), "");
    }

    // Checks, gives that reply, and waits until nothing more comes of it. Each offer is heard, handed over, and
    // cancelled after that. Gives what messages told.
    std::string Check(const std::string& reply, bool showDialog, const OnOffer& onOffer = {}) {
        onOffer_ = onOffer;
        offered_.clear();
        messages.clear();
        claSearchForUpdates::Check(showDialog);
        Served().Send(reply);
        EXPECT_TRUE(WaitUntil([&] { return onOffer ? !offered_.empty() : !showDialog || !messages.empty(); }));
        ShowOnScreen(); // so that what should not come up has had the time to
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        return messages;
    }
    // Offers a file of that name and presses the button that fetches it from there.
    std::string Download(const std::string& name, const std::string& host, const OnOffer& then) {
        return Check(Reply("Ombrivel 9\nVersion\n" + host + "/file\n" + name), false, [&](winUpdate& window) {
            window.pusDownload()->Push();
            then(window);
            EXPECT_TRUE(WaitUntil([&] { return !window.Native().widget->isVisible(); }));
        });
    }
    std::string Download(const std::string& name, const std::string& reply) {
        return Download(name, server.Host(), [&](winUpdate&) { Served().Send(reply); });
    }

    const fs::path home = std::getenv("HOME");
    const fs::path downloads = home / "Downloads";
    std::string messages;

private:
    void Look() {
        // A timer that repeats itself would rest while one of its rounds runs the event loop.
        QTimer::singleShot(1, &looking_, [this] { Look(); });
        QWidget* const modal = QApplication::activeModalWidget();
        if (auto* const message = qobject_cast<QDialog*>(modal)) {
            messages += (message->accessibleName() + message->accessibleDescription()).toStdString();
            message->accept();
        } else if (modal != nullptr) {
            const Ref<winUpdate> window = winUpdate::Instance();
            const std::string offer = "the file " + window->FileName;
            if (!onOffer_ || std::exchange(offered_, offer) == offer)
                return;
            EXPECT_EQ(AskedOfDesktop(), PathBesideProgram("../Resources/sndNewVersion.mp3\n"));
            onOffer_(*window);
            window->CancelButton->Push();
        }
    }

    QObject looking_; // its end is the end of the looking
    OnOffer onOffer_;
    std::string offered_;
};

} // namespace

TEST_F(UpdateTest, OnlyWhoAskedIsToldOfAnythingButANewVersion) {
    const std::pair<std::string, std::string> outcomes[] = {{Reply("false"), kNothingNew},
                                                            {Reply("FALSE"), kNothingNew},
                                                            {Reply("error"), kServerError},
                                                            {Reply("9\nVersion", "301 Moved"), kServerError},
                                                            {"", kServerError}};
    for (const auto& [reply, message] : outcomes) {
        EXPECT_EQ(Check(reply, false), "") << reply;
        EXPECT_EQ(Check(reply, true), message) << reply;
    }
    EXPECT_TRUE(request.starts_with(
        "GET /services/update.php?name=Ombrivel&version=1.0&language=en&system=macosx HTTP/1.0\r\n"));

    messages.clear();
    server.Close();
    claSearchForUpdates::Check(false);
    claSearchForUpdates::Check(true);
    EXPECT_TRUE(WaitUntil([this] { return !messages.empty(); }));
    ShowOnScreen();
    EXPECT_EQ(messages, kConnectionError + "100).");
}

TEST_F(UpdateTest, ANewVersionIsOfferedAsTheServerNamesIt) {
    const std::string whole = "Ombrivel 9\nA new version of Ombrivel is available.\nFile: o.zip\n";
    const std::pair<std::string, std::string> records[] = {{"Ombrivel 9\nVersion\nhttp://h/o\no.zip", whole},
                                                           {"Ombrivel 9\rVersion\rhttp://h/o\ro.zip\rmore", whole},
                                                           {"Ombrivel 9\r\nVersion\r\nhttp://h/o\r\no.zip\r\n", whole},
                                                           {"false\n", "false\n\nFile: \n"},
                                                           {"", "\n\nFile: \n"},
                                                           {"9\x01\xFF\nNoSuchText", "9\uFFFD\uFFFD\n\nFile: \n"}};
    for (const auto& [body, text] : records) {
        Check(Reply(body), false, [&, &text = text](winUpdate& window) {
            EXPECT_EQ(window.txtMessage()->Text(), text);
            EXPECT_EQ(Displayable(window.Title()), text.substr(0, text.find('\n')));
        });
    }
    Check(Reply(std::string(150'000, 'W')), false,
          [](winUpdate& window) { EXPECT_LE(window.Title().size(), 100'000U) << "a display takes no more"; });
}

TEST_F(UpdateTest, TwoAtATimeShareTheWindowAndEndWithIt) {
    claSearchForUpdates::Check(false);
    LoopbackPeer first = Served();
    Check(Reply("9\nVersion\nhttp://h/o\none.zip"), true, [&](winUpdate& window) {
        if (window.FileName == "two.zip") { // in a modal run of its own, above the other
            EXPECT_NE(window.txtMessage()->Text().find("one.zip"), std::string::npos);
            EXPECT_NE(window.txtMessage()->Text().find("two.zip"), std::string::npos);
            window.cheCheckAtStartup()->SetValue(false);
            return;
        }
        first.Send(Reply("9\nVersion\nhttp://h/o\ntwo.zip"));
        first.Close();
        EXPECT_TRUE(WaitUntil([&] { return window.Closed(); })) << "by the one that came last";
    });
    EXPECT_FALSE(App::Instance()->Preferences->SearchForUpdates);
}

TEST_F(UpdateTest, ADownloadShowsHowFarItIsAndEndsAsItsStatusSays) {
    for (const std::string& reply : {Reply("no", "404 Not Found"), Reply("no", "302 Found"), Reply("no", "401 No"),
                                     Reply("no", "407 No"), std::string()}) {
        EXPECT_EQ(Download("page.html", reply), kServerError) << reply;
        EXPECT_FALSE(fs::exists(downloads / "page.html")) << reply;
    }
    EXPECT_EQ(Download("unasked", "127.0.0.1:1", [](winUpdate&) {}), kConnectionError + "100).");
    EXPECT_TRUE(fs::is_empty(downloads / "unasked")) << "stays, but empty";
    EXPECT_EQ(AskedOfDesktop(), "");

    // What the connection or a full disk cuts off counts as whole.
    const auto cut = New<FolderItem>(downloads / "cut.zip");
    WriteFile(downloads / "cut.zip", "of an earlier download");
    cut->SetMacType("Omb1");
    cut->SetMacCreator("Ombr");
    const auto cutOff = [this](winUpdate& window) {
        LoopbackPeer peer = Served();
        peer.Send("HTTP/1.0 200 OK\r\nContent-Length: 9\r\n\r\nabc");
        EXPECT_TRUE(WaitUntil([&] { return window.proDownload()->Value() == 3; }));
        EXPECT_EQ(window.proDownload()->Maximum(), 9);
        EXPECT_TRUE(window.proDownload()->Visible());
    };
    EXPECT_EQ(Download("cut.zip", server.Host(), cutOff), "");
    EXPECT_EQ(ReadFile(downloads / "cut.zip") + cut->MacType() + cut->MacCreator(), "abc????????") << "without codes";
    EXPECT_EQ(AskedOfDesktop(), "open " + (downloads / "cut.zip").string() + " " + downloads.string() + "\n")
        << "the file, then its folder";
    const FileSizeLimit limit(1000);
    EXPECT_EQ(Download("full.zip", Reply(Pattern(3000))), "");
    EXPECT_EQ(ReadFile(downloads / "full.zip"), Pattern(3000).substr(0, 1000));
    AskedOfDesktop();
}

TEST_F(UpdateTest, ADownloadWhoseFileCannotBeMadeAsksNobody) {
    fs::create_directory(downloads / "folder");
    WriteFile(home / "document", "of the user");
    fs::create_symlink(home / "document", downloads / "link");
    fs::create_symlink(home / "escaped", downloads / "loose");
    for (const char* const name :
         {"", "..", "../escaped", "/tmp/ombrivel-escaped", "folder", "folder/inside", "link", "loose", "o.zip"}) {
        if (name == std::string("o.zip"))
            fs::remove_all(downloads); // which does not come back
        EXPECT_EQ(Download(name, server.Host(), [](winUpdate&) {}), kConnectionError + "1).") << name;
        EXPECT_FALSE(server.HasInput()) << name;
    }
    EXPECT_FALSE(fs::exists(downloads) || fs::exists(home / "escaped"));
    EXPECT_EQ(ReadFile(home / "document"), "of the user");
}
