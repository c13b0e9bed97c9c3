#include "engine/OnTheWay.h"

#include "framework/threads/MainThread.h"

#include <utility>

OnTheWay::~OnTheWay() {
    if (--count_ == 0)
        PostToMainThread(MakeCall);
}

// If more has come meanwhile, the end of that posts anew.
void OnTheWay::MakeCall() {
    if (!Anything() && whenGone_ != nullptr)
        std::exchange(whenGone_, nullptr)();
}
