#include "engine/PendingOperation.h"

#include "framework/threads/MainThread.h"

#include <utility>

PendingOperation::~PendingOperation() {
    if (--count_ == 0)
        PostToMainThread(MakeCall);
}

// If more has come meanwhile, the end of that posts anew.
void PendingOperation::MakeCall() {
    if (!Any() && whenNone_ != nullptr)
        std::exchange(whenNone_, nullptr)();
}
