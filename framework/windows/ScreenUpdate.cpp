#include "framework/windows/ScreenUpdate.h"

#include "framework/base/EventEdge.h"
#include "framework/base/Immortal.h"
#include "framework/threads/MainThread.h"

#include <QTimer>

#include <chrono>
#include <mutex>
#include <utility>
#include <vector>

// Collects what wants to be updated and serves it once per frame.
class ScreenUpdateQueue {
public:
    static ScreenUpdateQueue& Instance() {
        static const Immortal<ScreenUpdateQueue> queue;
        return *queue;
    }

    void Add(Ref<ScreenUpdate> update) {
        bool first = false;
        {
            const std::lock_guard lock(mutex_);
            updates_.push_back(std::move(update));
            first = updates_.size() == 1;
        }
        // What an event or a paint asks for should follow at once: a new row's bar, the stop button under the pointer.
        if (IsMainThread())
            PostToMainThread([this] { Serve(); });
        else if (first)
            PostToMainThread([this] { ServeWithNextFrame(); });
    }

private:
    using Clock = std::chrono::steady_clock;
    // Often enough for bars and texts, which are no animation, and seldom enough to cost a fast transfer little.
    static constexpr std::chrono::milliseconds kFrame{100};

    void ServeWithNextFrame() {
        const auto next = std::chrono::ceil<std::chrono::milliseconds>(servedLast_ + kFrame - Clock::now());
        if (next.count() <= 0)
            Serve();
        else
            QTimer::singleShot(next, Qt::PreciseTimer, [this] { Serve(); });
    }

    void Serve() {
        servedLast_ = Clock::now();
        std::vector<Ref<ScreenUpdate>> updates;
        {
            const std::lock_guard lock(mutex_);
            updates.swap(updates_);
        }
        for (const Ref<ScreenUpdate>& update : updates) {
            update->requested_ = false; // before reading the properties: a later change asks again
            EventEdge::RunRepeated("screen update", [&update] { update->UpdateScreen(); });
        }
    }

    std::mutex mutex_;
    std::vector<Ref<ScreenUpdate>> updates_;
    Clock::time_point servedLast_; // main thread
};

void ScreenUpdate::RequestUpdate() {
    if (!requested_.exchange(true))
        ScreenUpdateQueue::Instance().Add(Self(this));
}
