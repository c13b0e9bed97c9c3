#include "framework/threads/MainThread.h"

#include "framework/threads/MainThreadQueue.h"
#include "framework/threads/Yield.h"

#include <condition_variable>
#include <exception>
#include <thread>
#include <utility>

namespace {

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
