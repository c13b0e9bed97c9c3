#pragma once

#include "framework/base/Dictionary.h"
#include "framework/net/TCPSocket.h"
#include "update/HTTPEvents.h"
#include "update/HeaderEnd.h"
#include "update/SOAPSocket.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

class BinaryStream;
class FolderItem;
class InternetHeaders;

// A client of HTTP/1.0 over plain TCP, for one request at a time: a further one drops that which is under way. Texts
// are bytes. A reply ends when its connection ends, in whatever way, and nothing else ends it: Content-length only goes
// to ReceiveProgress. No redirect is followed, no chunk decoded, no scheme heeded. Main thread.
//
// Each request comes asynchronously, with the events, and blocking, without them: then with a time-out in seconds of
// silence, 0 or less for none. The body of the reply goes into the file where one is given, else into memory.
class HTTPSocket : public TCPSocket, public HTTPEvents, public SOAPSocket {
public:
    HTTPSocket();
    ~HTTPSocket() override;

    int32_t DefaultPort = 80;     // of URLs without one
    std::string HTTPProxyAddress; // empty: none
    int32_t HTTPProxyPort = 0;    // 0: DefaultPort
    Ref<InternetHeaders> requestHeaders;
    bool Yield = false; // blocking calls serve the event loop meanwhile

    virtual void ClearRequestHeaders();
    // name=value&name=value, percent-encoded.
    virtual std::string EncodeFormData(const Ref<Dictionary<std::string>>& form) const;
    int32_t ErrorCode() const override; // of the last request, 0 for none

    virtual void Get(const std::string& url);
    virtual void Get(const std::string& url, const Ref<FolderItem>& file);
    virtual bool Get(const std::string& url, const Ref<FolderItem>& file, int32_t timeout); // true without an error
    std::string Get(const std::string& url, int32_t timeout) override;                      // the body
    virtual void GetHeaders(const std::string& url); // reports by HeadersReceived alone
    virtual Ref<InternetHeaders> GetHeaders(const std::string& url, int32_t timeout);

    virtual int32_t HTTPStatusCode() const;
    virtual Ref<InternetHeaders> PageHeaders() const; // of the reply; nil while there are none

    virtual void Post(const std::string& url);
    virtual void Post(const std::string& url, const Ref<FolderItem>& file);
    virtual bool Post(const std::string& url, const Ref<FolderItem>& file, int32_t timeout);
    std::string Post(const std::string& url, int32_t timeout) override;

    virtual void SendRequest(const std::string& method, const std::string& url);
    virtual void SendRequest(const std::string& method, const std::string& url, const Ref<FolderItem>& file);
    virtual bool SendRequest(const std::string& method, const std::string& url, const Ref<FolderItem>& file,
                             int32_t timeout);
    virtual std::string SendRequest(const std::string& method, const std::string& url, int32_t timeout);

    // The body of the next POST. It stays for further ones; any other request drops it.
    virtual void SetFormData(const Ref<Dictionary<std::string>>& form); // nil for an empty body
    void SetPostContent(const std::string& content, const std::string& type) override;
    // Goes out with every request until it is set to an empty value.
    virtual void SetRequestHeader(const std::string& name, const std::string& value);

protected:
    void Event_Connected() override;
    void Event_DataAvailable() override;
    void Event_Error() override;

private:
    class Protection;

    Ref<InternetHeaders> GetRequestHeaders() override;
    void InitializeRequestHeaders();

    // The request.
    void Begin(const std::string& url, const std::string& method, const Ref<FolderItem>& file);
    Ref<HTTPSocket> BeginAndWait(const std::string& url, const std::string& method, const Ref<FolderItem>& file,
                                 int32_t timeout);
    void DoConnect(const std::string& url, const std::string& method, const Ref<FolderItem>& file);
    void ParseURL(const std::string& url);
    bool SetDownloadFile(const Ref<FolderItem>& file);
    void KillDownloadStream();
    void SendRequest(const std::string& method);
    void WaitForPage();
    static std::string EncodeURLString(std::string text);

    // Calls a handler if there is one and the request is not a blocking one. The handler may replace itself and begin
    // a further request: give it nothing by reference that this would change.
    template <class... Arguments>
    void Raise(const std::function<void(Arguments...)>& handler,
               const std::type_identity_t<std::decay_t<Arguments>>&... arguments) {
        if (synchronous || !handler)
            return;
        const std::function<void(Arguments...)> held = handler;
        held(arguments...);
    }

    // The reply.
    struct Head;
    bool IsHead() const;
    void ResetVariables();
    void HandleNewData();
    void HandleHeaders(const Protection& protection);
    static Head ParseHeaders(std::string text);
    void ProcessData(const std::string& data);
    void ProcessPage();
    void SetError(int32_t code);

    // Credentials.
    bool SetAuthentication(const Ref<InternetHeaders>& headers, const std::string& challenge, bool ofProxy);
    static Ref<Dictionary<std::string>> ParseAuthenticationParams(std::string_view text);
    std::string CreateAuthenticationData(const std::string& scheme, const std::string& name,
                                         const std::string& password, const Dictionary<std::string>& parameters);
    static std::string CreateNonce();
    static std::string EncodeHex(const std::string& bytes);

    uint32_t request_ = 0; // counts them: a handler may begin the next while the reply to the last is on the stack
    int32_t mErrorCode = 0;
    bool synchronous = false;      // a blocking call, without events
    bool threadProtection = false; // HandleNewData is running
    int32_t timeoutSeconds = 0;
    std::string _authenticationKey;
    bool _connectionValid = false; // from the connection to its end
    int32_t _currentLength = 0;
    Ref<FolderItem> _downloadFile;
    Ref<BinaryStream> _downloadStream;
    std::string _httpAction;
    int32_t _httpStatusCode = 0;
    std::shared_ptr<std::string> _pageBuffer = std::make_shared<std::string>();
    bool _pageComplete = false;
    Ref<InternetHeaders> _pageHeaders; // nil until they are complete
    HeaderEnd _headerEnd;
    std::string _path;
    std::string _postContent;
    std::string _postContentType;
    std::string _processingURL;
    std::string _server; // with the port, if the URL had one
    int32_t _totalLength = 0;
    std::string _proxyAuthenticationKey;
    std::string _lastServerNonce;
    Ref<Dictionary<int32_t>> Nonces;
};
