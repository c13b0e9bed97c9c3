#include "framework/threads/MainThread.h"
#include "tests/program/Process.h"
#include "tests/support/Slowness.h"
#include "tests/update/HTTPTest.h"

namespace {

constexpr const char* kProxy = "/usr/bin/tinyproxy";
const std::string kReply = "HTTP/1.0 200 OK\r\nA: b\r\n\r\nbody";

class HTTPRequestTest : public HTTPTest {
protected:
    std::string RequestOf(const std::string& address, const std::string& method = "GET") {
        client->SendRequest(method, address);
        Answer(kReply);
        return request;
    }

    const std::string host = server.Host();
    const std::string common = "Accept: */*\r\nAccept-Language: en\r\nHost: " + host + "\r\n";
};

} // namespace

TEST_F(HTTPRequestTest, IsTheseBytes) {
    EXPECT_EQ(RequestOf("https://" + host + "/a/b?c=d e"), "GET /a/b?c=d e HTTP/1.0\r\n" + common + "\r\n")
        << "the scheme is thrown away";
    // Without a slash the query is part of the host.
    EXPECT_TRUE(RequestOf(host + "?q").ends_with("Host: " + host + "?q\r\n\r\n")) << request;
    client->SetRequestHeader("X-Own", "1");
    client->SetRequestHeader("accept", "text/plain");
    client->SetRequestHeader("Accept-Language", "");
    EXPECT_EQ(RequestOf(host), "GET / HTTP/1.0\r\nAccept: text/plain\r\nHost: " + host + "\r\nX-Own: 1\r\n\r\n");
    client->ClearRequestHeaders();
    client->HTTPProxyAddress = "127.0.0.1";
    client->HTTPProxyPort = server.Port();
    EXPECT_EQ(RequestOf("http://far.invalid/x"), "GET http://far.invalid/x HTTP/1.0\r\nHost: far.invalid\r\n\r\n");
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
    client->SetFormData(form);
    EXPECT_EQ(RequestOf(url, "POST"),
              post("application/x-www-form-urlencoded", "z=100%25+a%2Bb&a%2Db%5Fc=?:@'\"|%0D%0A\xC3\xBC%28%7E%29"));

    for (int i = 0; i < 20'000 / kSlowness; ++i)
        form->SetValue(std::to_string(i), "");
    bool served = false;
    PostToMainThread([&served] { served = true; });
    client->SetFormData(form);
    EXPECT_TRUE(served) << "a long form does not stop the windows";
}

TEST_F(HTTPRequestTest, WaitsWithoutEvents) {
    const TestFolder folder;
    const Ref<FolderItem> film = folder.Item("film");
    bool served = false;
    PostToMainThread([&served] { served = true; });
    std::jthread answering = AnswerAside(std::vector(4, kReply));
    EXPECT_EQ(client->Get(url, 20), "body");
    EXPECT_EQ(client->GetHeaders(url, 20)->Value("A"), "b");
    EXPECT_TRUE(client->Get(url, film, 20));
    EXPECT_EQ(folder.Read("film"), "body");
    EXPECT_FALSE(served) << "nothing else gets a turn";
    client->Yield = true;
    EXPECT_EQ(client->Get("http://127.1:" + std::to_string(server.Port()) + "/", 0), "body");
    EXPECT_TRUE(served);
    answering.join();

    // A page that goes into a file does not count as a sign of life, however much of it comes.
    answering = std::jthread([this] {
        LoopbackPeer peer = server.Accept();
        peer.Read();
        peer.Send("HTTP/1.0 200 OK\r\n\r\n");
        while (!peer.HasInput())
            peer.Send("x");
    });
    EXPECT_FALSE(client->Get(url, film, 1));
    EXPECT_EQ(client->ErrorCode(), -1);
    // That a file can't be used is forgotten at the start of the wait.
    EXPECT_FALSE(client->Get(url, film->Parent(), 1));
    EXPECT_EQ(client->ErrorCode(), -1);
    answering.join();
    server.Close();
    EXPECT_FALSE(client->Get(url, film, 20));
    EXPECT_EQ(client->ErrorCode(), 100);
    EXPECT_EQ(client->told, "");
}

TEST_F(HTTPRequestTest, IsCarriedByARealProxy) {
    if (!std::filesystem::exists(kProxy))
        GTEST_SKIP() << "tinyproxy is not installed";
    const TestFolder folder;
    client->HTTPProxyAddress = "127.0.0.2";          // where nobody else listens
    client->HTTPProxyPort = LoopbackServer().Port(); // which is free now
    client->Yield = true;
    folder.Write("proxy.conf", "Listen 127.0.0.2\nPort " + std::to_string(client->HTTPProxyPort) + "\n");
    Process proxy({kProxy, "-d", "-c", folder.Path("proxy.conf")}, {{}, folder.Path(), folder.Path("proxy")});
    Await("a proxy that listens", [&] { return proxy.Output().find("Accepting connections") != std::string::npos; });
    const std::jthread answering([this] {
        LoopbackPeer peer = server.Accept();
        while (request.find("\r\n\r\n") == std::string::npos) // it comes line by line
            request += peer.Read();
        peer.Send(kReply);
    });
    EXPECT_EQ(client->Get(url, 20), "body");
    EXPECT_NE(client->PageHeaders()->Value("Via"), "") << "what the proxy adds";
}
