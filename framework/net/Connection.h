#pragma once

// A TCPSocket's way to the system's sockets. Qt's come with nine libraries (ldd), which a start would load: 1.05 times
// the processor time to the first paint of a window with bars, in 100 paired runs. Included by the framework's sources
// only.

#include "framework/net/TCPSocket.h"

#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <string_view>

struct addrinfo;

// One connection, from the lookup of the host to its end.
//
// The owner gets its events one after the other, the end last. None comes from within a call of the program other than
// Poll. While a handler serves events itself, those of its own connection wait and nothing is fetched. A failure at any
// step is the end of the connection, with the first error met. Main thread, but for the lookup.
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
    // Sends the bytes as soon as the system takes them.
    void Write(std::string_view bytes);
    // Drops what waits to be fetched or sent.
    void Purge();
    // Does what there is to do without the event loop; waits for it up to some milliseconds.
    void Serve();
    // Waits as long where there is nothing to come.
    static void Idle();

private:
    class SocketWatcher;
    using Addresses = std::shared_ptr<addrinfo>; // the first of a list

    // One step of the connection's own: now, or with the next turn of the event loop.
    using Step = void (Connection::*)();
    void Take(Step step);
    static void Post(std::weak_ptr<Connection> connection, Step step);

    // The lookup, on a thread of its own. Resolve gives nil for a host that is not known.
    void Open();
    void LookUp();
    static Addresses Resolve(const std::string& host, int32_t port);
    void HostFound();

    // Connecting, to one address after the other.
    void TryNextAddress();
    void TimeOut();
    void FailAddress(int error);
    void Connected();

    // Transfer, as the watcher of the descriptor calls for it.
    void UpdateInterest();
    bool WantsToWrite() const;
    void Readable();
    void Writable();
    void Send();

    // Events for the owner. Run's code may need more memory than there is: that is the end of the connection, and is
    // logged once.
    void Deliver(const char* what, const std::function<void()>& event);
    void Run(const char* what, const std::function<void()>& code);

    void KeepFirstError(int32_t failure);
    void CloseSocket();
    void End();

    const Ref<TCPSocket> owner_; // kept alive until it lets go of this
    std::string address_;
    int32_t port_ = 0;
    bool begun_ = false; // and not yet opened
    std::future<Addresses> lookup_;
    Addresses addresses_;
    const addrinfo* next_ = nullptr; // of those, to be tried
    int descriptor_ = -1;
    SocketWatcher* watcher_ = nullptr; // of the descriptor, while there is one
    bool connecting_ = false;
    bool delivering_ = false;
    std::string outgoing_;
    std::size_t sent_ = 0; // of those bytes
    int32_t failure_ = 0;  // the first one met on the way, 0 for none
};
