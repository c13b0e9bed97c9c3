#pragma once

// The yield at the end of a loop's pass. On a worker it does nothing: the system's scheduler does it. On the main
// thread it serves events when more than 16 ms have gone by since they were served last, so that a long loop does not
// stop the windows. Inside a paint or mouse event of a canvas, and inside a call that a worker waits for, it does
// nothing.
void RuntimeBackgroundTask();

// While one of these lives on the main thread, RuntimeBackgroundTask leaves what the user presses, clicks or closes
// waiting, and in order, for the next event loop: for a window that is not ready for it yet.
class NoInput {
public:
    NoInput();
    ~NoInput();
    NoInput(const NoInput&) = delete;
    NoInput& operator=(const NoInput&) = delete;
};

// The event loop has just got round to an event. Does nothing on a worker. For the framework's own use.
void EventsAreServed();

// While one of these lives on the main thread, RuntimeBackgroundTask does nothing: for what has to happen in one step.
class NoYield {
public:
    NoYield();
    ~NoYield();
    NoYield(const NoYield&) = delete;
    NoYield& operator=(const NoYield&) = delete;
};
