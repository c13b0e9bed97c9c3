#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The server's end of a connection, which does just what a test has it do. Reads and writes block.
class LoopbackPeer {
public:
    explicit LoopbackPeer(int descriptor) : descriptor_(descriptor) {}
    ~LoopbackPeer() { Close(); }
    LoopbackPeer(LoopbackPeer&& other) noexcept;
    LoopbackPeer& operator=(LoopbackPeer&&) = delete;
    LoopbackPeer(const LoopbackPeer&) = delete;
    LoopbackPeer& operator=(const LoopbackPeer&) = delete;

    bool HasInput() const; // bytes or the end of the connection
    // The headers of a request with their blank line, and after a Content-length the body.
    std::string ReadRequest();
    // False once the client does not take it any more.
    bool Send(std::string_view bytes);
    void Close(); // in good order
    void Reset();

private:
    bool ReadMore(std::string& text);

    int descriptor_;
};

// Whether a server takes connections at that port of the loopback address.
bool IsServed(uint16_t port);

// Listens on a port of its own, on the loopback address.
class LoopbackServer {
public:
    // No more than `queue` + 1 clients wait to be accepted; others wait for the connection itself.
    explicit LoopbackServer(int queue = 8);
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    uint16_t Port() const { return port_; }
    std::string Host() const { return "127.0.0.1:" + std::to_string(port_); }
    std::string Url(const std::string& path) const { return "http://" + Host() + path; }
    bool HasClient() const; // to be accepted
    // Waits for a client.
    LoopbackPeer Accept();
    // Connections are refused from now on.
    void Stop();

private:
    int descriptor_;
    uint16_t port_ = 0;
};
