#pragma once

#include "update/HTTPSocket.h"

#include <cstdint>
#include <string>

// One question to the update server whether there is a newer version. The server decides: it is told the version and
// answers in one of three ways, see docs/update-server.md. Nobody holds a check; it lives by its connection. Main
// thread.
class claSearchForUpdates : public HTTPSocket {
public:
    // Asks, and returns at once. A newer version is always offered, in winUpdate; only a check with a dialog tells of
    // all other outcomes too.
    static void Check(bool showDialog);

protected:
    virtual void Event_PageReceived(const std::string& url, int32_t status, const Ref<InternetHeaders>& headers,
                                    const std::string& body);
    using HTTPSocket::Event_Error; // the end of a connection
    virtual void Event_Error(int32_t code);
    virtual void Constructor(bool showDialog);

private:
    void Offer(const std::string& record);

    bool ShowDialog = false;
};
