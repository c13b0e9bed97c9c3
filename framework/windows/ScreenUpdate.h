#pragma once

#include "framework/base/Ref.h"

#include <atomic>

// Base of what shows on the screen and may be changed from any thread: however often it is told to, it updates itself
// at most ten times a second, on the main thread.
class ScreenUpdate : public Object {
public:
    // Any thread.
    void RequestUpdate();

protected:
    // Brings the screen up to date with the properties. Main thread.
    virtual void UpdateScreen() = 0;

private:
    friend class ScreenUpdateQueue;
    std::atomic<bool> requested_{false};
};
