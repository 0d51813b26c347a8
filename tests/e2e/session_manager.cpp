// A session manager of the X11 kind (XSMP). Prints the address that its clients take as
// SESSION_MANAGER; "end" on standard input ends the session: every client may save, then has to go.

#include <X11/ICE/ICElib.h>
#include <X11/SM/SMlib.h>

#include <cstdio>
#include <cstdlib>
#include <poll.h>
#include <unistd.h>
#include <vector>

namespace {

struct Session {
    std::vector<SmsConn> clients;
    std::vector<IceConn> wires; ///< that the library has opened
    bool isEnding = false;
};

Session& of(SmPointer data) {
    return *static_cast<Session*>(data);
}

Status registerClient(SmsConn client, SmPointer data, char* previous) {
    if (previous)
        return 0; // nobody is known from before
    char* id = SmsGenerateClientID(client);
    SmsRegisterClientReply(client, id);
    std::free(id);
    SmsSaveYourself(client, SmSaveLocal, False, SmInteractStyleNone, False);
    of(data).clients.push_back(client);
    return 1;
}

void saved(SmsConn client, SmPointer data, Bool) {
    if (of(data).isEnding)
        SmsDie(client);
    else
        SmsSaveComplete(client);
}

void closed(SmsConn client, SmPointer data, int count, char** reasons) {
    std::erase(of(data).clients, client);
    SmFreeReasons(count, reasons);
    IceConn wire = SmsGetIceConnection(client);
    SmsCleanUp(client);
    IceSetShutdownNegotiation(wire, False);
    IceCloseConnection(wire);
}

Status newClient(SmsConn, SmPointer session, unsigned long* mask, SmsCallbacks* calls, char**) {
    *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
            SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask |
            SmsSaveYourselfDoneProcMask | SmsCloseConnectionProcMask | SmsSetPropertiesProcMask |
            SmsDeletePropertiesProcMask | SmsGetPropertiesProcMask;
    calls->register_client = {registerClient, session};
    calls->interact_request = {[](SmsConn client, SmPointer, int) { SmsInteract(client); },
                               session};
    calls->interact_done = {[](SmsConn, SmPointer, Bool) {}, session};
    calls->save_yourself_request = {[](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {}, session};
    calls->save_yourself_phase2_request = {
        [](SmsConn client, SmPointer) { SmsSaveYourselfPhase2(client); }, session};
    calls->save_yourself_done = {saved, session};
    calls->close_connection = {closed, session};
    calls->set_properties = {[](SmsConn, SmPointer, int count, SmProp** properties) {
                                 for (int i = 0; i < count; ++i)
                                     SmFreeProperty(properties[i]);
                                 std::free(properties);
                             },
                             session};
    calls->delete_properties = {[](SmsConn, SmPointer, int, char**) {}, session};
    calls->get_properties = {
        [](SmsConn client, SmPointer) { SmsReturnProperties(client, 0, nullptr); }, session};
    return 1;
}

void watchWire(IceConn wire, IcePointer session, Bool opens, IcePointer*) {
    if (opens)
        of(session).wires.push_back(wire);
    else
        std::erase(of(session).wires, wire);
}

void obey(Session& session) {
    char line[64];
    if (::read(STDIN_FILENO, line, sizeof line) <= 0)
        std::exit(0);
    session.isEnding = true;
    for (SmsConn client : session.clients)
        SmsSaveYourself(client, SmSaveBoth, True, SmInteractStyleNone, False);
}

} // namespace

int main() {
    Session session;
    char error[256] = "";
    IceListenObj* listeners = nullptr;
    int count = 0;
    // Whoever reaches the private sockets of the test is welcome.
    const auto everybody = [](char*) -> Bool { return True; };
    IceAddConnectionWatch(watchWire, &session);
    if (!SmsInitialize("tamsel-test", "1", newClient, &session, everybody, sizeof error, error) ||
        !IceListenForConnections(&count, &listeners, sizeof error, error)) {
        std::fprintf(stderr, "%s\n", error);
        return 1;
    }
    for (int i = 0; i < count; ++i)
        IceSetHostBasedAuthProc(listeners[i], everybody);
    std::printf("%s\n", IceComposeNetworkIdList(count, listeners));
    std::fflush(stdout);
    for (;;) {
        std::vector<pollfd> waited{{STDIN_FILENO, POLLIN, 0}};
        for (int i = 0; i < count; ++i)
            waited.push_back({IceGetListenConnectionNumber(listeners[i]), POLLIN, 0});
        const std::vector<IceConn> before = session.wires;
        for (IceConn wire : before)
            waited.push_back({IceConnectionNumber(wire), POLLIN, 0});
        if (::poll(waited.data(), waited.size(), -1) < 0)
            return 1;
        if (waited[0].revents)
            obey(session);
        for (int i = 0; i < count; ++i) {
            IceAcceptStatus status{};
            if (waited[1 + i].revents)
                IceAcceptConnection(listeners[i], &status);
        }
        for (std::size_t i = 0; i < before.size(); ++i) {
            if (waited[1 + count + i].revents)
                IceProcessMessages(before[i], nullptr, nullptr);
        }
    }
}
