#include "ui/winCut.h"

#include "framework/desktop/Desktop.h"
#include "framework/text/Number.h"
#include "framework/windows/ComboBox.h"
#include "framework/windows/Label.h"
#include "framework/windows/SingleWindow.h"
#include "settings/Multilingual.h"

namespace {

double Megabytes(int32_t bytes) {
    return double(bytes) / 1024.0 / 1024.0;
}

} // namespace

Ref<winCut> winCut::Instance() {
    return SingleWindow<winCut>();
}

WindowLayout winCut::Layout() {
    return {.Width = 399,
            .Height = 182,
            .Placement = WindowPlacement::Default,
            .Frame = WindowFrame::ModalSheet,
            .Resizeable = false};
}

void winCut::CreateControls() {
    const auto size = New<ComboBox>();
    size->InitialValue = {"10", "50", "100", "200", "500", "1000"};
    size->ListIndex = 2;
    comPartSize_ = Add(size, {.Left = 254, .Top = 45, .Width = 125, .Height = 20, .TabIndex = 0});
    comPartSize_->TextChanged = [this] { comPartSize_TextChanged(); };
    comPartSize_->KeyDown = [this](const std::string& key) { return comPartSize_KeyDown(key); };

    StaticText1_ = AddLabel({.Left = 20, .Top = 14, .Width = 359, .Height = 20, .TabIndex = 1}, TextAlignment::Centre,
                            &winCut::StaticText1_Open, true);
    StaticText2_ = AddLabel({.Left = 20, .Top = 46, .Width = 136, .Height = 20, .TabIndex = 2}, TextAlignment::Left,
                            &winCut::StaticText2_Open);
    StaticText3_ = AddLabel({.Left = 20, .Top = 110, .Width = 171, .Height = 20, .TabIndex = 3}, TextAlignment::Left,
                            &winCut::StaticText3_Open);
    staFileSize_ = AddLabel({.Left = 254, .Top = 110, .Width = 125, .Height = 20, .TabIndex = 4}, TextAlignment::Right);
    staPartAmount_ =
        AddLabel({.Left = 254, .Top = 78, .Width = 125, .Height = 20, .TabIndex = 5}, TextAlignment::Right);
    StaticText6_ = AddLabel({.Left = 20, .Top = 78, .Width = 171, .Height = 20, .TabIndex = 6}, TextAlignment::Left,
                            &winCut::StaticText6_Open);

    const auto ok = New<claDialogButton>();
    ok->Default = true;
    pusOK_ = Add(ok, {.Left = 281, .Top = 142, .Width = 98, .Height = 20, .TabIndex = 7, .Enabled = false});
    const auto cancel = New<claDialogButton>();
    cancel->Cancel = true;
    pusCancel_ = Add(cancel, {.Left = 158, .Top = 142, .Width = 107, .Height = 20, .TabIndex = 9});
}

Ref<Label> winCut::AddLabel(const ControlLayout& layout, TextAlignment align, void (winCut::*open)(), bool bold) {
    const auto label = New<Label>(); // in the desktop's colour: black would vanish on a dark desktop
    label->TextAlign = align;
    label->Bold = bold;
    if (open != nullptr)
        label->Open = [this, open] { (this->*open)(); };
    return Add(label, layout);
}

void winCut::Event_Open() {
    SetAccessibleName(Multilingual::GetString("CutTitle")); // its frame shows no title
    ActionButton = pusOK_;
    CancelButton = pusCancel_;
    claDialogWindow::Event_Open();
}

void winCut::Event_ChangeButtonCaption() {
    ActionButton->SetCaption(Multilingual::GetString("ButtonCut"));
}

void winCut::StaticText1_Open() {
    StaticText1_->SetText(Multilingual::GetString("CutTitle"));
}

void winCut::StaticText2_Open() {
    StaticText2_->SetText(Multilingual::GetString("CutPartSize"));
    StaticText2_->SetLabelled(*comPartSize_);
}

void winCut::StaticText3_Open() {
    StaticText3_->SetText(Multilingual::GetString("CutSize"));
}

void winCut::StaticText6_Open() {
    StaticText6_->SetText(Multilingual::GetString("CutPartCount"));
}

void winCut::comPartSize_TextChanged() {
    UpdateStatus();
}

// Digits only, with no exception: a point, Backspace and the arrow keys are dropped too. Sizes are typed in whole,
// chosen from the list, or pasted.
bool winCut::comPartSize_KeyDown(const std::string& key) {
    if (IsNumeric(key))
        return false;
    Beep();
    return true;
}

void winCut::UpdateStatus() {
    const std::string text = comPartSize_->Text();
    const bool valid = IsNumeric(text) && Val(text) > 0;
    staPartAmount_->SetText(valid ? Str(Ceil(Megabytes(FileSize) / Val(text))) : "-");
    pusOK_->SetEnabled(valid);
    staFileSize_->SetText(Str(Round(Megabytes(FileSize))) + " MB");
}
