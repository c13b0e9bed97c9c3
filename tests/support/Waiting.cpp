#include "tests/support/Waiting.h"

#include "framework/threads/MainThread.h"
#include "framework/threads/Thread.h"
#include "framework/threads/Yield.h"
#include "framework/windows/ProgressBar.h"

#include <QCoreApplication>
#include <QTimer>

namespace {

using Clock = std::chrono::steady_clock;

void ServeWhatIsPosted() {
    bool served = false;
    PostToMainThread([&served] { served = true; });
    WaitUntil([&served] { return served; });
}

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
    ServeWhatIsPosted();
    return ended;
}

void YieldForAWhile() {
    for (const auto end = Clock::now() + std::chrono::milliseconds(50); Clock::now() < end;)
        RuntimeBackgroundTask();
    RuntimeBackgroundTask(); // the first one may have been the last: all that time may have been another process's
}

// The toolkit paints a little after it was told to, but within one frame.
void ShowOnScreen() {
    const auto bar = New<ProgressBar>();
    for (const int frame : {1, 2, 3}) {
        bar->SetLeft(frame); // has the updates served that wait for the next frame
        ServeWhatIsPosted();
    }
}
