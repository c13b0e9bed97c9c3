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
    return {.Width = 529,
            .Height = 206,
            .Placement = WindowPlacement::Stagger,
            .Frame = WindowFrame::Document,
            .Resizeable = false,
            .MinimizeButton = false};
}

void winPreferences::CreateControls() {
    cheMovePartsToTrash_ =
        AddBox({.Left = 20, .Top = 14, .Width = 489, .Height = 20, .TabIndex = 0},
               &winPreferences::cheMovePartsToTrash_Open, &winPreferences::cheMovePartsToTrash_Action);
    cheLaunchArchives_ = AddBox({.Left = 20, .Top = 46, .Width = 489, .Height = 20, .TabIndex = 1},
                                &winPreferences::cheLaunchArchives_Open, &winPreferences::cheLaunchArchives_Action);
    cheShowFilesAfter_ = AddBox({.Left = 20, .Top = 78, .Width = 489, .Height = 20, .TabIndex = 2},
                                &winPreferences::cheShowFilesAfter_Open, &winPreferences::cheShowFilesAfter_Action);
    cheAutoQuit_ = AddBox({.Left = 20, .Top = 110, .Width = 489, .Height = 20, .TabIndex = 3},
                          &winPreferences::cheAutoQuit_Open, &winPreferences::cheAutoQuit_Action);

    const auto explanation = New<Label>();
    explanation->TextFont = "SmallSystem";
    explanation->Open = [this] { StaticText1_Open(); };
    StaticText1_ = Add(explanation, {.Left = 39, .Top = 140, .Width = 463, .Height = 20, .TabIndex = 4});

    cheSearchForUpdates_ =
        AddBox({.Left = 20, .Top = 166, .Width = 482, .Height = 20, .TabIndex = 5},
               &winPreferences::cheSearchForUpdates_Open, &winPreferences::cheSearchForUpdates_Action);
}

Ref<CheckBox> winPreferences::AddBox(const ControlLayout& layout, Handler open, Handler action) {
    const auto box = New<CheckBox>();
    box->Open = [this, open] { (this->*open)(); };
    box->Action = [this, action] { (this->*action)(); };
    return Add(box, layout);
}

void winPreferences::cheMovePartsToTrash_Action() {
    App::Instance()->Preferences->MovePartsToTrash = cheMovePartsToTrash_->Value();
}

void winPreferences::cheMovePartsToTrash_Open() {
    cheMovePartsToTrash_->SetCaption(Multilingual::GetString("PreferencesMovePartsToTrash"));
}

void winPreferences::cheLaunchArchives_Action() {
    App::Instance()->Preferences->LaunchArchives = cheLaunchArchives_->Value();
}

void winPreferences::cheLaunchArchives_Open() {
    cheLaunchArchives_->SetCaption(Multilingual::GetString("PreferencesLaunchArchives"));
}

void winPreferences::cheShowFilesAfter_Action() {
    App::Instance()->Preferences->ShowFilesAfter = cheShowFilesAfter_->Value();
}

void winPreferences::cheShowFilesAfter_Open() {
    cheShowFilesAfter_->SetCaption(Multilingual::GetString("PreferencesShowFilesAfter"));
}

void winPreferences::cheAutoQuit_Action() {
    App::Instance()->Preferences->AutoQuit = cheAutoQuit_->Value();
}

void winPreferences::cheAutoQuit_Open() {
    cheAutoQuit_->SetCaption(Multilingual::GetString("PreferencesAutoQuit"));
}

void winPreferences::StaticText1_Open() {
    StaticText1_->SetText(Multilingual::GetString("PreferencesAutoQuitExplanation"));
}

void winPreferences::cheSearchForUpdates_Open() {
    cheSearchForUpdates_->SetCaption(Multilingual::GetString("PreferencesSearchForUpdates"));
}

void winPreferences::cheSearchForUpdates_Action() {
    App::Instance()->Preferences->SearchForUpdates = cheSearchForUpdates_->Value();
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
