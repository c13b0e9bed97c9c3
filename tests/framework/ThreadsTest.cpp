#include "framework/threads/MainThread.h"
#include "framework/threads/Thread.h"
#include "framework/threads/Timer.h"
#include "framework/windows/CoalescedUpdate.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <atomic>

namespace {

class Worker : public Thread {
public:
    explicit Worker(std::function<void(Worker&)> body) : body_(std::move(body)) {}

protected:
    void Event_Run() override { body_(*this); }

private:
    std::function<void(Worker&)> body_;
};

TEST(Threads, NoResumeIsLostHoweverSoonItComesAndNoneIsKept) {
    std::atomic<int> woken{0};
    const auto worker = New<Worker>([&woken](Worker& self) {
        self.Suspend([] { return false; });
        for (; woken < 3000; ++woken)
            self.Suspend([&self] {
                PostToMainThread([&self] { self.Resume(); });
                return true;
            });
        self.Suspend([&woken] { return ++woken > 0; });
    });
    worker->Resume();
    worker->Run();
    EXPECT_TRUE(WaitUntil([&woken] { return woken == 3001; }));
    YieldForAWhile();
    EXPECT_EQ(Thread::RunningCount(), 1) << "the last sleep lasts";
    worker->Resume();
    EXPECT_TRUE(WaitForWorkers());
}

TEST(Threads, CallsReachTheMainThreadInOrderAndFailuresComeBack) {
    int served = 0, servedWithin = 0; // written on the main thread alone
    bool failed = false;
    New<Worker>([&](Worker&) {
        for (int i = 0; i < 1000; ++i)
            PostToMainThread([&, i] { served += served == i && IsMainThread() ? 1 : 0; });
        try {
            OnMainThread([&]() -> int {
                PostToMainThread([&] { ++served; });
                YieldForAWhile();
                servedWithin = served;
                throw NilObjectException();
            });
        } catch (const NilObjectException&) {
            failed = true;
        }
    })->Run();
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(servedWithin, 1000) << "what a worker waits for happens in one step";
    EXPECT_TRUE(failed);
    PostToMainThread([&] { served = 0; });
    YieldForAWhile();
    EXPECT_EQ(served, 0) << "a long loop that nobody waits for serves events";
}

struct CountingTimer : Timer {
    static inline int count = 0;
    void Event_Action() override {
        ++count;
        throw NilObjectException();
    }
};

TEST(Threads, ATimerFiresWhileItIsHeldWhateverFails) {
    testing::internal::CaptureStderr();
    auto timer = New<CountingTimer>();
    timer->SetPeriod(2);
    timer->SetMode(TimerMode::Repeating);
    EXPECT_TRUE(WaitUntil([] { return CountingTimer::count >= 4; }));
    New<Worker>([held = std::move(timer)](Worker&) { Ref<Worker>()->Resume(); })->Run(); // its last reference
    EXPECT_TRUE(WaitForWorkers());
    CountingTimer::count = 0;
    YieldForAWhile();
    EXPECT_EQ(CountingTimer::count, 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "framework_tests: timer: nil object\nframework_tests: thread: nil object\n");
}

struct CountingUpdate : CoalescedUpdate {
    int updates = 0;

    void UpdateScreen() override { ++updates; }
};

TEST(Threads, AnUpdateComesOnceAnIntervalHoweverOftenOneAsksForIt) {
    constexpr std::chrono::milliseconds kInterval(100);
    const auto update = New<CountingUpdate>();
    const auto begin = std::chrono::steady_clock::now();
    New<Worker>([&](Worker&) {
        do
            update->RequestUpdate();
        while (std::chrono::steady_clock::now() - begin < 3 * kInterval);
    })->Run();
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_TRUE(WaitUntil([&update] { return update->updates > 0; }));
    // One at the beginning, and one for the main thread, whose own requests don't wait. A timer may be early by a bit.
    EXPECT_LE(update->updates, (std::chrono::steady_clock::now() - begin) / (kInterval * 9 / 10) + 2);
}

TEST(Threads, TheMainThreadsUpdateDoesNotWaitForAWorkersInterval) {
    const auto update = New<CountingUpdate>();
    for (int i = 1; i <= 2; ++i) {
        New<Worker>([&](Worker&) { update->RequestUpdate(); })->Run();
        EXPECT_TRUE(WaitForWorkers());
        EXPECT_TRUE(i == 2 || WaitUntil([&update] { return update->updates == 1; }));
    }
    bool passed = false;
    update->RequestUpdate();
    PostToMainThread([&passed] { passed = true; });
    EXPECT_TRUE(WaitUntil([&passed] { return passed; }));
    EXPECT_EQ(update->updates, 2);
}

} // namespace
