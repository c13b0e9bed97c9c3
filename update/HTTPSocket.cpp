#include "update/HTTPSocket.h"

#include "framework/app/Application.h"
#include "framework/files/BinaryStream.h"
#include "framework/files/FolderItem.h"
#include "framework/files/TextStream.h"
#include "framework/text/Number.h"
#include "framework/text/Text.h"
#include "framework/threads/Yield.h"
#include "update/InternetHeaders.h"

namespace {

constexpr int32_t kFileCannotBeUsed = 1;
constexpr int32_t kOutOfTime = -1;
constexpr int64_t kTicksPerSecond = 60;
constexpr const char* kLineEnd = "\r\n";

} // namespace

HTTPSocket::HTTPSocket() {
    InitializeRequestHeaders();
}

HTTPSocket::~HTTPSocket() = default;

// English, whatever the language of the user.
void HTTPSocket::InitializeRequestHeaders() {
    requestHeaders = New<InternetHeaders>();
    requestHeaders->SetHeader("Accept", "*/*");
    requestHeaders->SetHeader("Accept-Language", "en");
}

void HTTPSocket::ClearRequestHeaders() {
    requestHeaders->DeleteAllHeaders();
}

void HTTPSocket::SetRequestHeader(const std::string& name, const std::string& value) {
    if (requestHeaders.IsNil())
        requestHeaders = New<InternetHeaders>();
    const Ref<InternetHeaders> headers = requestHeaders;
    if (value.empty())
        headers->Delete(name);
    else
        headers->SetHeader(name, value);
}

Ref<InternetHeaders> HTTPSocket::GetRequestHeaders() {
    return requestHeaders;
}

int32_t HTTPSocket::ErrorCode() const {
    return mErrorCode;
}

int32_t HTTPSocket::HTTPStatusCode() const {
    return _httpStatusCode;
}

Ref<InternetHeaders> HTTPSocket::PageHeaders() const {
    const Ref<InternetHeaders> headers = _pageHeaders;
    return headers.IsNil() || headers->Count() == 0 ? nullptr : headers;
}

void HTTPSocket::Get(const std::string& url) {
    Begin(url, "GET", nullptr);
}

void HTTPSocket::Get(const std::string& url, const Ref<FolderItem>& file) {
    Begin(url, "GET", file);
}

bool HTTPSocket::Get(const std::string& url, const Ref<FolderItem>& file, int32_t timeout) {
    return BeginAndWait(url, "GET", file, timeout)->mErrorCode == 0;
}

std::string HTTPSocket::Get(const std::string& url, int32_t timeout) {
    return *BeginAndWait(url, "GET", nullptr, timeout)->_pageBuffer;
}

void HTTPSocket::GetHeaders(const std::string& url) {
    Begin(url, "HEAD", nullptr);
}

Ref<InternetHeaders> HTTPSocket::GetHeaders(const std::string& url, int32_t timeout) {
    return BeginAndWait(url, "HEAD", nullptr, timeout)->_pageHeaders;
}

void HTTPSocket::Post(const std::string& url) {
    Begin(url, "POST", nullptr);
}

void HTTPSocket::Post(const std::string& url, const Ref<FolderItem>& file) {
    Begin(url, "POST", file);
}

bool HTTPSocket::Post(const std::string& url, const Ref<FolderItem>& file, int32_t timeout) {
    return BeginAndWait(url, "POST", file, timeout)->mErrorCode == 0;
}

std::string HTTPSocket::Post(const std::string& url, int32_t timeout) {
    return *BeginAndWait(url, "POST", nullptr, timeout)->_pageBuffer;
}

void HTTPSocket::SendRequest(const std::string& method, const std::string& url) {
    Begin(url, method, nullptr);
}

void HTTPSocket::SendRequest(const std::string& method, const std::string& url, const Ref<FolderItem>& file) {
    Begin(url, method, file);
}

bool HTTPSocket::SendRequest(const std::string& method, const std::string& url, const Ref<FolderItem>& file,
                             int32_t timeout) {
    return BeginAndWait(url, method, file, timeout)->mErrorCode == 0;
}

std::string HTTPSocket::SendRequest(const std::string& method, const std::string& url, int32_t timeout) {
    return *BeginAndWait(url, method, nullptr, timeout)->_pageBuffer;
}

void HTTPSocket::Begin(const std::string& url, const std::string& method, const Ref<FolderItem>& file) {
    synchronous = false;
    DoConnect(url, method, file);
}

// Gives this object, held: nobody else may hold it any more when the wait is over.
Ref<HTTPSocket> HTTPSocket::BeginAndWait(const std::string& url, const std::string& method, const Ref<FolderItem>& file,
                                         int32_t timeout) {
    const Ref<HTTPSocket> self = Self(this);
    timeoutSeconds = timeout;
    synchronous = true;
    DoConnect(url, method, file);
    WaitForPage();
    return self;
}

// A file that can't be used leaves the request that is under way alone.
void HTTPSocket::DoConnect(const std::string& url, const std::string& method, const Ref<FolderItem>& file) {
    mErrorCode = 0;
    ParseURL(url);
    _processingURL = url;
    if (!SetDownloadFile(file))
        return;
    if (!HTTPProxyAddress.empty()) {
        Address = HTTPProxyAddress;
        Port = HTTPProxyPort == 0 ? DefaultPort : HTTPProxyPort;
    }
    _httpAction = method;
    ++request_;
    threadProtection = false; // even if a handler of the reply before is running
    Close();                  // without an event
    _connectionValid = false;
    Purge();
    Connect();
}

// The scheme is thrown away, and nothing is escaped.
void HTTPSocket::ParseURL(const std::string& url) {
    const std::size_t scheme = url.find("://");
    const std::string rest = scheme == std::string::npos ? url : url.substr(scheme + 3);
    const std::size_t slash = rest.find('/');
    _server = rest.substr(0, slash);
    _path = slash == std::string::npos ? "/" : rest.substr(slash);
    Port = RuntimeCvtReal64ToSInt32(Val(NthField(_server, ":", 2)));
    if (Port == 0)
        Port = DefaultPort;
    Address = NthField(_server, ":", 1);
}

bool HTTPSocket::SetDownloadFile(const Ref<FolderItem>& file) {
    KillDownloadStream();
    if (file.IsNil())
        return true;
    const auto opened = [&file]() -> Ref<BinaryStream> {
        if (file->Exists() && file->Directory())
            return nullptr;
        const Ref<TextOutputStream> made = file->CreateTextFile();
        if (made.IsNil())
            return nullptr;
        made->Close();
        return file->OpenAsBinaryFile(true);
    };
    const Ref<BinaryStream> stream = opened();
    if (stream.IsNil()) {
        SetError(kFileCannotBeUsed);
        return false;
    }
    _downloadStream = stream;
    _downloadFile = file;
    return true;
}

void HTTPSocket::KillDownloadStream() {
    _downloadFile = nullptr;
    if (!_downloadStream.IsNil())
        _downloadStream->Close();
    _downloadStream = nullptr;
}

void HTTPSocket::Event_Connected() {
    _connectionValid = true;
    ResetVariables();
    const uint32_t request = request_;
    Raise(Connected);
    if (request != request_)
        return;
    if (_httpAction.empty())
        _httpAction = "GET";
    SendRequest(_httpAction);
}

// Credentials serve one request; the content of a POST serves further ones, until some other request drops it. All in
// one step: a request that began in between would be mixed with this one.
void HTTPSocket::SendRequest(const std::string& method) {
    const NoYield inOneStep;
    if (requestHeaders.IsNil())
        requestHeaders = New<InternetHeaders>();
    if (!HTTPProxyAddress.empty())
        _path = _processingURL;
    requestHeaders->SetHeader("Host", _server);
    if (!_authenticationKey.empty())
        requestHeaders->SetHeader("Authorization", _authenticationKey);
    if (!_proxyAuthenticationKey.empty())
        requestHeaders->SetHeader("Proxy-Authorization", _proxyAuthenticationKey);
    if (RuntimeStringCompare(method, "POST") == 0) {
        requestHeaders->SetHeader("Content-type", _postContentType);
        requestHeaders->SetHeader("Content-length", std::to_string(_postContent.size()));
    } else {
        _postContent.clear();
        _postContentType.clear();
        requestHeaders->Delete("Content-type");
        requestHeaders->Delete("Content-length");
    }
    std::string request = method;
    request.append(" ").append(_path).append(" HTTP/1.0").append(kLineEnd);
    request.append(requestHeaders->FormatHTTPHeaders()).append(kLineEnd).append(kLineEnd).append(_postContent);
    if (!_authenticationKey.empty())
        requestHeaders->Delete("Authorization");
    if (!_proxyAuthenticationKey.empty())
        requestHeaders->Delete("Proxy-Authorization");
    _authenticationKey.clear();
    _proxyAuthenticationKey.clear();
    Write(request);
}

// The time-out is one of silence: a change of the connection or of the page in memory starts it anew. A page that goes
// into a file changes neither. What the request has met so far is forgotten here, even that its file can't be used:
// such a call waits until its time has run out. Kept on purpose, see docs/reading.md.
void HTTPSocket::WaitForPage() {
    _pageComplete = false;
    mErrorCode = 0;
    const auto deadlineFromNow = [this] { return Ticks() + timeoutSeconds * kTicksPerSecond; };
    int64_t deadline = deadlineFromNow();
    bool connectionWas = false;
    std::size_t lengthWas = 0;
    while (!_pageComplete && mErrorCode == 0) {
        if (Yield) {
            Poll();
            DoEvents(-1);
        } else {
            const NoYield nothingElse; // gets a turn, however long the reply
            Poll();
        }
        if (_connectionValid != connectionWas) {
            connectionWas = _connectionValid;
            deadline = deadlineFromNow();
        } else if (_pageBuffer->size() != lengthWas) {
            lengthWas = _pageBuffer->size();
            deadline = deadlineFromNow();
        }
        if (timeoutSeconds > 0 && deadline < Ticks()) {
            Close();
            SetError(kOutOfTime);
        }
        // Other threads need no turn: the system gives them theirs.
    }
}
