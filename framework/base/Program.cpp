#include "framework/base/Program.h"

#include "framework/base/Immortal.h"

#include <filesystem>
#include <system_error>

namespace {

const Immortal<ProgramIdentity> program;

} // namespace

const ProgramIdentity& ThisProgram() {
    return *program;
}

void SetThisProgram(const ProgramIdentity& identity) {
    *program = identity;
}

std::string ProgramFilePath() {
    std::error_code failure;
    return std::filesystem::read_symlink("/proc/self/exe", failure).string();
}

std::string PathBesideProgram(const std::string& relative) {
    return (std::filesystem::path(ProgramFilePath()).parent_path() / relative).lexically_normal().string();
}
