#pragma once

#include <string>

class QWidget;

// What a launcher gives a start along, so that the window which answers the start may come to the front although the
// user is in another program, and so that the busy pointer ends. Empty where the display or the launcher has no such
// thing. For the framework's sources. Main thread.
struct Activation {
    std::string StartupId; // X11
    std::string Token;     // Wayland

    // What this process was started with. Before Qt connects to the display, as it takes the id away.
    static Activation OfThisStart();
};

// Asks for the front of the screen and the keyboard, and ends the busy pointer.
void Activate(QWidget& window, const Activation& activation);

// The start is over, whether or not it has brought a window.
void EndBusyPointer(const Activation& activation);
