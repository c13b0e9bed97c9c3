#pragma once

#include "framework/windows/Window.h"

class Canvas;
class DragItem;
class Label;
class ProgressBar;
class ScrollBar;
class claFilePerform;
class claProBar;
class claToolbar;

// The program's one window: the operation list, the toolbar, and a strip with the number of operations. Files enter
// here, and closing it ends the program. Main thread.
class winMain : public Window {
public:
    static Ref<winMain> Instance();

    const Ref<Canvas>& Canvas1() const { return Canvas1_; }
    const Ref<claFilePerform>& canPerform() const { return canPerform_; }
    const Ref<claToolbar>& tolMain() const { return tolMain_; }
    const Ref<ScrollBar>& ScrollBar1() const { return ScrollBar1_; }
    // A member of the array of bars. All but member 0 are known to their rows alone; another index gives nil.
    Ref<claProBar> proBar(int32_t index) const { return index == 0 ? proBar_ : nullptr; }
    const Ref<Label>& staStatus() const { return staStatus_; }

    // Ask for one file to cut, or for one part of a series to glue.
    void Cut();
    void Glue();

    // A new bar for one operation. The operation's row closes it.
    Ref<ProgressBar> GetNewBar();

protected:
    WindowLayout Layout() override;
    void CreateControls() override;
    void AddMenuHandlers() override;
    void Event_Close() override;
    void Event_Paint(Graphics& graphics) override;
    bool Event_CancelClose(bool quitting) override;

private:
    void Canvas1_Paint(Graphics& graphics);
    void canPerform_Open();
    void canPerform_DropObject(const Ref<DragItem>& drag);
    void canPerform_SetStatus(const std::string& text);
    void staStatus_Open();
    bool FileCloseWindow_Action();
    bool FileCutFile_Action();
    bool FileGlueFiles_Action();
    bool ConfirmsQuit();
    void StopAll();

    Ref<Canvas> Canvas1_;
    Ref<claFilePerform> canPerform_;
    Ref<claToolbar> tolMain_;
    Ref<ScrollBar> ScrollBar1_;
    Ref<claProBar> proBar_; // member 0, the pattern of the bars; it never shows
    Ref<Label> staStatus_;
};
