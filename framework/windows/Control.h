#pragma once

#include "framework/windows/CoalescedUpdate.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

class Control;
class Window;
struct NativeControl; // Qt's side, known to the framework's sources only

// How a text stands between its left and right edge.
enum class TextAlignment { Left = 0, Centre = 1, Right = 2 };

// Place of a control in its window, and what it does when the window's size changes.
struct ControlLayout {
    int32_t Left = 0, Top = 0, Width = 0, Height = 0; // pixels, in the window's coordinates
    bool LockLeft = false, LockTop = false, LockRight = false, LockBottom = false;
    int32_t TabIndex = -1; // -1: not reached by Tab
    bool Visible = true;
    bool Enabled = true;
    // What holds the control and cuts it off at its own edges, in place of the window; it stands in the window's upper
    // left corner. Read when the control is made.
    const Control* Within = nullptr;
};

// Base of everything that stands in a window. A control belongs to the main thread, apart from what says otherwise. The
// window owns it from Window::Add until Close; after Close its properties change nothing on the screen.
class Control : public CoalescedUpdate {
public:
    Control();
    ~Control() override;

    // Place and size now. They may be set from any thread, and reach the screen with the next coalesced update.
    int32_t Left() const { return left_; }
    int32_t Top() const { return top_; }
    int32_t Width() const { return width_; }
    int32_t Height() const { return height_; }
    void SetLeft(int32_t left);
    void SetTop(int32_t top);
    void SetWidth(int32_t width);
    void SetHeight(int32_t height);

    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled);
    bool Visible() const { return visible_; }
    void SetVisible(bool visible);

    // What a screen reader calls the control, where its own text does not say it.
    void SetAccessibleName(const std::string& name);

    // The window that holds the control, or nil.
    Ref<::Window> Window() const;

    // Takes the control out of its window for good.
    void Close();

    // Asks for a repaint. Any thread.
    void Refresh(bool eraseBackground);

    // The control has been made and may be given its texts.
    std::function<void()> Open;
    virtual void Event_Open();

    // Qt's side; nil before the window has made the control and after Close. WidgetOf reads it.
    NativeControl* Native() const { return native_.get(); }

protected:
    // Makes native.widget as a child of native.parent, with the properties set so far, and connects its events.
    virtual void MakeWidget(NativeControl& native) = 0;
    void UpdateScreen() override;
    // Brings place and size to the screen.
    virtual void ApplyPlace();

    // The control has changed, and what lies beneath shows through it: canvases there are repainted whole.
    void RepaintBeneath();
    // A control above has moved, changed or gone.
    virtual void RepaintUnderneath() {}

private:
    friend class ::Window;
    void Attach(::Window& window, const ControlLayout& layout);
    void WindowResized(int32_t byWidth, int32_t byHeight);

    std::atomic<int32_t> left_{0}, top_{0}, width_{0}, height_{0};
    std::atomic<bool> refresh_{false};
    ControlLayout layout_;
    bool enabled_ = true;
    bool visible_ = true;
    std::string accessibleName_;
    std::weak_ptr<Object> window_;
    std::unique_ptr<NativeControl> native_;
};
