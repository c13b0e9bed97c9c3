#pragma once

#include "framework/base/Ref.h"

#include <atomic>

// Base of what shows on the screen and may be changed from any thread. It updates itself on the main thread: once the
// event is over that asked for it, or, however often workers ask, at most ten times a second.
class CoalescedUpdate : public Object {
public:
    // Any thread.
    void RequestUpdate();

protected:
    // Brings the screen up to date with the properties. Main thread.
    virtual void UpdateScreen() = 0;

private:
    friend class CoalescedUpdateQueue;
    std::atomic<bool> requested_{false};
};
