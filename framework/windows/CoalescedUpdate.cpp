#include "framework/windows/CoalescedUpdate.h"

#include "framework/base/Immortal.h"
#include "framework/threads/ExceptionBoundary.h"
#include "framework/threads/MainThread.h"

#include <QTimer>

#include <chrono>
#include <mutex>
#include <utility>
#include <vector>

// Collects what wants to be updated and serves it once per interval.
class CoalescedUpdateQueue {
public:
    static CoalescedUpdateQueue& Instance() {
        static const Immortal<CoalescedUpdateQueue> queue;
        return *queue;
    }

    void Add(Ref<CoalescedUpdate> update) {
        bool first = false;
        {
            const std::lock_guard lock(mutex_);
            updates_.push_back(std::move(update));
            first = updates_.size() == 1;
        }
        if (first && !IsMainThread())
            PostToMainThread([this] { ServeAfterInterval(); });
    }

    // What an event or a paint asks for should follow at once, whether or not a worker has asked for the same
    // meanwhile: a new row's bar, the stop button under the pointer. Main thread.
    void ServeSoon() {
        if (std::exchange(servesSoon_, true))
            return;
        PostToMainThread([this] {
            servesSoon_ = false;
            Serve();
        });
    }

private:
    using Clock = std::chrono::steady_clock;
    // Often enough for bars and texts, which are no animation, and seldom enough to cost a fast transfer little.
    static constexpr std::chrono::milliseconds kInterval{100};

    void ServeAfterInterval() {
        const auto next = std::chrono::ceil<std::chrono::milliseconds>(servedLast_ + kInterval - Clock::now());
        if (next.count() <= 0)
            Serve();
        else
            QTimer::singleShot(next, Qt::PreciseTimer, [this] { Serve(); });
    }

    void Serve() {
        servedLast_ = Clock::now();
        std::vector<Ref<CoalescedUpdate>> updates;
        {
            const std::lock_guard lock(mutex_);
            updates.swap(updates_);
        }
        for (const Ref<CoalescedUpdate>& update : updates) {
            update->requested_ = false; // before reading the properties: a later change asks again
            ExceptionBoundary::RunRepeated("screen update", [&update] { update->UpdateScreen(); });
        }
    }

    std::mutex mutex_;
    std::vector<Ref<CoalescedUpdate>> updates_;
    Clock::time_point servedLast_; // main thread
    bool servesSoon_ = false;      // main thread
};

void CoalescedUpdate::RequestUpdate() {
    if (!requested_.exchange(true))
        CoalescedUpdateQueue::Instance().Add(Self(this));
    if (IsMainThread())
        CoalescedUpdateQueue::Instance().ServeSoon();
}
