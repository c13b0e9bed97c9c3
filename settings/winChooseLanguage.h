#pragma once

#include "ui/claDialogWindow.h"

class FolderItem;
class Label;
class Listbox;

// The dialog that asks for a language when the system's has no folder. Its own texts are in the language of the
// selected row, and its second button quits. Main thread.
class winChooseLanguage : public claDialogWindow {
public:
    static Ref<winChooseLanguage> Instance();

    const Ref<claDialogButton>& pusOK() const { return pusOK_; }
    const Ref<claDialogButton>& pusCancel() const { return pusCancel_; }
    const Ref<Listbox>& lstLanguage() const { return lstLanguage_; }
    const Ref<Label>& staMessage() const { return staMessage_; }

    // The language file that goes with the selected row; without a selected row, an out-of-range failure.
    Ref<FolderItem> SelectedFile() const;

protected:
    WindowLayout Layout() override;
    void CreateControls() override;
    void Event_Open() override;

private:
    void lstLanguage_Open();
    void lstLanguage_Change();
    void lstLanguage_DoubleClick();

    Ref<claDialogButton> pusOK_;
    Ref<claDialogButton> pusCancel_;
    Ref<Listbox> lstLanguage_; // the tag of a row is its language file
    Ref<Label> staMessage_;
};
