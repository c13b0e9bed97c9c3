#pragma once

#include "tests/support/Loopback.h"
#include "update/HTTPSocket.h"

#include <string>
#include <vector>

// A client that writes down what it is told.
class HTTPClient : public HTTPSocket {
public:
    HTTPClient();

    std::vector<std::string> log;
    int arrivals = 0; // of data
    int ends = 0;     // of connections

protected:
    void Event_DataAvailable() override {
        HTTPSocket::Event_DataAvailable();
        ++arrivals;
    }
    void Event_Error() override {
        HTTPSocket::Event_Error();
        ++ends;
    }
};

// Waits for the client's next connection and its request.
struct HTTPExchange {
    HTTPExchange(LoopbackServer& server);

    LoopbackPeer peer;
    std::string request;
};

// Sends the reply to the client's next request and closes; waits until the client knows. Gives the request.
std::string Answer(LoopbackServer& server, HTTPClient& client, const std::string& reply);
