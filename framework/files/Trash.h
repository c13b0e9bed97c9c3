#pragma once

#include <string>

// Moves a file to the desktop's trash. One that can't be trashed stays where it is. Any thread.
void MoveToTrash(const std::string& path);
