#pragma once

#include "framework/windows/Control.h"

#include <string>
#include <vector>

class DragItem;
class Graphics;
class Picture;

// An opaque area that the program paints by itself, always whole, and onto which files can be dropped.
class Canvas : public Control {
public:
    // Declares which files the control takes in a drop: those of the registered type of that name, or all files if the
    // type's code is "????".
    void AcceptFileDrop(const std::string& fileTypeName);

    // A picture beneath what is painted, or nil. Set before the window makes the control.
    Ref<Picture> Backdrop;

    std::function<void(Graphics&)> Paint;
    // Files were dropped. Runs from the event loop after the drop is over. The second argument is the action, always 0.
    std::function<void(const Ref<DragItem>&, int32_t)> DropObject;

    virtual void Event_Paint(Graphics& graphics);
    virtual void Event_MouseMove(int32_t /*x*/, int32_t /*y*/) {}
    // The result says whether the further events of the click are wanted; a canvas has none to give. Of a double click
    // the first press comes.
    virtual bool Event_MouseDown(int32_t /*x*/, int32_t /*y*/) { return false; }

protected:
    void MakeWidget(NativeControl& native) override;
    void RepaintUnderneath() override;

private:
    friend class CanvasWidget;
    std::vector<std::string> acceptedTypes_;
};
