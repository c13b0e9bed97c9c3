#pragma once

#include <string>
#include <vector>

// Runs one of the helper programs beside this one, and returns as soon as it is under way. A helper goes on when this
// process ends, so what was asked just before a quit still happens. They are:
//   ombrivel-opener reveal PATH...  shows the files, selected, in the file manager
//   ombrivel-opener open PATH...    opens files and folders with their applications, in that order
//   ombrivel-opener url ADDRESS     opens an address in the browser
//   ombrivel-sound PATH             plays a sound file
// Any thread. Failures go unnoticed.
void RunHelper(const std::string& name, const std::vector<std::string>& arguments);
