#include "tests/program/SessionManager.h"

#include "tests/program/Process.h"

#include <X11/SM/SMlib.h>

#include <cstdlib>
#include <poll.h>
#include <stdexcept>
#include <sys/stat.h>

struct Session {
    int listenerCount = 0;
    IceListenObj* listeners = nullptr;
    IceConn connection = nullptr;
    SmsConn client = nullptr;
    bool saved = false;
    bool asking = false;
    bool shutsDown = false;
    bool calledOff = false;
};

namespace {

Session& Of(SmPointer data) {
    return *static_cast<Session*>(data);
}

int Register(SmsConn client, SmPointer data, char* previousId) {
    std::free(previousId);
    char id[] = "client";
    SmsRegisterClientReply(client, id);
    SmsSaveYourself(client, SmSaveLocal, False, SmInteractStyleNone, False); // as every client is asked at first
    Of(data).client = client;
    return 1;
}

void Saved(SmsConn client, SmPointer data, int) {
    Of(data).saved = true;
    if (!Of(data).shutsDown)
        SmsSaveComplete(client);
}

void LetAsk(SmsConn client, SmPointer data, int) {
    Of(data).asking = true;
    SmsInteract(client);
}

void TakeProperties(SmsConn, SmPointer, int count, SmProp** properties) {
    for (int i = 0; i < count; ++i)
        SmFreeProperty(properties[i]);
    std::free(properties);
}

int Accept(SmsConn, SmPointer data, unsigned long* mask, SmsCallbacks* calls, char**) {
    *mask = (SmsGetPropertiesProcMask << 1) - 1; // all of them
    calls->register_client = {Register, data};
    calls->interact_request = {LetAsk, data};
    calls->interact_done = {[](SmsConn, SmPointer to, int cancels) { Of(to).calledOff = cancels != 0; }, data};
    calls->save_yourself_request = {[](SmsConn, SmPointer, int, int, int, int, int) {}, data};
    calls->save_yourself_phase2_request = {[](SmsConn client, SmPointer) { SmsSaveYourselfPhase2(client); }, data};
    calls->save_yourself_done = {Saved, data};
    calls->close_connection = {[](SmsConn, SmPointer, int count, char** why) { SmFreeReasons(count, why); }, data};
    calls->set_properties = {TakeProperties, data};
    calls->delete_properties = {[](SmsConn, SmPointer, int count, char** names) { SmFreeReasons(count, names); }, data};
    calls->get_properties = {[](SmsConn, SmPointer) {}, data};
    return 1;
}

bool HasInput(int descriptor) {
    pollfd entry{descriptor, POLLIN, 0};
    return poll(&entry, 1, 0) > 0;
}

} // namespace

SessionManager::SessionManager() : session_(std::make_unique<Session>()) {
    mkdir("/tmp/.ICE-unix", 01777); // which the library makes for the superuser only
    char error[256] = "";
    IceSetIOErrorHandler([](IceConn) {}); // in place of one that ends the process
    const auto anybody = [](char*) { return 1; };
    if (SmsInitialize("test", "1", Accept, session_.get(), anybody, sizeof error, error) == 0 ||
        IceListenForConnections(&session_->listenerCount, &session_->listeners, sizeof error, error) == 0)
        throw std::runtime_error(error);
    for (int i = 0; i < session_->listenerCount; ++i)
        IceSetHostBasedAuthProc(session_->listeners[i], anybody);
}

SessionManager::~SessionManager() {
    if (session_->client != nullptr) {
        SmsCleanUp(session_->client);
        IceSetShutdownNegotiation(session_->connection, False);
        IceCloseConnection(session_->connection);
    }
    IceFreeListenObjs(session_->listenerCount, session_->listeners);
}

std::string SessionManager::Address() const {
    char* const list = IceComposeNetworkIdList(session_->listenerCount, session_->listeners);
    std::string address = list;
    std::free(list);
    return address;
}

void SessionManager::AwaitClient() {
    Serve("a client's first save", session_->saved);
}

void SessionManager::Ask(Wish wish) {
    session_->saved = false;
    session_->asking = false;
    session_->calledOff = false;
    session_->shutsDown = wish != Wish::Save;
    SmsSaveYourself(session_->client, SmSaveBoth, session_->shutsDown ? True : False,
                    wish == Wish::ShutDown ? SmInteractStyleAny : SmInteractStyleNone, False);
    if (wish == Wish::ShutDown)
        Serve("a client that asks its user", session_->asking);
}

bool SessionManager::Agrees() {
    Serve("a client's answer", session_->saved);
    return !session_->calledOff;
}

void SessionManager::CallOff() {
    SmsShutdownCancelled(session_->client);
}

void SessionManager::Die() {
    SmsDie(session_->client);
}

void SessionManager::Serve(const std::string& until, const bool& isSo) {
    Await(until, [&] {
        ServeOnce();
        return isSo;
    });
}

void SessionManager::ServeOnce() {
    for (int i = 0; session_->connection == nullptr && i < session_->listenerCount; ++i) {
        IceAcceptStatus status = IceAcceptFailure;
        if (HasInput(IceGetListenConnectionNumber(session_->listeners[i])))
            session_->connection = IceAcceptConnection(session_->listeners[i], &status);
    }
    if (session_->connection != nullptr && HasInput(IceConnectionNumber(session_->connection)))
        IceProcessMessages(session_->connection, nullptr, nullptr);
}
