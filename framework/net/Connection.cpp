#include "framework/net/Connection.h"

#include "framework/threads/ExceptionBoundary.h"
#include "framework/threads/MainThread.h"

#include <QSocketNotifier>
#include <QTimer>

#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <exception>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

namespace {

constexpr int kPollTimeout = 10;                         // of a Poll, in milliseconds
constexpr std::chrono::seconds kConnectTimeout{30};      // where there is another address to try; not in a Poll
constexpr std::size_t kReadAhead = std::size_t(1) << 20; // fetched before the program has its turn
constexpr std::size_t kPiece = std::size_t(64) * 1024;
constexpr std::size_t kSentAtMost = std::size_t(1) << 20; // kept, of what has still more behind it

constexpr int32_t kRefused = 100;
constexpr int32_t kEnded = 101;
constexpr int32_t kUnknownHost = 102;
constexpr int32_t kNoSuchPort = 103;
constexpr int32_t kSystemError = 200; // and its number

int32_t CodeOf(int error) {
    return error == ECONNREFUSED ? kRefused : kSystemError + error;
}

bool IsForLater(int error) {
    return error == EAGAIN || error == EINTR;
}

} // namespace

// What the event loop watches of a connection. It is taken down by its own events, so it goes when the loop comes
// round.
class TCPSocket::Connection::SocketWatcher : public QObject {
public:
    SocketWatcher(Connection& connection, int descriptor)
        : readable_(descriptor, QSocketNotifier::Read), writable_(descriptor, QSocketNotifier::Write) {
        SetInterest(false, true);
        connectTimer_.setSingleShot(true);
        const auto held = [&connection](Step step) {
            return [&connection, step] { connection.shared_from_this()->Take(step); };
        };
        connect(&readable_, &QSocketNotifier::activated, this, held(&Connection::Readable));
        connect(&writable_, &QSocketNotifier::activated, this, held(&Connection::Writable));
        connect(&connectTimer_, &QTimer::timeout, this, held(&Connection::TimeOut));
    }

    void StartConnectTimer() { connectTimer_.start(kConnectTimeout); }

    void End() {
        SetInterest(false, false);
        StopConnectTimer();
        deleteLater();
    }

    void SetInterest(bool reading, bool writing) {
        readable_.setEnabled(reading);
        writable_.setEnabled(writing);
    }

    void StopConnectTimer() { connectTimer_.stop(); }

private:
    QSocketNotifier readable_, writable_;
    QTimer connectTimer_;
};

TCPSocket::Connection::Connection(const Ref<TCPSocket>& owner) : owner_(owner) {}

TCPSocket::Connection::~Connection() {
    CloseSocket();
}

void TCPSocket::Connection::Begin(const std::string& address, int32_t port) {
    address_ = address;
    port_ = port;
    begun_ = true;
    Post(weak_from_this(), &Connection::Open);
}

void TCPSocket::Connection::Take(Step step) {
    Run("connection", [&] { (this->*step)(); });
}

void TCPSocket::Connection::Post(std::weak_ptr<Connection> connection, Step step) {
    PostToMainThread([connection = std::move(connection), step] {
        if (const auto held = connection.lock())
            held->Take(step);
    });
}

// What came is let go, so that there is room again for all else that the program does.
void TCPSocket::Connection::Run(const char* what, const std::function<void()>& code) {
    bool outOfMemory = false;
    ExceptionBoundary::Run(what, [&] {
        try {
            code();
        } catch (const std::bad_alloc&) {
            outOfMemory = true;
            throw;
        }
    });
    if (!outOfMemory || owner_->connection_.get() != this) // which may have another by now
        return;
    owner_->received_ = std::string();
    failure_ = kOutOfMemory;
    End();
}

void TCPSocket::Connection::Abandon() {
    begun_ = false;
    lookup_ = {};
    CloseSocket();
}

void TCPSocket::Connection::Open() {
    if (!std::exchange(begun_, false))
        return;
    if (port_ >= 0 && port_ <= UINT16_MAX) {
        LookUp();
    } else {
        KeepFirstError(kNoSuchPort);
        End();
    }
}

// On a thread of its own, since it may take long and can't be broken off.
void TCPSocket::Connection::LookUp() {
    std::promise<Addresses> promise;
    lookup_ = promise.get_future();
    try {
        std::thread([weak = weak_from_this(), host = address_, port = port_, promise = std::move(promise)]() mutable {
            ExceptionBoundary::Run("lookup of a host", [&] {
                try {
                    promise.set_value(Resolve(host, port));
                } catch (...) {
                    promise.set_exception(std::current_exception());
                }
                Post(weak, &Connection::HostFound);
            });
        }).detach();
    } catch (const std::system_error& failure) {
        lookup_ = {};
        KeepFirstError(CodeOf(failure.code().value()));
        End();
    }
}

TCPSocket::Connection::Addresses TCPSocket::Connection::Resolve(const std::string& host, int32_t port) {
    addrinfo wanted{};
    wanted.ai_socktype = SOCK_STREAM;
    wanted.ai_flags = AI_NUMERICSERV | AI_IDN;
    addrinfo* found = nullptr;
    const bool nameIsText = host.find('\0') == std::string::npos;
    if (!nameIsText || getaddrinfo(host.c_str(), std::to_string(port).c_str(), &wanted, &found) != 0)
        return nullptr;
    return {found, freeaddrinfo};
}

void TCPSocket::Connection::HostFound() {
    if (!lookup_.valid()) // known by a Poll already
        return;
    addresses_ = lookup_.get();
    next_ = addresses_.get();
    if (next_ == nullptr)
        KeepFirstError(kUnknownHost);
    TryNextAddress();
}

void TCPSocket::Connection::TryNextAddress() {
    while (next_ != nullptr) {
        const addrinfo& address = *std::exchange(next_, next_->ai_next);
        descriptor_ = socket(address.ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
        if (descriptor_ >= 0 &&
            (connect(descriptor_, address.ai_addr, address.ai_addrlen) == 0 || errno == EINPROGRESS)) {
            connecting_ = true;
            watcher_ = new SocketWatcher(*this, descriptor_);
            if (next_ != nullptr)
                watcher_->StartConnectTimer();
            return;
        }
        KeepFirstError(CodeOf(errno));
        CloseSocket();
    }
    End();
}

void TCPSocket::Connection::TimeOut() {
    FailAddress(ETIMEDOUT);
}

void TCPSocket::Connection::FailAddress(int error) {
    KeepFirstError(CodeOf(error));
    CloseSocket();
    TryNextAddress();
}

void TCPSocket::Connection::CloseSocket() {
    if (SocketWatcher* const watcher = std::exchange(watcher_, nullptr))
        watcher->End();
    if (descriptor_ >= 0)
        close(std::exchange(descriptor_, -1));
    connecting_ = false;
}

void TCPSocket::Connection::Write(std::string_view bytes) {
    outgoing_.append(bytes);
    UpdateInterest();
}

void TCPSocket::Connection::Purge() {
    outgoing_.clear();
    sent_ = 0;
    UpdateInterest();
    if (descriptor_ >= 0 && !connecting_)
        recv(descriptor_, nullptr, INT_MAX, MSG_TRUNC); // takes what is there, to nowhere
}

void TCPSocket::Connection::Serve() {
    Take(&Connection::Open);
    if (lookup_.valid() && lookup_.wait_for(std::chrono::milliseconds(kPollTimeout)) == std::future_status::ready)
        Take(&Connection::HostFound);
    if (delivering_ || watcher_ == nullptr) {
        Idle();
        return;
    }
    pollfd ready{descriptor_, POLLIN, 0};
    if (WantsToWrite())
        ready.events |= POLLOUT;
    if (poll(&ready, 1, kPollTimeout) <= 0)
        return;
    if (WantsToWrite() && (ready.revents & ~POLLIN) != 0)
        Take(&Connection::Writable);
    if (watcher_ != nullptr && !connecting_ && (ready.revents & ~POLLOUT) != 0)
        Take(&Connection::Readable);
}

void TCPSocket::Connection::Idle() {
    poll(nullptr, 0, kPollTimeout);
}

bool TCPSocket::Connection::WantsToWrite() const {
    return connecting_ || !outgoing_.empty();
}

void TCPSocket::Connection::UpdateInterest() {
    if (watcher_ != nullptr)
        watcher_->SetInterest(!delivering_ && !connecting_, !delivering_ && WantsToWrite());
}

void TCPSocket::Connection::Writable() {
    if (connecting_)
        Connected();
    else
        Send();
}

void TCPSocket::Connection::Connected() {
    int error = 0;
    socklen_t size = sizeof error;
    getsockopt(descriptor_, SOL_SOCKET, SO_ERROR, &error, &size);
    if (error != 0) {
        FailAddress(error);
        return;
    }
    failure_ = 0;
    connecting_ = false;
    watcher_->StopConnectTimer();
    owner_->connected_ = true;
    Deliver("connected", [this] { owner_->Event_Connected(); });
}

// What can't be sent any more is dropped: the connection is at its end, which shows once all that came is read.
void TCPSocket::Connection::Send() {
    const ssize_t count = send(descriptor_, outgoing_.data() + sent_, outgoing_.size() - sent_, MSG_NOSIGNAL);
    if (count < 0 && IsForLater(errno))
        return;
    if (count < 0) {
        KeepFirstError(CodeOf(errno));
        shutdown(descriptor_, SHUT_RDWR);
        sent_ = outgoing_.size();
    } else {
        sent_ += static_cast<std::size_t>(count);
    }
    if (sent_ == outgoing_.size() || sent_ >= kSentAtMost) {
        outgoing_.erase(0, sent_);
        sent_ = 0;
    }
    if (outgoing_.empty())
        Deliver("sent data", [this, count] { owner_->Event_SendComplete(count < 0); });
}

void TCPSocket::Connection::Readable() {
    std::array<char, kPiece> piece;
    std::size_t fetched = 0;
    ssize_t count = 0;
    do {
        count = recv(descriptor_, piece.data(), piece.size(), 0);
        if (count > 0) {
            owner_->received_.append(piece.data(), static_cast<std::size_t>(count));
            fetched += static_cast<std::size_t>(count);
        }
    } while (count > 0 && fetched < kReadAhead);
    const bool ended = count == 0 || (count < 0 && !IsForLater(errno));
    if (count < 0 && ended)
        KeepFirstError(CodeOf(errno));
    // The end is found again, after the data that came before it.
    if (fetched > 0)
        Deliver("received data", [this] { owner_->Event_DataAvailable(); });
    else if (ended)
        End();
}

void TCPSocket::Connection::Deliver(const char* what, const std::function<void()>& event) {
    delivering_ = true;
    UpdateInterest();
    Run(what, event);
    delivering_ = false;
    UpdateInterest();
}

// The first failure tells more than those that follow from it, or than those of addresses that are tried in its place.
void TCPSocket::Connection::KeepFirstError(int32_t failure) {
    if (failure_ == 0)
        failure_ = failure;
}

void TCPSocket::Connection::End() {
    const Ref<TCPSocket> owner = owner_;
    owner->lastErrorCode_ = failure_ == 0 ? kEnded : failure_;
    owner->Close();
    ExceptionBoundary::Run("end of a connection", [&owner] { owner->Event_Error(); });
}
