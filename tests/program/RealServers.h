#pragma once

#include "tests/program/Process.h"

#include <cstdint>
#include <memory>

// A server of Debian's on a free port of the loopback address, with settings and a folder of its own. It ends with this
// object.
class RealServer {
public:
    // nginx. What it serves lies in the folder's "site".
    static RealServer Web(const std::filesystem::path& folder);
    // tinyproxy.
    static RealServer Proxy(const std::filesystem::path& folder);
    // Whether both are installed.
    static bool AreThere();

    uint16_t Port() const { return port_; }
    std::string Host() const { return "127.0.0.1:" + std::to_string(port_); }

private:
    // `command` gives the words that start it on that port.
    RealServer(const std::filesystem::path& folder, const std::function<Words(const std::string& port)>& command);

    std::unique_ptr<Process> process_;
    uint16_t port_ = 0;
};
