// Any bytes as the reply of a server, in any pieces: each comes to an end without a fault, and what the progress tells
// of the body is the body.

#include "fuzz/Require.h"
#include "update/HTTPSocket.h"
#include "update/InternetHeaders.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace {

// The client without a network: what is fed to it is what it receives.
class FedClient : public HTTPSocket {
public:
    std::string body; // as the progress told it
    int ends = 0;     // of replies
    int headers = 0;

    explicit FedClient(bool answersChallenges) {
        const auto answer = [this, answersChallenges](auto&&, auto&&, std::string& name, std::string& password) {
            name = password = "x";
            return answersChallenges && ++challenges_ <= 2;
        };
        AuthenticationRequired = answer;
        ProxyAuthenticationRequired = answer;
        HeadersReceived = [this](const Ref<InternetHeaders>& received, int32_t) {
            Require(!received.IsNil());
            ++headers;
        };
        ReceiveProgress = [this](int32_t soFar, int32_t, const std::string& data) {
            body += data;
            Require(soFar == static_cast<int32_t>(body.size()));
        };
        PageReceived = [this](auto&&, auto&&, auto&&, const std::string& page) {
            Require(page == body);
            ++ends;
        };
    }

    void Feed(std::string_view bytes) {
        fed_.append(bytes);
        if (connected_)
            Event_DataAvailable();
        Serve();
    }

    void End() {
        if (!connected_)
            return;
        connected_ = false;
        Event_Error();
    }

    // A connection that was asked for stands at once, from the event loop's hand.
    void Serve() {
        if (!std::exchange(asked_, false))
            return;
        connected_ = true;
        Event_Connected();
        Require(sent_.ends_with("\r\n\r\n"));
        sent_.clear();
    }

    bool HasUnread() const { return !fed_.empty(); }

    void Connect() override { asked_ = true; }
    void Close() override { connected_ = false; }
    void Purge() override { fed_.clear(); }
    bool IsConnected() const override { return connected_; }
    const std::string& Lookahead() const override { return fed_; }
    std::string Read(int32_t count) override {
        Require(count >= 0);
        const auto size = std::min(static_cast<std::size_t>(count), fed_.size());
        std::string bytes = fed_.substr(0, size);
        fed_.erase(0, size);
        return bytes;
    }
    std::string ReadAll() override { return std::exchange(fed_, {}); }
    void Write(std::string_view bytes) override { sent_.append(bytes); }

private:
    std::string fed_, sent_;
    bool asked_ = false, connected_ = false;
    int challenges_ = 0;
};

} // namespace

// The first byte says how to ask, the second how large the pieces are.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size < 2)
        return 0;
    const bool head = (data[0] & 1) != 0;
    const auto piece = static_cast<std::size_t>(data[1]) + 1;
    const std::string_view reply(reinterpret_cast<const char*>(data) + 2, size - 2);

    const auto client = New<FedClient>((data[0] & 2) != 0);
    if (head)
        client->GetHeaders("http://x/");
    else
        client->Get("http://x/");
    client->Serve();
    for (std::size_t at = 0; at < reply.size(); at += piece)
        client->Feed(reply.substr(at, piece));
    const bool unread = client->HasUnread();
    client->End();
    Require(client->headers <= 1);
    // Ends once; without an end only where the headers broke off, or there is nothing to tell.
    Require(client->ends == (head || unread ? 0 : 1));
    Require(!head || client->body.empty());
    return 0;
}
