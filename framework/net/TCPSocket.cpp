#include "framework/net/TCPSocket.h"

#include "framework/net/Connection.h"

#include <algorithm>
#include <utility>

TCPSocket::TCPSocket() = default;
TCPSocket::~TCPSocket() = default;

void TCPSocket::Connect() {
    Close();
    connection_ = std::make_shared<Connection>(Self(this));
    connection_->Begin(Address, Port);
}

void TCPSocket::Close() {
    connected_ = false;
    if (const std::shared_ptr<Connection> connection = std::exchange(connection_, nullptr))
        connection->Abandon();
}

void TCPSocket::Purge() {
    received_.clear();
    if (connection_)
        connection_->Purge();
}

void TCPSocket::Poll() {
    if (const std::shared_ptr<Connection> connection = connection_)
        connection->Serve();
    else
        Connection::Idle();
}

bool TCPSocket::IsConnected() const {
    return connected_;
}

int32_t TCPSocket::LastErrorCode() const {
    return lastErrorCode_;
}

const std::string& TCPSocket::Lookahead() const {
    return received_;
}

// Of much data only the lesser part is copied.
std::string TCPSocket::Read(int32_t count) {
    const auto length = std::min(static_cast<std::size_t>(std::max(count, 0)), received_.size());
    if (length < received_.size() / 2) {
        std::string bytes = received_.substr(0, length);
        received_.erase(0, length);
        return bytes;
    }
    std::string rest = received_.substr(length);
    received_.resize(length);
    return std::exchange(received_, std::move(rest));
}

std::string TCPSocket::ReadAll() {
    return std::exchange(received_, {});
}

void TCPSocket::Write(std::string_view bytes) {
    if (connected_)
        connection_->Write(bytes);
}
