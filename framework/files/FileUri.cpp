#include "framework/files/FileUri.h"

#include <glib.h>

#include <algorithm>

std::string PathFromFileUri(std::string_view address) {
    char* host = nullptr;
    char* name = g_filename_from_uri(std::string(address).c_str(), &host, nullptr);
    const std::string path = name == nullptr || name[0] != '/' ? "" : name;
    const bool local =
        host == nullptr || std::string_view(host) == "localhost" || std::string_view(host) == g_get_host_name();
    g_free(name);
    g_free(host);
    return local ? path : "";
}

std::vector<std::string> PathsFromUriList(std::string_view list) {
    std::vector<std::string> paths;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find_first_of("\r\n"), list.size());
        const std::string path = PathFromFileUri(list.substr(0, end));
        if (!path.empty())
            paths.push_back(path);
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return paths;
}

std::string FileUriFromPath(std::string_view path) {
    char* address = g_filename_to_uri(std::string(path).c_str(), nullptr, nullptr);
    std::string result = address == nullptr ? "" : address;
    g_free(address);
    return result;
}
