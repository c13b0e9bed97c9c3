#pragma once

#include <string>

// Any thread; empty if the system does not tell.

// Absolute path of the running program's file, and of a file that stands at `relative` to its folder.
std::string ProgramFilePath();
std::string PathBesideProgram(const std::string& relative);
