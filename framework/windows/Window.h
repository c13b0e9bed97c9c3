#pragma once

#include "framework/windows/Control.h"
#include "framework/windows/MenuHandlers.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class Graphics;
struct NativeWindow;

template <class W>
Ref<W> SingleWindow();

enum class WindowPlacement {
    Default = 0, // as the desktop likes
    CentreOfScreen = 2,
    Stagger = 4, // a step down from the window in front, yet on its screen
};

enum class WindowFrame {
    Document = 0,
    Modal = 1,
    ModalSheet = 8, // attached to a parent
    Dialog = 11,
};

// What a window is at its making.
struct WindowLayout {
    int32_t Width = 400, Height = 300; // of the content, in pixels; a toolbar adds to it
    int32_t MinWidth = 64, MinHeight = 64, MaxWidth = 32000, MaxHeight = 32000;
    WindowPlacement Placement = WindowPlacement::Default;
    WindowFrame Frame = WindowFrame::Document;
    std::string Title{};
    bool HasBackColor = false;
    uint32_t BackColor = 0xFFFFFF;
    bool HoldsMenuBar = false;
    bool CloseButton = true, Resizeable = true, MinimizeButton = true, MaximizeButton = false;
};

// A window with its controls. Main thread, apart from Refresh. The framework holds a window from its making until
// Close.
//
// Making runs Layout, CreateControls, AddMenuHandlers, the controls' Open events and then Event_Open. Subclasses that
// exist once are reached through SingleWindow (SingleWindow.h).
class Window : public CoalescedUpdate {
public:
    Window();
    ~Window() override;

    void Show();
    // Shows the window attached to a parent. The second argument, a control to face, is not used here.
    void ShowWithin(const Ref<Window>& parent, int32_t facing);
    // Shows the window if need be and returns when it has been hidden or closed; other windows are shut off meanwhile,
    // events are served.
    void ShowModal();
    void ShowModalWithin(const Ref<Window>& parent);
    void Hide();
    // Asks Event_CancelClose; unless that refuses, Event_Close runs and the window goes for good.
    void Close();
    bool Closed() const { return closed_; }
    void BringToFront();

    // What a screen reader calls the window, where it has no title.
    void SetAccessibleName(const std::string& name);

    const std::string& Title() const { return layout_.Title; }
    void SetTitle(const std::string& title);
    int32_t Width() const; // of the content, now
    int32_t Height() const;

    // The commands that the window takes while it is in front.
    ::MenuHandlers& MenuHandlers() { return menuHandlers_; }

    // For the framework's sources.
    NativeWindow& Native() const { return *native_; }

    // Asks for a repaint of the window with its controls. Any thread.
    void Refresh(bool eraseBackground);

    // Makes a control as the topmost one. To be called from CreateControls, or later at run time.
    template <class C>
    Ref<C> Add(const Ref<C>& control, const ControlLayout& layout) {
        AddControl(control, layout);
        return control;
    }

protected:
    // Runs the making. For SingleWindow.
    void Make();

    virtual WindowLayout Layout() { return {}; }
    virtual void CreateControls() {}
    virtual void AddMenuHandlers() {}
    virtual void Event_Open() {}
    virtual void Event_Close() {}
    // The window is about to be closed; true keeps it open.
    virtual bool Event_CancelClose(bool /*quitting*/) { return false; }
    // Paints the window's own background, beneath the controls.
    virtual void Event_Paint(Graphics&) {}

    void UpdateScreen() override;

private:
    template <class W>
    friend Ref<W> SingleWindow();
    friend class WindowList;
    friend class WindowWidget;
    friend class ContentWidget;
    friend class Control;
    bool ComesForward() const;
    void Raise();
    bool RefusesClose(bool quitting);
    void FinishClose();
    void AddControl(const Ref<Control>& control, const ControlLayout& layout);
    void Remove(const Ref<Control>& control);
    void RepaintBeneath(const Control& above);
    void ContentResized(int32_t byWidth, int32_t byHeight);
    void SetTabOrder();
    bool PressButton(bool cancel); // false if there is none

    WindowLayout layout_;
    ::MenuHandlers menuHandlers_;
    std::unique_ptr<NativeWindow> native_;
    std::vector<Ref<Control>> controls_; // back to front
    int64_t inFrontSince_ = 0;           // counts how often any window has come to the front
    bool asking_ = false;
    bool closed_ = false;
};
