#include "tests/support/Loopback.h"

#include <algorithm>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

bool LoopbackSocket::HasInput() const {
    pollfd entry{descriptor_, POLLIN, 0};
    return poll(&entry, 1, 0) > 0;
}

void LoopbackSocket::Close() {
    if (descriptor_ >= 0)
        close(std::exchange(descriptor_, -1));
}

std::string LoopbackPeer::Read() {
    std::string text(65536, '\0');
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(read(descriptor_, text.data(), text.size()), 0)));
    return text;
}

void LoopbackPeer::Send(std::string_view bytes) {
    ssize_t size = 0;
    while (!bytes.empty() && (size = send(descriptor_, bytes.data(), bytes.size(), MSG_NOSIGNAL)) > 0)
        bytes.remove_prefix(static_cast<std::size_t>(size));
}

LoopbackServer::LoopbackServer() : LoopbackSocket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const any = reinterpret_cast<sockaddr*>(&address);
    if (bind(descriptor_, any, size) != 0 || listen(descriptor_, SOMAXCONN) != 0 ||
        getsockname(descriptor_, any, &size) != 0)
        throw std::runtime_error("no port to listen on");
    port_ = ntohs(address.sin_port);
}

LoopbackPeer LoopbackServer::Accept() {
    return LoopbackPeer(accept4(descriptor_, nullptr, nullptr, SOCK_CLOEXEC));
}
