#pragma once

#include "tests/support/Loopback.h"
#include "tests/support/TestFolder.h"
#include "tests/support/Waiting.h"
#include "update/HTTPSocket.h"
#include "update/InternetHeaders.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

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
        PageReceived = [this](auto&&, int32_t status, const Ref<InternetHeaders>& headers, const std::string& body) {
            Note("page " + std::to_string(status) + (headers.IsNil() ? " nil " : " ") + body);
        };
        Error = [this](int32_t code) { Note("error " + std::to_string(code)); };
    }

    std::string told; // with bars in between
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
        EXPECT_TRUE(WaitUntil([this] { return server.HasInput(); }));
        LoopbackPeer peer = server.Accept();
        EXPECT_TRUE(WaitUntil([&peer] { return peer.HasInput(); }));
        request = peer.Read();
        return peer;
    }
    // Sends the reply to the client's next request and closes; waits until the client knows.
    void Answer(const std::string& reply) {
        const int ends = client->ends;
        Served().Send(reply);
        EXPECT_TRUE(WaitUntil([&] { return client->ends > ends; }));
    }
    // The same for one request after the other, also of a client that waits without events.
    std::jthread AnswerAside(const std::vector<std::string>& replies) {
        return std::jthread([this, replies] {
            for (const std::string& reply : replies) {
                LoopbackPeer peer = server.Accept();
                peer.Read();
                peer.Send(reply);
            }
        });
    }

    LoopbackServer server;
    const Ref<HTTPClient> client = New<HTTPClient>();
    const std::string url = server.Url("/");
    std::string request;
};
