#include "tests/slowfs/SlowFileSystem.h"

#include <spawn.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

SlowFileSystem::SlowFileSystem(const std::string& folder, bool writeback)
    : below_(folder + "/device"), point_(folder + "/mounted") {
    fs::create_directories(below_);
    fs::create_directories(point_);
    std::string program = OMBRIVEL_SLOWFS, below = below_, point = point_, mode = writeback ? "writeback" : "";
    char* words[] = {program.data(), below.data(), point.data(), mode.data(), nullptr};
    pid_t child = -1;
    int status = -1;
    // It goes into the background when the mount stands.
    if (geteuid() == 0 && access("/dev/fuse", R_OK | W_OK) == 0 &&
        posix_spawn(&child, words[0], nullptr, nullptr, words, environ) == 0)
        waitpid(child, &status, 0);
    mounted_ = status == 0;
}

SlowFileSystem::~SlowFileSystem() {
    Tell("");
    if (mounted_ && umount2(point_.c_str(), MNT_DETACH) != 0)
        std::perror(point_.c_str());
}

void SlowFileSystem::Tell(const std::string& lines) const {
    std::ofstream(below_ + ".new") << lines;
    fs::rename(below_ + ".new", below_ + ".control");
}

std::string SlowFileSystem::Calls() const {
    std::ostringstream calls;
    calls << std::ifstream(below_ + ".calls").rdbuf();
    return calls.str();
}

int64_t SlowFileSystem::BytesWritten() const {
    std::istringstream calls(Calls());
    int64_t bytes = 0;
    for (std::string line; std::getline(calls, line);) {
        const int64_t result = std::stoll(line.substr(line.rfind(' ') + 1));
        bytes += line.starts_with("write ") && result > 0 ? result : 0;
    }
    return bytes;
}
