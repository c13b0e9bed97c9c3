#pragma once

#include <string>
#include <vector>

// Services of the desktop. None reports a failure.

// The system alert. Main thread.
void Beep();

// Opens a web page in the browser and returns at once. Any thread.
void ShowURL(const std::string& address);

// Opens files and folders one after the other, each with the application that the desktop has for it. Returns at once.
// Any thread.
void OpenFiles(const std::vector<std::string>& absolutePaths);

// Brings the file manager to the front with that file selected in its folder; where no file manager answers, opens the
// folder. Returns at once. Any thread.
void RevealFile(const std::string& absolutePath);

// Tells the user what must not be missed, by a notification that stays until it is read; where the desktop has none, by
// a line on standard error. Valid UTF-8. Returns at once. Any thread.
void NotifyUrgently(const std::string& summary, const std::string& text);
