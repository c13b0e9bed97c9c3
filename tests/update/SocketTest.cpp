#include "framework/net/TCPSocket.h"
#include "tests/support/Bytes.h"
#include "tests/support/Loopback.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

class Client : public TCPSocket {
public:
    std::string log;

protected:
    void Event_Error() override { log += "ended "; }
    void Event_SendComplete(bool aborted) override { log += aborted ? "aborted " : "sent "; }
};

// A client that has more to send than the system takes.
class SocketTest : public testing::Test {
protected:
    SocketTest() {
        client->Address = "127.0.0.1";
        client->Port = server.Port();
        client->Connect();
        EXPECT_TRUE(WaitUntil([this] { return client->IsConnected(); }));
        client->Write(much);
    }

    LoopbackServer server;
    const Ref<Client> client = New<Client>();
    const std::string much = Pattern(16'000'000);
};

} // namespace

TEST_F(SocketTest, PurgesWhatWaitsToBeSentAndNoMore) {
    WaitUntil([] { return false; }, std::chrono::milliseconds(200)); // until the system takes no more
    client->Purge();
    client->Write("abc");
    std::string got;
    std::jthread reading([&got, peer = server.Accept()]() mutable {
        for (std::string piece; !(piece = peer.Read()).empty();)
            got += piece;
    });
    EXPECT_TRUE(WaitUntil([this] { return client->log == "sent "; }));
    client->Close();
    reading.join();
    ASSERT_LT(got.size(), much.size()) << "nothing was left to be purged";
    EXPECT_EQ(got, much.substr(0, got.size() - 3) + "abc");
}

TEST_F(SocketTest, TellsWhatEndedItOnceAllIsRead) {
    LoopbackPeer peer = server.Accept();
    peer.Send(Pattern(100'000));
    EXPECT_TRUE(WaitUntil([&peer] { return peer.HasInput(); }));
    peer.Close(); // resets the connection, as there is something that was not read
    ASSERT_TRUE(WaitUntil([this] { return client->log.ends_with("ended "); }));
    EXPECT_EQ(client->ReadAll(), Pattern(100'000));
    EXPECT_GE(client->LastErrorCode(), 200);
    EXPECT_EQ(client->log.find("sent"), std::string::npos);
}
