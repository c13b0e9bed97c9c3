#include "framework/threads/Yield.h"

#include "framework/threads/MainThread.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <chrono>

namespace {

using Clock = std::chrono::steady_clock;

// About one display frame.
constexpr std::chrono::milliseconds kServeEvery{16};

// All belong to the main thread.
int forbidden = 0;
int inputHeldBack = 0;
Clock::time_point servedLast;

} // namespace

NoYield::NoYield() {
    ++forbidden;
}

NoYield::~NoYield() {
    --forbidden;
}

NoInput::NoInput() {
    ++inputHeldBack;
}

NoInput::~NoInput() {
    --inputHeldBack;
}

void EventsAreServed() {
    if (IsMainThread())
        servedLast = Clock::now();
}

void RuntimeBackgroundTask() {
    if (!IsMainThread() || forbidden > 0)
        return;
    const Clock::time_point now = Clock::now();
    if (now - servedLast < kServeEvery)
        return;
    if (QCoreApplication::instance() != nullptr)
        QCoreApplication::processEvents(inputHeldBack > 0 ? QEventLoop::ExcludeUserInputEvents : QEventLoop::AllEvents);
    servedLast = Clock::now();
}
