#pragma once

#include "framework/base/Ref.h"

#include <cstdint>
#include <string>

class Window;

class MessageDialogButton : public Object {
public:
    std::string Caption;
    bool Visible = true;
};

enum class DialogIcon { Note = 0, Warning = 1, Error = 2 };

// A short message with one or two buttons, which waits for the user. Main thread.
class MessageDialog : public Object {
public:
    MessageDialog();

    std::string Title; // empty: the name of the program
    DialogIcon Icon = DialogIcon::Note;
    std::string Message;
    std::string Explanation;
    const Ref<MessageDialogButton> ActionButton;
    const Ref<MessageDialogButton> CancelButton; // not visible unless told so

    // Show the dialog and return the button pressed: the cancel button also when the dialog was closed otherwise.
    Ref<MessageDialogButton> ShowModal();
    Ref<MessageDialogButton> ShowModalWithin(const Ref<Window>& parent);
};
