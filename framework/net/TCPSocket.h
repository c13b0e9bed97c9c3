#pragma once

#include "framework/net/SocketCore.h"

#include <memory>
#include <string>
#include <string_view>

// The client's end of a TCP connection, to which text is bytes. Events come from the event loop and from Poll. Main
// thread.
class TCPSocket : public SocketCore {
public:
    TCPSocket();
    ~TCPSocket() override;

    std::string Address; // name or number of the host to connect to

    void Connect() override;
    void Close() override;
    void Purge() override;
    void Poll() override;
    bool IsConnected() const override;
    int32_t LastErrorCode() const override;

    // All received data that have not been read. Valid until the socket is touched again.
    virtual const std::string& Lookahead() const;
    // The first `count` of those bytes, or all, which are read with that.
    virtual std::string Read(int32_t count);
    virtual std::string ReadAll();

    // Queues all bytes for sending. Without a connection they are dropped.
    virtual void Write(std::string_view bytes);

protected:
    // The connection stands. Comes once.
    virtual void Event_Connected() {}

private:
    class Connection; // on the system's sockets

    std::shared_ptr<Connection> connection_; // nil while there is none
    std::string received_;
    int32_t lastErrorCode_ = 0;
    bool connected_ = false;
};
