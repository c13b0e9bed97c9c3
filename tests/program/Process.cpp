#include "tests/program/Process.h"

#include <csignal>
#include <spawn.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace std::chrono_literals;

void Await(const std::string& what, const std::function<bool()>& isSo, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!isSo()) {
        if (std::chrono::steady_clock::now() > end)
            throw std::runtime_error("waited in vain for " + what);
        std::this_thread::sleep_for(10ms);
    }
}

// Each of these programs replaces itself by the next one, so that the process stays the same.
Process::Process(const Words& command, const Setting& setting) : log_(setting.log) {
    Words words{"setpriv", "--pdeathsig", "TERM", "env", "-i", "-C", setting.folder};
    for (const auto& [name, value] : setting.environment)
        words.emplace_back(name).append("=").append(value);
    words.insert(words.end(), {"sh", "-c", R"(exec "$@" </dev/null >"$0.out" 2>"$0.err")", log_});
    words.insert(words.end(), command.begin(), command.end());
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    if (posix_spawnp(&id_, pointers[0], nullptr, nullptr, pointers.data(), environ) != 0)
        throw std::runtime_error("could not start " + command.at(0));
}

Process::~Process() {
    try {
        if (!ExitCode())
            kill(id_, SIGTERM); // a display server takes its lock file away on this one only
        End(5s);
    } catch (const std::runtime_error&) {
        kill(id_, SIGKILL);
        waitpid(id_, nullptr, 0);
    }
}

std::optional<int> Process::ExitCode() {
    int status = 0;
    if (!exitCode_ && waitpid(id_, &status, WNOHANG) == id_)
        exitCode_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return exitCode_;
}

int Process::End(std::chrono::milliseconds limit) {
    Await(
        "the end of a process", [this] { return ExitCode().has_value(); }, limit);
    return *exitCode_;
}

Environment AwaitDesktop(Process& process) {
    Await("a virtual desktop", [&process] { return process.Output().ends_with("\n\n") || process.ExitCode(); });
    Environment variables;
    std::istringstream lines(process.Output());
    for (std::string name, value; std::getline(lines, name, '=') && std::getline(lines, value);)
        variables[name] = value;
    return variables;
}
