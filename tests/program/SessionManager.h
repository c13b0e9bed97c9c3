#pragma once

#include <memory>
#include <string>

struct Session;

// A session manager with one client, over the X session management protocol. The client is served within these calls
// only.
class SessionManager {
public:
    SessionManager();
    ~SessionManager();

    // For the client's environment, as SESSION_MANAGER.
    std::string Address() const;
    // Waits for the client, which at its start waits for this.
    void AwaitClient();

    enum class Wish { Save, ShutDown, ShutDownWithoutQuestions };
    // The client may ask its user where it shuts down with questions: then waits until it does.
    void Ask(Wish wish);
    // Waits until the client has done what a wish asks. False: it calls the end of the session off.
    bool Agrees();
    void CallOff();
    void Die();

private:
    void Serve(const std::string& until, const bool& isSo);
    void ServeOnce();

    std::unique_ptr<Session> session_;
};
