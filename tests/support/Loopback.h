#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

// A socket that does just what a test has it do. It is closed, in good order, with this object at the latest.
class LoopbackSocket {
public:
    explicit LoopbackSocket(int descriptor) : descriptor_(descriptor) {}
    LoopbackSocket(LoopbackSocket&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    ~LoopbackSocket() { Close(); }

    bool HasInput() const; // bytes, the end of the connection, or a client to be accepted
    void Close();

protected:
    int descriptor_;
};

// The server's end of a connection. Reads and writes block.
class LoopbackPeer : public LoopbackSocket {
public:
    using LoopbackSocket::LoopbackSocket;

    // What has come, at least something: a short request comes in one piece. Empty at the end.
    std::string Read();
    // Stops where the client does not take it any more.
    void Send(std::string_view bytes);
};

// Listens on a port of its own, on the loopback address. Once closed, connections are refused.
class LoopbackServer : public LoopbackSocket {
public:
    LoopbackServer();

    uint16_t Port() const { return port_; }
    std::string Host() const { return "127.0.0.1:" + std::to_string(port_); }
    std::string Url(const std::string& path) const { return "http://" + Host() + path; }
    // Waits for a client.
    LoopbackPeer Accept();

private:
    uint16_t port_ = 0;
};
