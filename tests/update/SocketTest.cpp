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
    void Event_Connected() override { log += "connected "; }
    void Event_Error() override { log += "ended "; }
    void Event_SendComplete(bool aborted) override { log += aborted ? "aborted " : "sent "; }
};

class SocketTest : public testing::Test {
protected:
    SocketTest() {
        client->Address = "127.0.0.1";
        client->Port = server.Port();
        client->Connect();
    }

    LoopbackServer server;
    const Ref<Client> client = New<Client>();
};

} // namespace

TEST_F(SocketTest, PurgesWhatWaitsToBeSentAndNoMore) {
    ASSERT_TRUE(WaitUntil([&] { return client->IsConnected(); }));
    LoopbackPeer peer = server.Accept();
    const std::string much = Pattern(16'000'000);
    client->Write(much);
    WaitUntil([] { return false; }, std::chrono::milliseconds(200)); // until the system takes no more
    client->Purge();
    client->Write("abc");
    std::string got;
    std::jthread reading([&] { got = peer.ReadRequest(); });
    ASSERT_TRUE(WaitUntil([&] { return client->log == "connected sent "; }));
    client->Close();
    reading.join();
    ASSERT_LT(got.size(), much.size()) << "nothing was left to be purged";
    EXPECT_EQ(got, much.substr(0, got.size() - 3) + "abc");
}

TEST_F(SocketTest, TellsWhatEndedItOnceAllIsRead) {
    ASSERT_TRUE(WaitUntil([&] { return client->IsConnected(); }));
    LoopbackPeer peer = server.Accept();
    client->Write(Pattern(16'000'000));
    peer.Send(Pattern(100'000));
    peer.Reset();
    ASSERT_TRUE(WaitUntil([&] { return client->log.ends_with("ended "); }));
    EXPECT_EQ(client->ReadAll(), Pattern(100'000));
    EXPECT_GE(client->LastErrorCode(), 200);
    EXPECT_EQ(client->log.find("sent"), std::string::npos);
}
