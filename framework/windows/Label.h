#pragma once

#include "framework/windows/Control.h"

#include <mutex>
#include <optional>
#include <string>

// A text, on one line unless it says otherwise. Text may be read and written on any thread; the rest belongs to the
// main thread.
class Label : public Control {
public:
    // Set before the window makes the control.
    TextAlignment TextAlign = TextAlignment::Left;
    bool Bold = false;
    bool Underline = false;
    bool Multiline = false;
    bool IsLink = false;             // reached by Tab alone, pressed by Return or the space bar
    std::string TextFont = "System"; // or "SmallSystem"

    std::string Text() const;
    void SetText(const std::string& text);

    // RGB. Until it is set, the text has the desktop's own colour, which suits the window beneath.
    void SetTextColor(uint32_t color);

    // Has screen readers call a control by this text. Where a field's own name is what stands in it, this is the one
    // way.
    void SetLabelled(const Control& control);

    // The pointing hand of a link in place of the arrow.
    void SetFingerPointer();

    // The pointer's doings; positions are relative to the control. Drags and the release come only if the press
    // returned true.
    virtual void Event_MouseEnter() {}
    virtual void Event_MouseExit() {}
    virtual bool Event_MouseDown(int32_t /*x*/, int32_t /*y*/) { return false; }
    virtual void Event_MouseDrag(int32_t /*x*/, int32_t /*y*/) {}
    virtual void Event_MouseUp(int32_t /*x*/, int32_t /*y*/) {}
    virtual void Event_KeyPress() {} // of a link

protected:
    void MakeWidget(NativeControl& native) override;
    void UpdateScreen() override;

private:
    void ApplyColor();
    void ApplyText();

    mutable std::mutex mutex_;
    std::string text_;
    std::optional<uint32_t> textColor_;
};
