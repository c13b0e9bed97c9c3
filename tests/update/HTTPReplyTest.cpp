#include "framework/threads/MainThread.h"
#include "tests/update/HTTPClient.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <thread>

namespace {

class HTTPReplyTest : public testing::Test {
protected:
    LoopbackServer server;
    const Ref<HTTPClient> client = New<HTTPClient>();
    const TestFolder folder;
};

int64_t PeakMemory() { // KiB
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

} // namespace

TEST_F(HTTPReplyTest, TellsWhatItMakesOfAReply) {
    const std::string ok = "HTTP/1.0 200 OK\r\n";
    const std::pair<std::string, std::string> cases[] = {
        {ok + "A: b\r\ncontent-LENGTH: 5\r\n\r\nhello", "headers 200 2|progress 5/5 hello|page 200 hello"},
        {ok + "\r\n", "headers 200 0|progress 0/0 |page 200 "},
        {ok + "Content-length: 99\r\n\r\nabc", "headers 200 1|progress 3/99 abc|page 200 abc"},
        {ok + "Content-length: 3221225472\r\n\r\n", "headers 200 1|progress 0/-1073741824 |page 200 "},
        {ok + "Content-length: inf\r\n\r\n", "headers 200 1|progress 0/0 |page 200 "},
        {"HTTP/1.0 301 Moved\r\nLocation: http://127.0.0.1:1/\r\n\r\n", "headers 301 1|progress 0/0 |page 301 "},
        {ok + "Transfer-Encoding: chunked\r\n\r\n1\r\na\r\n0",
         "headers 200 1|progress 7/0 1\r\na\r\n0|page 200 1\r\na\r\n0"},
        {"\xFFnonsense\r\n\r\nx", "headers 0 0|progress 1/0 x|page 0 x"},
        {"HTTP/1.0 200 OK\n\nx\r\n\r\ny", "headers 200 0|progress 1/0 y|page 200 y"}, // the second kind of blank line
        {"HTTP/1.0 401 No\r\nWWW-Authenticate: Basic realm=\"x\"\r\n\r\nno",
         "headers 401 1|progress 2/0 no|page 401 no"},
        {"", "page 0 nil "}};
    for (const auto& [reply, told] : cases) {
        client->log.clear();
        client->Get(server.Url("/"));
        Answer(server, *client, reply);
        EXPECT_EQ(client->Told(), "connected|" + told) << reply;
    }
    client->log.clear();
    client->Get(server.Url("/"));
    Answer(server, *client, ok + "A: b\r\n");
    EXPECT_EQ(client->Told(), "connected") << "headers without an end have none either";
    client->log.clear();
    client->GetHeaders(server.Url("/"));
    Answer(server, *client, ok + "A: b\r\n\r\nbody");
    EXPECT_EQ(client->Told(), "connected|headers 200 1");
    EXPECT_EQ(client->PageHeaders()->Value("a"), "b");
}

TEST_F(HTTPReplyTest, EndsWithItsConnectionOnly) {
    client->Get(server.Url("/"));
    HTTPExchange exchange(server);
    exchange.peer.Send("HTTP/1.0 200 OK\r\nContent-length: 2\r\n\r\nab");
    ASSERT_TRUE(WaitUntil([&] { return client->log.back() == "progress 2/2 ab"; }));
    EXPECT_TRUE(client->IsConnected());
    exchange.peer.Reset();
    ASSERT_TRUE(WaitUntil([&] { return client->ends == 1; }));
    EXPECT_EQ(client->log.back(), "page 200 ab");
    EXPECT_FALSE(client->IsConnected());
}

TEST_F(HTTPReplyTest, TellsWhyThereIsNone) {
    server.Stop();
    const std::pair<std::string, int> cases[] = {
        {server.Url("/"), 100}, {"http://" + std::string(64, 'a') + "/", 102}, {"127.0.0.1:70000", 103}, {"", 102}};
    for (const auto& [url, code] : cases) {
        client->log.clear();
        client->Get(url);
        EXPECT_TRUE(client->log.empty()) << "not from within the call";
        ASSERT_TRUE(WaitUntil([&] { return !client->log.empty(); }));
        EXPECT_EQ(client->Told(), "error " + std::to_string(code)) << url;
        EXPECT_EQ(client->ErrorCode(), code);
    }
}

TEST_F(HTTPReplyTest, IsNotTouchedByARequestWhoseFileCannotBeUsed) {
    folder.Write("film", "");
    client->Get(server.Url("/"));
    const Ref<FolderItem> film = folder.Item("film");
    for (const Ref<FolderItem>& item : {film->Parent(), folder.Item("none")->Child("x"), film->Child("x")}) {
        client->log.clear();
        client->Get(server.Url("/"), item);
        EXPECT_EQ(client->Told(), "error 1");
    }
    Answer(server, *client, "HTTP/1.0 200 OK\r\n\r\nx");
    EXPECT_EQ(client->log.back(), "page 200 x");
}

TEST_F(HTTPReplyTest, OfAnEarlierRequestIsDropped) {
    client->Get(server.Url("/one"));
    HTTPExchange one(server);
    client->Get(server.Url("/two"));
    one.peer.Send("HTTP/1.0 200 OK\r\n\r\none");
    // The next request can be made from within the end of the last, of either kind.
    std::string inside;
    client->PageReceived = [&](auto&&...) {
        client->PageReceived = nullptr;
        const std::jthread third = AnswerAside(server, "HTTP/1.0 200 OK\r\n\r\nthree");
        inside = client->Get(server.Url("/three"), 20);
    };
    Answer(server, *client, "HTTP/1.0 200 OK\r\n\r\ntwo");
    EXPECT_EQ(client->Told(), "connected|connected|headers 200 0|progress 3/0 two");
    EXPECT_EQ(inside, "three");
}

TEST_F(HTTPReplyTest, IsDroppedByAHandlerThatBeginsAnotherRequest) {
    std::string inside;
    client->HeadersReceived = [&](auto&&...) {
        client->HeadersReceived = nullptr;
        const std::jthread second = AnswerAside(server, "HTTP/1.0 401 No\r\n\r\ntwo");
        inside = client->Get(server.Url("/two"), 20);
    };
    client->Get(server.Url("/one"));
    HTTPExchange one(server);
    one.peer.Send("HTTP/1.0 200 OK\r\n\r\none");
    ASSERT_TRUE(WaitUntil([&] { return client->ends == 1; }));
    EXPECT_EQ(inside, "two");
    EXPECT_EQ(client->Told(), "connected") << "no more of the first";

    // A refusal whose connection is closed while its data are handled has its end there.
    client->ReceiveProgress = [&](auto&&...) { client->Close(); };
    client->Get(server.Url("/"));
    HTTPExchange refused(server);
    refused.peer.Send("HTTP/1.0 401 No\r\n\r\nno");
    ASSERT_TRUE(WaitUntil([&] { return client->log.back() == "page 401 no"; }));
}

// While a handler serves events, what arrives waits for its end, and the end of the connection for that.
TEST_F(HTTPReplyTest, WaitsForAHandlerThatTakesItsTime) {
    client->Get(server.Url("/"));
    HTTPExchange exchange(server);
    client->HeadersReceived = [&](auto&&...) {
        exchange.peer.Send(Pattern(100'000));
        exchange.peer.Close();
        bool served = false;
        PostToMainThread([&] { PostToMainThread([&] { served = true; }); });
        WaitUntil([&] { return served; });
        EXPECT_EQ(client->Told(), "connected");
    };
    exchange.peer.Send("HTTP/1.0 200 OK\r\n\r\nhead");
    ASSERT_TRUE(WaitUntil([&] { return client->ends == 1; }));
    EXPECT_EQ(client->log.back(), "page 200 head" + Pattern(100'000));
}

TEST_F(HTTPReplyTest, LivesByItsConnectionAlone) {
    std::string body;
    const auto begin = [&] {
        const auto held = New<HTTPSocket>();
        held->PageReceived = [&body](auto&&, auto&&, auto&&, const std::string& text) { body = text; };
        held->Get(server.Url("/"));
        return WeakRef<HTTPSocket>(held);
    };
    const WeakRef<HTTPSocket> served = begin();
    HTTPExchange(server).peer.Send("HTTP/1.0 200 OK\r\n\r\nx");
    EXPECT_TRUE(WaitUntil([&] { return served.Held().IsNil(); }));
    EXPECT_EQ(body, "x");

    const WeakRef<HTTPSocket> closed = begin();
    HTTPExchange exchange(server);
    closed.Held()->Close();
    EXPECT_TRUE(exchange.peer.HasInput()) << "the far side knows at once";
    EXPECT_TRUE(WaitUntil([&] { return closed.Held().IsNil(); }));
}

TEST_F(HTTPReplyTest, TakesLittleMemoryIntoAFileAndLittleTimeInMemory) {
    constexpr std::size_t kPiece = 1 << 20;
    const std::string piece = Pattern(kPiece);
    const auto receive = [&](int pieces) {
        const std::jthread sender([&, pieces] {
            LoopbackPeer peer = server.Accept();
            peer.ReadRequest();
            peer.Send("HTTP/1.0 200 OK\r\n\r\n");
            for (int i = 0; i < pieces; ++i)
                peer.Send(piece);
        });
        const int ends = client->ends;
        ASSERT_TRUE(WaitUntil([&] { return client->ends > ends; }));
    };
    client->ReceiveProgress = nullptr;
    [[maybe_unused]] const int64_t before = PeakMemory();
    client->Get(server.Url("/"), folder.Item("film"));
    receive(256);
    EXPECT_EQ(folder.Item("film")->Length(), 256 * kPiece);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    EXPECT_LT(PeakMemory() - before, 16 * 1024);
#endif
    client->PageReceived = [&](auto&&, auto&&, auto&&, const std::string& body) {
        EXPECT_EQ(body.size(), 64 * kPiece);
        EXPECT_TRUE(body.ends_with(piece));
    };
    client->Get(server.Url("/"));
    receive(64);
}
