#pragma once

#include "framework/windows/Control.h"

#include <string>
#include <vector>

// A text that wraps and scrolls. It is written piece by piece, each in a style of its own, and shows as much of it as
// people read: some hundred thousand characters. Main thread.
class TextArea : public Control {
public:
    // Set before the window makes the control.
    bool ReadOnly = false; // can be read, scrolled and copied, not changed
    bool Styled = false;   // else SelBold has no effect
    bool Multiline = true; // else line breaks are shown as signs
    bool ScrollbarVertical = true;
    bool ScrollbarHorizontal = false; // in place of wrapping
    bool Border = true;
    bool HideSelection = true; // while the focus is elsewhere
    bool AcceptTabs = false;   // else Tab leaves the area
    bool UseFocusRing = true;
    TextAlignment Alignment = TextAlignment::Left;
    std::string TextFont = "System"; // or "SmallSystem"

    std::string Text() const;

    // The style of what is inserted next.
    void SetSelBold(bool bold);
    // Inserts the text at the insertion point, in place of what is selected, and leaves that point behind it. What the
    // user looks at stays in view.
    void SetSelText(const std::string& text);

protected:
    void MakeWidget(NativeControl& native) override;

private:
    struct Piece {
        std::string text;
        bool bold = false;
    };
    void Insert(const Piece& piece);

    std::vector<Piece> waiting_; // for the window to make the control
    bool selBold_ = false;
};
