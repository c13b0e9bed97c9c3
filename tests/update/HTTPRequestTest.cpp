#include "framework/threads/MainThread.h"
#include "tests/update/HTTPClient.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

const std::string kReply = "HTTP/1.0 200 OK\r\nA: b\r\n\r\nbody";

class HTTPRequestTest : public testing::Test {
protected:
    std::string RequestOf(const std::string& url) {
        client->Get(url);
        return Answer(server, *client, kReply);
    }
    std::string Posted() {
        client->Post(server.Url("/"));
        return Answer(server, *client, kReply);
    }

    LoopbackServer server;
    const Ref<HTTPClient> client = New<HTTPClient>();
    const std::string host = server.Host();
    const std::string common = "Accept: */*\r\nAccept-Language: en\r\nHost: " + host + "\r\n";
};

} // namespace

TEST_F(HTTPRequestTest, IsTheseBytes) {
    EXPECT_EQ(RequestOf("http://" + host + "/a/b?c=d e"), "GET /a/b?c=d e HTTP/1.0\r\n" + common + "\r\n");
    EXPECT_EQ(RequestOf("https://" + host), "GET / HTTP/1.0\r\n" + common + "\r\n") << "the scheme is thrown away";
    EXPECT_EQ(RequestOf(host + "/"), "GET / HTTP/1.0\r\n" + common + "\r\n");
    // Without a slash the query is part of the host.
    EXPECT_EQ(RequestOf(host + "?q"),
              "GET / HTTP/1.0\r\nAccept: */*\r\nAccept-Language: en\r\nHost: " + host + "?q\r\n\r\n");

    client->SetRequestHeader("X-Own", "1");
    client->SetRequestHeader("accept", "text/plain");
    EXPECT_EQ(RequestOf(host),
              "GET / HTTP/1.0\r\nAccept: text/plain\r\nAccept-Language: en\r\nHost: " + host + "\r\nX-Own: 1\r\n\r\n");
    client->SetRequestHeader("X-Own", "");
    client->ClearRequestHeaders();
    EXPECT_EQ(RequestOf(host), "GET / HTTP/1.0\r\nHost: " + host + "\r\n\r\n");
}

TEST_F(HTTPRequestTest, PostsWhatWasSetUntilAnotherDropsIt) {
    const std::string content("a\0b", 3);
    client->SetPostContent(content, "text/x");
    const std::string post =
        "POST / HTTP/1.0\r\n" + common + "Content-type: text/x\r\nContent-length: 3\r\n\r\n" + content;
    EXPECT_EQ(Posted(), post);
    EXPECT_EQ(Posted(), post) << "goes out again";
    EXPECT_EQ(RequestOf(host), "GET / HTTP/1.0\r\n" + common + "\r\n");
    const std::string empty = "POST / HTTP/1.0\r\n" + common + "Content-type: \r\nContent-length: 0\r\n\r\n";
    EXPECT_EQ(Posted(), empty) << "dropped by the other request";
    client->SetFormData(nullptr);
    EXPECT_EQ(Posted(), empty);

    const auto form = New<Dictionary<std::string>>();
    EXPECT_EQ(client->EncodeFormData(form), "");
    form->SetValue("z", "100% a+b");
    form->SetValue("a-b_c", "?:@'\"|\r\n\xC3\xBC(~)");
    client->SetFormData(form);
    client->SendRequest("post", server.Url("/"));
    EXPECT_EQ(Answer(server, *client, kReply),
              "post / HTTP/1.0\r\n" + common +
                  "Content-type: application/x-www-form-urlencoded\r\nContent-length: 48\r\n\r\n"
                  "z=100%25+a%2Bb&a%2Db%5Fc=?:@'\"|%0D%0A\xC3\xBC%28%7E%29");
}

TEST_F(HTTPRequestTest, GoesToTheProxyWithTheWholeAddress) {
    client->HTTPProxyAddress = "127.0.0.1";
    client->HTTPProxyPort = server.Port();
    const std::string expected = "GET http://far.invalid/x HTTP/1.0\r\nAccept: */*\r\nAccept-Language: en\r\n"
                                 "Host: far.invalid\r\n\r\n";
    EXPECT_EQ(RequestOf("http://far.invalid/x"), expected);
    client->HTTPProxyPort = 0;
    client->DefaultPort = server.Port();
    EXPECT_EQ(RequestOf("http://far.invalid/x"), expected);
}

TEST_F(HTTPRequestTest, WaitsWithoutEvents) {
    const TestFolder folder;
    bool served = false;
    std::jthread answering = AnswerAside(server, kReply, 5);
    EXPECT_EQ(client->Get(server.Url("/"), 20), "body");
    EXPECT_EQ(client->Post(server.Url("/"), 20), "body");
    EXPECT_EQ(client->GetHeaders(server.Url("/"), 20)->Value("A"), "b");
    PostToMainThread([&served] { served = true; });
    EXPECT_TRUE(client->Get(server.Url("/"), folder.Item("film"), 20));
    EXPECT_EQ(folder.Read("film"), "body");
    EXPECT_FALSE(served) << "nothing else gets a turn";
    client->Yield = true;
    EXPECT_EQ(client->Get("http://localhost:" + std::to_string(server.Port()) + "/", 0), "body");
    EXPECT_TRUE(served);
    answering.join();

    // A page that goes into a file does not count as a sign of life, however much of it comes.
    std::thread talking([this] {
        LoopbackPeer peer = server.Accept();
        peer.ReadRequest();
        peer.Send("HTTP/1.0 200 OK\r\n\r\n");
        while (!peer.HasInput())
            peer.Send("x");
    });
    EXPECT_FALSE(client->Get(server.Url("/"), folder.Item("film"), 1));
    EXPECT_EQ(client->ErrorCode(), -1);
    talking.join();

    // Out of time by silence; and with a file that can't be used, whose error is forgotten at the start of the wait.
    EXPECT_EQ(client->Get(server.Url("/"), 1), "");
    EXPECT_EQ(client->ErrorCode(), -1);
    EXPECT_FALSE(client->Get(server.Url("/"), folder.Item("film")->Parent(), 1));
    EXPECT_EQ(client->ErrorCode(), -1);
    server.Stop();
    EXPECT_FALSE(client->SendRequest("GET", server.Url("/"), folder.Item("film"), 20));
    EXPECT_EQ(client->ErrorCode(), 100);
    EXPECT_TRUE(client->log.empty());
}
