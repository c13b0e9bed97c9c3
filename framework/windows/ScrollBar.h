#pragma once

#include "framework/windows/Control.h"

// A vertical scroll bar. Main thread.
class ScrollBar : public Control {
public:
    // Set before the window makes the control.
    int32_t Minimum = 0;
    int32_t Maximum = 100;
    int32_t Value = 0;
    int32_t LineStep = 1;
    int32_t PageStep = 20;

protected:
    void MakeWidget(NativeControl& native) override;
};
