#include "tests/update/HTTPTest.h"

#include <QCryptographicHash>

#include <regex>

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

class HTTPCredentialsTest : public HTTPTest {
protected:
    HTTPCredentialsTest() { client->AuthenticationRequired = tell; }

    // The value of the header with which the client repeats its request.
    std::string ReplyTo(const std::string& challenge, const std::string& method = "GET") {
        const auto ask = [&] { client->SendRequest(method, url); };
        return Between(Answer({Challenge(challenge), kPage}, ask), "\r\nAuthorization: ", "\r\n\r\n");
    }

    std::string user = "Aladdin", secret = "open sesame", askedFor;
    const HTTPSocket::AskForCredentials tell = [this](auto&& realm, auto&& headers, auto& name, auto& password) {
        askedFor = realm + " " + std::to_string(headers->Count());
        name = user;
        password = secret;
        return true;
    };
};

} // namespace

TEST_F(HTTPCredentialsTest, RepeatOneRequestForTheOneWhoAsks) {
    const TestFolder folder;
    const auto check = [&](const std::string& challenge, const std::string& header) {
        const std::string refusal = "HTTP/1.0 " + challenge + "-Authenticate: Basic realm=\"cave\"\r\n\r\nno";
        Answer({refusal, kPage}, [&] { client->Get(url, folder.Item("film")); });
        EXPECT_TRUE(request.ends_with("\r\n" + header + ": Basic QWxhZGRpbjpvcGVuIHNlc2FtZQ==\r\n\r\n")) << request;
        EXPECT_EQ(client->told, "connected|connected|headers 200 0|progress 3/0 yes|file 200 film");
        EXPECT_EQ(askedFor + folder.Read("film"), "cave 1yes");
        Answer({kPage}, [&] { client->Get(url); });
        EXPECT_EQ(request.find("Authorization"), std::string::npos) << "they serve one request";
        Answer({refusal, kPage}, [&] { EXPECT_EQ(client->Get(url, 20), "yes"); });
    };
    check("401 No\r\nWWW", "Authorization");
    client->ProxyAuthenticationRequired = std::exchange(client->AuthenticationRequired, nullptr);
    check("407 No\r\nProxy", "Proxy-Authorization");
}

TEST_F(HTTPCredentialsTest, WrapWithinTheirHeaderWhereTheyAreLong) {
    user = secret = std::string(30, 'x');
    const std::string x12 = "eHh4eHh4eHh4eHh4"; // twelve of them
    EXPECT_EQ(ReplyTo("Basic x"), "Basic " + x12 + x12 + "eHh4eHh4Onh4" + x12 + x12 + "\r\neHh4eA==");
}

TEST_F(HTTPCredentialsTest, AnswerADigestChallengeInTheirOwnWay) {
    std::string last;
    const auto check = [&](const std::string& method, const std::string& challenge, const std::string& realm,
                           const std::string& nonce, const std::string& end) {
        const std::string header = ReplyTo("Digest " + challenge, method);
        EXPECT_EQ(askedFor, realm + " 1");
        const std::string own = Between(header, "cnonce=\"", "\"");
        EXPECT_TRUE(own != std::exchange(last, own) && std::regex_match(own, std::regex("[0-9A-Za-z]{25}"))) << own;
        // The realm has no part in the digest; the address is the whole one.
        const std::string response =
            Md5(Md5("Aladdin::open sesame") + ":" + nonce + ":00000001:" + own + ":auth:" + Md5(method + ":" + url));
        EXPECT_EQ(header, "Digest username=\"Aladdin\", realm=\"" + realm + "\", nonce=\"" + nonce + "\", uri=\"" +
                              url + "\", qop=auth, nc=00000001, cnonce=\"" + own + "\", response=\"" + response +
                              "\", " + end);
    };
    // One line is one parameter, which swallows what follows, and a value without quotation marks loses its ends. Where
    // there is no nonce, the last one serves again, counted as the first.
    check("GET", R"(realm="cave", nonce="n1")", R"(cave", nonce="n1)", "", "");
    check("PUT", "nonce=xn2x", "", "n2", "");
    check("GET", R"(opaque="o")", "", "n2", R"(opaque="")");
}

TEST_F(HTTPCredentialsTest, LeaveTheRefusalAsThePageWhereThereIsNoAnswer) {
    for (const std::string challenge : {"Negotiate x", "Basic", ""}) {
        Answer({Challenge(challenge)}, [&] { client->Get(url); });
        EXPECT_TRUE(client->told.ends_with("|page 401 no")) << challenge;
    }
    client->AuthenticationRequired = [this](auto&&... arguments) { return !tell(arguments...); };
    Answer({Challenge("Basic x")}, [&] { client->Get(url); });
    EXPECT_TRUE(client->told.ends_with("|page 401 no"));
}

TEST_F(HTTPCredentialsTest, DoNotGoWithARequestBegunInsteadOfAnAnswer) {
    client->AuthenticationRequired = [this](auto&&... arguments) {
        client->Get(url);
        return tell(arguments...);
    };
    ReplyTo("Basic x");
    EXPECT_EQ(request.find("Authorization"), std::string::npos);
}
