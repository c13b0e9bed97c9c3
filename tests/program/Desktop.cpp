#include "tests/program/Desktop.h"

#include <csignal>
#include <cstdlib>
#include <iterator>
#include <sstream>

namespace {

namespace fs = std::filesystem;

// The addresses in a log. Those of files as the paths that they stand for, with all their bytes.
std::vector<std::string> PathsIn(const std::string& log) {
    const std::string filePrefix = "file://";
    std::vector<std::string> paths;
    std::istringstream lines(log);
    for (std::string path; std::getline(lines, path);) {
        if (path.starts_with(filePrefix)) {
            path.erase(0, filePrefix.size());
            for (std::size_t at = path.find('%'); at != std::string::npos; at = path.find('%', at + 1))
                path.replace(at, 3, 1, static_cast<char>(std::stoi(path.substr(at + 1, 2), nullptr, 16)));
        }
        paths.push_back(path);
    }
    return paths;
}

// Waits for the line that a process writes when it is ready.
std::string AwaitLine(const Process& process) {
    Await("a line that tells where to reach a process", [&] { return process.Output().ends_with('\n'); });
    return process.Output().substr(0, process.Output().find('\n'));
}

} // namespace

Desktop::Desktop(const fs::path& folder) : folder_(folder) {
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
    environment_["DISPLAY"] =
        ":" +
        AwaitLine(Start({"Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24", "-nolisten", "tcp", "-noreset"}));
    environment_["DBUS_SESSION_BUS_ADDRESS"] =
        AwaitLine(Start({"dbus-daemon", "--nofork", "--print-address=1", "--config-file=" OMBRIVEL_BUS_SETTINGS}));
    Start({"openbox"});
    Await("a window manager that xdotool finds", [this] { return !Do({"get_desktop"}).empty(); });
    fileManager_ = &Pretend({"org.freedesktop.FileManager1"});
}

const Process& Desktop::Start(const Words& command) {
    const fs::path log = folder_ / "logs" / std::to_string(processes_.size());
    processes_.push_back(std::make_unique<Process>(command, Process::Setting{environment_, folder_, log}));
    return *processes_.back();
}

std::string Desktop::Run(const Words& command) const {
    Process process(command, {environment_, folder_, folder_ / "logs/command"});
    return process.End() == 0 ? process.Output() : std::string();
}

void Desktop::LoseDisplay() const {
    kill(processes_.front()->Id(), SIGTERM);
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
    std::istringstream found(Do({"search", "--onlyvisible", "--pid", std::to_string(process.Id())}));
    return {std::istream_iterator<WindowId>(found), {}};
}

WindowId Desktop::ActiveWindow() const {
    const std::string window = Do({"getactivewindow"});
    return window.empty() ? 0 : std::stoul(window);
}

int Desktop::Measure(WindowId window, const std::string& what) const {
    const std::string told = Do({"getwindowgeometry", "--shell", std::to_string(window)});
    const std::size_t at = told.find(what + "=");
    return at == std::string::npos ? 0 : std::stoi(told.substr(at + what.size() + 1));
}

std::string Desktop::Do(Words command) const {
    command.insert(command.begin(), "xdotool");
    return Run(command);
}

void Desktop::Press(Words keys) const {
    keys.insert(keys.begin(), "key");
    Do(keys);
}
