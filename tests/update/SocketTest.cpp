#include "tests/update/HTTPTest.h"

using SocketTest = HTTPTest;

TEST_F(SocketTest, PurgesWhatWaitsToBeSentAndNoMore) {
    client->Get(url);
    LoopbackPeer peer = Served();
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

TEST_F(SocketTest, TellsOfItsEndOnceAllIsRead) {
    client->Get(url);
    EXPECT_TRUE(WaitUntil([this] { return server.HasInput(); }));
    LoopbackPeer peer = server.Accept();
    peer.Send("HTTP/1.0 200 OK\r\n\r\n" + Pattern(100'000));
    EXPECT_TRUE(WaitUntil([&peer] { return peer.HasInput(); }));
    peer.Close(); // resets the connection, as there is something that was not read
    EXPECT_TRUE(WaitUntil([this] { return client->ends == 1; }));
    EXPECT_TRUE(client->told.ends_with("|page 200 " + Pattern(100'000)));
    EXPECT_GE(client->LastErrorCode(), 200);
}
