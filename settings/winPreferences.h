#pragma once

#include "framework/windows/Window.h"

class CheckBox;
class Label;

// Five check boxes, one for each setting. Every click takes effect at once, in memory; there is no way back. Main
// thread.
class winPreferences : public Window {
public:
    static Ref<winPreferences> Instance();

    const Ref<CheckBox>& cheMovePartsToTrash() const { return cheMovePartsToTrash_; }
    const Ref<CheckBox>& cheLaunchArchives() const { return cheLaunchArchives_; }
    const Ref<CheckBox>& cheShowFilesAfter() const { return cheShowFilesAfter_; }
    const Ref<CheckBox>& cheAutoQuit() const { return cheAutoQuit_; }
    const Ref<Label>& StaticText1() const { return StaticText1_; }
    const Ref<CheckBox>& cheSearchForUpdates() const { return cheSearchForUpdates_; }

protected:
    WindowLayout Layout() override;
    void CreateControls() override;
    void AddMenuHandlers() override;
    void Event_Open() override;

private:
    bool FileCloseWindow_Action();
    using Handler = void (winPreferences::*)();
    Ref<CheckBox> AddBox(const ControlLayout& layout, Handler open, Handler action);
    void cheMovePartsToTrash_Action();
    void cheMovePartsToTrash_Open();
    void cheLaunchArchives_Action();
    void cheLaunchArchives_Open();
    void cheShowFilesAfter_Action();
    void cheShowFilesAfter_Open();
    void cheAutoQuit_Action();
    void cheAutoQuit_Open();
    void StaticText1_Open();
    void cheSearchForUpdates_Open();
    void cheSearchForUpdates_Action();

    Ref<CheckBox> cheMovePartsToTrash_;
    Ref<CheckBox> cheLaunchArchives_;
    Ref<CheckBox> cheShowFilesAfter_;
    Ref<CheckBox> cheAutoQuit_;
    Ref<Label> StaticText1_; // the note to the box above it
    Ref<CheckBox> cheSearchForUpdates_;
};
