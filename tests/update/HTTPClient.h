#pragma once

#include "tests/support/Loopback.h"
#include "tests/support/TestFolder.h"
#include "tests/support/Waiting.h"
#include "update/HTTPSocket.h"
#include "update/InternetHeaders.h"

#include <string>
#include <thread>
#include <vector>

// A client that writes down what it is told.
class HTTPClient : public HTTPSocket {
public:
    HTTPClient();

    std::string Told() const; // all that it was told, with bars in between

    std::vector<std::string> log;
    int ends = 0; // of connections

protected:
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

// Sends the reply to so many clients and closes, for a client that waits without events.
std::jthread AnswerAside(LoopbackServer& server, const std::string& reply, int clients = 1);
