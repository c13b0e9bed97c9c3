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
