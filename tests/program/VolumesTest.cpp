// Volumes of other kinds than the one that the tests stand on, each really mounted, and a home that takes nothing.

#include "tests/program/WholeProgramTest.h"

#include <unistd.h>

namespace {

namespace fs = std::filesystem;

struct Volume {
    std::string name;
    std::string mount; // commands, with the image in $1 and the place in $2
};

const Volume kVolumes[] = {
    {"ext4", "mkfs.ext4 -q $1 && mount -o loop $1 $2"},
    {"NTFS", "mkntfs -F -Q -q $1 && ntfs-3g $1 $2"},
    {"exFAT", "mkfs.exfat $1 && mount.exfat-fuse $(losetup --find --show $1) $2"},
    {"sshfs", "mkdir $1.d && sshfs -o ssh_command='sh -c /usr/lib/openssh/sftp-server' host:$1.d $2"},
    {"overlay", "mkdir $1.l $1.u $1.w && mount -t overlay -o lowerdir=$1.l,upperdir=$1.u,workdir=$1.w none $2"},
    {"read-only-home", "mount --bind $2 $2 && mount -o remount,ro,bind $2"}};

const std::string kWholeNames = "IFS=;"; // blanks and all

// Is given back whatever happens.
class Mount {
public:
    Mount(const Desktop& desktop, const std::string& command, const fs::path& image, const fs::path& place)
        : desktop_(desktop),
          image_(image),
          place_(place),
          mounted_(desktop.Run({"sh", "-c", kWholeNames + command + " && echo mounted", "sh", image, place})
                       .ends_with("mounted\n")) {}
    ~Mount() {
        desktop_.Run({"sh", "-c", kWholeNames + "umount $2; losetup -j $1 -n -O NAME | xargs -r losetup -d", "sh",
                      image_, place_});
    }
    Mount(const Mount&) = delete;
    Mount& operator=(const Mount&) = delete;

    bool Mounted() const { return mounted_; }

private:
    const Desktop& desktop_;
    const fs::path image_, place_;
    const bool mounted_;
};

bool IsSomewhereBelow(const fs::path& top, const std::string& name, const std::string& bytes) {
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(top)) {
        if (entry.path().filename() == name && ReadFile(entry.path()) == bytes)
            return true;
    }
    return false;
}

} // namespace

using Volumes = WholeProgramTest;

TEST_F(Volumes, ASeriesIsGluedOnEachAndItsPartsAreNowhereLost) {
    if (geteuid() != 0)
        GTEST_SKIP() << "mounting takes root";
    for (const Volume& volume : kVolumes) {
        const fs::path home = desktop.Configuration().parent_path();
        const bool isHome = volume.name == "read-only-home";
        const fs::path image = File(volume.name + ".image"), place = isHome ? home : File(volume.name);
        fs::create_directory(File(volume.name));
        WriteFile(image, "");
        fs::resize_file(image, 64U << 20U);
        const Mount mount(desktop, volume.mount, image, place);
        if (!mount.Mounted()) {
            std::cout << "Skipped: " << volume.name << " can't be mounted here\n";
            continue;
        }
        const std::string series = volume.name + "/a b%20.mov";
        const std::string whole = WriteSeries(series);
        EXPECT_EQ(StartAgain({series + ".001"}), 0) << volume.name;
        EXPECT_TRUE(Holds(File(series), whole)) << volume.name;
        const std::string first = whole.substr(0, 300'000), second = whole.substr(300'000);
        for (const auto& [part, bytes] : {std::pair("a b%20.mov.001", first), std::pair("a b%20.mov.002", second)})
            EXPECT_TRUE(IsSomewhereBelow(File(volume.name), part, bytes) || IsSomewhereBelow(home, part, bytes))
                << part << " on " << volume.name;
    }
}
