#pragma once

#include "tests/support/Loopback.h"
#include "tests/support/TestFolder.h"
#include "tests/support/Waiting.h"
#include "update/HTTPSocket.h"
#include "update/InternetHeaders.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

// A client that writes down what it is told.
class HTTPClient : public HTTPSocket {
public:
    HTTPClient() {
        Connected = [this] { Note("connected"); };
        HeadersReceived = [this](const Ref<InternetHeaders>& headers, int32_t status) {
            Note("headers " + std::to_string(status) + " " + std::to_string(headers->Count()));
        };
        ReceiveProgress = [this](int32_t soFar, int32_t total, const std::string& data) {
            Note("progress " + std::to_string(soFar) + "/" + std::to_string(total) + " " + data);
        };
        PageReceived = [this](auto&& url, int32_t status, const Ref<InternetHeaders>& headers,
                              const std::string& body) {
            from = url;
            Note("page " + std::to_string(status) + (headers.IsNil() ? " nil " : " ") + body);
        };
        DownloadComplete = [this](auto&& url, int32_t status, auto&&, const Ref<FolderItem>& file) {
            from = url;
            Note("file " + std::to_string(status) + " " + file->Name());
        };
        Error = [this](int32_t code) { Note("error " + std::to_string(code)); };
    }

    std::string told; // with bars in between
    std::string from; // the address of the last page or file
    int ends = 0;     // of connections

protected:
    void Event_Error() override {
        HTTPSocket::Event_Error();
        ++ends;
    }

private:
    void Note(const std::string& line) { told += (told.empty() ? "" : "|") + line; }
};

class HTTPTest : public testing::Test {
protected:
    // Waits for the next client and for its request, which goes into `request`.
    LoopbackPeer Served() {
        if (!WaitUntil([this] { return server.HasInput(); }))
            throw std::runtime_error("nobody asks");
        LoopbackPeer peer = server.Accept();
        EXPECT_TRUE(WaitUntil([&peer] { return peer.HasInput(); }));
        request = peer.Read();
        return peer;
    }
    // Sends the replies to the requests that come of a call, a blocking one too, each by a connection of its own. Waits
    // until the client knows of the end. Gives the last request.
    std::string Answer(const std::vector<std::string>& replies, const std::function<void()>& call) {
        const int ends = client->ends;
        client->told = client->from = "";
        std::jthread serving([&](const std::stop_token& stop) {
            for (const std::string& reply : replies) {
                while (!server.HasInput())
                    if (stop.stop_requested())
                        return;
                LoopbackPeer peer = server.Accept();
                request = peer.Read();
                peer.Send(reply);
            }
        });
        call();
        EXPECT_TRUE(WaitUntil([&] { return client->ends > ends; }));
        serving = {};
        return request;
    }

    LoopbackServer server;
    const Ref<HTTPClient> client = New<HTTPClient>();
    const std::string url = server.Url("/");
    std::string request;
};
