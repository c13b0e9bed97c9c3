#include "ui/claStaticTextLink.h"

#include "framework/desktop/Desktop.h"

void claStaticTextLink::Event_Open() {
    Label::Event_Open();
    SetFingerPointer();
}

void claStaticTextLink::Event_MouseEnter() {
    SetTextColor(kHovered);
}

void claStaticTextLink::Event_MouseExit() {
    SetTextColor(kResting);
}

bool claStaticTextLink::Event_MouseDown(int32_t, int32_t) {
    SetTextColor(kPressed);
    return true;
}

void claStaticTextLink::Event_MouseDrag(int32_t x, int32_t y) {
    SetTextColor(IsInside(x, y) ? kPressed : kResting);
}

// At rest afterwards in either case, also with the pointer still over the label, until it next enters.
void claStaticTextLink::Event_MouseUp(int32_t x, int32_t y) {
    if (IsInside(x, y))
        ShowURL(Text());
    SetTextColor(kResting);
}

void claStaticTextLink::Event_KeyPress() {
    ShowURL(Text());
}

// The top row and the left column count as outside.
bool claStaticTextLink::IsInside(int32_t x, int32_t y) const {
    return 0 < x && x < Width() && 0 < y && y < Height();
}
