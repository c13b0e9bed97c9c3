#pragma once

#include "framework/windows/Control.h"

#include <string>

// A box with a caption, checked or not. Main thread.
class CheckBox : public Control {
public:
    const std::string& Caption() const { return caption_; }
    void SetCaption(const std::string& caption);

    bool Value() const { return value_; }
    void SetValue(bool value);

    // The value has changed, by the user or by SetValue.
    std::function<void()> Action;

protected:
    void MakeWidget(NativeControl& native) override;

private:
    std::string caption_;
    bool value_ = false;
};
