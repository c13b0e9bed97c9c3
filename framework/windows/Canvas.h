#pragma once

#include "framework/windows/Control.h"

#include <optional>
#include <string>
#include <vector>

class DragItem;
class Graphics;
class Picture;

// A row of the list that a canvas paints, as a screen reader meets it.
struct AccessibleRow {
    Ref<Object> Of; // what the row stands for: as long as that is the same, so is the row
    std::string Name;
    std::string Status;
    int32_t Top = 0, Height = 0;    // pixels, in the canvas
    int32_t Value = 0, Maximum = 0; // of its bar; 0 of 0 without a measure
    std::string ActionName;         // of its button
    std::function<void()> Action;
};

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

    // For a canvas that paints a list, its rows, top row first. Nothing for one that is there for the eye alone.
    virtual std::optional<std::vector<AccessibleRow>> AccessibleRows() const { return std::nullopt; }

protected:
    void MakeWidget(NativeControl& native) override;
    void UpdateScreen() override;
    void RepaintUnderneath() override;

private:
    friend class CanvasWidget;
    void AnnounceRowsSoon();
    std::vector<std::string> acceptedTypes_;
};
