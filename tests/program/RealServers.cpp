#include "tests/program/RealServers.h"

#include <netinet/in.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

constexpr int kTries = 5;
constexpr const char* kWebServer = "/usr/sbin/nginx";
constexpr const char* kProxy = "/usr/bin/tinyproxy";

sockaddr_in Loopback(uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

// One that was free a moment ago.
uint16_t FreePort() {
    sockaddr_in address = Loopback(0);
    socklen_t size = sizeof address;
    const int taken = socket(AF_INET, SOCK_STREAM, 0);
    if (bind(taken, reinterpret_cast<const sockaddr*>(&address), size) != 0)
        throw std::runtime_error("no port is free");
    getsockname(taken, reinterpret_cast<sockaddr*>(&address), &size);
    close(taken);
    return ntohs(address.sin_port);
}

bool Listens(uint16_t port) {
    const sockaddr_in address = Loopback(port);
    const int client = socket(AF_INET, SOCK_STREAM, 0);
    const bool connected = connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(client);
    return connected;
}

Words WebServerCommand(const fs::path& folder, uint16_t port) {
    const std::string place = folder.string();
    std::string settings = "daemon off;\nmaster_process off;\npid " + place + "/web.pid;\nevents {}\nhttp {\n";
    for (const char* const kind : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"})
        settings += std::string(kind) + "_temp_path " + place + "/" + kind + ";\n";
    settings += "access_log off;\nserver {\nlisten 127.0.0.1:" + std::to_string(port) + ";\nroot " + place +
                "/site;\ndefault_type text/plain;\n}\n}\n";
    WriteFile(folder / "web.conf", settings);
    return {kWebServer, "-e", folder / "web-errors", "-c", folder / "web.conf"};
}

Words ProxyCommand(const fs::path& folder, uint16_t port) {
    WriteFile(folder / "proxy.conf", "Listen 127.0.0.1\nPort " + std::to_string(port) +
                                         "\nMaxClients 10\nAllow 127.0.0.1\nLogFile \"" +
                                         (folder / "proxy.log").string() + "\"\n");
    return {kProxy, "-d", "-c", folder / "proxy.conf"};
}

} // namespace

bool RealServer::AreThere() {
    return fs::exists(kWebServer) && fs::exists(kProxy);
}

RealServer::RealServer(const fs::path& folder, const std::function<Words(uint16_t port)>& command) {
    for (int i = 0; i < kTries; ++i) {
        port_ = FreePort();
        const Words words = command(port_);
        const std::string log = folder / fs::path(words.at(0)).filename();
        process_ = std::make_unique<Process>(words, Process::Setting{{{"PATH", "/usr/bin:/bin"}}, folder, log});
        Await("a server that listens", [&] { return process_->ExitCode() || Listens(port_); });
        if (!process_->ExitCode())
            return;
    }
    throw std::runtime_error("no server could be started: " + process_->Errors());
}

WebServer::WebServer(const fs::path& folder)
    : RealServer(folder, [&folder](uint16_t port) { return WebServerCommand(folder, port); }) {}

ProxyServer::ProxyServer(const fs::path& folder)
    : RealServer(folder, [&folder](uint16_t port) { return ProxyCommand(folder, port); }) {}
