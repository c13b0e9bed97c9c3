#include "update/HTTPSocket.h"

#include "framework/files/BinaryStream.h"
#include "framework/files/FolderItem.h"
#include "framework/text/Number.h"
#include "framework/text/Text.h"
#include "update/InternetHeaders.h"

#include <cmath>
#include <utility>

namespace {

constexpr int32_t kUnauthorized = 401;
constexpr int32_t kProxyUnauthorized = 407;

bool IsAskingForCredentials(int32_t status) {
    return status == kUnauthorized || status == kProxyUnauthorized;
}

// Byte counts have 32 bits, and wrap.
int32_t Wrapped(int64_t count) {
    return static_cast<int32_t>(static_cast<uint32_t>(count));
}

int32_t Wrapped(double count) {
    constexpr double kTurn = 4294967296.0;
    return std::isfinite(count) ? Wrapped(static_cast<int64_t>(std::fmod(count, kTurn))) : 0;
}

} // namespace

// Keeps HandleNewData from running within itself, for as long as the reply is that of one request.
class HTTPSocket::Protection {
public:
    explicit Protection(HTTPSocket& socket) : socket_(socket), request_(socket.request_) {
        socket.threadProtection = true;
    }
    ~Protection() {
        if (!IsOver())
            socket_.threadProtection = false;
    }
    Protection(const Protection&) = delete;
    Protection& operator=(const Protection&) = delete;

    // Another request has begun.
    bool IsOver() const { return socket_.request_ != request_; }

private:
    HTTPSocket& socket_;
    const uint32_t request_;
};

struct HTTPSocket::Head {
    Ref<InternetHeaders> headers;
    int32_t status = 0;
    int32_t total = 0;     // bytes of the body, as the server tells
    std::string challenge; // of a refusal

    bool IsOfProxy() const { return status == kProxyUnauthorized; }
};

bool HTTPSocket::IsHead() const {
    return RuntimeStringCompare(_httpAction, "HEAD") == 0;
}

void HTTPSocket::ResetVariables() {
    _pageBuffer = std::make_shared<std::string>();
    _pageHeaders = nullptr;
    _headerEnd = {};
    _httpStatusCode = 0;
    _totalLength = 0;
    _currentLength = 0;
    _pageComplete = false;
}

void HTTPSocket::Event_DataAvailable() {
    HandleNewData();
}

// The end of the connection is the end of the page, unless memory did not suffice for it. Where the end finds data that
// nobody read, these are handled and no more: such a request stays without an end, as does one whose connection broke
// within the headers. Kept on purpose, see docs/reading.md.
void HTTPSocket::Event_Error() {
    const bool pageLost = LastErrorCode() == kOutOfMemory;
    if (pageLost)
        *_pageBuffer = std::string();
    if (!std::exchange(_connectionValid, false) || pageLost)
        SetError(LastErrorCode());
    else if (Lookahead().empty())
        ProcessPage();
    else
        HandleNewData();
}

void HTTPSocket::HandleNewData() {
    if (threadProtection)
        return;
    const Protection protection(*this);
    if (_pageHeaders.IsNil())
        HandleHeaders(protection);
    else
        ProcessData(ReadAll());
}

void HTTPSocket::HandleHeaders(const Protection& protection) {
    const std::optional<HeaderEnd::Place> end = _headerEnd.Find(Lookahead());
    if (!end)
        return;
    const bool stood = IsConnected();
    const Head head = ParseHeaders(Read(static_cast<int32_t>(end->position)));
    if (protection.IsOver() || IsConnected() != stood) // by events that were served meanwhile
        return;
    _pageHeaders = head.headers;
    _httpStatusCode = head.status;
    _totalLength = head.total;
    const bool again =
        IsAskingForCredentials(head.status) && SetAuthentication(head.headers, head.challenge, head.IsOfProxy());
    if (protection.IsOver())
        return;
    if (again) {
        const Ref<FolderItem> file = _downloadFile; // which the new request forgets at first
        DoConnect(_processingURL, _httpAction, file);
        return;
    }
    Raise(HeadersReceived, head.headers, head.status);
    if (protection.IsOver())
        return;
    Read(static_cast<int32_t>(end->blankLine));
    ProcessData(ReadAll());
}

// Serves events, so it keeps away from what another request would change.
HTTPSocket::Head HTTPSocket::ParseHeaders(std::string text) {
    Head head;
    head.headers = New<InternetHeaders>();
    const std::size_t firstEnd = FindInSteps(text, head.headers->DetermineEOLCharacter(text));
    head.status = RuntimeCvtReal64ToSInt32(Val(NthField(std::string_view(text).substr(0, firstEnd), " ", 2)));
    head.headers->ParseHeaders(std::move(text));
    if (head.headers->NameCount("Content-length") > 0)
        head.total = Wrapped(Val(head.headers->Value("Content-length")));
    if (IsAskingForCredentials(head.status))
        head.challenge = head.headers->Value(head.IsOfProxy() ? "Proxy-Authenticate" : "WWW-Authenticate");
    return head;
}

void HTTPSocket::ProcessData(const std::string& data) {
    if (IsHead())
        return;
    _currentLength = Wrapped(_currentLength + static_cast<int64_t>(data.size()));
    if (_downloadStream.IsNil())
        _pageBuffer->append(data);
    else
        _downloadStream->Write(data);
    const uint32_t request = request_;
    Raise(ReceiveProgress, _currentLength, _totalLength, data);
    if (request == request_ && IsAskingForCredentials(_httpStatusCode) && !IsConnected())
        ProcessPage();
}

void HTTPSocket::ProcessPage() {
    if (std::exchange(_pageComplete, true))
        return;
    const bool intoFile = !_downloadStream.IsNil();
    const Ref<FolderItem> file = _downloadFile;
    KillDownloadStream();
    if (IsHead())
        return;
    const std::string url = _processingURL;
    const Ref<InternetHeaders> headers = _pageHeaders;
    const std::shared_ptr<const std::string> page = _pageBuffer;
    if (intoFile)
        Raise(DownloadComplete, url, _httpStatusCode, headers, file);
    else
        Raise(PageReceived, url, _httpStatusCode, headers, *page);
}

void HTTPSocket::SetError(int32_t code) {
    mErrorCode = code;
    Raise(Error, code);
}
