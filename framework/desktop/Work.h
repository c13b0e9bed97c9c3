#pragma once

#include <string>

// What the desktop is told while the program works. No service has to be there, and none is waited for; the buses
// themselves are taken to answer. What was asked for ends with the process, however that ends. Main thread.

// Asks the desktop not to suspend the machine and not to end the session unasked, until EndWork. `why` is a text for
// the user. Further calls change nothing.
void BeginWork(const std::string& why);
void EndWork();

// How much of the work is done, from 0 to 1, for the program's icon in a dock. Gone with EndWork.
void ShowProgress(double share);
