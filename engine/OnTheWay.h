#pragma once

#include <atomic>

// Held by whatever will become a row of the operation list: files that wait to be sent to a cut or a glue, the dialog
// that asks about one, a worker that has no row yet. While there is any, the program does not quit by itself. Any
// thread.
class OnTheWay {
public:
    OnTheWay() { ++count_; }
    ~OnTheWay() { --count_; }
    OnTheWay(const OnTheWay&) { ++count_; }
    OnTheWay& operator=(const OnTheWay&) = default;

    static bool Anything() { return count_ > 0; }

private:
    static inline std::atomic<int> count_{0};
};
