#include "fuzz/torture/Child.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <sstream>
#include <stdexcept>

namespace Torture {

namespace {

using Clock = std::chrono::steady_clock;

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers(texts.size() + 1, nullptr);
    std::transform(texts.begin(), texts.end(), pointers.begin(), [](std::string& text) { return text.data(); });
    return pointers;
}

} // namespace

Child::Child(const Words& command, const Variables& variables, const std::string& log) {
    std::array<int, 2> in{}, out{};
    if (pipe2(in.data(), O_CLOEXEC) != 0 || pipe2(out.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
    Words words = command, settings;
    for (const auto& [name, value] : variables)
        settings.emplace_back(name).append("=").append(value);
    const int failure =
        posix_spawnp(&id_, words[0].c_str(), &actions, nullptr, Pointers(words).data(), Pointers(settings).data());
    posix_spawn_file_actions_destroy(&actions);
    close(in[0]);
    close(out[1]);
    toIt_ = in[1];
    fromIt_ = out[0];
    if (failure != 0)
        throw std::runtime_error("could not start " + command[0]);
}

Child::~Child() {
    Signal(SIGKILL);
    End();
    close(toIt_);
    close(fromIt_);
}

void Child::Signal(int signal) {
    if (!code_)
        kill(id_, signal);
}

void Child::Tell(const std::string& line) {
    const std::string whole = line + "\n";
    [[maybe_unused]] const auto written = write(toIt_, whole.data(), whole.size()); // it may have gone
}

std::optional<Words> Child::Hear() {
    const auto end = Clock::now() + kPatience;
    std::size_t line = std::string::npos;
    while ((line = heard_.find('\n')) == std::string::npos) {
        pollfd input{fromIt_, POLLIN, 0};
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        if (left <= 0 || poll(&input, 1, static_cast<int>(left)) == 0)
            return {};
        std::array<char, 4096> buffer{};
        const ssize_t size = read(fromIt_, buffer.data(), buffer.size());
        if (size == 0)
            return {};
        if (size > 0)
            heard_.append(buffer.data(), static_cast<std::size_t>(size));
    }
    std::istringstream fields(heard_.substr(0, line));
    heard_.erase(0, line + 1);
    Words words;
    for (std::string word; std::getline(fields, word, '\t');)
        words.push_back(word);
    return words;
}

std::optional<int> Child::End(std::chrono::milliseconds limit) {
    if (code_)
        return code_;
    const int process = static_cast<int>(syscall(SYS_pidfd_open, id_, 0));
    pollfd end{process, POLLIN, 0};
    const bool ended = poll(&end, 1, static_cast<int>(limit.count())) > 0;
    close(process);
    int status = 0;
    if (!ended || waitpid(id_, &status, 0) != id_)
        return {};
    code_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return code_;
}

} // namespace Torture
