#include "framework/net/TCPSocket.h"
#include "tests/support/Bytes.h"
#include "tests/support/Loopback.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

namespace {

struct Client : TCPSocket {
    std::string got;
    int ends = 0;

    void Event_DataAvailable() override { got += ReadAll(); }
    void Event_Error() override { ++ends; }
};

class Net : public testing::Test {
protected:
    LoopbackPeer Connect() {
        client->Address = "127.0.0.1";
        client->Port = server.Port();
        client->Connect();
        EXPECT_TRUE(WaitUntil([this] { return client->IsConnected(); }));
        return server.Accept();
    }

    LoopbackServer server;
    const Ref<Client> client = New<Client>();
};

TEST_F(Net, PurgesWhatWaitsToBeSentAndNoMore) {
    LoopbackPeer peer = Connect();
    const std::string much = Pattern(16'000'000); // more than the system takes
    client->Write(much);
    EXPECT_TRUE(WaitUntil([&] { return peer.HasInput(); }));
    client->Purge();
    client->Write("abc");
    std::string got;
    EXPECT_TRUE(WaitUntil([&] {
        got += peer.HasInput() ? peer.Read() : "";
        return got.ends_with("abc");
    }));
    ASSERT_LT(got.size(), much.size()) << "nothing was left to be purged";
    EXPECT_EQ(got, much.substr(0, got.size() - 3) + "abc");
}

TEST_F(Net, TellsOfItsEndOnceAllIsRead) {
    LoopbackPeer peer = Connect();
    client->Write("x");
    EXPECT_TRUE(WaitUntil([&peer] { return peer.HasInput(); }));
    peer.Send(Pattern(100'000));
    peer.Close(); // resets the connection, as there is something that was not read
    EXPECT_TRUE(WaitUntil([this] { return client->ends == 1; }));
    EXPECT_EQ(client->got, Pattern(100'000));
    EXPECT_GE(client->LastErrorCode(), 200);
}

} // namespace
