#pragma once

class Keyboard {
public:
    // The Shift key is down at this very moment. Main thread.
    static bool AsyncShiftKey();
};
