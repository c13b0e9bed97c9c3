#include "tests/support/Waiting.h"

#include "framework/threads/MainThread.h"
#include "framework/threads/Thread.h"
#include "framework/threads/Yield.h"

#include <QCoreApplication>
#include <QTimer>

namespace {

using Clock = std::chrono::steady_clock;

} // namespace

bool WaitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto end = Clock::now() + limit;
    QTimer look;
    look.start(1);
    while (!condition()) {
        if (Clock::now() > end)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

bool WaitForWorkers() {
    const bool ended = WaitUntil([] { return Thread::RunningCount() == 0; });
    bool served = false;
    PostToMainThread([&served] { served = true; });
    return WaitUntil([&served] { return served; }) && ended;
}

void YieldForAWhile() {
    for (const auto end = Clock::now() + std::chrono::milliseconds(50); Clock::now() < end;)
        RuntimeBackgroundTask();
    RuntimeBackgroundTask(); // the first one may have been the last: all that time may have been another process's
}

// The toolkit paints a little after it was told to, but within one frame.
void ShowOnScreen() {
    const auto update = New<CountingUpdate>();
    for (const int frame : {1, 2, 3}) {
        update->RequestUpdate();
        WaitUntil([&] { return update->updates == frame; });
    }
}
