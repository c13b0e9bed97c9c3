#include "tests/program/Process.h"

#include <csignal>
#include <fcntl.h>
#include <sstream>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;

constexpr auto kBetweenLooks = 10ms;

std::vector<char*> Pointers(Words& words) {
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return pointers;
}

void SendTo(const std::string& file, int descriptor) {
    dup2(open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND, 0666), descriptor);
}

} // namespace

void Await(const std::string& what, const std::function<bool()>& isSo, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!isSo()) {
        if (std::chrono::steady_clock::now() > end)
            throw std::runtime_error("waited in vain for " + what);
        std::this_thread::sleep_for(kBetweenLooks);
    }
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

Process::Process(const Words& command, const Setting& setting) : name_(command.at(0)), log_(setting.log) {
    // All made before the fork: the child may only call what is safe in it.
    Words words = command;
    Words environment;
    for (const auto& [name, value] : setting.environment)
        environment.emplace_back(name).append("=").append(value);
    const std::vector<char*> wordPointers = Pointers(words);
    const std::vector<char*> environmentPointers = Pointers(environment);
    const std::string folder = setting.folder.string();
    const std::string output = log_.string() + ".out";
    const std::string errors = log_.string() + ".err";

    id_ = fork();
    if (id_ < 0)
        throw std::runtime_error("could not start " + name_);
    if (id_ > 0)
        return;
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    SendTo("/dev/null", STDIN_FILENO);
    SendTo(output, STDOUT_FILENO);
    SendTo(errors, STDERR_FILENO);
    if (chdir(folder.c_str()) == 0)
        execvpe(wordPointers[0], wordPointers.data(), environmentPointers.data());
    _exit(127);
}

Process::~Process() {
    Signal(SIGTERM); // a display server takes its lock file away on this one only
    try {
        Wait(5s);
    } catch (const std::runtime_error&) {
        Signal(SIGKILL);
        waitpid(id_, nullptr, 0);
    }
}

std::string Process::Output() const {
    return ReadFile(log_.string() + ".out");
}

std::string Process::Errors() const {
    return ReadFile(log_.string() + ".err");
}

void Process::Signal(int signal) {
    if (!ExitCode())
        kill(id_, signal);
}

std::optional<int> Process::ExitCode() {
    int status = 0;
    const pid_t ended = exitCode_ ? 0 : waitpid(id_, &status, WNOHANG);
    if (ended < 0)
        throw std::logic_error("somebody else took the end of " + name_);
    if (ended == id_)
        exitCode_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return exitCode_;
}

void Process::Await(const std::string& what, const std::function<bool()>& isSo) {
    ::Await(what, [&] {
        if (isSo())
            return true;
        if (ExitCode())
            throw std::runtime_error(name_ + " ended with " + std::to_string(*exitCode_) + " before there was " + what +
                                     ": " + Errors());
        return false;
    });
}

int Process::Wait(std::chrono::milliseconds limit) {
    ::Await(
        "the end of " + name_, [this] { return ExitCode().has_value(); }, limit);
    return *exitCode_;
}

void AdoptOrphans() {
    prctl(PR_SET_CHILD_SUBREAPER, 1);
}

void EndOrphans() {
    const std::filesystem::path children = "/proc/self/task/" + std::to_string(getpid()) + "/children";
    for (std::string list = ReadFile(children); !list.empty(); list = ReadFile(children)) {
        std::istringstream stream(list);
        for (pid_t child = 0; stream >> child;) {
            kill(child, SIGKILL);
            waitpid(child, nullptr, 0);
        }
    }
}
