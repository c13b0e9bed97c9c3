#include "framework/threads/MainThread.h"

#include "framework/base/EventEdge.h"
#include "framework/threads/MainThreadQueue.h"
#include "framework/threads/Yield.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <thread>
#include <utility>

namespace {

using namespace std::chrono_literals;

constexpr auto kServeAtMost = 4ms;

// Set by the dynamic initialisation of the program, which runs on the main thread.
const std::thread::id mainThread = std::this_thread::get_id();

// A call that a worker waits for.
class AwaitedCall {
public:
    explicit AwaitedCall(const std::function<void()>& call) : call_(call) {}

    void Run() {
        const NoYield noYield; // what a worker waits for happens in one step
        try {
            call_();
        } catch (...) {
            failure_ = std::current_exception();
        }
        const std::lock_guard lock(mutex_);
        done_ = true;
        changed_.notify_one(); // under the lock: the waiter may be gone right after it
    }

    void Wait() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return done_; });
        if (failure_)
            std::rethrow_exception(std::exchange(failure_, nullptr));
    }

private:
    const std::function<void()>& call_;
    std::exception_ptr failure_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool done_ = false;
};

} // namespace

bool IsMainThread() {
    return std::this_thread::get_id() == mainThread;
}

void RunOnMainThread(const std::function<void()>& call) {
    if (IsMainThread()) {
        call();
        return;
    }
    AwaitedCall awaited(call);
    MainThreadQueue::Instance().Add([&awaited] { awaited.Run(); });
    awaited.Wait();
}

void PostToMainThread(std::function<void()> call) {
    MainThreadQueue::Instance().Add(std::move(call));
}

MainThreadQueue& MainThreadQueue::Instance() {
    static auto* const queue = new MainThreadQueue;
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
    const std::lock_guard lock(mutex_);
    calls_.push_back(std::move(call));
    if (calls_.size() == 1)
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
        EventEdge::Run("posted call", call);
    } while (std::chrono::steady_clock::now() < end);
}
