#include "fuzz/torture/Ground.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

namespace Torture {

bool KeepMountsToOneself() {
    return unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

Grounds::Grounds(const std::string& folder) : folder_(folder) {
    fs::create_directories(folder_ + "/disk");
    if (geteuid() != 0)
        return;
    Mount("tmpfs", "mount -t tmpfs -o size=200M none $1");
    Mount(kSmall, "mount -t tmpfs -o size=24M none $1");
    Mount("overlay", "mkdir $1.l $1.u $1.w && mount -t overlay -o lowerdir=$1.l,upperdir=$1.u,workdir=$1.w none $1");
    Mount("btrfs", "truncate -s 400M $1.img && mkfs.btrfs -q $1.img && mount -o loop $1.img $1");
    Mount("xfs", "truncate -s 400M $1.img && mkfs.xfs -q $1.img && mount -o loop $1.img $1");
    MountSlow();
}

// A served one. As fast as many histories need it; what the device has not answered yet waits in the kernel.
void Grounds::MountSlow() {
    fs::create_directories(folder_ + "/served");
    slow_ = std::make_unique<SlowFileSystem>(folder_ + "/served", true);
    if (!slow_->Mounted())
        return;
    slow_->Tell("rate write 30000000\n");
    names_.emplace_back(kServed);
}

Grounds::~Grounds() {
    for (const std::string& name : names_)
        if (name != kServed)
            umount2(TopOf(name).c_str(), MNT_DETACH);
}

void Grounds::Mount(const std::string& name, const std::string& command) {
    const std::string place = TopOf(name);
    fs::create_directories(place);
    if (std::system(("set -- '" + place + "'; { " + command + "; } >/dev/null 2>&1").c_str()) == 0)
        names_.push_back(name);
}

std::string Grounds::Clear(const std::string& name) const {
    const std::string top = TopOf(name);
    for (const char* const own : {"files", "aside", "ballast"})
        fs::remove_all(top + "/" + own);
    fs::remove_all(TrashOn(top));
    return top;
}

void Grounds::Fill(const std::string& name, uint32_t room) const {
    const std::string top = TopOf(name);
    struct statvfs status {};
    if (name != kSmall || statvfs(top.c_str(), &status) != 0)
        return;
    const auto free = static_cast<off_t>(status.f_bavail * status.f_frsize);
    const int ballast = open((top + "/ballast").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    if (free > off_t{room} && fallocate(ballast, 0, 0, free - off_t{room}) != 0)
        std::abort();
    close(ballast);
}

std::string Grounds::TrashOn(const std::string& top) {
    return top + "/.Trash-" + std::to_string(geteuid());
}

} // namespace Torture
