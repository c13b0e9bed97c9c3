// Any bytes as the reply of a server, in any pieces: each comes to an end without a fault, and what the client tells of
// its headers and its body is what was sent.

#include "fuzz/OwnFile.h"
#include "update/HTTPSocket.h"
#include "update/InternetHeaders.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace {

// The client without a network: what is fed to it is what it receives.
class FedClient : public HTTPSocket {
public:
    std::string body;   // as the progress told it
    std::string source; // of the headers
    int ends = 0;       // of replies
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
            source = received->Source();
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

    // Gives whether another reply than this is to follow.
    bool Feed(std::string_view bytes) {
        fed_.append(bytes);
        if (connected_)
            Event_DataAvailable();
        return Serve();
    }

    void End() {
        if (!connected_)
            return;
        connected_ = false;
        Event_Error();
    }

    // A connection that was asked for stands at once, from the event loop's hand.
    bool Serve() {
        if (!std::exchange(asked_, false))
            return false;
        connected_ = true;
        Event_Connected();
        Require(sent_.ends_with("\r\n\r\n"));
        sent_.clear();
        return true;
    }

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

struct Parts {
    std::string_view headers, body;
};

// Those of a reply of which so much comes at a time, if its headers have an end. That is looked for in what has come
// when the first blank line of any kind has.
std::optional<Parts> PartsOf(std::string_view reply, std::size_t piece) {
    constexpr std::string_view kBlankLines[] = {"\r\n\r\n", "\n\n", "\r\r"};
    std::size_t come = std::string_view::npos;
    for (const std::string_view blankLine : kBlankLines)
        if (const std::size_t at = reply.find(blankLine); at != std::string_view::npos)
            come = std::min(come, at + blankLine.size());
    if (come == std::string_view::npos)
        return {};
    const std::string_view known = reply.substr(0, (come + piece - 1) / piece * piece);
    const auto has = [known](std::string_view text) { return known.find(text) != std::string_view::npos; };
    const std::string_view own = kBlankLines[has("\r\n") ? 0 : has("\n") ? 1 : 2];
    for (const std::string_view blankLine : {own, kBlankLines[1], kBlankLines[0], kBlankLines[2]})
        if (has(blankLine))
            return Parts{known.substr(0, known.find(blankLine)),
                         reply.substr(known.find(blankLine) + blankLine.size())};
    return {};
}

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
    std::size_t begin = 0; // of the reply that is not answered by credentials
    for (std::size_t at = 0; at < reply.size(); at += piece)
        if (client->Feed(reply.substr(at, piece)))
            begin = std::min(at + piece, reply.size());
    client->End();

    const std::string_view last = reply.substr(begin);
    const std::optional<Parts> parts = PartsOf(last, piece);
    Require(client->headers == (parts ? 1 : 0));
    Require(!parts || client->source == parts->headers);
    Require(client->body == (parts && !head ? parts->body : ""));
    // Ends once; without an end only where the headers broke off, or there is nothing to tell.
    Require(client->ends == (head || (!parts && !last.empty()) ? 0 : 1));
    return 0;
}
