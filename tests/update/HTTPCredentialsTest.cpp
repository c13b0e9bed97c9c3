#include "tests/update/HTTPClient.h"

#include <QCryptographicHash>

#include <gtest/gtest.h>

#include <thread>

namespace {

std::string Md5(const std::string& text) {
    return QCryptographicHash::hash(QByteArray::fromStdString(text), QCryptographicHash::Md5).toHex().toStdString();
}

std::string Between(const std::string& text, const std::string& from, const std::string& to) {
    const std::size_t start = text.find(from) + from.size();
    return text.substr(start, text.find(to, start) - start);
}

class HTTPCredentialsTest : public testing::Test {
protected:
    HTTPCredentialsTest() {
        client->AuthenticationRequired = [this](const std::string& ofRealm, const Ref<InternetHeaders>&,
                                                std::string& forName, std::string& forPassword) {
            realm = ofRealm;
            forName = name;
            forPassword = "open sesame";
            return true;
        };
    }

    // The value of the header with which the client repeats its request after that challenge.
    std::string ReplyTo(const std::string& challenge) {
        client->Get(url);
        {
            HTTPExchange exchange(server);
            EXPECT_EQ(exchange.request.find("Authorization"), std::string::npos) << "a credential serves one request";
            exchange.peer.Send("HTTP/1.0 401 No\r\nWWW-Authenticate: " + challenge + "\r\n\r\nno");
        }
        return Between(Answer(server, *client, "HTTP/1.0 200 OK\r\n\r\nyes"), "\r\nAuthorization: ", "\r\n\r\n");
    }

    LoopbackServer server;
    const Ref<HTTPClient> client = New<HTTPClient>();
    const std::string url = server.Url("/secret");
    std::string name = "Aladdin";
    std::string realm;
};

} // namespace

TEST_F(HTTPCredentialsTest, RepeatsTheRequestOnce) {
    EXPECT_EQ(ReplyTo("Basic realm=\"cave\""), "Basic QWxhZGRpbjpvcGVuIHNlc2FtZQ==");
    EXPECT_EQ(realm, "cave");
    EXPECT_EQ(client->Told(), "connected|connected|headers 200 0|progress 3/0 yes|page 200 yes");
    // The same in a blocking call, where the server has the first connection closed before the second comes.
    const std::jthread serving([this] {
        LoopbackPeer first = server.Accept();
        first.ReadRequest();
        first.Send("HTTP/1.0 401 No\r\nWWW-Authenticate: Basic x\r\n\r\nno");
        EXPECT_EQ(first.ReadRequest(), "");
        LoopbackPeer second = server.Accept();
        second.ReadRequest();
        second.Send("HTTP/1.0 200 OK\r\n\r\nyes");
    });
    EXPECT_EQ(client->Get(url, 20), "yes");
    name = std::string(60, 'a');
    EXPECT_EQ(ReplyTo("basic x"),
              "Basic YWFhYWFhYWFhYWFhYWFhYWFhYWFhYWFhYWFhYWFhYWFhYWFhYWFhYWFhYWFhYWFhYWFhYWFhYWFh\r\n"
              "YWFhOm9wZW4gc2VzYW1l")
        << "long ones are wrapped within the header";
}

TEST_F(HTTPCredentialsTest, AnswersADigestChallengeInItsOwnWay) {
    std::string lastNonce;
    const auto expect = [&](const std::string& challenge, const std::string& realmName, const std::string& nonce,
                            const std::string& end) {
        const std::string header = ReplyTo(challenge);
        const std::string own = Between(header, "cnonce=\"", "\"");
        EXPECT_EQ(own.size(), 25U);
        EXPECT_NE(own, lastNonce);
        lastNonce = own;
        // The realm has no part in the digest; the address is the whole one.
        const std::string response =
            Md5(Md5("Aladdin::open sesame") + ":" + nonce + ":00000001:" + own + ":auth:" + Md5("GET:" + url));
        EXPECT_EQ(header, "Digest username=\"Aladdin\", realm=\"" + realmName + "\", nonce=\"" + nonce + "\", uri=\"" +
                              url + "\", qop=auth, nc=00000001, cnonce=\"" + own + "\", response=\"" + response + "\"" +
                              end);
    };
    // One line is one parameter, which swallows what follows: the first challenge has no nonce.
    expect("Digest realm=\"cave\", nonce=\"n1\"", "cave\", nonce=\"n1", "", ", ");
    expect("Digest nonce=xn2x", "", "n2", ", ");   // a value without quotation marks loses its ends
    expect("Digest nonce=\"n2\"", "", "n2", ", "); // counted as the first again
    expect("Digest realm=\"x\"", "x", "n2", ", "); // the last nonce that came
    expect("Digest opaque=\"o\"", "", "n2", ", opaque=\"\"");
}

TEST_F(HTTPCredentialsTest, LeavesTheRefusalAsThePageWhereItHasNoAnswer) {
    for (const std::string challenge : {"Negotiate x", "Basic", "", "Basic x"}) {
        if (challenge == "Basic x")
            client->AuthenticationRequired = [](auto&&...) { return false; };
        client->Get(url);
        Answer(server, *client, "HTTP/1.0 401 No\r\nWWW-Authenticate: " + challenge + "\r\n\r\nno");
        EXPECT_EQ(client->log.back(), "page 401 no") << challenge;
    }
}

TEST_F(HTTPCredentialsTest, AsksForTheProxyApart) {
    const TestFolder folder;
    client->ProxyAuthenticationRequired = client->AuthenticationRequired;
    client->AuthenticationRequired = nullptr;
    client->Get(url, folder.Item("film"));
    {
        HTTPExchange exchange(server);
        exchange.peer.Send("HTTP/1.0 407 No\r\nProxy-Authenticate: Basic realm=\"cave\"\r\n\r\nno");
    }
    const std::string request = Answer(server, *client, "HTTP/1.0 200 OK\r\n\r\nyes");
    EXPECT_EQ(Between(request, "\r\nProxy-Authorization: ", "\r\n"), "Basic QWxhZGRpbjpvcGVuIHNlc2FtZQ==");
    EXPECT_EQ(client->log.back(), "file 200 film");
    EXPECT_EQ(folder.Read("film"), "yes") << "the file is begun anew";
}
