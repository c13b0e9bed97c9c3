#pragma once

#include "framework/windows/PushButton.h"
#include "framework/windows/Window.h"

class claDialogWindow;

// A button that ends its dialog, unless a handler takes over.
class claDialogButton : public PushButton {
public:
    // The dialog that the button reports to, and which holds the button in its turn. Pressing a button without one is a
    // nil object failure.
    WeakRef<claDialogWindow> w;

    // True keeps the dialog open: the handler has taken over.
    std::function<bool()> Action;

    void Event_Action() override;
};

// Base of the modal dialogs with one action and one cancel button. It gives them their standard captions and a modal
// run that returns the button pressed. The dialog is hidden then, not closed: its controls can still be read, and who
// ran it closes it. Main thread.
class claDialogWindow : public Window {
public:
    Ref<claDialogButton> ActionButton; // set by the subclass in Event_Open; each may stay nil
    Ref<claDialogButton> CancelButton;

    // The end of the dialog: remembers the button and hides the window.
    virtual void Action(const Ref<claDialogButton>& button);

    // Run the dialog and return the button that ended it: nil if it was closed otherwise, or, as this is never cleared,
    // the button of an earlier run.
    virtual Ref<claDialogButton> ShowModal();
    virtual Ref<claDialogButton> ShowModalWithin(const Ref<Window>& parent);

protected:
    // Gives the buttons their standard captions, then raises the event below. A subclass sets ActionButton and
    // CancelButton in its own, which ends with this one.
    void Event_Open() override;
    // The chance to replace a standard caption.
    virtual void Event_ChangeButtonCaption() {}

private:
    void PlaceButtonsForWindows();

    Ref<claDialogButton> Pressed;
};
