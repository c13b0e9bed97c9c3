#pragma once

class MenuItem;

// What a menu command comes to at this moment: the window in front is asked first, then the application. What edits a
// text field, and the quit, are the framework's own. Main thread.

// The command has somebody who takes it.
bool CommandCanRun(const MenuItem& item);
void RunCommand(const MenuItem& item);

// Keeps the menu bar's items in step with the window in front and the focused field. Once, after the application is
// there.
void FollowTheWindowInFront();
