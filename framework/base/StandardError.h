#pragma once

#include <cerrno>
#include <cstdio>
#include <string>
#include <string_view>

// Writes one line to standard error, with the program's name in front. Any thread.
inline void LogToStderr(std::string_view line) noexcept {
    std::fprintf(stderr, "%s: %.*s\n", program_invocation_short_name, static_cast<int>(line.size()), line.data());
}

// The line about a file that was to be opened and is not there. Any thread.
inline void LogNoSuchFile(const std::string& name) {
    LogToStderr(name + ": no such file");
}
