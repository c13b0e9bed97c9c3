#include "framework/desktop/Opener.h"

#include "framework/files/ProgramFile.h"
#include "framework/threads/MainThread.h"

#include <csignal>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// The signals that this process ignores are not to be ignored by what the helper starts.
const posix_spawnattr_t* PlainSignals() {
    static const posix_spawnattr_t attributes = [] {
        posix_spawnattr_t made;
        posix_spawnattr_init(&made);
        sigset_t signals;
        sigemptyset(&signals);
        sigaddset(&signals, SIGPIPE);
        sigaddset(&signals, SIGXFSZ);
        posix_spawnattr_setsigdefault(&made, &signals);
        posix_spawnattr_setflags(&made, POSIX_SPAWN_SETSIGDEF);
        return made;
    }();
    return &attributes;
}

} // namespace

void RunOpener(const std::string& verb, const std::vector<std::string>& arguments) {
    const std::string program = PathBesideProgram("../libexec/ombrivel-opener");
    std::vector<std::string> words{program, verb};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);

    // On the main thread: a process inherits how far the starting thread stands back.
    RunOnMainThread([&] {
        pid_t child = 0;
        if (posix_spawn(&child, program.c_str(), nullptr, PlainSignals(), pointers.data(), environ) == 0)
            waitpid(child, nullptr, 0); // it puts itself into the background at once
    });
}
