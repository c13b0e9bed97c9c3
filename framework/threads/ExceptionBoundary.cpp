#include "framework/threads/ExceptionBoundary.h"

#include "framework/base/Immortal.h"
#include "framework/base/StandardError.h"
#include "framework/threads/Yield.h"

#include <exception>
#include <mutex>
#include <set>
#include <string>

namespace {

bool IsFirstReport(const std::string& line) {
    static std::mutex mutex;
    static const Immortal<std::set<std::string>> logged;
    const std::lock_guard lock(mutex);
    return logged->insert(line).second;
}

} // namespace

void ExceptionBoundary::Begin() {
    EventsAreServed();
}

void ExceptionBoundary::Report(std::string_view where, Logging logging) noexcept {
    try {
        std::string reason = "unknown failure";
        try {
            throw;
        } catch (const std::exception& failure) {
            reason = failure.what();
        }
        const std::string line = std::string(where) + ": " + reason;
        if (logging == Logging::Always || IsFirstReport(line))
            LogToStderr(line);
    } catch (...) {
        LogToStderr("out of memory");
    }
}
