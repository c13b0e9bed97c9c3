#pragma once

#include "engine/PendingOperation.h"
#include "framework/threads/Thread.h"

#include <atomic>
#include <cstdint>
#include <optional>

class ProgressBar;

// How much a worker moves between two looks at its Stop flag, and the unit of its bar: one mebibyte.
inline constexpr int32_t kTransferBlock = 1048576;

// Workers stand back behind the windows.
inline constexpr int32_t kWorkerPriority = 1;

// What the operation list knows of a worker: something that can be told to stop.
class claThread : public Thread {
public:
    // A request, never a kill: the worker sees it at its next block at the latest. Set from the main thread, never set
    // back.
    std::atomic<bool> Stop{false};

    // From the start of the worker until it has its row.
    std::optional<PendingOperation> Pending;

    // Which of all workers this one is, in the order of their making by the main thread. Rows stand in this order.
    const int64_t Sequence = ++lastSequence_;

protected:
    void Event_Run() final { Event_RunThread(); }

    // The worker's body. Its loops need no yield: the system's scheduler shares out the time.
    virtual void Event_RunThread() {}

    // Moves the worker's bar by one block, whatever the block's size. A bar that has reached its maximum, which is an
    // estimate, falls back to a bar without a measure.
    static void ProgressStep(ProgressBar& bar);

private:
    static inline int64_t lastSequence_ = 0;
};
