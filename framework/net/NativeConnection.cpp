#include "framework/net/NativeConnection.h"

#include "framework/base/EventEdge.h"
#include "framework/threads/MainThread.h"

#include <QCoreApplication>
#include <QNetworkProxy>
#include <QPointer>
#include <QSocketNotifier>

#include <poll.h>

#include <chrono>
#include <thread>
#include <utility>
#include <vector>

namespace {

constexpr int32_t kFirstErrorCode = 100;
constexpr int kPatience = 10; // of a Poll, in milliseconds
// Bytes that are fetched ahead. When the program does not read, the sender has to wait.
constexpr qint64 kReadAhead = 1 << 20;

short EventsOf(const QSocketNotifier& notifier) {
    return notifier.type() == QSocketNotifier::Write ? POLLOUT : POLLIN;
}

bool Taken(bool& event) {
    return std::exchange(event, false);
}

} // namespace

TCPSocket::Connection::Connection(const Ref<TCPSocket>& owner) : owner_(owner), socket_(new QTcpSocket) {
    socket_->setProxy(QNetworkProxy::NoProxy);
    socket_->setReadBufferSize(kReadAhead);
    QObject::connect(socket_, &QTcpSocket::connected, socket_, [this] { Due(connectedDue_); });
    QObject::connect(socket_, &QTcpSocket::readyRead, socket_, [this] { Due(dataDue_); });
    QObject::connect(socket_, &QTcpSocket::bytesWritten, socket_, [this] {
        if (socket_->bytesToWrite() == 0)
            Due(sentDue_);
    });
    // A write that fails makes the toolkit drop what has been received.
    QObject::connect(socket_, &QTcpSocket::errorOccurred, socket_, [this] {
        if (socket_->isOpen())
            rescued_ += socket_->readAll();
    });
    QObject::connect(socket_, &QTcpSocket::stateChanged, socket_, [this](QAbstractSocket::SocketState state) {
        if (state == QAbstractSocket::UnconnectedState)
            Due(endDue_);
    });
}

TCPSocket::Connection::~Connection() {
    socket_->deleteLater(); // it may be in the middle of a signal
}

void TCPSocket::Connection::Abandon() {
    socket_->disconnect();
    socket_->abort();
}

void TCPSocket::Connection::Begin(const std::string& address, int32_t port) {
    address_ = address;
    port_ = port;
    begun_ = true;
    PostToMainThread([weak = weak_from_this()] {
        if (const auto connection = weak.lock())
            connection->Open();
    });
}

void TCPSocket::Connection::Open() {
    if (!Taken(begun_))
        return;
    const QString host = QString::fromStdString(address_);
    if (port_ < 0 || port_ > UINT16_MAX) {
        Fail(QAbstractSocket::SocketAddressNotAvailableError);
    } else if (const QHostAddress number(host); !number.isNull()) {
        addresses_ = {number};
        TryNextAddress();
    } else {
        LookUp(host);
    }
}

// On a thread of its own, since it may take long and can't be broken off. The toolkit's own lookup tells its result by
// the event loop alone.
void TCPSocket::Connection::LookUp(const QString& host) {
    std::promise<QHostInfo> promise;
    lookup_ = promise.get_future();
    std::thread([weak = weak_from_this(), host, promise = std::move(promise)]() mutable {
        promise.set_value(QHostInfo::fromName(host));
        PostToMainThread([weak] {
            if (const auto connection = weak.lock())
                connection->HostFound();
        });
    }).detach();
}

void TCPSocket::Connection::HostFound() {
    if (!lookup_.valid()) // known by a Poll already
        return;
    addresses_ = lookup_.get().addresses();
    if (addresses_.isEmpty())
        Fail(QAbstractSocket::HostNotFoundError);
    else
        TryNextAddress();
}

// From the event loop the toolkit gives an address up after half a minute, in a Poll the system does so later.
void TCPSocket::Connection::TryNextAddress() {
    socket_->connectToHost(addresses_.takeFirst(), static_cast<quint16>(port_));
}

void TCPSocket::Connection::Fail(QAbstractSocket::SocketError error) {
    failure_ = error;
    Due(endDue_);
}

void TCPSocket::Connection::Write(std::string_view bytes) {
    socket_->write(bytes.data(), static_cast<qint64>(bytes.size()));
}

void TCPSocket::Connection::Purge() {
    if (socket_->isOpen())
        socket_->readAll();
    rescued_.clear();
    dataDue_ = false;
}

void TCPSocket::Connection::Serve() {
    if (delivering_) {
        Idle();
        return;
    }
    Open();
    if (lookup_.valid() && lookup_.wait_for(std::chrono::milliseconds(kPatience)) == std::future_status::ready)
        HostFound();
    if (!lookup_.valid() && !connectedDue_ && !DataDue() && !endDue_)
        ServeNotifiers();
    Deliver();
}

void TCPSocket::Connection::Idle() {
    poll(nullptr, 0, kPatience);
}

// What the event loop would do for this socket alone. The toolkit's own waiting gives a connection up when its time has
// run out.
void TCPSocket::Connection::ServeNotifiers() {
    std::vector<QPointer<QSocketNotifier>> notifiers;
    std::vector<pollfd> descriptors;
    for (QSocketNotifier* notifier : socket_->findChildren<QSocketNotifier*>()) {
        if (notifier->isEnabled() && notifier->type() != QSocketNotifier::Exception) {
            notifiers.emplace_back(notifier);
            descriptors.push_back({static_cast<int>(notifier->socket()), EventsOf(*notifier), 0});
        }
    }
    if (poll(descriptors.data(), descriptors.size(), kPatience) <= 0)
        return;
    for (std::size_t i = 0; i < notifiers.size(); ++i) {
        QEvent ready(QEvent::SockAct);
        if (descriptors[i].revents != 0 && notifiers[i])
            QCoreApplication::sendEvent(notifiers[i], &ready);
    }
}

void TCPSocket::Connection::Due(bool& event) {
    event = true;
    if (std::exchange(posted_, true))
        return;
    QMetaObject::invokeMethod(
        socket_,
        [weak = weak_from_this()] {
            if (const auto connection = weak.lock()) {
                connection->posted_ = false;
                connection->Deliver();
            }
        },
        Qt::QueuedConnection);
}

void TCPSocket::Connection::Deliver() {
    if (delivering_)
        return;
    const std::shared_ptr<Connection> self = shared_from_this();
    const Ref<TCPSocket> owner = owner_;
    delivering_ = true;
    while (owner->connection_ == self && DeliverNext(*owner)) {
    }
    delivering_ = false;
}

bool TCPSocket::Connection::DataDue() const {
    return dataDue_ || !rescued_.isEmpty() || (endDue_ && socket_->bytesAvailable() > 0);
}

bool TCPSocket::Connection::DeliverNext(TCPSocket& owner) {
    if (Taken(connectedDue_)) {
        owner.connected_ = true;
        EventEdge::Run("connected", [&owner] { owner.Event_Connected(); });
    } else if (DataDue()) {
        dataDue_ = false;
        QByteArray bytes = std::exchange(rescued_, {});
        if (socket_->isOpen())
            bytes += socket_->readAll();
        owner.received_.append(bytes.constData(), static_cast<std::size_t>(bytes.size()));
        EventEdge::Run("received data", [&owner] { owner.Event_DataAvailable(); });
    } else if (Taken(sentDue_)) {
        EventEdge::Run("sent data", [&owner] { owner.Event_SendComplete(false); });
    } else if (Taken(endDue_)) {
        if (!owner.connected_ && !addresses_.isEmpty())
            TryNextAddress();
        else
            End(owner);
    } else {
        return false;
    }
    return true;
}

void TCPSocket::Connection::End(TCPSocket& owner) {
    const auto error = failure_ != QAbstractSocket::UnknownSocketError ? failure_ : socket_->error();
    owner.lastErrorCode_ = kFirstErrorCode + static_cast<int32_t>(error);
    owner.Close();
    EventEdge::Run("end of a connection", [&owner] { owner.Event_Error(); });
}
