#include "tests/update/HTTPClient.h"

#include <gtest/gtest.h>

namespace {

LoopbackPeer NextClient(LoopbackServer& server) {
    EXPECT_TRUE(WaitUntil([&server] { return server.HasClient(); }));
    return server.Accept();
}

} // namespace

HTTPClient::HTTPClient() {
    Connected = [this] { log.emplace_back("connected"); };
    HeadersReceived = [this](const Ref<InternetHeaders>& headers, int32_t status) {
        log.push_back("headers " + std::to_string(status) + " " + std::to_string(headers->Count()));
    };
    ReceiveProgress = [this](int32_t soFar, int32_t total, const std::string& data) {
        log.push_back("progress " + std::to_string(soFar) + "/" + std::to_string(total) + " " + data);
    };
    const auto head = [](const Ref<InternetHeaders>& headers, int32_t status) {
        return std::to_string(status) + (headers.IsNil() ? " nil " : " ");
    };
    PageReceived = [this, head](const std::string&, int32_t status, const Ref<InternetHeaders>& headers,
                                const std::string& body) { log.push_back("page " + head(headers, status) + body); };
    DownloadComplete = [this, head](const std::string&, int32_t status, const Ref<InternetHeaders>& headers,
                                    const Ref<FolderItem>& file) {
        log.push_back("file " + head(headers, status) + file->Name());
    };
    Error = [this](int32_t code) { log.push_back("error " + std::to_string(code)); };
}

std::string HTTPClient::Told() const {
    std::string told;
    for (const std::string& line : log)
        told += (told.empty() ? "" : "|") + line;
    return told;
}

HTTPExchange::HTTPExchange(LoopbackServer& server) : peer(NextClient(server)) {
    EXPECT_TRUE(WaitUntil([this] { return peer.HasInput(); }));
    request = peer.ReadRequest();
}

std::string Answer(LoopbackServer& server, HTTPClient& client, const std::string& reply) {
    const int ends = client.ends;
    HTTPExchange exchange(server);
    EXPECT_TRUE(exchange.peer.Send(reply));
    exchange.peer.Close();
    EXPECT_TRUE(WaitUntil([&] { return client.ends > ends; }));
    return exchange.request;
}

std::jthread AnswerAside(LoopbackServer& server, const std::string& reply, int clients) {
    return std::jthread([&server, reply, clients] {
        for (int i = 0; i < clients; ++i) {
            LoopbackPeer peer = server.Accept();
            peer.ReadRequest();
            peer.Send(reply);
        }
    });
}
