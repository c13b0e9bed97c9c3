#pragma once

#include "framework/base/Ref.h"

#include <cstdint>
#include <memory>

enum class TimerMode { Off = 0, Repeating = 2 };

// Fires on the main thread while any reference holds it. Made and set on the main thread; the last reference may go on
// any thread.
class Timer : public Object {
public:
    Timer();
    ~Timer() override;

    void SetMode(TimerMode mode);
    void SetPeriod(int32_t milliseconds);

protected:
    virtual void Event_Action() = 0;

private:
    struct Clock;
    std::unique_ptr<Clock> clock_;
};
