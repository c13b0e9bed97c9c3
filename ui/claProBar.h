#pragma once

#include "framework/windows/ProgressBar.h"

// A bar of the main window's array `proBar`. Its layout puts it above the window's top edge, out of sight; the list,
// which is white on every desktop, moves it into its row.
class claProBar : public ProgressBar {
public:
    explicit claProBar(int32_t index = 0) : Index(index) { OnLight = true; }

    static ControlLayout Layout() {
        return {.Left = 36, .Top = -57, .Width = 455, .Height = 12, .LockLeft = true, .LockRight = true};
    }

    const int32_t Index; // nobody reads the array by it: each row keeps its own bar
};
