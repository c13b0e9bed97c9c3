#pragma once

#include <string>

// What a menu command comes to at this moment: the window in front is asked first, then the application. The items of
// the Edit menu and the quit are the framework's own. Main thread.

// The command has somebody who takes it.
bool CommandCanRun(const std::string& itemName);
void RunCommand(const std::string& itemName);

// Keeps the menu bar's items in step with the window in front and the focused field. Once, after the application is
// there.
void FollowTheWindowInFront();
