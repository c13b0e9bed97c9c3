#include "framework/base/ProgramFile.h"

#include <filesystem>
#include <system_error>

std::string ProgramFilePath() {
    std::error_code failure;
    return std::filesystem::read_symlink("/proc/self/exe", failure).string();
}

std::string PathBesideProgram(const std::string& relative) {
    return (std::filesystem::path(ProgramFilePath()).parent_path() / relative).lexically_normal().string();
}
