#include "framework/app/Activation.h"

#include "framework/threads/Thread.h"

#include <QGuiApplication>
#include <QWidget>

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {

constexpr uint32_t kFromApplication = 1; // not from a pager, whose wishes are always met

// Nil where the display is none of X11.
xcb_connection_t* Server() {
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 == nullptr ? nullptr : x11->connection();
}

xcb_screen_t* Screen(xcb_connection_t* server) {
    return xcb_setup_roots_iterator(xcb_get_setup(server)).data;
}

xcb_client_message_event_t Message(xcb_connection_t* server, std::string_view type, uint8_t format, xcb_window_t from) {
    const auto request = xcb_intern_atom(server, 0, static_cast<uint16_t>(type.size()), type.data());
    xcb_intern_atom_reply_t* const atom = xcb_intern_atom_reply(server, request, nullptr);
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = format;
    message.window = from;
    message.type = atom == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : atom->atom;
    std::free(atom);
    return message;
}

void Send(xcb_connection_t* server, uint32_t mask, const xcb_client_message_event_t& message) {
    xcb_send_event(server, 0, Screen(server)->root, mask, reinterpret_cast<const char*>(&message));
}

// To everybody, in pieces, the last of which ends with a zero byte.
void Broadcast(xcb_connection_t* server, const std::string& text) {
    const xcb_window_t sender = xcb_generate_id(server);
    xcb_create_window(server, XCB_COPY_FROM_PARENT, sender, Screen(server)->root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_client_message_event_t piece = Message(server, "_NET_STARTUP_INFO_BEGIN", 8, sender);
    const xcb_atom_t furtherPieces = Message(server, "_NET_STARTUP_INFO", 8, sender).type;
    for (std::size_t from = 0; from <= text.size(); from += sizeof piece.data) {
        std::memset(&piece.data, 0, sizeof piece.data);
        text.copy(reinterpret_cast<char*>(piece.data.data8), sizeof piece.data, from);
        Send(server, XCB_EVENT_MASK_PROPERTY_CHANGE, piece);
        piece.type = furtherPieces;
    }
    xcb_destroy_window(server, sender);
    xcb_flush(server);
}

// The moment of the user's click, in the display's milliseconds; 0 if the id does not tell.
uint32_t TimeIn(const std::string& startupId) {
    constexpr std::string_view kMark = "_TIME";
    const std::size_t at = startupId.rfind(kMark);
    if (at == std::string::npos)
        return 0;
    return static_cast<uint32_t>(std::strtoul(startupId.c_str() + at + kMark.size(), nullptr, 10));
}

// Qt would name the moment of the last click in this program, which is older than what the user has done elsewhere
// since: a window manager may then leave the window behind.
void ActivateAsOf(uint32_t time, xcb_connection_t* server, const QWidget& window) {
    const auto id = static_cast<xcb_window_t>(window.internalWinId());
    xcb_client_message_event_t message = Message(server, "_NET_ACTIVE_WINDOW", 32, id);
    message.data.data32[0] = kFromApplication;
    message.data.data32[1] = time;
    Send(server, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY, message);
    xcb_flush(server);
}

} // namespace

Activation Activation::OfThisStart() {
    return {qgetenv("DESKTOP_STARTUP_ID").toStdString(), qgetenv("XDG_ACTIVATION_TOKEN").toStdString()};
}

void Activate(QWidget& window, const Activation& activation) {
    EndBusyPointer(activation);
    xcb_connection_t* const server = Server();
    const uint32_t time = TimeIn(activation.StartupId);
    if (server != nullptr && time != 0) {
        ActivateAsOf(time, server, window);
        return;
    }
    // From where Qt takes it with this wish. While a worker may look into the environment, it has to do without.
    if (!activation.Token.empty() && QGuiApplication::platformName().startsWith(QLatin1String("wayland")) &&
        Thread::RunningCount() == 0)
        qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(activation.Token));
    window.activateWindow();
}

void EndBusyPointer(const Activation& activation) {
    xcb_connection_t* const server = Server();
    if (server == nullptr || activation.StartupId.empty())
        return;
    std::string quoted;
    for (const char character : activation.StartupId) {
        if (character == '"' || character == '\\')
            quoted += '\\';
        quoted += character;
    }
    Broadcast(server, "remove: ID=\"" + quoted + "\"");
}
