#include "update/winUpdate.h"

#include "core/App.h"
#include "framework/desktop/Desktop.h"
#include "framework/files/FolderItem.h"
#include "framework/files/SpecialFolder.h"
#include "framework/text/Number.h"
#include "framework/windows/CheckBox.h"
#include "framework/windows/Label.h"
#include "framework/windows/ProgressBar.h"
#include "framework/windows/SingleWindow.h"
#include "framework/windows/TextArea.h"
#include "settings/Multilingual.h"
#include "update/claTcpDownload.h"

namespace {

constexpr int32_t kFound = 200; // status of a reply that is what was asked for
constexpr int32_t kMargin = 20;
constexpr const char* kDownloads = "Downloads";
constexpr const char* kNoCode = "    "; // the file is none of this program's own

} // namespace

Ref<winUpdate> winUpdate::Instance() {
    return SingleWindow<winUpdate>();
}

WindowLayout winUpdate::Layout() {
    return {.Width = 497,
            .Height = 217,
            .Placement = WindowPlacement::CentreOfScreen,
            .Frame = WindowFrame::Modal,
            .CloseButton = false,
            .Resizeable = false,
            .MinimizeButton = false};
}

void winUpdate::CreateControls() {
    const auto progress = New<ProgressBar>();
    progress->SetAccessibleName(Multilingual::GetString("ButtonDownloadNow"));
    proDownload_ = Add(progress, {.Left = 20, .Top = 146, .Width = 345, .Height = 20, .TabIndex = 0, .Visible = false});

    const auto heading = New<Label>();
    heading->Bold = true;
    heading->Open = [this] { StaticText1_Open(); };
    StaticText1_ = Add(heading, {.Left = 20, .Top = 14, .Width = 457, .Height = 20, .TabIndex = 2});

    const auto download = New<claDialogButton>();
    download->Default = true;
    download->Action = [this] { return pusDownload_Action(); };
    pusDownload_ = Add(download, {.Left = 348, .Top = 145, .Width = 129, .Height = 20, .TabIndex = 3});
    const auto cancel = New<claDialogButton>();
    cancel->Cancel = true;
    cancel->Action = [this] { return pusCancel_Action(); };
    pusCancel_ = Add(cancel, {.Left = 236, .Top = 145, .Width = 100, .Height = 20, .TabIndex = 4});

    const auto box = New<CheckBox>();
    box->Open = [this] { cheCheckAtStartup_Open(); };
    cheCheckAtStartup_ = Add(box, {.Left = 20, .Top = 177, .Width = 457, .Height = 20, .TabIndex = 5});

    CreateDownload();
    CreateMessage();
}

// A server that asks for credentials gets none: nobody handles those events.
void winUpdate::CreateDownload() {
    tcpDownload_ = New<claTcpDownload>();
    tcpDownload_->SetWindow(Self(this));
    tcpDownload_->DownloadComplete = [this](const std::string&, int32_t status, const Ref<InternetHeaders>&,
                                            const Ref<FolderItem>& file) {
        tcpDownload_DownloadComplete(status, file);
    };
    tcpDownload_->ReceiveProgress = [this](int32_t soFar, int32_t total, const std::string&) {
        tcpDownload_ReceiveProgress(soFar, total);
    };
    tcpDownload_->Error = [this](int32_t code) { tcpDownload_Error(code); };
}

void winUpdate::CreateMessage() {
    const auto message = New<TextArea>();
    message->ReadOnly = true;
    message->Styled = true;
    message->UseFocusRing = false;
    message->SetAccessibleName(Multilingual::GetString("SearchForUpdatesNewVersion"));
    txtMessage_ = Add(message, {.Left = 20, .Top = 46, .Width = 457, .Height = 87, .TabIndex = 6});
}

void winUpdate::StaticText1_Open() {
    StaticText1_->SetText(Multilingual::GetString("SearchForUpdatesNewVersion"));
}

void winUpdate::cheCheckAtStartup_Open() {
    cheCheckAtStartup_->SetCaption(Multilingual::GetString("SearchForUpdatesSearchAtStartup"));
}

void winUpdate::Event_Open() {
    ActionButton = pusDownload_;
    CancelButton = pusCancel_;
    claDialogWindow::Event_Open();
}

void winUpdate::Event_ChangeButtonCaption() {
    ActionButton->SetCaption(Multilingual::GetString("ButtonDownloadNow"));
}

// The Cancel button makes room for the bar. Nobody looks whether the Downloads folder is there: if it is not, the file
// can't be made, and tcpDownload_Error tells.
bool winUpdate::pusDownload_Action() {
    const Ref<FolderItem> file = SpecialFolder::UserHome()->Child(kDownloads)->Child(FileName);
    pusDownload_->SetVisible(false);
    pusCancel_->SetLeft(Width() - kMargin - pusCancel_->Width());
    proDownload_->SetVisible(true);
    tcpDownload_->Get(DownloadUrl, file);
    return true;
}

// What has been written of the file stays, on purpose.
bool winUpdate::pusCancel_Action() {
    if (tcpDownload_->IsConnected())
        tcpDownload_->Close();
    return false;
}

// A connection that is still being made is no reason to stay. It must not come to anything once the user sees no dialog
// any more.
void winUpdate::Action(const Ref<claDialogButton>& button) {
    claDialogWindow::Action(button);
    tcpDownload_->Close();
}

void winUpdate::Event_Close() {
    tcpDownload_->Close();
    tcpDownload_ = New<claTcpDownload>(); // the other one goes, and lets go of the file
}

void winUpdate::tcpDownload_ReceiveProgress(int32_t soFar, int32_t total) {
    proDownload_->SetMaximum(total);
    proDownload_->SetValue(soFar);
}

// The status alone tells whether the download is good: a connection that broke after it, or a full disk, leaves a file
// that is cut off and counts as whole. A file of another status is the server's error page.
void winUpdate::tcpDownload_DownloadComplete(int32_t status, const Ref<FolderItem>& file) {
    const Ref<winUpdate> self = Self(this); // a dialog may outlast the window
    proDownload_->SetMaximum(0);
    if (status != kFound) {
        App::Instance()->Error(Multilingual::GetString("SearchForUpdatesServerError"));
        file->Delete();
        Action(pusCancel_);
        return;
    }
    file->SetMacType(kNoCode);
    file->SetMacCreator(kNoCode);
    // By one call, which keeps their order: each call is a process of its own.
    OpenFiles({file->AbsolutePath(), file->Parent()->AbsolutePath()});
    Action(pusDownload_);
}

void winUpdate::tcpDownload_Error(int32_t code) {
    const Ref<winUpdate> self = Self(this);
    App::Instance()->Error(Multilingual::GetString("SearchForUpdatesConnectionError", Str(code)));
    Action(pusCancel_);
}
