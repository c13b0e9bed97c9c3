#pragma once

#include "framework/windows/Window.h"

#include <string>

class CheckBox;
class Label;
class claPreferences;

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
    Ref<CheckBox> AddBox(const ControlLayout& layout, const std::string& key, bool claPreferences::*setting);

    Ref<CheckBox> cheMovePartsToTrash_;
    Ref<CheckBox> cheLaunchArchives_;
    Ref<CheckBox> cheShowFilesAfter_;
    Ref<CheckBox> cheAutoQuit_;
    Ref<Label> StaticText1_; // the note to the box above it
    Ref<CheckBox> cheSearchForUpdates_;
};
