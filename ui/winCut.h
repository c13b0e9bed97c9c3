#pragma once

#include "ui/claDialogWindow.h"

#include <cstdint>
#include <string>

class ComboBox;
class Label;

// The dialog in which the user picks the part size for one cut. It starts nothing itself: who shows it reads the field
// and the button pressed.
class winCut : public claDialogWindow {
public:
    static Ref<winCut> Instance();

    // The low 32 bits of the file's length, read as a signed number: the figures of a file from 2 GiB on are wrong, and
    // the cut itself does not go by them.
    int32_t FileSize = 0;

    const Ref<ComboBox>& comPartSize() const { return comPartSize_; }
    const Ref<Label>& StaticText1() const { return StaticText1_; }
    const Ref<Label>& StaticText2() const { return StaticText2_; }
    const Ref<Label>& StaticText3() const { return StaticText3_; }
    const Ref<Label>& staFileSize() const { return staFileSize_; }
    const Ref<Label>& staPartAmount() const { return staPartAmount_; }
    const Ref<Label>& StaticText6() const { return StaticText6_; }
    const Ref<claDialogButton>& pusOK() const { return pusOK_; }
    const Ref<claDialogButton>& pusCancel() const { return pusCancel_; }

    // Works out the figures anew, and whether the action button can be pressed.
    void UpdateStatus();

protected:
    WindowLayout Layout() override;
    void CreateControls() override;
    void Event_Open() override;
    void Event_ChangeButtonCaption() override;

private:
    Ref<Label> AddLabel(const ControlLayout& layout, TextAlignment align, void (winCut::*open)() = nullptr,
                        bool bold = false);
    void comPartSize_TextChanged();
    bool comPartSize_KeyDown(const std::string& key);
    void StaticText1_Open();
    void StaticText2_Open();
    void StaticText3_Open();
    void StaticText6_Open();

    Ref<ComboBox> comPartSize_;
    Ref<Label> StaticText1_; // the four numbered ones are captions
    Ref<Label> StaticText2_;
    Ref<Label> StaticText3_;
    Ref<Label> staFileSize_;
    Ref<Label> staPartAmount_;
    Ref<Label> StaticText6_;
    Ref<claDialogButton> pusOK_;
    Ref<claDialogButton> pusCancel_;
};
