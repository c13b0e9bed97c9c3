#pragma once

#include <atomic>

// Held by whatever will become a row of the operation list: files that wait to be sent to a cut or a glue, the dialog
// that asks about one, a worker that has no row yet. While there is any, the program does not quit by itself. Any
// thread.
class OnTheWay {
public:
    OnTheWay() { ++count_; }
    ~OnTheWay();
    OnTheWay(const OnTheWay&) { ++count_; }
    OnTheWay& operator=(const OnTheWay&) = default;

    static bool Anything() { return count_ > 0; }
    // Makes the call from the event loop, once, when nothing is on its way any more. There is one such call, the last
    // that was given. Main thread.
    static void WhenGone(void (*call)()) { whenGone_ = call; }

private:
    static void MakeCall();

    static inline void (*whenGone_)() = nullptr; // belongs to the main thread
    static inline std::atomic<int> count_{0};
};
