#include "framework/threads/Thread.h"

#include "framework/threads/ExceptionBoundary.h"
#include "framework/threads/MainThread.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <thread>

namespace {

constexpr int32_t kNormalPriority = 5;

std::atomic<int32_t> running{0};

void CountEnd() {
    --running;
    running.notify_all();
}

// On Linux a nice value belongs to the one thread that sets it.
void LowerPriority(int32_t priority) {
    const int32_t niceness = std::clamp(kNormalPriority - priority, 0, 19);
    if (niceness > 0)
        setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), niceness);
}

} // namespace

void Thread::Run() {
    const auto body = [self = Self(this)]() mutable {
        LowerPriority(self->Priority);
        ExceptionBoundary::Run("thread", [&self] { self->Event_Run(); });
        self = nullptr;
        CountEnd();
    };
    ++running;
    try {
        std::thread(body).detach();
    } catch (...) {
        CountEnd();
        throw; // the system gives no more threads
    }
}

void Thread::Suspend(const std::function<bool()>& before) {
    RunOnMainThread([&] {
        const bool sleep = before();
        const std::lock_guard lock(mutex_);
        suspended_ = sleep;
    });
    std::unique_lock lock(mutex_);
    resumed_.wait(lock, [this] { return !suspended_; });
}

void Thread::Resume() {
    const std::lock_guard lock(mutex_);
    suspended_ = false;
    resumed_.notify_one();
}

int32_t Thread::RunningCount() {
    return running;
}

void Thread::WaitForAll() {
    for (int32_t count = running; count > 0; count = running)
        running.wait(count);
}
