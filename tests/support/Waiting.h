#pragma once

#include <chrono>
#include <functional>

// Serves events until the condition holds; false if it does not come to hold in time. Main thread.
bool WaitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit = std::chrono::seconds(40));

// Serves events until no worker is left and what the last ones asked of the main thread is done.
bool WaitForWorkers();

// Keeps the main thread busy, yielding at each pass, for longer than the time after which a yield serves events.
void YieldForAWhile();

// Serves events until everything asked for so far has reached the screen.
void ShowOnScreen();

// How many times longer a test's own work may take, or less of it there should be: a sanitizer slows it tenfold, and
// loops over single bytes a hundredfold.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif
constexpr int kSlowness = kSanitized ? 20 : 1;
