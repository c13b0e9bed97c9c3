#pragma once

#include "framework/base/Variant.h"

#include <vector>

// Shows the files of those absolute paths, selected, in the file manager. Returns at once; a file that has gone, or a
// file manager that fails, goes unnoticed. Any thread.
void ShowFileInFinder(const std::vector<Variant>& paths);
