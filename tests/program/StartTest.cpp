#include "tests/program/WholeProgramTest.h"

#include <algorithm>
#include <csignal>
#include <xcb/xcb.h>

namespace {

// Listens to what programs tell the window manager and everybody else on a display.
class Messages {
public:
    explicit Messages(const std::string& display) : server_(xcb_connect(display.c_str(), nullptr)) {
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(server_)).data->root;
        const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(server_, root, XCB_CW_EVENT_MASK, &events);
        beginning_ = Atom("_NET_STARTUP_INFO_BEGIN");
        further_ = Atom("_NET_STARTUP_INFO");
        activate_ = Atom("_NET_ACTIVE_WINDOW");
    }
    ~Messages() { xcb_disconnect(server_); }
    Messages(const Messages&) = delete;
    Messages& operator=(const Messages&) = delete;

    void Read() {
        while (xcb_generic_event_t* const event = xcb_poll_for_event(server_)) {
            if ((event->response_type & 0x7F) == XCB_CLIENT_MESSAGE)
                Take(*reinterpret_cast<xcb_client_message_event_t*>(event));
            else if (event->response_type == XCB_PROPERTY_NOTIFY)
                now = reinterpret_cast<xcb_property_notify_event_t*>(event)->time;
            std::free(event);
        }
    }

    uint32_t now = 0;                                       // the display's time
    std::map<WindowId, std::string> told;                   // to everybody, by the sender
    std::vector<std::pair<WindowId, uint32_t>> activations; // wished for, with the time of the user's action

private:
    xcb_atom_t Atom(const std::string& name) const {
        const auto request = xcb_intern_atom(server_, 0, static_cast<uint16_t>(name.size()), name.data());
        xcb_intern_atom_reply_t* const reply = xcb_intern_atom_reply(server_, request, nullptr);
        const xcb_atom_t atom = reply->atom;
        std::free(reply);
        return atom;
    }

    void Take(const xcb_client_message_event_t& message) {
        if (message.type == activate_)
            activations.emplace_back(message.window, message.data.data32[1]);
        else if (message.type == beginning_ || message.type == further_)
            told[message.window].append(reinterpret_cast<const char*>(message.data.data8), sizeof message.data);
    }

    xcb_connection_t* const server_;
    xcb_atom_t beginning_, further_, activate_;
};

} // namespace

using AStart = WholeProgramTest;
using SecondStart = WholeProgramTest;

TEST_F(AStart, NeedsADisplayAndTellsInOneLineThatThereIsNone) {
    environment["QT_DPI_ADJUSTMENT_POLICY"] = "?"; // of which the toolkit complains before it looks for a display
    const std::string line = "ombrivel: the program could not start: no display: could not connect to display";
    for (const auto& [display, end] : {std::pair("", "\n"), {"nowhere", " nowhere\n"}}) {
        environment["DISPLAY"] = display;
        Program& program = Start({});
        EXPECT_EQ(program.End(), 1);
        EXPECT_EQ(program.Errors(), line + end);
    }
}

TEST_F(SecondStart, BringsTheWindowsForwardAsTheyStoodAndEndsTheBusyPointer) {
    Program& program = Start({});
    const WindowId main = program.OnlyWindow();
    desktop.Press({"F10", "Right", "Up", "Return"}); // the preferences
    const std::string preferences = std::to_string(program.Dialog());
    Messages messages(environment["DISPLAY"]);
    desktop.Do({"windowactivate", std::to_string(main)});
    Await("the main window over the other", [&] {
        messages.Read();
        return desktop.ActiveWindow() == main && messages.now != 0 && !messages.activations.empty();
    });

    const std::string time = std::to_string(messages.now);
    const std::string end = R"(remove: ID="a long \"\\\" launcher_TIME)" + time + "\"";
    const std::pair wanted(main, messages.now);
    environment["DESKTOP_STARTUP_ID"] = R"(a long "\" launcher_TIME)" + time;
    EXPECT_EQ(StartAgain({}), 0);
    Await("a wish for the front, and the end of the busy pointer told by both", [&] {
        messages.Read();
        const auto ends = [&](const auto& sender) { return sender.second.c_str() == end; };
        return messages.activations.back() == wanted &&
               std::count_if(messages.told.begin(), messages.told.end(), ends) == 2;
    });
    EXPECT_EQ(desktop.ActiveWindow(), main);

    desktop.Do({"windowminimize", "--sync", preferences});
    desktop.Do({"windowminimize", "--sync", std::to_string(main)});
    EXPECT_EQ(StartAgain({}), 0);
    EXPECT_EQ(program.OnlyWindow(), main);
    EXPECT_EQ(desktop.Pretend({"act", "example.halvrick.Ombrivel"}).Output(), "answered\n");
}

// As when many are started at once and each is soon done.
TEST_F(SecondStart, IsItsOwnMasterWhenOneInstanceAfterTheOtherEnds) {
    const std::string film = WriteSeries("film.mov");
    for (int i = 0; i < 3; ++i)
        desktop.Pretend({"example.halvrick.Ombrivel"});
    EXPECT_EQ(Start({"film.mov.001"}).End(), 0);
    EXPECT_TRUE(Holds(File("film.mov"), film));
}

TEST_F(SecondStart, TellsOfAnInstanceThatHangsAndNothingIsOpenedTwice) {
    const std::string film = WriteSeries("film.mov");
    Program& hung = Start({});
    hung.OnlyWindow();
    kill(hung.Id(), SIGSTOP);
    Program& second = Start({"film.mov.001"});
    second.OnlyWindow();
    desktop.Press({"Return"});
    EXPECT_EQ(second.End(), 1);
    EXPECT_EQ(second.Errors(), "ombrivel: the program could not start: it is running already, but does not answer\n");
    EXPECT_FALSE(Exists("film.mov"));
    kill(hung.Id(), SIGCONT);
    AwaitShown({"film.mov"});
    EXPECT_TRUE(Holds(File("film.mov"), film));
    EXPECT_EQ(StartAgain({}), 0) << "a run that no file began stays when all is done";
}
