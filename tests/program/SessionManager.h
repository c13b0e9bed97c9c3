#pragma once

#include "tests/program/Process.h"

#include <X11/SM/SMlib.h>
#undef Bool // which the tests' library has too

#include <cstdlib>
#include <poll.h>
#include <stdexcept>
#include <sys/stat.h>

// A session manager with one client, over the X session management protocol. The client is served within these calls
// only.
class SessionManager {
public:
    SessionManager() {
        mkdir("/tmp/.ICE-unix", 01777); // which the library makes for the superuser only
        char error[256] = "";
        IceSetIOErrorHandler([](IceConn) {}); // in place of one that ends the process
        const auto anybody = [](char*) { return 1; };
        if (SmsInitialize("test", "1", Accept, this, anybody, sizeof error, error) == 0 ||
            IceListenForConnections(&listenerCount_, &listeners_, sizeof error, error) == 0)
            throw std::runtime_error(error);
        for (int i = 0; i < listenerCount_; ++i)
            IceSetHostBasedAuthProc(listeners_[i], anybody);
    }

    ~SessionManager() {
        if (client_ != nullptr) {
            SmsCleanUp(client_);
            IceSetShutdownNegotiation(connection_, False);
            IceCloseConnection(connection_);
        }
        IceFreeListenObjs(listenerCount_, listeners_);
    }

    // For the client's environment, as SESSION_MANAGER.
    std::string Address() const {
        char* const list = IceComposeNetworkIdList(listenerCount_, listeners_);
        std::string address = list;
        std::free(list);
        return address;
    }

    // Waits for the client, which at its start waits for this.
    void AwaitClient() { Serve("a client's first save", saved_); }

    enum class Wish { Save, ShutDown, ShutDownWithoutQuestions };
    // The client may ask its user where it shuts down with questions: then waits until it does.
    void Ask(Wish wish) {
        saved_ = asking_ = calledOff_ = false;
        shutsDown_ = wish != Wish::Save;
        SmsSaveYourself(client_, SmSaveBoth, shutsDown_ ? True : False,
                        wish == Wish::ShutDown ? SmInteractStyleAny : SmInteractStyleNone, False);
        if (wish == Wish::ShutDown)
            Serve("a client that asks its user", asking_);
    }

    // Waits until the client has done what a wish asks. False: it calls the end of the session off.
    bool Agrees() {
        Serve("a client's answer", saved_);
        return !calledOff_;
    }

    void CallOff() { SmsShutdownCancelled(client_); }
    void Die() { SmsDie(client_); }

private:
    static SessionManager& Of(SmPointer data) { return *static_cast<SessionManager*>(data); }

    static int Register(SmsConn client, SmPointer data, char* previousId) {
        std::free(previousId);
        char id[] = "client";
        SmsRegisterClientReply(client, id);
        SmsSaveYourself(client, SmSaveLocal, False, SmInteractStyleNone, False); // as every client is asked at first
        Of(data).client_ = client;
        return 1;
    }

    static void LetAsk(SmsConn client, SmPointer data, int) {
        Of(data).asking_ = true;
        SmsInteract(client);
    }

    static void Saved(SmsConn client, SmPointer data, int) {
        Of(data).saved_ = true;
        if (!Of(data).shutsDown_)
            SmsSaveComplete(client);
    }

    static void TakeProperties(SmsConn, SmPointer, int count, SmProp** properties) {
        for (int i = 0; i < count; ++i)
            SmFreeProperty(properties[i]);
        std::free(properties);
    }

    static void Free(SmsConn, SmPointer, int count, char** texts) { SmFreeReasons(count, texts); }

    // The toolkit makes no use of the others.
    static int Accept(SmsConn, SmPointer data, unsigned long* mask, SmsCallbacks* calls, char**) {
        *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
                SmsSaveYourselfDoneProcMask | SmsCloseConnectionProcMask | SmsSetPropertiesProcMask |
                SmsDeletePropertiesProcMask;
        calls->register_client = {Register, data};
        calls->interact_request = {LetAsk, data};
        calls->interact_done = {[](SmsConn, SmPointer to, int cancels) { Of(to).calledOff_ = cancels != 0; }, data};
        calls->save_yourself_done = {Saved, data};
        calls->close_connection = {Free, data};
        calls->delete_properties = {Free, data};
        calls->set_properties = {TakeProperties, data};
        return 1;
    }

    static bool HasInput(int descriptor) {
        pollfd entry{descriptor, POLLIN, 0};
        return poll(&entry, 1, 0) > 0;
    }

    void Serve(const std::string& until, const bool& isSo) {
        Await(until, [&] {
            ServeOnce();
            return isSo;
        });
    }

    void ServeOnce() {
        for (int i = 0; connection_ == nullptr && i < listenerCount_; ++i) {
            IceAcceptStatus status = IceAcceptFailure;
            if (HasInput(IceGetListenConnectionNumber(listeners_[i])))
                connection_ = IceAcceptConnection(listeners_[i], &status);
        }
        if (connection_ != nullptr && HasInput(IceConnectionNumber(connection_)))
            IceProcessMessages(connection_, nullptr, nullptr);
    }

    int listenerCount_ = 0;
    IceListenObj* listeners_ = nullptr;
    IceConn connection_ = nullptr;
    SmsConn client_ = nullptr;
    bool saved_ = false, asking_ = false, shutsDown_ = false, calledOff_ = false;
};
