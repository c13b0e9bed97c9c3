#include "core/App.h"

#include "engine/FileTypes.h"
#include "engine/PendingOperation.h"
#include "engine/StartCut.h"
#include "engine/StartGlue.h"
#include "framework/base/Immortal.h"
#include "framework/base/StandardError.h"
#include "framework/desktop/Desktop.h"
#include "framework/files/FolderItem.h"
#include "framework/text/Text.h"
#include "framework/threads/ExceptionBoundary.h"
#include "framework/threads/MainThread.h"
#include "framework/windows/MessageDialog.h"
#include "settings/Multilingual.h"
#include "settings/claPreferences.h"
#include "settings/winPreferences.h"
#include "ui/MainMenu.h"
#include "ui/Pictures.h"
#include "ui/claFilePerform.h"
#include "ui/winAbout.h"
#include "ui/winMain.h"
#include "update/claSearchForUpdates.h"

namespace {

const Immortal<Ref<App>> instance;

} // namespace

Ref<App> App::NewAppInstance() {
    *instance = New<App>();
    SetMenuBar(MainMenu::Instance());
    return *instance;
}

Ref<App> App::Instance() {
    return *instance;
}

void App::ApplicationAddMenuHandlers() {
    MenuHandlers().Add("EditPreferences", this, &App::EditPreferences_Action);
    MenuHandlers().Add("HelpAbout", this, &App::HelpAbout_Action);
    MenuHandlers().Add("HelpHelp", this, &App::HelpHelp_Action);
    MenuHandlers().Add("HelpSearchForUpdates", this, &App::HelpSearchForUpdates_Action);
}

void App::Event_Open() {
    AfterFirstPaint([] { SetIcon(IconPicture()); });
    Preferences = New<claPreferences>();
    Preferences->Load();
    // Whatever has just been read: the language follows the system at every start.
    Preferences->Language = Multilingual::SystemLanguage();
    const Ref<FolderItem> bundle = ExecutableFile()->Parent()->Parent();
    Multilingual::Initialize(bundle->Child("Resources")->Child("Multilingual"), Preferences->Language);
    winMain::Instance()->Show();
    const bool served = ServeOpenFiles();
    Started = true;
    if (!OpenFiles.empty() && !served)
        QuitIfAllIsDone();
    if (Preferences->SearchForUpdates)
        claSearchForUpdates::Check(false);
}

// By index: a file may be handed over while the dialog of the one before it is up. No yield: a glue that came to its
// end in it would no longer turn away the other parts of its series. The list is not emptied afterwards. Each file is
// an event of its own, as a later one is: where the system has no thread for one, the others run all the same.
bool App::ServeOpenFiles() {
    const PendingOperation waiting;
    bool served = false;
    for (std::size_t i = 0; i < OpenFiles.size(); ++i) {
        const Ref<FolderItem> item = OpenFiles[i];
        bool gone = false;
        ExceptionBoundary::Run("open event", [&] { gone = !Route(item); });
        served = served || !gone;
    }
    return served;
}

void App::Event_EnableMenuItems() {
    // The search for updates can be hidden from a build by this; no build does.
    constexpr bool kHideSearchForUpdates = false;
    if constexpr (kHideSearchForUpdates)
        HelpSearchForUpdates()->SetVisible(false);
}

void App::Event_NewDocument() {
    QuitAfter = false;
}

void App::Event_Close() {
    LogWaitingCuts();
    if (Started)
        Preferences->Save();
}

void App::Event_OpenDocument(const Ref<FolderItem>& item) {
    if (Started)
        Route(item);
    else
        OpenFiles.push_back(item);
}

bool App::Route(const Ref<FolderItem>& item) {
    if (!item->Exists()) { // a part has gone when its series was glued meanwhile
        LogNoSuchFile(item->AbsolutePath());
        return false;
    }
    if (RuntimeStringCompare(item->Type(), FileTypes::OmbrivelPart()->Name) == 0)
        DecodeFile(item);
    else
        EncodeFile(item);
    return true;
}

void App::DecodeFile(const Ref<FolderItem>& file) {
    StartGlue(file, InUse);
}

void App::EncodeFile(const Ref<FolderItem>& file) {
    StartCut(file);
}

void App::QuitIfAllIsDone() {
    if (!Preferences->AutoQuit || !QuitAfter || !winMain::Instance()->canPerform()->Info.empty())
        return;
    const auto again = [] { Instance()->QuitIfAllIsDone(); };
    if (EventsWait())
        PostToMainThread(again); // behind them
    else if (PendingOperation::Any())
        PendingOperation::WhenNone(again);
    else
        Quit(0);
}

void App::Error(const std::string& text) {
    const auto dialog = New<MessageDialog>();
    Beep();
    dialog->Title = "Ombrivel";
    dialog->Icon = DialogIcon::Error;
    dialog->ActionButton->Caption = Multilingual::GetString("ButtonOK");
    dialog->Message = Multilingual::GetString("AppErrorMessage");
    dialog->Explanation = text;
    dialog->ShowModal();
}

bool App::EditPreferences_Action() {
    winPreferences::Instance()->Show();
    return true;
}

bool App::HelpAbout_Action() {
    winAbout::Instance()->Show();
    return true;
}

// The program has no help to open.
bool App::HelpHelp_Action() {
    const auto dialog = New<MessageDialog>();
    dialog->Icon = DialogIcon::Note;
    dialog->ActionButton->Caption = Multilingual::GetString("ButtonOK");
    dialog->Message = Multilingual::GetString("AppNoHelpMessage");
    dialog->Explanation = Multilingual::GetString("AppNoHelpMessageExplanation");
    dialog->ShowModal();
    return true;
}

bool App::HelpSearchForUpdates_Action() {
    claSearchForUpdates::Check(true);
    return true;
}

void App::RemoveInUse(const Ref<FolderItem>& item) {
    for (std::size_t i = InUse.size(); i-- > 0;) {
        if (RuntimeStringCompare(InUse[i]->AbsolutePath(), item->AbsolutePath()) == 0) {
            InUse.erase(InUse.begin() + static_cast<std::ptrdiff_t>(i));
            return;
        }
    }
}

ProgramIdentity OmbrivelIdentity() {
    return {"Ombrivel", "ombrivel", "example.halvrick.Ombrivel", OMBRIVEL_LONG_VERSION, OMBRIVEL_SHORT_VERSION};
}

Ref<Application> Startup() {
    InitFileTypes();
    const Ref<App> app = App::NewAppInstance();
    app->ApplicationAddMenuHandlers();
    return app;
}
