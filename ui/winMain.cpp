#include "ui/winMain.h"

#include "core/App.h"
#include "engine/FileTypes.h"
#include "engine/PendingOperation.h"
#include "engine/claThread.h"
#include "framework/desktop/Desktop.h"
#include "framework/files/FolderItem.h"
#include "framework/windows/DragItem.h"
#include "framework/windows/Graphics.h"
#include "framework/windows/Label.h"
#include "framework/windows/MessageDialog.h"
#include "framework/windows/OpenDialog.h"
#include "framework/windows/ScrollBar.h"
#include "framework/windows/SingleWindow.h"
#include "settings/Multilingual.h"
#include "ui/Pictures.h"
#include "ui/claFilePerform.h"
#include "ui/claFilePerformInfo.h"
#include "ui/claProBar.h"
#include "ui/claToolbar.h"

namespace {

// Stretched sideways only.
void DrawStrip(Graphics& graphics, int32_t top, int32_t width) {
    const Ref<Picture> strip = picBack();
    graphics.DrawPicture(strip, 0, top, width, strip->Height(), 0, 0, strip->Width(), strip->Height());
}

} // namespace

Ref<winMain> winMain::Instance() {
    return SingleWindow<winMain>();
}

WindowLayout winMain::Layout() {
    return {.Width = 527,
            .Height = 302,
            .MinWidth = 300,
            .MinHeight = 200,
            .Placement = WindowPlacement::CentreOfScreen,
            .Title = "Ombrivel",
            .HasBackColor = true,
            .BackColor = 0xFFFFFF,
            .HoldsMenuBar = true};
}

void winMain::CreateControls() {
    Canvas1_ = Add(New<Canvas>(), {.Left = 0,
                                   .Top = 278,
                                   .Width = 527,
                                   .Height = 24,
                                   .LockLeft = true,
                                   .LockRight = true,
                                   .LockBottom = true,
                                   .TabIndex = 2});
    Canvas1_->Paint = [this](Graphics& graphics) { Canvas1_Paint(graphics); };

    canPerform_ = Add(New<claFilePerform>(), {.Left = 0,
                                              .Top = 0,
                                              .Width = 527,
                                              .Height = 278,
                                              .LockLeft = true,
                                              .LockTop = true,
                                              .LockRight = true,
                                              .LockBottom = true,
                                              .TabIndex = 0});
    canPerform_->Open = [this] { canPerform_Open(); };
    canPerform_->DropObject = [this](const Ref<DragItem>& drag, int32_t) { canPerform_DropObject(drag); };
    canPerform_->SetStatus = [this](const std::string& text) { canPerform_SetStatus(text); };

    tolMain_ = Add(New<claToolbar>(), {.Left = 0, .Top = 0, .Width = 48, .Height = 37});

    // Stays hidden; nothing reads or moves it.
    ScrollBar1_ = Add(New<ScrollBar>(), {.Left = 512,
                                         .Top = -1,
                                         .Width = 16,
                                         .Height = 279,
                                         .LockTop = true,
                                         .LockRight = true,
                                         .LockBottom = true,
                                         .TabIndex = 1,
                                         .Visible = false});

    proBar_ = Add(New<claProBar>(0), claProBar::Layout());

    const auto status = New<Label>();
    status->TextAlign = TextAlignment::Centre;
    status->TextFont = "SmallSystem";
    status->SetTextColor(0x000000); // the strip beneath is light on every desktop
    staStatus_ = Add(status, {.Left = 65,
                              .Top = 277,
                              .Width = 397,
                              .Height = 25,
                              .LockLeft = true,
                              .LockRight = true,
                              .LockBottom = true,
                              .TabIndex = 1});
    staStatus_->Open = [this] { staStatus_Open(); };
}

void winMain::AddMenuHandlers() {
    MenuHandlers().Add("FileCloseWindow", this, &winMain::FileCloseWindow_Action);
    MenuHandlers().Add("FileCutFile", this, &winMain::FileCutFile_Action);
    MenuHandlers().Add("FileGlueFiles", this, &winMain::FileGlueFiles_Action);
}

bool winMain::FileCloseWindow_Action() {
    Close();
    return true;
}

bool winMain::FileCutFile_Action() {
    Cut();
    return true;
}

bool winMain::FileGlueFiles_Action() {
    Glue();
    return true;
}

void winMain::canPerform_Open() {
    canPerform_->AcceptFileDrop(FileTypes::Unknown()->Operator_Convert()); // which stands for every file
}

// Each thing is sent on its way by itself, in the order of the drag; a cut waits for its dialog meanwhile. No yield: a
// glue that came to its end in it would no longer turn away the other parts of its series.
void winMain::canPerform_DropObject(const Ref<DragItem>& drag) {
    if (!drag->FolderItemAvailable())
        return;
    const PendingOperation waiting;
    do
        App::Instance()->Route(drag->FolderItem());
    while (drag->NextItem());
}

void winMain::canPerform_SetStatus(const std::string& text) {
    staStatus_->SetText(text);
    canPerform_->SetAccessibleName(text);
}

void winMain::staStatus_Open() {
    canPerform_SetStatus(Multilingual::GetString("MainOperationsCount", "0"));
}

void winMain::Cut() {
    const auto dialog = New<OpenDialog>();
    dialog->Filter = "????";
    const Ref<FolderItem> file = dialog->ShowModalWithin(Instance());
    if (!file.IsNil())
        App::Instance()->EncodeFile(file);
}

void winMain::Glue() {
    const auto dialog = New<OpenDialog>();
    dialog->Filter = FileTypes::OmbrivelPart()->Operator_Convert();
    const Ref<FolderItem> file = dialog->ShowModalWithin(Instance());
    if (!file.IsNil())
        App::Instance()->DecodeFile(file);
}

Ref<ProgressBar> winMain::GetNewBar() {
    ControlLayout layout = claProBar::Layout();
    layout.Within = canPerform_.Get();
    return Add(New<claProBar>(), layout);
}

void winMain::Canvas1_Paint(Graphics& graphics) {
    DrawStrip(graphics, 0, Width());
}

// The same strip on the window's own background, for what is not a canvas.
void winMain::Event_Paint(Graphics& graphics) {
    DrawStrip(graphics, Height() - picBack()->Height(), Width());
}

bool winMain::Event_CancelClose(bool) {
    if (canPerform_->Info.empty())
        return false;
    Beep();
    if (!ConfirmsQuit())
        return true;
    StopAll();
    return false;
}

bool winMain::ConfirmsQuit() {
    const auto dialog = New<MessageDialog>();
    dialog->Icon = DialogIcon::Warning;
    dialog->ActionButton->Caption = Multilingual::GetString("ButtonQuit");
    dialog->CancelButton->Visible = true;
    dialog->CancelButton->Caption = Multilingual::GetString("ButtonCancel");
    dialog->Message = Multilingual::GetString("MainCancelQuitMessage");
    dialog->Explanation = Multilingual::GetString("MainCancelQuitExplanation");
    return dialog->ShowModalWithin(Instance()) == dialog->ActionButton;
}

// By the flag alone: a glue that lies asleep is not woken, and nobody waits for the workers to clean up. Kept on
// purpose, see docs/reading.md. The list may have shrunk while the question stood, even to nothing.
void winMain::StopAll() {
    for (std::size_t i = 0; i < canPerform_->Info.size(); ++i)
        canPerform_->Info[i]->PerformThread->Stop = true;
}

void winMain::Event_Close() {
    Quit(0);
}
