#include "tests/update/HTTPTest.h"

#include <QCryptographicHash>

namespace {

const std::string kPage = "HTTP/1.0 200 OK\r\n\r\nyes";

std::string Challenge(const std::string& challenge) {
    return "HTTP/1.0 401 No\r\nWWW-Authenticate: " + challenge + "\r\n\r\nno";
}

std::string Md5(const std::string& text) {
    return QCryptographicHash::hash(QByteArray::fromStdString(text), QCryptographicHash::Md5).toHex().toStdString();
}

std::string Between(const std::string& text, const std::string& from, const std::string& to) {
    const std::size_t start = text.find(from) + from.size();
    return text.substr(start, text.find(to, start) - start);
}

bool Tell(const std::string& /*realm*/, const Ref<InternetHeaders>&, std::string& name, std::string& password) {
    name = "Aladdin";
    password = "open sesame";
    return true;
}

class HTTPCredentialsTest : public HTTPTest {
protected:
    HTTPCredentialsTest() { client->AuthenticationRequired = Tell; }

    // The value of the header with which the client repeats its request.
    std::string ReplyTo(const std::string& challenge) {
        client->Get(url);
        Served().Send(Challenge(challenge));
        EXPECT_EQ(request.find("Authorization"), std::string::npos) << "a credential serves one request";
        Answer(kPage);
        return Between(request, "\r\nAuthorization: ", "\r\n\r\n");
    }
};

} // namespace

TEST_F(HTTPCredentialsTest, RepeatTheRequestOnce) {
    EXPECT_EQ(ReplyTo("Basic realm=\"cave\""), "Basic QWxhZGRpbjpvcGVuIHNlc2FtZQ==");
    EXPECT_EQ(client->told, "connected|connected|headers 200 0|progress 3/0 yes|page 200 yes");
    const std::jthread serving = AnswerAside({Challenge("Basic x"), kPage});
    EXPECT_EQ(client->Get(url, 20), "yes");
}

TEST_F(HTTPCredentialsTest, WrapWithinTheirHeaderWhereTheyAreLong) {
    client->AuthenticationRequired = [](auto&&, auto&&, std::string& name, std::string& password) {
        name = password = std::string(30, 'x');
        return true;
    };
    const std::string x12 = "eHh4eHh4eHh4eHh4"; // twelve of them
    EXPECT_EQ(ReplyTo("Basic x"), "Basic " + x12 + x12 + "eHh4eHh4Onh4" + x12 + x12 + "\r\neHh4eA==");
}

TEST_F(HTTPCredentialsTest, AnswerADigestChallengeInTheirOwnWay) {
    std::string lastNonce;
    const auto expect = [&](const std::string& challenge, const std::string& realmName, const std::string& nonce,
                            const std::string& end) {
        const std::string header = ReplyTo(challenge);
        const std::string own = Between(header, "cnonce=\"", "\"");
        EXPECT_NE(own, std::exchange(lastNonce, own));
        // The realm has no part in the digest; the address is the whole one.
        const std::string response =
            Md5(Md5("Aladdin::open sesame") + ":" + nonce + ":00000001:" + own + ":auth:" + Md5("GET:" + url));
        EXPECT_EQ(header, "Digest username=\"Aladdin\", realm=\"" + realmName + "\", nonce=\"" + nonce + "\", uri=\"" +
                              url + "\", qop=auth, nc=00000001, cnonce=\"" + own + "\", response=\"" + response + "\"" +
                              end);
    };
    // One line is one parameter, which swallows what follows: the first challenge has no nonce.
    expect("Digest realm=\"cave\", nonce=\"n1\"", "cave\", nonce=\"n1", "", ", ");
    expect("Digest nonce=xn2x", "", "n2", ", "); // a value without quotation marks loses its ends
    // The last nonce that came, counted as the first again.
    expect("Digest opaque=\"o\"", "", "n2", ", opaque=\"\"");
}

TEST_F(HTTPCredentialsTest, LeaveTheRefusalAsThePageWhereThereIsNoAnswer) {
    for (const std::string challenge : {"Negotiate x", "Basic", "", "Basic x"}) {
        if (challenge == "Basic x")
            client->AuthenticationRequired = [](auto&&...) { return false; };
        client->told.clear();
        client->Get(url);
        Answer(Challenge(challenge));
        EXPECT_TRUE(client->told.ends_with("|page 401 no")) << challenge;
    }
}

TEST_F(HTTPCredentialsTest, DoNotGoWithARequestThatIsBegunInsteadOfTheAnswer) {
    client->AuthenticationRequired = [this](auto&&... arguments) {
        client->Get(url);
        return Tell(arguments...);
    };
    ReplyTo("Basic x");
    EXPECT_EQ(request.find("Authorization"), std::string::npos);
}

TEST_F(HTTPCredentialsTest, AreAskedForApartByTheProxy) {
    const TestFolder folder;
    client->ProxyAuthenticationRequired = Tell;
    client->AuthenticationRequired = nullptr;
    client->Get(url, folder.Item("film"));
    Served().Send("HTTP/1.0 407 No\r\nProxy-Authenticate: Basic realm=\"cave\"\r\n\r\nno");
    Answer(kPage);
    EXPECT_EQ(Between(request, "\r\nProxy-Authorization: ", "\r\n"), "Basic QWxhZGRpbjpvcGVuIHNlc2FtZQ==");
    EXPECT_EQ(folder.Read("film"), "yes") << "the file is begun anew";
}
