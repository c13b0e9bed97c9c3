#include "ui/claDialogButton.h"

#include "ui/claDialogWindow.h"

void claDialogButton::Event_Action() {
    const bool handled = Action && Action();
    if (!handled)
        w->Action(Self(this));
}
