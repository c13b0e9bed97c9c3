#pragma once

#include "framework/base/Ref.h"

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>

// A thread of the operating system. It holds itself while it runs and ends only by leaving its body; an exception that
// leaves the body ends it too.
class Thread : public Object {
public:
    // 5 is normal; each step below lets the windows, and everything else, go first a little more. Set it before Run.
    int32_t Priority = 5;

    // Starts the thread: Event_Run is entered once, on a thread of its own. A std::system_error where the system gives
    // none.
    void Run();

    // Sleeps until Resume. To be called by the thread on itself. `before` runs on the main thread and says whether to
    // sleep at all; the thread counts as suspended from that very step on, so that no Resume by main-thread code that
    // comes after it is lost.
    void Suspend(const std::function<bool()>& before);

    // Wakes the thread if it is suspended, else does nothing. Any thread.
    void Resume();

    // How many threads have been started and have not wholly ended yet.
    static int32_t RunningCount();

    // Waits until there are none. Not for the main thread, which they may be waiting for themselves.
    static void WaitForAll();

protected:
    // The body.
    virtual void Event_Run() = 0;

private:
    std::mutex mutex_;
    std::condition_variable resumed_;
    bool suspended_ = false;
};
