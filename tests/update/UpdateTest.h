#pragma once

#include "framework/windows/Native.h"
#include "tests/update/HTTPClient.h"
#include "ui/claDialogButton.h"
#include "update/winUpdate.h"

#include <gtest/gtest.h>

#include <QObject>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

// The update service of the running program, with a server of the test's own. Messages are noted and answered.
class UpdateTest : public testing::Test {
protected:
    UpdateTest();
    ~UpdateTest() override;

    // Waits for a client and for its request, which goes into `request`.
    LoopbackPeer Served();
    // Checks, gives that reply, and waits until nothing more comes of it. A window that comes up is handed over, and
    // cancelled after that.
    void Check(const std::string& reply, bool showDialog, const std::function<void(winUpdate&)>& onOffer = {});
    // Offers a file of that name, whose address is `path` on this server, and presses the button that fetches it.
    void Download(const std::string& name, const std::function<void(winUpdate&)>& then,
                  const std::string& path = "/file");
    // The whole download, with that reply, to the end of the window.
    void DownloadAll(const std::string& name, const std::string& reply);

    static bool IsShown(const winUpdate& window);
    static std::string Reply(const std::string& body, const std::string& status = "200 OK");
    std::string Record(const std::string& name, const std::string& path = "/file") const;

    const std::filesystem::path home = std::getenv("HOME");
    const std::filesystem::path downloads = home / "Downloads";
    LoopbackServer server;
    std::string request;
    std::vector<std::string> messages; // shown since this list was last emptied: all that a message says

private:
    void LookSoon();
    void Look();

    QObject looking_; // its end is the end of the looking
    std::function<void(winUpdate&)> onOffer_;
    bool offered_ = false;
};
