#pragma once

#include <string>
#include <string_view>

// Writes one line to standard error, with the program's name in front. Any thread.
void LogToStderr(std::string_view line) noexcept;

// The line about a file that was to be opened and is not there. Any thread.
void LogNoSuchFile(const std::string& name);
