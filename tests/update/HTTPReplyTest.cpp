#include "framework/threads/MainThread.h"
#include "tests/update/HTTPTest.h"

#include <QTimer>

#include <ctime>
#include <fstream>

namespace {

using HTTPReplyTest = HTTPTest;

const std::string kOk = "HTTP/1.0 200 OK\r\n";

constexpr std::size_t kMuch = std::size_t(kSanitized ? 1 : 4) << 20U;

std::string Repeated(const std::string& text, std::size_t size) {
    std::string many;
    while (many.size() < size)
        many += text;
    return many;
}

// Of this process, up to now, in bytes.
int64_t PeakMemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return int64_t(usage.ru_maxrss) * 1024;
}

// From now on this process gets no more than so much memory in addition.
void LimitMemory(rlim_t bytes) {
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    rlimit limit{};
    getrlimit(RLIMIT_AS, &limit);
    limit.rlim_cur = bytes == RLIM_INFINITY ? limit.rlim_max : pages * rlim_t(sysconf(_SC_PAGESIZE)) + bytes;
    setrlimit(RLIMIT_AS, &limit);
}

// The longest time between two turns of the event loop, in seconds of this thread on a processor: a busy machine's
// other programs don't count.
class LongestTurn {
public:
    LongestTurn() {
        QObject::connect(&turn_, &QTimer::timeout, [this] {
            const double last = std::exchange(last_, Now());
            seconds_ = std::max(seconds_, last_ - last);
        });
        turn_.start(1);
    }
    double Seconds() const { return seconds_; }

private:
    static double Now() {
        timespec now{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
        return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
    }
    QTimer turn_;
    double last_ = Now();
    double seconds_ = 0;
};

} // namespace

TEST_F(HTTPReplyTest, IsToldAsItCame) {
    const std::pair<std::string, std::string> cases[] = {
        {kOk + "A: b\r\ncontent-LENGTH: 5\r\n\r\nhello", "|headers 200 2|progress 5/5 hello|page 200 hello"},
        {kOk + "Content-length: 99\r\n\r\nabc", "|headers 200 1|progress 3/99 abc|page 200 abc"},
        {kOk + "Content-length: 3221225472\r\n\r\n", "|headers 200 1|progress 0/-1073741824 |page 200 "},
        {kOk + "Content-length: inf\r\n\r\n", "|headers 200 1|progress 0/0 |page 200 "},
        {"HTTP/1.0 301 Moved\r\nLocation: http://127.0.0.1:1/\r\n\r\n", "|headers 301 1|progress 0/0 |page 301 "},
        {kOk + "Transfer-Encoding: chunked\r\n\r\n1\r\na\r\n0",
         "|headers 200 1|progress 7/0 1\r\na\r\n0|page 200 1\r\na\r\n0"},
        {"\xFFnonsense\r\n\r\nx", "|headers 0 0|progress 1/0 x|page 0 x"},
        {"HTTP/1.0 200 OK\n\nx\r\n\r\ny", "|headers 200 0|progress 1/0 y|page 200 y"}, // the second kind of blank line
        {"HTTP/1.0 401 No\r\nWWW-Authenticate: Basic x\r\n\r\nno", "|headers 401 1|progress 2/0 no|page 401 no"},
        {"", "|page 0 nil "},
        {kOk + "A: b\r\n", ""}}; // headers without an end have none either
    for (const auto& [reply, told] : cases) {
        Answer({reply}, [this] { client->Get(url); });
        EXPECT_EQ(client->told, "connected" + told) << reply;
    }
}

TEST_F(HTTPReplyTest, TellsWhyThereIsNone) {
    server.Close();
    const std::pair<std::string, int> cases[] = {{url, 100}, {std::string(64, 'a'), 102}, {"127.0.0.1:70000", 103}};
    for (const auto& [address, code] : cases) {
        client->told.clear();
        client->Get(address);
        EXPECT_EQ(client->told, "") << "not from within the call";
        EXPECT_TRUE(WaitUntil([this] { return client->ErrorCode() != 0; }));
        EXPECT_EQ(client->told, "error " + std::to_string(code)) << address;
    }
}

TEST_F(HTTPReplyTest, IsDroppedByTheNextRequestUnlessItsFileIsOfNoUse) {
    const TestFolder folder;
    client->Get(url);
    LoopbackPeer one = Served();
    client->Get(url);
    one.Send(kOk + "\r\none");
    client->Get(url, folder.Item("film")->Parent());
    Served().Send(kOk + "\r\ntwo");
    EXPECT_TRUE(WaitUntil([&] { return client->ends == 1; }));
    EXPECT_EQ(client->told, "connected|error 1|connected|headers 200 0|progress 3/0 two|page 200 two");
}

TEST_F(HTTPReplyTest, IsDroppedByAHandlerThatBeginsAnotherRequest) {
    const auto beginIn = [this](auto& handler, const std::string& before) {
        Answer({kOk + "\r\none", kOk + "\r\ntwo", kOk + "\r\nthree"}, [&] {
            handler = [this, &handler, own = handler](auto&&...) {
                handler = own;
                EXPECT_EQ(client->Get(url, 20), "two");
                client->Get(url);
            };
            client->Get(url);
            EXPECT_TRUE(WaitUntil([this] { return client->told.ends_with("page 200 three"); }));
        });
        EXPECT_EQ(client->told, before + "connected|headers 200 0|progress 5/0 three|page 200 three");
    };
    beginIn(client->Connected, "");
    beginIn(client->HeadersReceived, "connected|");
    beginIn(client->ReceiveProgress, "connected|headers 200 0|");
    beginIn(client->PageReceived, "connected|headers 200 0|progress 3/0 one|");

    // A refusal whose connection is closed while its data are handled has its end there.
    client->ReceiveProgress = [this](auto&&...) { client->Close(); };
    client->Get(url);
    Served().Send("HTTP/1.0 401 No\r\n\r\nno");
    EXPECT_TRUE(WaitUntil([this] { return client->told.ends_with("page 401 no"); }));
}

// While a handler serves events, what arrives waits for its end, and the end of the connection for that.
TEST_F(HTTPReplyTest, WaitsForAHandlerThatTakesItsTime) {
    client->Get(url);
    LoopbackPeer peer = Served();
    client->HeadersReceived = [&](auto&&...) {
        peer.Send(Pattern(100'000));
        peer.Close();
        ShowOnScreen();
        EXPECT_EQ(client->told, "connected");
    };
    peer.Send(kOk + "Content-length: 4\r\n\r");
    EXPECT_TRUE(WaitUntil([&] { return !client->Lookahead().empty(); }));
    peer.Send("\nhead"); // of the length that was promised, which ends nothing
    EXPECT_TRUE(WaitUntil([&] { return client->ends == 1; }));
    EXPECT_TRUE(client->told.ends_with("|page 200 head" + Pattern(100'000)));
}

TEST_F(HTTPReplyTest, IsDroppedByWhatIsDoneWhileItsHeadersAreRead) {
    const std::string headers = "HTTP/1.0 200 OK\n" + Repeated("a:\n", kMuch);
    std::function<void()> meanwhile;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
        if (client->Lookahead() == "\n\n" && meanwhile)
            std::exchange(meanwhile, nullptr)();
    });
    look.start(1);
    const auto interruptBy = [&](const std::function<void()>& what) {
        client->told.clear();
        client->Get(url);
        const std::jthread sender([&, peer = Served()]() mutable { peer.Send(headers + "\n"); });
        meanwhile = what;
        EXPECT_TRUE(WaitUntil([&] { return !meanwhile; }));
        EXPECT_TRUE(client->told.ends_with("connected"));
    };
    interruptBy([&] { client->Close(); });
    interruptBy([&] { client->Get(url); });
    Served().Send(kOk + "\r\ntwo");
    EXPECT_TRUE(WaitUntil([&] { return client->ends == 1; }));
    EXPECT_EQ(client->told, "connected|connected|headers 200 0|progress 3/0 two|page 200 two");
}

TEST_F(HTTPReplyTest, KeepsTheWindowsWaitingForAMomentAndTakesLittleMore) {
    const TestFolder folder;
    const struct {
        std::string head, repeated, end;
        std::size_t size = kMuch, piece = 0; // all in one
        std::size_t times = 1;
        Ref<FolderItem> file{};
    } replies[] = {{"HTTP/1.0 200 OK\n", "a:\n", "\n"},
                   {kOk, "a: b\r\n", "\r\n"},
                   {kOk + "A: ", "x", ""},
                   {kOk, "x", ": b\r\n\r\n"},
                   {kOk + "A: ", "x\r", "\r\n\r\n"},
                   {"HTTP/1.0 200 OK\nContent-length:", "\n ", "\n\n"},
                   {"HTTP/1.0 401 No\nWWW-Authenticate: Basic ", "x", "\n\n"},
                   {"", "\n", ""},
                   {kOk + "\r\n", "x", ""},
                   {kOk + "\r\n", "x", "", 20'000, 1},
                   {kOk + "\r\n", "x", "", kMuch, 0, 16, folder.Item("film")}};
    client->HeadersReceived = nullptr;
    client->ReceiveProgress = nullptr;
    client->PageReceived = nullptr;
    for (const auto& reply : replies) {
        const std::string text = reply.head + Repeated(reply.repeated, reply.size) + reply.end;
        const int64_t memory = PeakMemory();
        client->ends = 0;
        client->Get(url, reply.file);
        const std::jthread sender([&, peer = Served()]() mutable {
            const std::size_t piece = reply.piece == 0 ? text.size() : reply.piece;
            for (std::size_t at = 0; at < text.size() * reply.times; at += piece)
                peer.Send(std::string_view(text).substr(at % text.size(), piece));
            peer.Close();
        });
        const LongestTurn turn;
        EXPECT_TRUE(WaitUntil([this] { return client->ends == 1; }));
        EXPECT_LT(turn.Seconds(), 0.2 * kSlowness) << text.substr(0, 50);
        EXPECT_TRUE(PeakMemory() - memory < int64_t(4 * kMuch) || kSanitized) << text.substr(0, 50);
    }
    EXPECT_GE(folder.Item("film")->Length(), 16 * kMuch);
}

TEST_F(HTTPReplyTest, IsAnErrorToldOnceWhereMemoryDoesNotSuffice) {
    if (kSanitized)
        GTEST_SKIP() << "the sanitizer would not get what it needs";
    client->ReceiveProgress = nullptr;
    const std::string piece(1 << 16, 'x');
    for (const auto& [head, told] :
         {std::pair(kOk, "connected|error 212"), std::pair(kOk + "\r\n", "connected|headers 200 0|error 212")}) {
        client->told.clear();
        client->Get(url);
        const std::jthread sender([&piece, &head = head, peer = Served()]() mutable {
            for (peer.Send(head); !peer.HasInput();) // the end of the connection
                peer.Send(piece);
        });
        testing::internal::CaptureStderr();
        LimitMemory(64 << 20);
        EXPECT_TRUE(WaitUntil([this] { return client->ErrorCode() != 0; }));
        LimitMemory(RLIM_INFINITY);
        const std::string lines = testing::internal::GetCapturedStderr();
        EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 1) << lines;
        EXPECT_EQ(client->told, told);
    }
}
