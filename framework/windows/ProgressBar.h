#pragma once

#include "framework/windows/Control.h"

// A bar from 0 to Maximum; with a Maximum of 0, a bar without a measure. Value and Maximum may be read and written on
// any thread, as often as one likes.
class ProgressBar : public Control {
public:
    // Stands on something light on dark desktops too. Set before the window makes the control.
    bool OnLight = false;

    int32_t Value() const { return value_; }
    void SetValue(int32_t value);
    int32_t Maximum() const { return maximum_; }
    // Asks for a repaint even if nothing changes.
    void SetMaximum(int32_t maximum);

protected:
    void MakeWidget(NativeControl& native) override;
    void UpdateScreen() override;

private:
    std::atomic<int32_t> value_{0};
    std::atomic<int32_t> maximum_{0};
};
