#include "framework/base/StandardError.h"

#include <cerrno>
#include <cstdio>

void LogToStderr(std::string_view line) noexcept {
    std::fprintf(stderr, "%s: %.*s\n", program_invocation_short_name, static_cast<int>(line.size()), line.data());
}

void LogNoSuchFile(const std::string& name) {
    LogToStderr(name + ": no such file");
}
