#include "tests/program/RealServers.h"
#include "framework/files/FolderItem.h"
#include "tests/support/TestFolder.h"
#include "tests/support/Waiting.h"
#include "tests/update/HTTPClient.h"
#include "update/InternetHeaders.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

TEST(RealServers, AProxyCarriesACheckAndADownload) {
    if (!RealServer::AreThere())
        GTEST_SKIP() << "nginx and tinyproxy are not installed";
    const TestFolder folder;
    const std::string bytes = Pattern(4 << 20);
    fs::create_directories(folder.Path("site/services"));
    folder.Write("site/services/update.php", "false");
    folder.Write("site/o.zip", bytes);
    const RealServer server = RealServer::Web(folder.Path());
    const RealServer proxy = RealServer::Proxy(folder.Path());

    const auto client = New<HTTPClient>();
    client->HTTPProxyAddress = "127.0.0.1";
    client->HTTPProxyPort = proxy.Port();
    client->Yield = true;
    EXPECT_EQ(client->Get("http://" + server.Host() + "/services/update.php?name=Ombrivel&version=1.0", 20), "false");
    EXPECT_EQ(client->HTTPStatusCode(), 200);
    EXPECT_NE(client->PageHeaders()->Value("Via"), "") << "what the proxy adds";

    bool complete = false;
    client->DownloadComplete = [&](const std::string&, int32_t status, const Ref<InternetHeaders>& headers,
                                   const Ref<FolderItem>&) {
        complete = true;
        EXPECT_EQ(status, 200);
        EXPECT_EQ(headers->Value("Content-Length"), std::to_string(bytes.size()));
    };
    client->Get("http://" + server.Host() + "/o.zip", folder.Item("o.zip"));
    EXPECT_TRUE(WaitUntil([&] { return complete; }));
    EXPECT_EQ(folder.Read("o.zip"), bytes);
}

} // namespace
