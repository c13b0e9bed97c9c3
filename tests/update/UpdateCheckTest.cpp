#include "tests/update/UpdateTest.h"

#include "core/App.h"
#include "framework/text/Text.h"
#include "framework/windows/CheckBox.h"
#include "framework/windows/TextArea.h"
#include "settings/claPreferences.h"
#include "update/claSearchForUpdates.h"

#include <QTimer>

namespace {

using UpdateCheck = UpdateTest;

constexpr const char* kServerError = "An error has occurred.The server's reply could not be understood.";
constexpr const char* kNothingNew = "You have the newest version of Ombrivel.";

std::string TitleOnly(const std::string& title) {
    return title + "\n\nFile: \n";
}

} // namespace

TEST_F(UpdateCheck, TheServerIsToldWhoAsks) {
    Check(Reply("false"), false);
    EXPECT_EQ(request, "GET /services/update.php?name=Ombrivel&version=1.0&language=en&system=macosx HTTP/1.0\r\n"
                       "Accept: */*\r\nAccept-Language: en\r\nHost: " +
                           server.Host() + "\r\n\r\n");
}

TEST_F(UpdateCheck, EverythingButANewVersionIsToldToWhoAskedAndToNobodyElse) {
    const std::pair<std::string, const char*> outcomes[] = {{Reply("false"), kNothingNew},
                                                            {Reply("FALSE"), kNothingNew},
                                                            {Reply("error"), kServerError},
                                                            {Reply("false", "404 Not Found"), kServerError},
                                                            {Reply(Record("x"), "301 Moved"), kServerError},
                                                            {"GET OUT\n\n", kServerError},
                                                            {"", kServerError}};
    for (const auto& [reply, message] : outcomes) {
        messages.clear();
        Check(reply, false);
        EXPECT_EQ(messages, std::vector<std::string>{}) << reply;
        Check(reply, true);
        EXPECT_EQ(messages, std::vector<std::string>{message}) << reply;
    }

    messages.clear();
    server.Stop();
    claSearchForUpdates::Check(false);
    claSearchForUpdates::Check(true);
    EXPECT_TRUE(WaitUntil([this] { return !messages.empty(); }));
    ShowOnScreen();
    EXPECT_EQ(messages, std::vector<std::string>{"An error has occurred.The server could not be reached (error 100)."});
}

TEST_F(UpdateCheck, ANewVersionIsOfferedAsTheServerNamesIt) {
    const std::string whole = "Ombrivel 9\nA new version of Ombrivel is available.\nFile: o.zip\n";
    const std::pair<const char*, std::string> records[] = {{"Ombrivel 9\nVersion\nhttp://h/o\no.zip", whole},
                                                           {"Ombrivel 9\rVersion\rhttp://h/o\ro.zip\rmore", whole},
                                                           {"Ombrivel 9\r\nVersion\r\nhttp://h/o\r\no.zip\r\n", whole},
                                                           {"false\n", TitleOnly("false")},
                                                           {"", TitleOnly("")},
                                                           {"9\x01\xFF\nNoSuchText", TitleOnly("9\uFFFD\uFFFD")}};
    for (const auto& [body, text] : records) {
        Check(Reply(body), false, [&, &text = text](winUpdate& window) {
            EXPECT_EQ(window.txtMessage()->Text(), text);
            EXPECT_EQ(Displayable(window.Title()), text.substr(0, text.find('\n')));
            if (text != whole)
                return;
            EXPECT_EQ(window.FileName, "o.zip");
            EXPECT_EQ(window.DownloadUrl, "http://h/o");
        });
    }
    EXPECT_TRUE(messages.empty());
}

TEST_F(UpdateCheck, AnOfferOfMegabytesIsShownInPartAndCanBeCancelled) {
    const std::string huge(1 << 20, 'W');
    Check(Reply(huge + "\n" + huge + "\n" + huge + "\n" + huge), false, [&](winUpdate& window) {
        ShowOnScreen();
        EXPECT_LE(NativeWindow::Of(window).widget->windowTitle().size(), 100'000) << "a display takes no more";
        EXPECT_TRUE(window.txtMessage()->Text().starts_with("WWW"));
        EXPECT_EQ(window.FileName, huge);
    });
}

TEST_F(UpdateCheck, TwoAtATimeShareTheWindowAndEndWithIt) {
    claSearchForUpdates::Check(false);
    LoopbackPeer first = Served();
    Check(Reply(Record("one.zip")), true, [&](winUpdate& window) {
        first.Send(Reply(Record("two.zip")));
        first.Close();
        // The second one waits in a modal run of its own, above this one.
        std::string text;
        QTimer looking;
        QObject::connect(&looking, &QTimer::timeout, &looking, [&] {
            if (window.FileName != "two.zip" || !text.empty())
                return;
            text = window.txtMessage()->Text();
            window.cheCheckAtStartup()->SetValue(false);
            window.CancelButton->Push();
        });
        looking.start(1);
        EXPECT_TRUE(WaitUntil([&] { return !text.empty(); }));
        EXPECT_NE(text.find("one.zip"), std::string::npos);
        EXPECT_NE(text.find("two.zip"), std::string::npos);
        EXPECT_TRUE(window.Closed()) << "by the one that came last";
    });
    EXPECT_FALSE(App::Instance()->Preferences->SearchForUpdates);
}
