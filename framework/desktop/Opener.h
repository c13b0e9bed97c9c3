#pragma once

#include <string>
#include <vector>

// Runs the helper program that talks to the desktop's file manager and opener, and returns as soon as it is under way.
// The helper goes on when this process ends, so what was asked just before a quit still happens. Its verbs:
//   reveal PATH...  shows the files, selected, in the file manager
//   open PATH       opens a file or folder with its application
//   url ADDRESS     opens an address in the browser
// Any thread. Failures go unnoticed.
void RunOpener(const std::string& verb, const std::vector<std::string>& arguments);
