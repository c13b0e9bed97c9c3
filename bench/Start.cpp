#include "bench/Cost.h"
#include "bench/Measures.h"
#include "bench/Scratch.h"
#include "framework/base/Program.h"
#include "tests/program/Process.h"

#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr int kRounds = 41; // of some milliseconds each
constexpr int kMiddleX = 512, kMiddleY = 384;

bool MiddleIsPainted(xcb_connection_t* server) {
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(server)).data;
    const auto request =
        xcb_get_image(server, XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root, kMiddleX, kMiddleY, 1, 1, 0xFFFFFF);
    xcb_get_image_reply_t* const image = xcb_get_image_reply(server, request, nullptr);
    bool painted = false;
    for (int i = 0; image != nullptr && i < xcb_get_image_data_length(image); ++i)
        painted = painted || xcb_get_image_data(image)[i] != 0;
    std::free(image);
    return painted;
}

using Clock = std::chrono::steady_clock;

void ListenToWindows(xcb_connection_t* server) {
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(server)).data;
    const uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(server, screen->root, XCB_CW_EVENT_MASK, &events);
}

// Whether a window has been mapped since the last call.
bool WindowHasCome(xcb_connection_t* server) {
    bool come = false;
    while (xcb_generic_event_t* const event = xcb_poll_for_event(server)) {
        come = come || (event->response_type & 0x7F) == XCB_MAP_NOTIFY;
        std::free(event);
    }
    return come;
}

// Sleeps until there is a window: looking at the screen all the time takes the server's time from the program.
void AwaitWindow(xcb_connection_t* server, Clock::time_point end) {
    while (!WindowHasCome(server) && Clock::now() < end) {
        pollfd news{xcb_get_file_descriptor(server), POLLIN, 0};
        poll(&news, 1, 100);
    }
}

// Seconds from the start of a program to its first paint in the middle of the screen, which is black before. One that
// shows nothing for ten seconds ends the measurements.
double TimeToPaint(xcb_connection_t* server, const std::string& program) {
    while (MiddleIsPainted(server))
        usleep(1000);
    WindowHasCome(server); // the last one, that is
    std::string word = program;
    std::array<char*, 2> words{word.data(), nullptr};
    const auto start = Clock::now();
    const auto end = start + std::chrono::seconds(10);
    pid_t child = 0;
    if (posix_spawn(&child, program.c_str(), nullptr, nullptr, words.data(), environ) != 0)
        throw std::runtime_error(program + " does not start");
    AwaitWindow(server, end);
    while (!MiddleIsPainted(server) && Clock::now() < end)
        usleep(100);
    const std::chrono::duration<double> taken = Clock::now() - start;
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    if (start + taken >= end)
        throw std::runtime_error(program + " shows nothing");
    return taken.count();
}

struct Row {
    const char* name;
    double limit;
};

const std::string kWithBus = "bus";

// What the program may ask before its first paint, and some that it must not wait for.
std::vector<std::unique_ptr<Process>> StartServices(const Process::Setting& setting) {
    const std::vector<Words> commands{{OMBRIVEL_PRETEND, "org.freedesktop.portal.Desktop"},
                                      {OMBRIVEL_PRETEND, "org.freedesktop.Notifications"},
                                      {"/usr/libexec/at-spi-bus-launcher", "--launch-immediately"}};
    std::vector<std::unique_ptr<Process>> services;
    for (const Words& command : commands) {
        const std::string log = setting.log.string() + std::to_string(services.size());
        services.push_back(
            std::make_unique<Process>(command, Process::Setting{setting.environment, setting.folder, log}));
        const Process& service = *services.back();
        if (command[0] == OMBRIVEL_PRETEND)
            Await("a service", [&service] { return service.Errors().ends_with("ready\n"); });
    }
    return services;
}

// Without a window manager only the program's own work counts.
void MeasureOn(const std::string& kind, const BenchOptions& options, const Row& row, Report& report) {
    const Scratch scratch(options.folder);
    const std::filesystem::path folder = std::filesystem::absolute(scratch.Path());
    Environment environment{{"PATH", std::getenv("PATH")}, {"HOME", folder}, {"XDG_RUNTIME_DIR", folder}};
    Process desktop({OMBRIVEL_VIRTUAL_DESKTOP, "1024x768", kind}, {environment, folder, folder / "desktop"});
    const Environment way = AwaitDesktop(desktop);
    xcb_connection_t* const server = way.empty() ? nullptr : xcb_connect(way.at("DISPLAY").c_str(), nullptr);
    if (server == nullptr || xcb_connection_has_error(server) != 0) {
        report.Skip(row.name, "no virtual display can be started here");
        return;
    }
    std::vector<std::unique_ptr<Process>> services;
    if (kind == kWithBus) {
        environment.insert(way.begin(), way.end());
        services = StartServices({environment, folder, folder / "service"});
        setenv("DBUS_SESSION_BUS_ADDRESS", way.at("DBUS_SESSION_BUS_ADDRESS").c_str(), 1);
    }
    ListenToWindows(server);
    setenv("DISPLAY", way.at("DISPLAY").c_str(), 1);
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    const auto timed = [server](const std::string& program) {
        const double seconds = TimeToPaint(server, PathBesideProgram(program));
        return Cost{seconds, seconds};
    };
    const Comparison start = Compare(
        kRounds, [&] { return timed("../../bin/ombrivel"); }, [&] { return timed("ombrivel-bare-window"); });
    report.Add(row.name, "wall, ratio to a bare window", start.wall, row.limit);
    xcb_disconnect(server);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
}

} // namespace

void MeasureStart(const BenchOptions& options, Report& report) {
    MeasureOn("bare", options, {"start to first paint", 1.5}, report);
    MeasureOn(kWithBus, options, {"start to first paint, all services answering", 1.4}, report);
}
