#include "framework/net/NativeConnection.h"

#include "framework/base/EventEdge.h"

#include <QCoreApplication>
#include <QNetworkProxy>
#include <QPointer>
#include <QSocketNotifier>

#include <poll.h>

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
    QObject::connect(socket_, &QTcpSocket::stateChanged, socket_, [this](QAbstractSocket::SocketState state) {
        if (state == QAbstractSocket::UnconnectedState)
            Due(endDue_);
    });
}

TCPSocket::Connection::~Connection() {
    if (lookup_ != -1)
        QHostInfo::abortHostLookup(lookup_);
    socket_->disconnect();
    socket_->deleteLater(); // it may be in the middle of a signal
}

void TCPSocket::Connection::Open(const std::string& address, int32_t port) {
    if (port < 0 || port > UINT16_MAX) {
        Fail(QAbstractSocket::SocketAddressNotAvailableError);
        return;
    }
    port_ = static_cast<quint16>(port);
    host_ = QString::fromStdString(address);
    if (const QHostAddress number(host_); !number.isNull()) {
        addresses_ = {number};
        TryNextAddress();
    } else {
        lookup_ = QHostInfo::lookupHost(host_, socket_, [this](const QHostInfo& host) { HostFound(host); });
    }
}

void TCPSocket::Connection::HostFound(const QHostInfo& host) {
    lookup_ = -1;
    addresses_ = host.addresses();
    if (addresses_.isEmpty())
        Fail(QAbstractSocket::HostNotFoundError);
    else
        TryNextAddress();
}

void TCPSocket::Connection::TryNextAddress() {
    socket_->connectToHost(addresses_.takeFirst(), port_);
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
    dataDue_ = false;
}

void TCPSocket::Connection::Serve() {
    if (lookup_ != -1) {
        QHostInfo::abortHostLookup(lookup_);
        HostFound(QHostInfo::fromName(host_));
    }
    if (!connectedDue_ && !DataDue() && !endDue_)
        ServeNotifiers();
    Deliver();
}

// What the event loop would do for this socket alone. The toolkit's own waiting gives a connection up when its time has
// run out.
void TCPSocket::Connection::ServeNotifiers() {
    std::vector<QPointer<QSocketNotifier>> notifiers;
    std::vector<pollfd> descriptors;
    for (QSocketNotifier* notifier : socket_->findChildren<QSocketNotifier*>()) {
        if (notifier->isEnabled()) {
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
    QMetaObject::invokeMethod(
        socket_,
        [weak = weak_from_this()] {
            if (const auto connection = weak.lock())
                connection->Deliver();
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
    return dataDue_ || (endDue_ && socket_->bytesAvailable() > 0);
}

bool TCPSocket::Connection::DeliverNext(TCPSocket& owner) {
    if (Taken(connectedDue_)) {
        owner.connected_ = true;
        EventEdge::Run("connected", [&owner] { owner.Event_Connected(); });
    } else if (DataDue()) {
        dataDue_ = false;
        const QByteArray bytes = socket_->readAll();
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
