#pragma once

#include "framework/windows/Label.h"

// A label that behaves like a link: its own text is the address that it opens. A press counts if it is released inside.
class claStaticTextLink : public Label {
public:
    claStaticTextLink() { IsLink = true; }

    void Event_Open() override;
    void Event_MouseEnter() override;
    void Event_MouseExit() override;
    bool Event_MouseDown(int32_t x, int32_t y) override;
    void Event_MouseDrag(int32_t x, int32_t y) override;
    void Event_MouseUp(int32_t x, int32_t y) override;
    void Event_KeyPress() override;

    static constexpr uint32_t kResting = 0x0000FF;
    static constexpr uint32_t kHovered = 0x54B0FF;
    static constexpr uint32_t kPressed = 0xFF0000;

private:
    bool IsInside(int32_t x, int32_t y) const;
};
