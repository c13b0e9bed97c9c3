#include "tests/program/Desktop.h"

#include <csignal>
#include <cstdlib>
#include <iterator>
#include <sstream>

namespace {

namespace fs = std::filesystem;

// The addresses in a log. Those of files as the paths that they stand for, with all their bytes.
Words PathsIn(const std::string& log) {
    const std::string filePrefix = "file://";
    Words paths;
    std::istringstream lines(log);
    for (std::string path; std::getline(lines, path); paths.push_back(path)) {
        if (!path.starts_with(filePrefix))
            continue;
        path.erase(0, filePrefix.size());
        for (std::size_t at = path.find('%'); at != std::string::npos; at = path.find('%', at + 1))
            path.replace(at, 3, 1, static_cast<char>(std::stoi(path.substr(at + 1, 2), nullptr, 16)));
    }
    return paths;
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
    environment_.merge(AwaitDesktop(Serve({OMBRIVEL_VIRTUAL_DESKTOP, "1280x800"})));
    fileManager_ = &Pretend({"org.freedesktop.FileManager1"});
}

Process& Desktop::Serve(const Words& command) {
    const fs::path log = folder_ / "logs" / std::to_string(processes_.size());
    processes_.push_back(std::make_unique<Process>(command, Process::Setting{environment_, folder_, log}));
    return *processes_.back();
}

Words Desktop::Shown() const {
    return PathsIn(fileManager_->Output());
}

Words Desktop::Opened() const {
    return PathsIn(ReadFile(folder_ / "home/opened"));
}

void Desktop::LoseDisplay() const {
    kill(std::stoi(environment_.at("DISPLAY_PROCESS")), SIGTERM);
}

const Process& Desktop::Pretend(const Words& words) {
    Words command{OMBRIVEL_PRETEND};
    command.insert(command.end(), words.begin(), words.end());
    const Process& process = Serve(command);
    Await("a pretended neighbour", [&] { return process.Errors().ends_with("ready\n"); });
    return process;
}

std::set<WindowId> Desktop::WindowsOf(const Process& process) const {
    std::istringstream found(Do({"search", "--onlyvisible", "--pid", std::to_string(process.Id())}));
    return {std::istream_iterator<WindowId>(found), {}};
}

WindowId Desktop::ActiveWindow() const {
    const std::string window = Do({"getactivewindow"});
    return window.empty() ? 0 : std::stoul(window);
}

void Desktop::Press(Words keys) const {
    keys.insert(keys.begin(), "key");
    Do(keys);
}

std::string Desktop::Do(Words command) const {
    command.insert(command.begin(), "xdotool");
    return Run(command);
}

std::string Desktop::Run(const Words& command) const {
    Process process(command, {environment_, folder_, folder_ / "logs/command"});
    return process.End() == 0 ? process.Output() : std::string();
}
