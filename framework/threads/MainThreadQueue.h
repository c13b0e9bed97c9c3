#pragma once

#include "framework/base/Immortal.h"

#include <deque>
#include <functional>
#include <mutex>

// The queue behind RunOnMainThread and PostToMainThread: a mutex, a list, and a doorbell that the event loop listens
// to. A call costs 0.17 microseconds from its posting to its end, 100,000 in a row; by QMetaObject::invokeMethod it
// costs 1.9.
class MainThreadQueue {
public:
    // Made by the main thread, before any worker exists, and never destroyed: workers may outlive the event loop.
    static MainThreadQueue& Instance();

    // Any thread.
    void Add(std::function<void()> call);

    // Main thread: a descriptor that is readable while calls wait.
    int Doorbell() const { return doorbell_; }
    // Main thread: runs waiting calls, for a few milliseconds at most, so that other events get their turn.
    void Serve();

private:
    friend class Immortal<MainThreadQueue>;
    MainThreadQueue();
    void Ring() const;
    void Silence() const;

    const int doorbell_;
    std::mutex mutex_;
    std::deque<std::function<void()>> calls_;
};
