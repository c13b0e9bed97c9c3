#pragma once

#include "framework/windows/Control.h"

#include <string>

class Picture;

// One thing in a toolbar.
class ToolItem : public Object {
public:
    std::string Name; // comes back in Event_Action
    std::string Caption;
};

enum class ToolStyle {
    Button = 0,
    FlexibleSpace = 6, // takes all the room left, so that what follows stands at the far end
};

class ToolButton : public ToolItem {
public:
    ToolStyle Style = ToolStyle::Button;
    Ref<Picture> Icon; // nil for none
};

// The window's toolbar: it stands above the content, whatever its layout says. Main thread.
class Toolbar : public Control {
public:
    void Append(const Ref<ToolButton>& item);

    // An item was pressed.
    virtual void Event_Action(const Ref<ToolItem>&) {}

protected:
    void MakeWidget(NativeControl& native) override;
    void ApplyPlace() override {} // the window places it
};
