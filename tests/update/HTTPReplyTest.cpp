#include "tests/update/HTTPTest.h"

#include <sys/resource.h>

namespace {

using HTTPReplyTest = HTTPTest;

const std::string kOk = "HTTP/1.0 200 OK\r\n";

} // namespace

TEST_F(HTTPReplyTest, IsToldAsItCame) {
    const std::pair<std::string, std::string> cases[] = {
        {kOk + "A: b\r\ncontent-LENGTH: 5\r\n\r\nhello", "|headers 200 2|progress 5/5 hello|page 200 hello"},
        {kOk + "Content-length: 99\r\n\r\nabc", "|headers 200 1|progress 3/99 abc|page 200 abc"},
        {kOk + "Content-length: 3221225472\r\n\r\n", "|headers 200 1|progress 0/-1073741824 |page 200 "},
        {kOk + "Content-length: inf\r\n\r\n", "|headers 200 1|progress 0/0 |page 200 "},
        {"HTTP/1.0 301 Moved\r\nLocation: http://127.0.0.1:1/\r\n\r\n", "|headers 301 1|progress 0/0 |page 301 "},
        {kOk + "Transfer-Encoding: chunked\r\n\r\n1\r\na\r\n0",
         "|headers 200 1|progress 7/0 1\r\na\r\n0|page 200 1\r\na\r\n0"},
        {"\xFFnonsense\r\n\r\nx", "|headers 0 0|progress 1/0 x|page 0 x"},
        {"HTTP/1.0 200 OK\n\nx\r\n\r\ny", "|headers 200 0|progress 1/0 y|page 200 y"}, // the second kind of blank line
        {"HTTP/1.0 401 No\r\nWWW-Authenticate: Basic x\r\n\r\nno", "|headers 401 1|progress 2/0 no|page 401 no"},
        {"", "|page 0 nil "},
        {kOk + "A: b\r\n", ""}}; // headers without an end have none either
    for (const auto& [reply, told] : cases) {
        client->told.clear();
        client->Get(url);
        Answer(reply);
        EXPECT_EQ(client->told, "connected" + told) << reply;
    }
    client->told.clear();
    client->GetHeaders(url);
    Answer(kOk + "A: b\r\n\r\nbody");
    EXPECT_EQ(client->told, "connected|headers 200 1");
}

TEST_F(HTTPReplyTest, TellsWhyThereIsNone) {
    server.Close();
    const std::pair<std::string, int> cases[] = {{url, 100}, {std::string(64, 'a'), 102}, {"127.0.0.1:70000", 103}};
    for (const auto& [address, code] : cases) {
        client->told.clear();
        client->Get(address);
        EXPECT_EQ(client->told, "") << "not from within the call";
        EXPECT_TRUE(WaitUntil([this] { return client->ErrorCode() != 0; }));
        EXPECT_EQ(client->told, "error " + std::to_string(code)) << address;
    }
}

TEST_F(HTTPReplyTest, OfAnEarlierRequestIsDroppedButNotByOneWhoseFileCannotBeUsed) {
    const TestFolder folder;
    client->Get(url);
    LoopbackPeer one = Served();
    client->Get(url);
    one.Send(kOk + "\r\none");
    client->Get(url, folder.Item("film")->Parent());
    Answer(kOk + "\r\ntwo");
    EXPECT_EQ(client->told, "connected|error 1|connected|headers 200 0|progress 3/0 two|page 200 two");
}

TEST_F(HTTPReplyTest, IsDroppedByAHandlerThatBeginsAnotherRequest) {
    const auto beginIn = [this](auto& handler, const std::string& before) {
        const std::jthread serving = AnswerAside({kOk + "\r\none", kOk + "\r\ntwo", kOk + "\r\nthree"});
        handler = [this, &handler, own = handler](auto&&...) {
            handler = own;
            EXPECT_EQ(client->Get(url, 20), "two");
            client->Get(url);
        };
        client->told.clear();
        client->Get(url);
        EXPECT_TRUE(WaitUntil([this] { return client->told.ends_with("page 200 three"); }));
        EXPECT_EQ(client->told, before + "connected|headers 200 0|progress 5/0 three|page 200 three");
    };
    beginIn(client->Connected, "");
    beginIn(client->HeadersReceived, "connected|");
    beginIn(client->ReceiveProgress, "connected|headers 200 0|");
    beginIn(client->PageReceived, "connected|headers 200 0|progress 3/0 one|");

    // A refusal whose connection is closed while its data are handled has its end there.
    client->ReceiveProgress = [this](auto&&...) { client->Close(); };
    client->Get(url);
    Served().Send("HTTP/1.0 401 No\r\n\r\nno");
    EXPECT_TRUE(WaitUntil([this] { return client->told.ends_with("page 401 no"); }));
}

// While a handler serves events, what arrives waits for its end, and the end of the connection for that.
TEST_F(HTTPReplyTest, WaitsForAHandlerThatTakesItsTime) {
    client->Get(url);
    LoopbackPeer peer = Served();
    client->HeadersReceived = [&](auto&&...) {
        peer.Send(Pattern(100'000));
        peer.Close();
        WaitUntil([] { return false; }, std::chrono::milliseconds(100));
        EXPECT_EQ(client->told, "connected");
    };
    peer.Send(kOk + "Content-length: 4\r\n\r");
    EXPECT_TRUE(WaitUntil([&] { return !client->Lookahead().empty(); }));
    peer.Send("\nhead"); // of the length that was promised, which ends nothing
    EXPECT_TRUE(WaitUntil([&] { return client->ends == 1; }));
    EXPECT_TRUE(client->told.ends_with("|page 200 head" + Pattern(100'000)));
}

TEST_F(HTTPReplyTest, KeepsAClientAliveUntilItsConnectionEnds) {
    Ref<HTTPSocket> held = New<HTTPSocket>();
    const WeakRef<HTTPSocket> known(held);
    held->Get(url);
    held = nullptr;
    const LoopbackPeer peer = Served();
    known.Held()->Close();
    EXPECT_TRUE(peer.HasInput()) << "the far side knows at once";
    EXPECT_TRUE(WaitUntil([&] { return known.Held().IsNil(); }));
}

TEST_F(HTTPReplyTest, TakesLittleMemoryIntoAFile) {
    const TestFolder folder;
    client->ReceiveProgress = nullptr;
    client->Get(url, folder.Item("film"));
    std::jthread sender([piece = Pattern(1 << 20), peer = Served()]() mutable {
        peer.Send(kOk + "\r\n");
        for (int i = 0; i < 64; ++i)
            peer.Send(piece);
        peer.Close();
    });
    rusage before{}, after{};
    getrusage(RUSAGE_SELF, &before);
    EXPECT_TRUE(WaitUntil([this] { return client->ends == 1; }));
    getrusage(RUSAGE_SELF, &after);
    EXPECT_EQ(folder.Item("film")->Length(), 64 << 20);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 16 * 1024) << "KiB";
#endif
}
