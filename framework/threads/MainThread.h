#pragma once

#include <functional>
#include <optional>
#include <type_traits>

// The two ways from a worker to what belongs to the main thread. Calls run one after the other, in the order in which
// they were made, between the events of the main thread's event loop.

// Runs `call` on the main thread and waits until it has run; on the main thread itself, at once. An exception that
// leaves the call is thrown again here.
void RunOnMainThread(const std::function<void()>& call);

// Runs `call` on the main thread some time soon and returns at once. Any thread.
void PostToMainThread(std::function<void()> call);

// The main thread is the one that entered main().
bool IsMainThread();

// RunOnMainThread for a call that gives a result.
template <class Call>
auto OnMainThread(Call&& call) {
    using Result = std::invoke_result_t<Call>;
    if constexpr (std::is_void_v<Result>) {
        RunOnMainThread(call);
    } else {
        std::optional<Result> result;
        RunOnMainThread([&] { result.emplace(call()); });
        return std::move(*result);
    }
}
