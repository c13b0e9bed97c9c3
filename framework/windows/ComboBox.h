#pragma once

#include "framework/windows/Control.h"

#include <string>
#include <vector>

// A field with a list of suggestions. Main thread.
class ComboBox : public Control {
public:
    // Set before the window makes the control.
    std::vector<std::string> InitialValue; // the rows of the list
    int32_t ListIndex = -1;                // the row that stands in the field at first, or -1

    // What stands in the field at this moment, typed or chosen.
    std::string Text() const;
    void SetText(const std::string& text);

    // The text has changed, by typing or by a choice.
    std::function<void()> TextChanged;
    // A key that would type or edit is about to act on the field; true rejects it. Keys without a character of their
    // own come as control characters. Return, Escape, Tab, the shortcuts of the Edit menu and Alt+Down, which opens the
    // list, do not come here, and neither does what is pasted.
    std::function<bool(const std::string&)> KeyDown;

protected:
    void MakeWidget(NativeControl& native) override;

private:
    friend class KeyFilter;
    bool Rejects(const std::string& key);
};
