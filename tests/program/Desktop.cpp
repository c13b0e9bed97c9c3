#include "tests/program/Desktop.h"

#include <csignal>
#include <cstdlib>
#include <sstream>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

// The addresses in a log. Those of files as the paths that they stand for, with all their bytes.
std::vector<std::string> PathsIn(const std::string& log) {
    const std::string filePrefix = "file://";
    std::vector<std::string> paths = Lines(log);
    for (std::string& path : paths) {
        if (!path.starts_with(filePrefix))
            continue;
        path.erase(0, filePrefix.size());
        for (std::size_t at = path.find('%'); at != std::string::npos; at = path.find('%', at + 1))
            path.replace(at, 3, 1, static_cast<char>(std::stoi(path.substr(at + 1, 2), nullptr, 16)));
    }
    return paths;
}

// Helpers that put themselves into the background, too.
void EndAllChildren() {
    const fs::path children = "/proc/self/task/" + std::to_string(getpid()) + "/children";
    for (std::string list = ReadFile(children); !list.empty(); list = ReadFile(children)) {
        std::istringstream stream(list);
        for (pid_t child = 0; stream >> child;) {
            kill(child, SIGKILL);
            waitpid(child, nullptr, 0);
        }
    }
}

} // namespace

Desktop::Desktop(const fs::path& folder) : folder_(folder) {
    prctl(PR_SET_CHILD_SUBREAPER, 1); // for EndAllChildren
    for (const char* const name : {"run", "logs"})
        fs::create_directories(folder_ / name);
    fs::permissions(folder_ / "run", fs::perms::owner_all);
    fs::copy(OMBRIVEL_TEST_HOME, folder_ / "home", fs::copy_options::recursive);
    // Only what is named here: a variable of the tester's own desktop would lead back to it.
    for (const char* const name : {"PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS"}) {
        if (const char* const value = std::getenv(name))
            environment_[name] = value;
    }
    environment_["PATH"].insert(0, (folder_ / "home/bin:").string());
    environment_["HOME"] = folder_ / "home";
    environment_["XDG_RUNTIME_DIR"] = folder_ / "run";
    environment_["LC_ALL"] = "C.UTF-8";

    // It chooses a free number, and writes it when it is ready.
    const Process& display =
        Start({"Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24", "-nolisten", "tcp", "-noreset"});
    Await("a display", [&] { return display.Output().ends_with('\n'); });
    environment_["DISPLAY"] = ":" + Lines(display.Output()).at(0);
    const Process& bus =
        Start({"dbus-daemon", "--nofork", "--print-address=1", "--config-file=" OMBRIVEL_BUS_SETTINGS});
    Await("a session bus", [&] { return bus.Output().ends_with('\n'); });
    environment_["DBUS_SESSION_BUS_ADDRESS"] = Lines(bus.Output()).at(0);
    Start({"openbox"});
    Await("a window manager that xdotool finds", [this] { return !Do({"get_desktop"}).empty(); });
    fileManager_ = &Pretend({"org.freedesktop.FileManager1"});
}

Desktop::~Desktop() {
    while (!processes_.empty())
        processes_.pop_back();
    EndAllChildren();
}

Process& Desktop::Start(const Words& command) {
    const fs::path log = folder_ / "logs" / std::to_string(processes_.size());
    processes_.push_back(std::make_unique<Process>(command, Process::Setting{environment_, folder_, log}));
    return *processes_.back();
}

std::string Desktop::Run(const Words& command) const {
    Process process(command, {environment_, folder_, folder_ / "logs/command"});
    return process.End() == 0 ? process.Output() : std::string();
}

const Process& Desktop::Pretend(const Words& words) {
    Words command{OMBRIVEL_PRETEND};
    command.insert(command.end(), words.begin(), words.end());
    const Process& process = Start(command);
    Await("a pretended neighbour", [&] { return process.Errors().ends_with("ready\n"); });
    return process;
}

std::vector<std::string> Desktop::Shown() const {
    return PathsIn(fileManager_->Output());
}

std::vector<std::string> Desktop::Opened() const {
    return PathsIn(ReadFile(folder_ / "home/opened"));
}

std::set<WindowId> Desktop::WindowsOf(const Process& process) const {
    std::set<WindowId> windows;
    for (const std::string& line : Lines(Do({"search", "--onlyvisible", "--pid", std::to_string(process.Id())})))
        windows.insert(std::stoul(line));
    return windows;
}

WindowId Desktop::ActiveWindow() const {
    const std::string window = Do({"getactivewindow"});
    return window.empty() ? 0 : std::stoul(window);
}

Desktop::Size Desktop::SizeOf(WindowId window) const {
    // WINDOW, X, Y, WIDTH, HEIGHT
    const auto lines = Lines(Do({"getwindowgeometry", "--shell", std::to_string(window)}));
    return lines.size() < 5 ? Size() : Size{std::stoi(lines[3].substr(6)), std::stoi(lines[4].substr(7))};
}

std::string Desktop::Do(Words command) const {
    command.insert(command.begin(), "xdotool");
    return Run(command);
}

void Desktop::Press(Words keys) const {
    keys.insert(keys.begin(), "key");
    Do(keys);
}

void Desktop::SavePicture(const fs::path& file) const {
    Run({"import", "-silent", "-window", "root", file});
}
