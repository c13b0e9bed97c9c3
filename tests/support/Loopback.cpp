#include "tests/support/Loopback.h"

#include <array>
#include <cstdlib>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace {

bool HasSomething(int descriptor) {
    pollfd entry{descriptor, POLLIN, 0};
    return poll(&entry, 1, 0) > 0;
}

sockaddr_in Address(uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

} // namespace

LoopbackPeer::LoopbackPeer(LoopbackPeer&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

bool LoopbackPeer::HasInput() const {
    return HasSomething(descriptor_);
}

bool LoopbackPeer::ReadMore(std::string& text) {
    std::array<char, 4096> buffer{};
    const ssize_t size = read(descriptor_, buffer.data(), buffer.size());
    text.append(buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    return size > 0;
}

std::string LoopbackPeer::ReadRequest() {
    std::string text;
    std::size_t headers = std::string::npos;
    while ((headers = text.find("\r\n\r\n")) == std::string::npos && ReadMore(text)) {
    }
    const std::size_t length = text.find("Content-length: ");
    if (length != std::string::npos) {
        const std::size_t whole = headers + 4 + std::strtoul(text.c_str() + length + 16, nullptr, 10);
        while (text.size() < whole && ReadMore(text)) {
        }
    }
    return text;
}

bool LoopbackPeer::Send(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t size = send(descriptor_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (size < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(size));
    }
    return true;
}

void LoopbackPeer::Close() {
    if (descriptor_ >= 0)
        close(std::exchange(descriptor_, -1));
}

void LoopbackPeer::Reset() {
    const linger now{1, 0};
    setsockopt(descriptor_, SOL_SOCKET, SO_LINGER, &now, sizeof now);
    Close();
}

bool IsServed(uint16_t port) {
    const sockaddr_in address = Address(port);
    const int client = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool connected = connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(client);
    return connected;
}

LoopbackServer::LoopbackServer(int queue) : descriptor_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address = Address(0);
    socklen_t size = sizeof address;
    auto* const any = reinterpret_cast<sockaddr*>(&address);
    if (bind(descriptor_, any, size) != 0 || listen(descriptor_, queue) != 0 ||
        getsockname(descriptor_, any, &size) != 0)
        throw std::runtime_error("no port to listen on");
    port_ = ntohs(address.sin_port);
}

LoopbackServer::~LoopbackServer() {
    Stop();
}

bool LoopbackServer::HasClient() const {
    return HasSomething(descriptor_);
}

LoopbackPeer LoopbackServer::Accept() {
    return LoopbackPeer(accept4(descriptor_, nullptr, nullptr, SOCK_CLOEXEC));
}

void LoopbackServer::Stop() {
    if (descriptor_ >= 0)
        close(std::exchange(descriptor_, -1));
}
