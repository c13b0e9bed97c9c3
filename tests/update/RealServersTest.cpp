#include "tests/program/RealServers.h"
#include "tests/update/HTTPClient.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

TEST(RealServers, AProxyCarriesACheck) {
    if (!RealServer::AreThere())
        GTEST_SKIP() << "nginx and tinyproxy are not installed";
    const TestFolder folder;
    fs::create_directories(folder.Path("site/services"));
    folder.Write("site/services/update.php", "false");
    const RealServer server = RealServer::Web(folder.Path());
    const RealServer proxy = RealServer::Proxy(folder.Path());

    const auto client = New<HTTPClient>();
    client->HTTPProxyAddress = "127.0.0.1";
    client->HTTPProxyPort = proxy.Port();
    client->Yield = true;
    EXPECT_EQ(client->Get("http://" + server.Host() + "/services/update.php?name=Ombrivel&version=1.0", 20), "false");
    EXPECT_EQ(client->HTTPStatusCode(), 200);
    EXPECT_NE(client->PageHeaders()->Value("Via"), "") << "what the proxy adds";
}

} // namespace
