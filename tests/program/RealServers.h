#pragma once

#include "tests/program/Process.h"

#include <cstdint>
#include <functional>
#include <memory>

// A server of Debian's on a free port of the loopback address, with settings and a folder of its own. It ends with this
// object.
class RealServer {
public:
    // Whether both of those below are installed.
    static bool AreThere();

    uint16_t Port() const { return port_; }
    std::string Host() const { return "127.0.0.1:" + std::to_string(port_); }

protected:
    // `command` gives the words that start it on that port.
    RealServer(const std::filesystem::path& folder, const std::function<Words(uint16_t port)>& command);

private:
    std::unique_ptr<Process> process_;
    uint16_t port_ = 0;
};

// nginx. What it serves lies in the folder's "site".
class WebServer : public RealServer {
public:
    explicit WebServer(const std::filesystem::path& folder);
};

// tinyproxy.
class ProxyServer : public RealServer {
public:
    explicit ProxyServer(const std::filesystem::path& folder);
};
