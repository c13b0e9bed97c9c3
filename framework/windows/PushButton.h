#pragma once

#include "framework/windows/Control.h"

#include <string>

// A button. Return presses the button that has the focus, or else the window's default button; Escape its cancel
// button, or else it closes the window, unless that is the one with the menu bar.
class PushButton : public Control {
public:
    // Set before the window makes the control.
    bool Default = false;
    bool Cancel = false;

    const std::string& Caption() const { return caption_; }
    void SetCaption(const std::string& caption);

    // As if the user had pressed it; nothing while it is disabled.
    void Push();

    virtual void Event_Action() {}

protected:
    void MakeWidget(NativeControl& native) override;

private:
    std::string caption_;
};
