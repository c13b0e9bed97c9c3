#include "framework/threads/MainThread.h"
#include "tests/update/HTTPTest.h"

namespace {

using std::chrono::milliseconds;

const std::string kReply = "HTTP/1.0 200 OK\r\nA: b\r\n\r\nbody";

class HTTPRequestTest : public HTTPTest {
protected:
    std::string RequestOf(const std::string& address, const std::string& method = "GET") {
        return Answer({kReply}, [&] { client->SendRequest(method, address); });
    }

    // Answers with a body that comes byte by byte for that long.
    std::jthread AnswerSlowly(milliseconds time) {
        return std::jthread([this, end = std::chrono::steady_clock::now() + time] {
            LoopbackPeer peer = server.Accept();
            peer.Read();
            for (peer.Send("HTTP/1.0 200 OK\r\n\r\n"); !peer.HasInput() && std::chrono::steady_clock::now() < end;) {
                peer.Send("x");
                std::this_thread::sleep_for(milliseconds(1));
            }
        });
    }

    const TestFolder folder;
    const Ref<FolderItem> film = folder.Item("film");
    const std::string host = server.Host();
    const std::string accepted = "Accept: */*\r\nAccept-Language: en\r\n", common = accepted + "Host: " + host + "\r\n";
};

} // namespace

TEST_F(HTTPRequestTest, ComesInEachFormOfEachOperation) {
    const std::string address = "https://" + host + "/a/b?c=d e"; // whose scheme counts for nothing
    const auto check = [&](const std::string& method, const std::function<void()>& call, const std::string& outcome) {
        folder.Write("film", "old");
        EXPECT_TRUE(Answer({kReply}, call).starts_with(method + " /a/b?c=d e HTTP/1.0\r\n" + common)) << request;
        EXPECT_EQ(client->told + "|" + folder.Read("film") + "|" + client->from, outcome) << method;
    };
    const std::string begun = "connected|headers 200 1|progress 4/0 body|";
    const auto checkForms = [&](const std::string& method, auto&& ask) {
        check(
            method, [&] { ask(address); }, begun + "page 200 body|old|" + address);
        check(
            method, [&] { ask(address, film); }, begun + "file 200 film|body|" + address);
        check(
            method, [&] { client->told = ask(address, 20); }, "body|old|");
        check(
            method, [&] { client->told = ask(address, film, 20) ? "good" : "bad"; }, "good|body|");
    };
    checkForms("GET", [this](auto... how) { return client->Get(how...); });
    checkForms("POST", [this](auto... how) { return client->Post(how...); });
    checkForms("PUT", [this](auto... how) { return client->SendRequest("PUT", how...); });
    checkForms("GET", [this](auto... how) { return client->SendRequest("", how...); });
    check(
        "HEAD", [&] { client->GetHeaders(address); }, "connected|headers 200 1|old|");
    check(
        "HEAD", [&] { client->told = client->GetHeaders(address, 20)->Value("A"); }, "b|old|");
}

TEST_F(HTTPRequestTest, GoesWhereItsAddressOrTheProxySays) {
    const int32_t port = server.Port();
    const struct {
        std::string address, target, host;
        int32_t defaultPort, proxyPort;
    } rows[] = {{host, "/", host, 1, -1},               // no proxy
                {host + "?q", "/", host + "?q", 1, -1}, // without a slash the query is part of the host
                {"http://127.1:0//", "//", "127.1:0", port, -1},
                {"127.0.0.1:x/:/", "/:/", "127.0.0.1:x", port, -1},
                {"http://far.invalid/x", "http://far.invalid/x", "far.invalid", 1, port},
                {"far.invalid:1/x", "far.invalid:1/x", "far.invalid:1", port, 0}};
    for (const auto& row : rows) {
        client->DefaultPort = row.defaultPort;
        client->HTTPProxyAddress = row.proxyPort < 0 ? "" : "127.0.0.1";
        client->HTTPProxyPort = row.proxyPort;
        EXPECT_EQ(RequestOf(row.address),
                  "GET " + row.target + " HTTP/1.0\r\n" + accepted + "Host: " + row.host + "\r\n\r\n");
    }
}

TEST_F(HTTPRequestTest, HasTheHeadersThatWereSet) {
    client->SetRequestHeader("X-Own", "1");
    client->SetRequestHeader("accept", "text/plain");
    client->SetRequestHeader("Accept-Language", "");
    EXPECT_EQ(RequestOf(url), "GET / HTTP/1.0\r\nAccept: text/plain\r\nX-Own: 1\r\nHost: " + host + "\r\n\r\n");
    client->ClearRequestHeaders();
    EXPECT_EQ(RequestOf(url), "GET / HTTP/1.0\r\nHost: " + host + "\r\n\r\n");
}

TEST_F(HTTPRequestTest, PostsWhatWasSetUntilAnotherDropsIt) {
    const auto post = [this](const std::string& type, const std::string& content) {
        return "POST / HTTP/1.0\r\n" + common + "Content-type: " + type +
               "\r\nContent-length: " + std::to_string(content.size()) + "\r\n\r\n" + content;
    };
    const std::string bytes("a\0b", 3);
    client->SetPostContent(bytes, "text/x");
    EXPECT_EQ(RequestOf(url, "POST"), post("text/x", bytes));
    EXPECT_EQ(RequestOf(url, "POST"), post("text/x", bytes)) << "goes out again";
    EXPECT_EQ(RequestOf(url), "GET / HTTP/1.0\r\n" + common + "\r\n");
    EXPECT_EQ(RequestOf(url, "POST"), post("", ""));

    const auto form = New<Dictionary<std::string>>();
    form->SetValue("z", "100% a+b");
    form->SetValue("a-b_c", "?:@'\"|\r\n\xC3\xBC(~)");
    bool served = false;
    PostToMainThread([&served] { served = true; });
    for (int i = 0; i < 100'000 && !served; ++i)
        client->SetFormData(form);
    EXPECT_TRUE(served) << "a long form does not stop the windows";
    EXPECT_EQ(RequestOf(url, "POST"),
              post("application/x-www-form-urlencoded", "z=100%25+a%2Bb&a%2Db%5Fc=?:@'\"|%0D%0A\xC3\xBC%28%7E%29"));
    client->SetFormData(nullptr);
    EXPECT_EQ(RequestOf(url, "POST"), post("", ""));
}

TEST_F(HTTPRequestTest, IsGivenTimeByWhatComesIntoMemory) {
    const std::jthread answering = AnswerSlowly(milliseconds(1300));
    bool served = false;
    PostToMainThread([&served] { served = true; });
    EXPECT_GT(client->Get(url, 1).size(), 0U);
    EXPECT_EQ(client->ErrorCode(), 0);
    EXPECT_FALSE(served) << "nothing else gets a turn";
    EXPECT_TRUE(WaitUntil([&served] { return served; }));
}

// Nor does one wait less whose file can't be used: that is forgotten at the start of the wait.
TEST_F(HTTPRequestTest, IsGivenNoTimeByWhatComesIntoAFile) {
    PostToMainThread([this] {
        const std::jthread answering = AnswerSlowly(std::chrono::minutes(1));
        EXPECT_FALSE(client->Get(url, film, 1));
        EXPECT_EQ(client->ErrorCode(), -1);
    });
    const auto other = New<HTTPClient>();
    other->Yield = true;
    EXPECT_FALSE(other->Get(url, film->Parent(), 1));
    EXPECT_EQ(other->ErrorCode(), -1);
    {
        const std::jthread answering = AnswerSlowly(milliseconds(100));
        EXPECT_TRUE(other->Get(url, film, 0)) << "for which it waits for ever";
    }
    server.Close();
    EXPECT_FALSE(other->Get(url, film, 20));
    EXPECT_EQ(other->ErrorCode(), 100);
    EXPECT_EQ(client->told + other->told, "");
}
