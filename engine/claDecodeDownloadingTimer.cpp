#include "engine/claDecodeDownloadingTimer.h"

#include "framework/threads/Thread.h"

namespace {

constexpr int32_t kEverySecond = 1000;

} // namespace

claDecodeDownloadingTimer::claDecodeDownloadingTimer(const Ref<Thread>& parent, const PartArrival& part)
    : Parent(parent), part_(part) {
    SetMode(TimerMode::Repeating);
    SetPeriod(kEverySecond);
}

void claDecodeDownloadingTimer::Event_Action() {
    if (!part_.HasArrived())
        return;
    SetMode(TimerMode::Off);
    Parent->Resume();
}
