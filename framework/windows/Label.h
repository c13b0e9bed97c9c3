#pragma once

#include "framework/windows/Control.h"

#include <mutex>
#include <string>

// A line of text. Text may be read and written on any thread.
class Label : public Control {
public:
    // Set before the window makes the control.
    int32_t TextAlign = 0; // 0 left, 1 centre, 2 right
    bool Bold = false;
    std::string TextFont = "System"; // or "SmallSystem"

    std::string Text() const;
    void SetText(const std::string& text);

protected:
    void MakeWidget(NativeControl& native) override;
    void UpdateScreen() override;

private:
    mutable std::mutex mutex_;
    std::string text_;
};
