#include "settings/winPreferences.h"

#include "core/App.h"
#include "framework/windows/CheckBox.h"
#include "framework/windows/Label.h"
#include "framework/windows/SingleWindow.h"
#include "settings/Multilingual.h"
#include "settings/claPreferences.h"

Ref<winPreferences> winPreferences::Instance() {
    return SingleWindow<winPreferences>();
}

WindowLayout winPreferences::Layout() {
    return {.Width = 529, .Height = 206, .Placement = 4, .Frame = 0, .Resizeable = false, .MinimizeButton = false};
}

void winPreferences::CreateControls() {
    cheMovePartsToTrash_ = AddBox({.Left = 20, .Top = 14, .Width = 489, .Height = 20, .TabIndex = 0},
                                  "PreferencesMovePartsToTrash", &claPreferences::MovePartsToTrash);
    cheLaunchArchives_ = AddBox({.Left = 20, .Top = 46, .Width = 489, .Height = 20, .TabIndex = 1},
                                "PreferencesLaunchArchives", &claPreferences::LaunchArchives);
    cheShowFilesAfter_ = AddBox({.Left = 20, .Top = 78, .Width = 489, .Height = 20, .TabIndex = 2},
                                "PreferencesShowFilesAfter", &claPreferences::ShowFilesAfter);
    cheAutoQuit_ = AddBox({.Left = 20, .Top = 110, .Width = 489, .Height = 20, .TabIndex = 3}, "PreferencesAutoQuit",
                          &claPreferences::AutoQuit);

    const auto explanation = New<Label>();
    explanation->TextFont = "SmallSystem";
    explanation->Open = [label = explanation.Get()] {
        label->SetText(Multilingual::GetString("PreferencesAutoQuitExplanation"));
    };
    StaticText1_ = Add(explanation, {.Left = 39, .Top = 140, .Width = 463, .Height = 20, .TabIndex = 4});

    cheSearchForUpdates_ = AddBox({.Left = 20, .Top = 166, .Width = 482, .Height = 20, .TabIndex = 5},
                                  "PreferencesSearchForUpdates", &claPreferences::SearchForUpdates);
}

Ref<CheckBox> winPreferences::AddBox(const ControlLayout& layout, const std::string& key,
                                     bool claPreferences::*setting) {
    const auto box = Add(New<CheckBox>(), layout);
    box->Open = [box = box.Get(), key] { box->SetCaption(Multilingual::GetString(key)); };
    box->Action = [box = box.Get(), setting] { *App::Instance()->Preferences.*setting = box->Value(); };
    return box;
}

void winPreferences::AddMenuHandlers() {
    MenuHandlers().Add("FileCloseWindow", this, &winPreferences::FileCloseWindow_Action);
}

bool winPreferences::FileCloseWindow_Action() {
    Close();
    return true;
}

// The boxes show the settings as they are at this moment. One that fires its Action meanwhile writes the same value
// back.
void winPreferences::Event_Open() {
    SetTitle(Multilingual::GetString("PreferencesTitle"));
    const Ref<claPreferences> preferences = App::Instance()->Preferences;
    cheSearchForUpdates_->SetValue(preferences->SearchForUpdates);
    cheAutoQuit_->SetValue(preferences->AutoQuit);
    cheLaunchArchives_->SetValue(preferences->LaunchArchives);
    cheMovePartsToTrash_->SetValue(preferences->MovePartsToTrash);
    cheShowFilesAfter_->SetValue(preferences->ShowFilesAfter);
}
