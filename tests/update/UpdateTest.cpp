#include "tests/update/UpdateTest.h"

#include "core/App.h"
#include "framework/threads/MainThread.h"
#include "settings/claPreferences.h"
#include "update/claSearchForUpdates.h"

#include <QApplication>
#include <QDialog>
#include <QTimer>

#include <cstdlib>
#include <thread>

UpdateTest::UpdateTest() {
    setenv("OMBRIVEL_TEST_UPDATE_HOST", server.Host().c_str(), 1);
    std::filesystem::create_directory(downloads);
    LookSoon();
}

UpdateTest::~UpdateTest() {
    std::filesystem::remove_all(downloads);
    App::Instance()->Preferences = New<claPreferences>();
    AskedOfDesktop();
}

// A timer that repeats itself would rest while one of its rounds runs the event loop.
void UpdateTest::LookSoon() {
    QTimer::singleShot(1, &looking_, [this] { Look(); });
}

void UpdateTest::Look() {
    LookSoon();
    QWidget* const modal = QApplication::activeModalWidget();
    if (auto* const message = qobject_cast<QDialog*>(modal)) {
        messages.push_back((message->accessibleName() + message->accessibleDescription()).toStdString());
        message->accept();
    } else if (modal != nullptr && !offered_) {
        offered_ = true;
        const Ref<winUpdate> window = winUpdate::Instance();
        onOffer_(*window);
        window->CancelButton->Push();
    }
}

LoopbackPeer UpdateTest::Served() {
    HTTPExchange exchange(server);
    request = exchange.request;
    return std::move(exchange.peer);
}

void UpdateTest::Check(const std::string& reply, bool showDialog, const std::function<void(winUpdate&)>& onOffer) {
    onOffer_ = onOffer;
    offered_ = !onOffer;
    claSearchForUpdates::Check(showDialog);
    // A long reply waits for the client, which has this thread.
    const std::jthread sender([peer = Served(), &reply]() mutable {
        peer.Send(reply);
        peer.Close();
    });
    const std::size_t before = messages.size();
    EXPECT_TRUE(WaitUntil([&] { return onOffer ? offered_ : !showDialog || messages.size() > before; }));
    ShowOnScreen(); // so that what should not come up has had the time to
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

void UpdateTest::Download(const std::string& name, const std::function<void(winUpdate&)>& then,
                          const std::string& path) {
    Check(Reply(Record(name, path)), false, [&](winUpdate& window) {
        window.pusDownload()->Push();
        then(window);
    });
}

void UpdateTest::DownloadAll(const std::string& name, const std::string& reply) {
    Download(name, [&](winUpdate& window) {
        Served().Send(reply);
        EXPECT_TRUE(WaitUntil([&] { return !IsShown(window); }));
    });
}

bool UpdateTest::IsShown(const winUpdate& window) {
    return NativeWindow::Of(window).widget->isVisible();
}

std::string UpdateTest::Reply(const std::string& body, const std::string& status) {
    return "HTTP/1.0 " + status + "\r\n\r\n" + body;
}

std::string UpdateTest::Record(const std::string& name, const std::string& path) const {
    return "Ombrivel 9\nVersion\n" + server.Url(path) + "\n" + name;
}
