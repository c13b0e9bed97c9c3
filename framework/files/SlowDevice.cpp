#include "framework/files/SlowDevice.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

namespace {

// Not all of them have names in the system's headers.
constexpr std::array<uint32_t, 11> kServers = {FUSE_SUPER_MAGIC, NFS_SUPER_MAGIC,  CIFS_SUPER_MAGIC, SMB_SUPER_MAGIC,
                                               SMB2_SUPER_MAGIC, V9FS_MAGIC,       AFS_SUPER_MAGIC,  AFS_FS_MAGIC,
                                               CEPH_SUPER_MAGIC, CODA_SUPER_MAGIC, NCP_SUPER_MAGIC};

std::string FirstLine(const fs::path& file) {
    std::string line;
    std::getline(std::ifstream(file), line);
    return line;
}

std::string SysfsEntry(dev_t device) {
    return "/sys/dev/block/" + std::to_string(major(device)) + ":" + std::to_string(minor(device));
}

// The device node that is mounted where that number belongs: btrfs gives its files numbers of their own.
std::string SourceOfMount(const std::string& path) {
    struct statx status = {};
    if (statx(AT_FDCWD, path.c_str(), 0, STATX_MNT_ID, &status) != 0 || (status.stx_mask & STATX_MNT_ID) == 0)
        return {};
    std::ifstream mounts("/proc/self/mountinfo");
    for (std::string line; std::getline(mounts, line);) {
        std::istringstream words(line);
        uint64_t id = 0;
        words >> id;
        const std::size_t optionsEnd = line.find(" - ");
        if (id != status.stx_mnt_id || optionsEnd == std::string::npos)
            continue;
        std::istringstream rest(line.substr(optionsEnd + 3));
        std::string type, source;
        rest >> type >> source;
        return source;
    }
    return {};
}

bool StandsUponRemovable(const fs::path& device) {
    std::error_code failure;
    for (const fs::directory_entry& below : fs::directory_iterator(device / "slaves", failure)) {
        if (IsRemovable(below.path()))
            return true;
    }
    const std::string image = FirstLine(device / "loop" / "backing_file");
    return !image.empty() && DeviceKindOf(image) != DeviceKind::Internal;
}

} // namespace

bool IsRemovable(const std::string& entry) {
    std::error_code failure;
    fs::path device = fs::canonical(entry, failure);
    if (failure)
        return false;
    if (fs::exists(device / "partition", failure))
        device = device.parent_path();
    return FirstLine(device / "removable") == "1" || FirstLine(device / "device" / "type") == "SD" ||
           device.string().find("/usb") != std::string::npos || StandsUponRemovable(device);
}

DeviceKind DeviceKindOf(const std::string& path) {
    struct statfs system = {};
    struct stat status = {};
    if (statfs(path.c_str(), &system) != 0 || stat(path.c_str(), &status) != 0)
        return DeviceKind::Internal;
    const auto magic = static_cast<uint32_t>(system.f_type);
    if (std::find(kServers.begin(), kServers.end(), magic) != kServers.end())
        return DeviceKind::Server;
    struct stat node = {};
    std::string entry = SysfsEntry(status.st_dev);
    if (major(status.st_dev) == 0 && stat(SourceOfMount(path).c_str(), &node) == 0 && S_ISBLK(node.st_mode))
        entry = SysfsEntry(node.st_rdev);
    return IsRemovable(entry) ? DeviceKind::Removable : DeviceKind::Internal;
}
