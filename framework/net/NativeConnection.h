#pragma once

// The toolkit's side of a TCP connection. Included by the framework's sources only.

#include "framework/net/TCPSocket.h"

#include <QHostAddress>
#include <QHostInfo>
#include <QTcpSocket>

#include <cstdint>
#include <future>
#include <memory>
#include <string>
#include <string_view>

// Notes what happens to the toolkit's socket, and hands it on to its owner as events: one after the other, the end
// last, and never from within a call of the program other than Poll. While a handler serves events itself, those of its
// own connection wait. Main thread.
class TCPSocket::Connection : public std::enable_shared_from_this<Connection> {
public:
    explicit Connection(const Ref<TCPSocket>& owner);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // Opens the connection with the next turn of the event loop, or the next Serve.
    void Begin(const std::string& address, int32_t port);
    // Ends the connection, now. Nothing of it reaches the owner any more.
    void Abandon();
    void Write(std::string_view bytes);
    void Purge();
    // Does what there is to do without the event loop; waits for it up to some milliseconds.
    void Serve();
    // Waits as long where there is nothing to come.
    static void Idle();

private:
    void Open();
    void LookUp(const QString& host);
    void HostFound();
    void TryNextAddress();
    void Fail(QAbstractSocket::SocketError error);
    void ServeNotifiers();

    void Due(bool& event);
    void Deliver();
    bool DeliverNext(TCPSocket& owner);
    bool DataDue() const;
    void End(TCPSocket& owner);

    const Ref<TCPSocket> owner_; // kept alive until it lets go of this
    QTcpSocket* const socket_;
    std::string address_;
    int32_t port_ = 0;
    bool begun_ = false; // and not yet opened
    std::future<QHostInfo> lookup_;
    QList<QHostAddress> addresses_; // still to be tried
    QAbstractSocket::SocketError failure_ = QAbstractSocket::UnknownSocketError;
    bool connectedDue_ = false, dataDue_ = false, sentDue_ = false, endDue_ = false;
    bool posted_ = false; // a call of Deliver
    bool delivering_ = false;
    QByteArray rescued_; // received data that the toolkit was about to throw away
};
