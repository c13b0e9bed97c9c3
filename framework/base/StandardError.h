#pragma once

#include <string_view>

// Writes one line to standard error, with the program's name in front. Any thread.
void TellStandardError(std::string_view line) noexcept;
