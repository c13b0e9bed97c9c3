#include "framework/base/StandardError.h"

#include <cerrno>
#include <cstdio>

void TellStandardError(std::string_view line) noexcept {
    std::fprintf(stderr, "%s: %.*s\n", program_invocation_short_name, static_cast<int>(line.size()), line.data());
}

void TellNoSuchFile(const std::string& name) {
    TellStandardError(name + ": no such file");
}
