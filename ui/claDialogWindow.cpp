#include "ui/claDialogWindow.h"

#include "framework/base/Program.h"
#include "settings/Multilingual.h"

namespace {

constexpr int32_t kMargin = 20;
constexpr int32_t kButtonGap = 14;

} // namespace

void claDialogButton::Event_Action() {
    const bool handled = Action && Action();
    if (!handled)
        w->Action(Self(this));
}

void claDialogWindow::Event_Open() {
    const Ref<claDialogWindow> self = Self(this);
    if (!ActionButton.IsNil()) {
        ActionButton->SetCaption(Multilingual::GetString("ButtonOK"));
        ActionButton->w = self;
    }
    if (!CancelButton.IsNil()) {
        CancelButton->SetCaption(Multilingual::GetString("ButtonCancel"));
        CancelButton->w = self;
    }
    if (kWindowsVariant)
        PlaceButtonsForWindows();
    Event_ChangeButtonCaption();
}

// The layouts have the action button at the right, as on the Mac.
void claDialogWindow::PlaceButtonsForWindows() {
    if (ActionButton.IsNil() || CancelButton.IsNil())
        return;
    CancelButton->SetLeft(Width() - CancelButton->Width() - kMargin);
    ActionButton->SetLeft(CancelButton->Left() - kButtonGap - ActionButton->Width());
}

void claDialogWindow::Action(const Ref<claDialogButton>& button) {
    Pressed = button;
    Hide();
}

Ref<claDialogButton> claDialogWindow::ShowModal() {
    Window::ShowModal();
    return Pressed;
}

Ref<claDialogButton> claDialogWindow::ShowModalWithin(const Ref<Window>& parent) {
    Window::ShowModalWithin(parent);
    return Pressed;
}
