#include "framework/app/EndSignals.h"

#include <QSocketNotifier>

#include <csignal>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

namespace {

int doorbell = -1;

void Ring(int) {
    const uint64_t once = 1;
    [[maybe_unused]] const auto written = write(doorbell, &once, sizeof once);
}

} // namespace

void ListenToEndSignals(const std::function<void()>& end) {
    doorbell = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    auto* const notifier = new QSocketNotifier(doorbell, QSocketNotifier::Read); // lives as long as the process
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, end);

    struct sigaction action = {};
    action.sa_handler = Ring;
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        struct sigaction before = {};
        sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN) // as under nohup
            sigaction(signal, &action, nullptr);
    }
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
}
