#pragma once

#include "framework/base/Ref.h"

#include <cstdint>
#include <functional>
#include <string>

class FolderItem;
class InternetHeaders;

// What an HTTPSocket tells its owner and asks of it; in a blocking call it only asks. No handler has to be there. Main
// thread.
struct HTTPEvents {
    // Where the server asks for a name and a password: fill them in and return true to repeat the request with them.
    using AskForCredentials = std::function<bool(const std::string& realm, const Ref<InternetHeaders>& headers,
                                                 std::string& name, std::string& password)>;
    AskForCredentials AuthenticationRequired;
    AskForCredentials ProxyAuthenticationRequired;
    std::function<void()> Connected;
    std::function<void(const Ref<InternetHeaders>& headers, int32_t status)> HeadersReceived;
    // `total` is 0 where the server does not tell it. Both counts wrap beyond 2 GiB.
    std::function<void(int32_t soFar, int32_t total, const std::string& newData)> ReceiveProgress;
    // The end of the reply, the second for one into a file. The status is 0 and the headers nil if it had none.
    std::function<void(const std::string& url, int32_t status, const Ref<InternetHeaders>& headers,
                       const std::string& body)>
        PageReceived;
    std::function<void(const std::string& url, int32_t status, const Ref<InternetHeaders>& headers,
                       const Ref<FolderItem>& file)>
        DownloadComplete;
    // 1: the file can't be used; -1: out of time; else the socket's LastErrorCode.
    std::function<void(int32_t code)> Error;
};
