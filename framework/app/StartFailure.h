#pragma once

#include <string>

// Starts that fail. For the framework's sources. Main thread.

// Tells why on standard error, and in a message too where there is a screen: nobody sees what a launcher's program
// writes. Ends the process with code 1.
[[noreturn]] void FailStart(const std::string& reason);

// Around Qt's connection to the display. Where it finds none, it would say so in several lines and abort: between these
// two the start fails instead. What else it tells is written at the end.
void BeginToConnect();
void EndToConnect();
