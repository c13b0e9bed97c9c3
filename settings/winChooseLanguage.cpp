#include "settings/winChooseLanguage.h"

#include "framework/files/FolderItem.h"
#include "framework/windows/Label.h"
#include "framework/windows/Listbox.h"
#include "framework/windows/SingleWindow.h"
#include "settings/Multilingual.h"

Ref<winChooseLanguage> winChooseLanguage::Instance() {
    return SingleWindow<winChooseLanguage>();
}

WindowLayout winChooseLanguage::Layout() {
    return {.Width = 399,
            .Height = 277,
            .Placement = WindowPlacement::Default,
            .Frame = WindowFrame::Modal,
            .Title = "Ombrivel",
            .Resizeable = false,
            .MinimizeButton = false};
}

void winChooseLanguage::CreateControls() {
    const auto ok = New<claDialogButton>();
    ok->Default = true;
    pusOK_ = Add(ok, {.Left = 299, .Top = 237, .Width = 80, .Height = 20, .TabIndex = 0});
    const auto cancel = New<claDialogButton>();
    cancel->Cancel = true;
    pusCancel_ = Add(cancel, {.Left = 179, .Top = 237, .Width = 108, .Height = 20, .TabIndex = 1});

    const auto list = New<Listbox>();
    list->Heading = std::string(1, ' ');
    lstLanguage_ = Add(list, {.Left = 20, .Top = 46, .Width = 359, .Height = 179, .TabIndex = 2});
    lstLanguage_->Open = [this] { lstLanguage_Open(); };
    lstLanguage_->Change = [this] { lstLanguage_Change(); };
    lstLanguage_->DoubleClick = [this] { lstLanguage_DoubleClick(); };

    staMessage_ = Add(New<Label>(), {.Left = 20, .Top = 14, .Width = 359, .Height = 20, .TabIndex = 3});
}

void winChooseLanguage::Event_Open() {
    ActionButton = pusOK_;
    CancelButton = pusCancel_;
    claDialogWindow::Event_Open();
}

void winChooseLanguage::lstLanguage_Open() {
    lstLanguage_->SetColumnSortDirection(0, 0);
    lstLanguage_->HeadingIndex = 0;
    lstLanguage_->SetFocus();
}

// The menus stay as they are: they are localised once, when the choice is made.
void winChooseLanguage::lstLanguage_Change() {
    Multilingual::LoadLanguageFile(SelectedFile());
    Multilingual::SpeakLanguageOf(*SelectedFile()->Parent());
    lstLanguage_->SetAccessibleName(Multilingual::GetString("ChoosePlease"));
    staMessage_->SetText(Multilingual::GetString("ChoosePlease"));
    ActionButton->SetCaption(Multilingual::GetString("ButtonOK"));
    CancelButton->SetCaption(Multilingual::GetString("ButtonQuit"));
}

Ref<FolderItem> winChooseLanguage::SelectedFile() const {
    const Ref<Object> tag = lstLanguage_->CellTag(lstLanguage_->ListIndex(), 0);
    return Ref<FolderItem>(std::static_pointer_cast<FolderItem>(tag.Shared()));
}

void winChooseLanguage::lstLanguage_DoubleClick() {
    pusOK_->Push();
}
