#pragma once

#include <atomic>

// Held by whatever will become a row of the operation list: files that wait to be sent to a cut or a glue, the dialog
// that asks about one, a worker that has no row yet. While there is any, the program does not quit by itself. Any
// thread.
class PendingOperation {
public:
    PendingOperation() { ++count_; }
    ~PendingOperation();
    PendingOperation(const PendingOperation&) { ++count_; }
    PendingOperation& operator=(const PendingOperation&) = default;

    static bool Any() { return count_ > 0; }
    // Makes the call from the event loop, once, when nothing is on its way any more. There is one such call, the last
    // that was given. Main thread.
    static void WhenNone(void (*call)()) { whenNone_ = call; }

private:
    static void MakeCall();

    static inline void (*whenNone_)() = nullptr; // belongs to the main thread
    static inline std::atomic<int> count_{0};
};
