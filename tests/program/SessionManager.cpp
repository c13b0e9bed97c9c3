#include "tests/program/SessionManager.h"

#include <cstdlib>
#include <poll.h>
#include <stdexcept>
#include <sys/stat.h>

namespace {

SessionManager& Of(SmPointer data) {
    return *static_cast<SessionManager*>(data);
}

void Free(SmsConn, SmPointer, int count, char** texts) {
    SmFreeReasons(count, texts);
}

bool HasInput(int descriptor) {
    pollfd entry{descriptor, POLLIN, 0};
    return poll(&entry, 1, 0) > 0;
}

} // namespace

SessionManager::SessionManager() {
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

SessionManager::~SessionManager() {
    if (client_ != nullptr) {
        SmsCleanUp(client_);
        IceSetShutdownNegotiation(connection_, False);
        IceCloseConnection(connection_);
    }
    IceFreeListenObjs(listenerCount_, listeners_);
}

std::string SessionManager::Address() const {
    char* const list = IceComposeNetworkIdList(listenerCount_, listeners_);
    std::string address = list;
    std::free(list);
    return address;
}

void SessionManager::Ask(Wish wish) {
    saved_ = asking_ = calledOff_ = false;
    shutsDown_ = wish != Wish::Save;
    SmsSaveYourself(client_, SmSaveBoth, shutsDown_ ? True : False,
                    wish == Wish::ShutDown ? SmInteractStyleAny : SmInteractStyleNone, False);
    if (wish == Wish::ShutDown)
        Serve("a client that asks its user", asking_);
}

bool SessionManager::Agrees() {
    Serve("a client's answer", saved_);
    return !calledOff_;
}

// Qt makes no use of the other calls.
int SessionManager::Accept(SmsConn, SmPointer data, unsigned long* mask, SmsCallbacks* calls, char**) {
    *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
            SmsSaveYourselfDoneProcMask | SmsCloseConnectionProcMask | SmsSetPropertiesProcMask |
            SmsDeletePropertiesProcMask;
    const auto enter = [](SmsConn client, SmPointer to, char* previousId) {
        std::free(previousId);
        char id[] = "client";
        SmsRegisterClientReply(client, id);
        SmsSaveYourself(client, SmSaveLocal, False, SmInteractStyleNone, False); // as every client is asked at first
        Of(to).client_ = client;
        return 1;
    };
    const auto letAsk = [](SmsConn client, SmPointer to, int) {
        Of(to).asking_ = true;
        SmsInteract(client);
    };
    const auto saved = [](SmsConn client, SmPointer to, int) {
        Of(to).saved_ = true;
        if (!Of(to).shutsDown_)
            SmsSaveComplete(client);
    };
    const auto takeProperties = [](SmsConn, SmPointer, int count, SmProp** properties) {
        for (int i = 0; i < count; ++i)
            SmFreeProperty(properties[i]);
        std::free(properties);
    };
    calls->register_client = {enter, data};
    calls->interact_request = {letAsk, data};
    calls->interact_done = {[](SmsConn, SmPointer to, int cancels) { Of(to).calledOff_ = cancels != 0; }, data};
    calls->save_yourself_done = {saved, data};
    calls->close_connection = {Free, data};
    calls->delete_properties = {Free, data};
    calls->set_properties = {takeProperties, data};
    return 1;
}

void SessionManager::Serve(const std::string& until, const bool& isSo) {
    Await(until, [&] {
        ServeOnce();
        return isSo;
    });
}

void SessionManager::ServeOnce() {
    for (int i = 0; connection_ == nullptr && i < listenerCount_; ++i) {
        IceAcceptStatus status = IceAcceptFailure;
        if (HasInput(IceGetListenConnectionNumber(listeners_[i])))
            connection_ = IceAcceptConnection(listeners_[i], &status);
    }
    if (connection_ != nullptr && HasInput(IceConnectionNumber(connection_)))
        IceProcessMessages(connection_, nullptr, nullptr);
}
