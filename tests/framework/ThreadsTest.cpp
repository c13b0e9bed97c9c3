#include "framework/threads/MainThread.h"
#include "framework/threads/Timer.h"
#include "tests/support/Waiting.h"
#include "tests/support/Worker.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>

namespace {

TEST(Threads, NoResumeIsLostHoweverSoonItComes) {
    constexpr int kRounds = 3000;
    std::atomic<int> woken{0};
    New<Worker>([&woken](Worker& worker) {
        for (int i = 0; i < kRounds; ++i, ++woken) {
            worker.Suspend([&worker] {
                PostToMainThread([&worker] { worker.Resume(); });
                return true;
            });
        }
    })->Run();
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(woken, kRounds);
}

TEST(Threads, AResumeBeforehandDoesNothingAndARefusedSleepIsNone) {
    std::atomic<int> step{0};
    const auto worker = New<Worker>([&step](Worker& self) {
        self.Suspend([] { return false; });
        self.Suspend([&step] { return ++step == 1; });
        ++step;
    });
    worker->Resume();
    worker->Run();
    EXPECT_TRUE(WaitUntil([&step] { return step == 1; }));
    YieldForAWhile();
    EXPECT_EQ(step, 1);
    worker->Resume();
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(step, 2);
}

TEST(Threads, CallsReachTheMainThreadInOrderAndFailuresComeBack) {
    constexpr int kCalls = 1000;
    int served = 0, servedWithin = 0; // written on the main thread alone
    std::string failure;
    New<Worker>([&](Worker&) {
        for (int i = 0; i < kCalls; ++i)
            PostToMainThread([&, i] { served += served == i && IsMainThread() ? 1 : 0; });
        try {
            OnMainThread([&]() -> int {
                PostToMainThread([&] { ++served; });
                YieldForAWhile();
                servedWithin = served;
                throw std::runtime_error("told");
            });
        } catch (const std::runtime_error& error) {
            failure = error.what();
        }
    })->Run();
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(servedWithin, kCalls) << "what a worker waits for happens in one step";
    EXPECT_EQ(served, kCalls + 1);
    EXPECT_EQ(failure, "told");
    PostToMainThread([&] { served = 0; });
    YieldForAWhile();
    EXPECT_EQ(served, 0) << "a long loop that nobody waits for serves events";
}

// Its last reference goes on a worker.
class CountingTimer : public Timer {
public:
    explicit CountingTimer(int& count) : count_(count) {
        SetMode(2);
        SetPeriod(2);
    }

protected:
    void Event_Action() override {
        ++count_;
        throw NilObjectException();
    }

private:
    int& count_;
};

TEST(Threads, ATimerFiresWhileItIsHeldAndAFailureEndsNothingElse) {
    testing::internal::CaptureStderr();
    int count = 0, other = 0;
    auto timer = New<CountingTimer>(count);
    const auto clock = New<CountingTimer>(other);
    EXPECT_TRUE(WaitUntil([&count] { return count >= 4; }));
    New<Worker>([held = timer](Worker&) { Ref<Worker>()->Resume(); })->Run();
    timer = nullptr;
    EXPECT_TRUE(WaitForWorkers());
    const int atItsEnd = count;
    other = 0;
    EXPECT_TRUE(WaitUntil([&other] { return other >= 10; }));
    EXPECT_EQ(count, atItsEnd);
    clock->SetMode(0);
    other = 0;
    YieldForAWhile();
    EXPECT_EQ(other, 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "framework_tests: timer: nil object\nframework_tests: thread: nil object\n");
}

} // namespace
