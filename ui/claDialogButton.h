#pragma once

#include "framework/windows/PushButton.h"

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
