#pragma once

#include <string>

// Services of the desktop. None reports a failure.

// The system alert. Main thread.
void Beep();

// Opens a web page in the browser and returns at once. Any thread.
void ShowURL(const std::string& address);

// Brings the file manager to the front with that file selected in its folder; where no file manager answers, opens the
// folder. Returns at once. Any thread.
void RevealFile(const std::string& absolutePath);
