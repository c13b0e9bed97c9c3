#pragma once

#include "framework/base/Ref.h"

#include <cstdint>
#include <string>

class InternetHeaders;

// What a caller of remote procedures needs of an HTTP client; see HTTPSocket.
class SOAPSocket {
public:
    SOAPSocket() = default;
    SOAPSocket(const SOAPSocket&) = delete;
    SOAPSocket& operator=(const SOAPSocket&) = delete;
    virtual ~SOAPSocket() = default;

    virtual int32_t ErrorCode() const = 0;
    virtual std::string Get(const std::string& url, int32_t timeout) = 0;
    virtual Ref<InternetHeaders> GetRequestHeaders() = 0;
    virtual std::string Post(const std::string& url, int32_t timeout) = 0;
    virtual void SetPostContent(const std::string& content, const std::string& type) = 0;
};
