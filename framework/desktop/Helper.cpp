#include "framework/desktop/Helper.h"

#include "framework/base/Program.h"
#include "framework/threads/MainThread.h"

#include <QSocketNotifier>

#include <csignal>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// In a session of its own, out of reach of what ends this program's, and without the signals that this process ignores:
// they are not to be ignored by what the helper starts.
const posix_spawnattr_t* Apart() {
    static const posix_spawnattr_t attributes = [] {
        posix_spawnattr_t made;
        posix_spawnattr_init(&made);
        sigset_t signals;
        sigemptyset(&signals);
        sigaddset(&signals, SIGPIPE);
        sigaddset(&signals, SIGXFSZ);
        posix_spawnattr_setsigdefault(&made, &signals);
        posix_spawnattr_setflags(&made, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
        return made;
    }();
    return &attributes;
}

// Or it would stay in the list of processes. The event loop waits for its end: there may be no thread to be had.
void ReapAtItsEnd(pid_t child) {
    const int process = static_cast<int>(syscall(SYS_pidfd_open, child, 0));
    if (process < 0)
        return;
    auto* const end = new QSocketNotifier(process, QSocketNotifier::Read);
    QObject::connect(end, &QSocketNotifier::activated, end, [process, end] {
        siginfo_t ignored{};
        waitid(P_PIDFD, static_cast<id_t>(process), &ignored, WEXITED | WNOHANG);
        end->setEnabled(false);
        end->deleteLater();
        close(process);
    });
}

} // namespace

void RunHelper(const std::string& name, const std::vector<std::string>& arguments) {
    const std::string program = PathBesideProgram("../libexec/" + ThisProgram().FileName + "-" + name);
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);

    // On the main thread: a process inherits how far the starting thread stands back.
    RunOnMainThread([&] {
        pid_t child = 0;
        if (posix_spawn(&child, program.c_str(), nullptr, Apart(), pointers.data(), environ) == 0)
            ReapAtItsEnd(child);
    });
}
