#include "framework/threads/Timer.h"

#include "framework/threads/ExceptionBoundary.h"
#include "framework/threads/MainThread.h"

#include <QTimer>

#include <mutex>

// Qt's side. It belongs to the main thread, and outlives its owner by the moment that it takes to say so.
struct Timer::Clock {
    explicit Clock(Timer* timerOwner) : owner(timerOwner) {
        QObject::connect(&ticker, &QTimer::timeout, &ticker, [this] { Fire(); });
    }

    void Fire() {
        const Ref<Timer> timer = Owner();
        if (!timer.IsNil())
            ExceptionBoundary::RunRepeated("timer", [&timer] { timer->Event_Action(); });
    }

    // The owner, held, or nil if its last reference is just going on another thread.
    Ref<Timer> Owner() {
        const std::lock_guard lock(mutex);
        return Ref<Timer>(owner == nullptr ? nullptr : std::static_pointer_cast<Timer>(owner->weak_from_this().lock()));
    }

    std::mutex mutex; // guards `owner` against its end
    Timer* owner;
    QTimer ticker;
};

Timer::Timer() : clock_(std::make_unique<Clock>(this)) {}

Timer::~Timer() {
    {
        const std::lock_guard lock(clock_->mutex);
        clock_->owner = nullptr;
    }
    // Not here and now, even on the main thread: the ticker may be in the middle of a tick.
    PostToMainThread([clock = std::shared_ptr<Clock>(std::move(clock_))] {});
}

void Timer::SetMode(TimerMode mode) {
    if (mode == TimerMode::Off)
        clock_->ticker.stop();
    else
        clock_->ticker.start();
}

void Timer::SetPeriod(int32_t milliseconds) {
    clock_->ticker.setInterval(milliseconds);
}
