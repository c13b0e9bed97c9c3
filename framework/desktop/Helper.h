#pragma once

#include <string>
#include <vector>

// Runs one of the helper programs beside this one, and returns as soon as it is under way. A helper goes on when this
// process ends, so what was asked just before a quit still happens. They are, with the program's name and "-" in front:
//   opener reveal PATH...  shows the files, selected, in the file manager
//   opener open PATH...    opens files and folders with their applications, in that order
//   opener url ADDRESS     opens an address in the browser
//   opener notify PROGRAM ID SUMMARY TEXT
//                          shows an urgent notification, or writes it to standard error where nobody takes it
//   sound PATH             plays a sound file
// Any thread. Failures go unnoticed. Not by QProcess::startDetached, which in Qt 6.4 changes names that are no valid
// UTF-8, leaves SIGXFSZ ignored in the helper, and forks: 3.5 ms in a process of 60 MiB, in place of 0.1.
void RunHelper(const std::string& name, const std::vector<std::string>& arguments);
