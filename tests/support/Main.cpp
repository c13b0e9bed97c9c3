#include "core/App.h"
#include "framework/threads/MainThread.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

#include <cstdlib>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

bool testsHaveRun = false;

// Like the program, the tests end without taking anything down. What can't be reached by then is lost.
[[noreturn]] void RunTests() {
    bool failed = RUN_ALL_TESTS() != 0;
#ifdef __SANITIZE_ADDRESS__
    failed = __lsan_do_recoverable_leak_check() != 0 || failed;
#endif
    LeavePrivateHome();
    testsHaveRun = true;
    std::_Exit(failed ? 1 : 0);
}

} // namespace

// In place of the library's: a program that quits in the middle of a test ends with 0, and has failed.
extern "C" void _Exit(int code) {
    syscall(SYS_exit_group, testsHaveRun || code != 0 ? code : 1);
    __builtin_unreachable();
}

// The tests run inside the real program, on a display that nobody sees: it has started without a file, and its event
// loop has come round to them.
int main(int argumentCount, char** arguments) {
    testing::InitGoogleTest(&argumentCount, arguments);
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();
    EnterPrivateHome();
    return RunApplication(1, arguments, OmbrivelIdentity(), [] {
        PostToMainThread(RunTests);
        return Startup();
    });
}
