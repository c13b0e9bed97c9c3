#include "tests/program/RealServers.h"

#include "tests/support/Loopback.h"

#include <stdexcept>

namespace {

namespace fs = std::filesystem;

constexpr int kTries = 5;
constexpr const char* kWebServer = "/usr/sbin/nginx";
constexpr const char* kProxy = "/usr/bin/tinyproxy";

} // namespace

bool RealServer::AreThere() {
    return fs::exists(kWebServer) && fs::exists(kProxy);
}

RealServer::RealServer(const fs::path& folder, const std::function<Words(const std::string& port)>& command) {
    for (int i = 0; i < kTries; ++i) {
        port_ = LoopbackServer().Port(); // one that was free a moment ago
        const Words words = command(std::to_string(port_));
        const std::string log = folder / fs::path(words.at(0)).filename();
        process_ = std::make_unique<Process>(words, Process::Setting{{{"PATH", "/usr/bin:/bin"}}, folder, log});
        Await("a server that listens", [&] { return process_->ExitCode() || IsServed(port_); });
        if (!process_->ExitCode())
            return;
    }
    throw std::runtime_error("no server could be started: " + process_->Errors());
}

RealServer RealServer::Web(const fs::path& folder) {
    return {folder, [&folder](const std::string& port) -> Words {
                const std::string place = folder.string();
                std::string settings =
                    "daemon off;\nmaster_process off;\npid " + place + "/web.pid;\nevents {}\nhttp {\n";
                for (const char* const kind : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"})
                    settings += std::string(kind) + "_temp_path " + place + "/" + kind + ";\n";
                settings += "access_log off;\nserver {\nlisten 127.0.0.1:" + port + ";\nroot " + place +
                            "/site;\ndefault_type text/plain;\n}\n}\n";
                WriteFile(folder / "web.conf", settings);
                return {kWebServer, "-e", folder / "web-errors", "-c", folder / "web.conf"};
            }};
}

RealServer RealServer::Proxy(const fs::path& folder) {
    return {folder, [&folder](const std::string& port) -> Words {
                WriteFile(folder / "proxy.conf", "Listen 127.0.0.1\nPort " + port +
                                                     "\nMaxClients 10\nAllow 127.0.0.1\nLogFile \"" +
                                                     (folder / "proxy.log").string() + "\"\n");
                return {kProxy, "-d", "-c", folder / "proxy.conf"};
            }};
}
