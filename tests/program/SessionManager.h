#pragma once

#include "tests/program/Process.h"

#include <X11/SM/SMlib.h>
#undef Bool // which the tests' library has too

// A session manager with one client, over the X session management protocol. The client is served within these calls
// only.
class SessionManager {
public:
    SessionManager();
    ~SessionManager();

    // For the client's environment, as SESSION_MANAGER.
    std::string Address() const;

    // Waits for the client, which at its start waits for this.
    void AwaitClient() { Serve("a client's first save", saved_); }

    enum class Wish { Save, ShutDown, ShutDownWithoutQuestions };
    // The client may ask its user where it shuts down with questions: then waits until it does.
    void Ask(Wish wish);
    // Waits until the client has done what a wish asks. False: it calls the end of the session off.
    bool Agrees();

    void CallOff() { SmsShutdownCancelled(client_); }
    void Die() { SmsDie(client_); }

private:
    static int Accept(SmsConn, SmPointer data, unsigned long* mask, SmsCallbacks* calls, char**);
    void Serve(const std::string& until, const bool& isSo);
    void ServeOnce();

    int listenerCount_ = 0;
    IceListenObj* listeners_ = nullptr;
    IceConn connection_ = nullptr;
    SmsConn client_ = nullptr;
    bool saved_ = false, asking_ = false, shutsDown_ = false, calledOff_ = false;
};
