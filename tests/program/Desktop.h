#pragma once

#include "tests/program/Process.h"

#include <csignal>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <set>
#include <sstream>

// A window, by the number that the display gave it. Later ones have higher numbers.
using WindowId = unsigned long;

// A desktop of its own for one test: display, window manager, session bus, file manager, home folder, and programs that
// open archives, folders and web pages. Nothing of the user's own desktop is seen or touched. Keys and the pointer work
// as a user's do: on whatever window is in front.
class Desktop {
public:
    // Everything is kept in that folder. Returns when all of it runs.
    explicit Desktop(const std::filesystem::path& folder) : folder_(folder) {
        namespace fs = std::filesystem;
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
        environment_.merge(AwaitDesktop(Start({OMBRIVEL_VIRTUAL_DESKTOP, "1280x800"})));
        fileManager_ = &Pretend({"org.freedesktop.FileManager1"});
    }

    const Environment& Variables() const { return environment_; }
    std::filesystem::path Configuration() const { return folder_ / "home/.config"; }
    std::filesystem::path Downloads() const { return folder_ / "home/Downloads"; } // not made at first
    // The files that the user would find in the Trash.
    std::filesystem::path Trash() const { return folder_ / "home/.local/share/Trash/files"; }

    // Paths that a file manager was asked to show, in order.
    Words Shown() const { return PathsIn(fileManager_->Output()); }
    // Paths and addresses that were handed to the program which opens them, in order.
    Words Opened() const { return PathsIn(ReadFile(folder_ / "home/opened")); }

    // The display ends, and with it every connection to it.
    void LoseDisplay() const { kill(std::stoi(environment_.at("DISPLAY_PROCESS")), SIGTERM); }

    // Runs one of the pretended neighbours (see pretend_main.cpp) until the desktop goes.
    const Process& Pretend(const Words& words) {
        Words command{OMBRIVEL_PRETEND};
        command.insert(command.end(), words.begin(), words.end());
        const Process& process = Start(command);
        Await("a pretended neighbour", [&] { return process.Errors().ends_with("ready\n"); });
        return process;
    }

    std::set<WindowId> WindowsOf(const Process& process) const {
        std::istringstream found(Do({"search", "--onlyvisible", "--pid", std::to_string(process.Id())}));
        return {std::istream_iterator<WindowId>(found), {}};
    }

    // 0 if there is none.
    WindowId ActiveWindow() const {
        const std::string window = Do({"getactivewindow"});
        return window.empty() ? 0 : std::stoul(window);
    }

    void Press(Words keys) const {
        keys.insert(keys.begin(), "key");
        Do(keys);
    }

    // Another command of xdotool's. Gives what it tells, empty if it fails.
    std::string Do(Words command) const {
        command.insert(command.begin(), "xdotool");
        return Run(command);
    }

    // The output of a command that ends by itself; empty if it fails.
    std::string Run(const Words& command) const {
        Process process(command, {environment_, folder_, folder_ / "logs/command"});
        return process.End() == 0 ? process.Output() : std::string();
    }

private:
    Process& Start(const Words& command) {
        const std::filesystem::path log = folder_ / "logs" / std::to_string(processes_.size());
        processes_.push_back(std::make_unique<Process>(command, Process::Setting{environment_, folder_, log}));
        return *processes_.back();
    }

    // The addresses in a log. Those of files as the paths that they stand for, with all their bytes.
    static Words PathsIn(const std::string& log) {
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

    std::filesystem::path folder_;
    Environment environment_;
    std::vector<std::unique_ptr<Process>> processes_;
    const Process* fileManager_ = nullptr;
};
