#include "framework/threads/MainThreadQueue.h"

#include "framework/threads/ExceptionBoundary.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <utility>

namespace {

constexpr std::chrono::milliseconds kServeAtMost{4};

} // namespace

MainThreadQueue& MainThreadQueue::Instance() {
    static const Immortal<MainThreadQueue> queue;
    return *queue;
}

MainThreadQueue::MainThreadQueue() : doorbell_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

void MainThreadQueue::Ring() const {
    const uint64_t once = 1;
    [[maybe_unused]] const auto written = write(doorbell_, &once, sizeof once);
}

void MainThreadQueue::Silence() const {
    uint64_t rung = 0;
    [[maybe_unused]] const auto size = read(doorbell_, &rung, sizeof rung);
}

void MainThreadQueue::Add(std::function<void()> call) {
    bool first = false;
    {
        const std::lock_guard lock(mutex_);
        calls_.push_back(std::move(call));
        first = calls_.size() == 1;
    }
    // Not under the lock: the main thread wakes at once, and would have to wait until a worker that it has just pushed
    // aside gets its turn again and lets go.
    if (first)
        Ring();
}

// The doorbell falls silent only when the list is empty: a served call may run an event loop of its own (a dialog),
// which has to come back in here for the calls behind it.
void MainThreadQueue::Serve() {
    const auto end = std::chrono::steady_clock::now() + kServeAtMost;
    do {
        std::function<void()> call;
        {
            const std::lock_guard lock(mutex_);
            if (calls_.empty()) {
                Silence();
                return;
            }
            call = std::move(calls_.front());
            calls_.pop_front();
        }
        ExceptionBoundary::Run("posted call", call);
    } while (std::chrono::steady_clock::now() < end);
}
