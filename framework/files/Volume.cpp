#include "framework/files/Volume.h"

#include <sys/stat.h>

#include <filesystem>

namespace {

// 0 for what is not there.
dev_t DeviceOf(const std::filesystem::path& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 ? status.st_dev : 0;
}

} // namespace

std::string VolumeName(const std::string& path) {
    std::filesystem::path place = std::filesystem::path(path).parent_path();
    const dev_t device = DeviceOf(place);
    while (place.has_relative_path() && DeviceOf(place.parent_path()) == device)
        place = place.parent_path();
    return place.has_relative_path() ? place.filename().string() : "/";
}
