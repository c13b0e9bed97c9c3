#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

// A value that says of itself what it is.
using Variant = std::variant<std::string, int32_t>;

// Shows the files of those absolute paths, selected, in the file manager. Returns at once; a file that has gone, or a
// file manager that fails, goes unnoticed. Any thread.
void ShowFileInFinder(const std::vector<Variant>& paths);
