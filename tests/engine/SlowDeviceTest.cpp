// Operations on a device that writes five megabytes a second, as cheap sticks do, or fails late.

#include "framework/files/SlowDevice.h"
#include "bench/Scratch.h"
#include "framework/windows/ComboBox.h"
#include "framework/windows/ProgressBar.h"
#include "settings/claPreferences.h"
#include "tests/slowfs/SlowFileSystem.h"
#include "tests/support/ProgramTest.h"

#include <chrono>
#include <system_error>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;

constexpr std::size_t kMegabyte = 1048576;
const std::string kSlow = "rate write 5000000\n";

// A block device as slow as the file system beneath it.
struct SlowDisk {
    const TestFolder folder;
    const SlowFileSystem device{folder.Path(), false};
    const LoopMount disk{"ext4", device.Point(), 64 * kMegabyte};
};

class SlowDeviceTest : public ProgramTest {
protected:
    void SetUp() override {
        if (!slow_.Mounted())
            GTEST_SKIP() << "no file system of one's own can be mounted here";
    }

    static void CutAt(const std::string& file, const std::string& size) {
        WhenAsked([size](winCut& dialog) {
            dialog.comPartSize()->SetText(size);
            dialog.ActionButton->Push();
        });
        App::Instance()->EncodeFile(New<FolderItem>(file));
    }

    std::size_t Call(const std::string& line) const { return slow_.Calls().find("\n" + line + " "); }

    const SlowFileSystem slow_{folder.Path(), true};
};

TEST_F(SlowDeviceTest, ARowEndsWhenItsBytesHaveReachedTheDevice) {
    const std::string film = Pattern(2 * kMegabyte + 1000);
    const SlowDisk stick;
    App::Instance()->Preferences->LaunchArchives = false;
    for (const auto& [device, place] : {std::pair(&slow_, slow_.Point()), {&stick.device, stick.disk.Point()}}) {
        WriteFile(place + "/film.zip", film);
        FreeBytes(place); // writes everything out
        device->Tell(kSlow);
        const int64_t before = device->BytesWritten();
        CutAt(place + "/film.zip", "1");
        EXPECT_TRUE(WaitForWorkers());
        EXPECT_GE(device->BytesWritten() - before, int64_t(film.size())) << place;
        std::filesystem::rename(place + "/film.zip", place + "/older");
        App::Instance()->DecodeFile(New<FolderItem>(place + "/film.zip.001"));
        EXPECT_TRUE(WaitForWorkers());
        EXPECT_GE(device->BytesWritten() - before, int64_t(2 * film.size())) << place;
        EXPECT_TRUE(ReadFile(place + "/film.zip") == film);
        device->Tell("");
    }
    EXPECT_TRUE(ReadFile(slow_.Below("film.zip")) == film);
    EXPECT_LT(Call("fsync /film.zip"), Call("rename /film.zip.001")) << "the parts stay until then";
    EXPECT_NE(Call("fsync /film.zip.003"), std::string::npos) << "however small";
    EXPECT_NE(Call("fsyncdir /"), std::string::npos);
    CutAt(slow_.At("older"), "0.01");
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(Call("fsync /older.001"), std::string::npos) << "many small ones are not waited for one by one";
    EXPECT_TRUE(ReadFile(slow_.Below("older.001")) == film.substr(0, 10485));
    rows.clear(); // which hold their workers, and these the sources
}

TEST_F(SlowDeviceTest, AStopActsWithinASecondAndTheBarIsTrue) {
    const SlowDisk stick;
    for (const auto& [device, place] : {std::pair(&slow_, slow_.Point()), {&stick.device, stick.disk.Point()}}) {
        WriteFile(place + "/film", "");
        std::filesystem::resize_file(place + "/film", 32 * kMegabyte);
        FreeBytes(place);
        device->Tell(kSlow);
        const int64_t before = device->BytesWritten();
        CutAt(place + "/film", "32");
        EXPECT_TRUE(WaitUntil([this] { return !List().Info.empty() && rows.back()->Bar->Value() > 5; }));
        EXPECT_GE(device->BytesWritten() - before, (rows.back()->Bar->Value() - 4) * int64_t{kMegabyte}) << place;
        const auto clicked = std::chrono::steady_clock::now();
        ClickStop(0);
        EXPECT_TRUE(WaitForWorkers());
        EXPECT_LT(std::chrono::steady_clock::now() - clicked, 1s * kSlowness) << place;
        device->Tell("");
    }
    rows.clear();
}

TEST_F(SlowDeviceTest, AFailureOfTheDeviceIsToldHoweverLateItComes) {
    const std::string io = std::generic_category().message(EIO);
    for (const auto& [size, faults, reason] : {std::tuple(3 * kMegabyte, "fail fsync 5", io),
                                               {1000, "fail fsync 28", "mounted"}, // the volume that is full
                                               {1000, "fail fsyncdir 5", io},
                                               {3 * kMegabyte, "vanish write 0 50", ""}}) {
        WriteFile(slow_.At("film"), std::string(size, 'x'));
        slow_.Tell(faults);
        CutAt(slow_.At("film"), "2");
        EXPECT_TRUE(WaitForWorkers()) << faults;
        const std::string asked = AskedOfDesktop();
        EXPECT_NE(asked.find("is not complete"), std::string::npos) << faults;
        EXPECT_NE(asked.find(reason), std::string::npos) << asked;
        slow_.Tell("");
    }
    EXPECT_EQ(access(slow_.Point().c_str(), F_OK), -1) << "the server is gone";
}

TEST_F(SlowDeviceTest, WhatCanBePulledOutIsKnownBySysfs) {
    const TestFolder sysfs;
    const auto make = [&](const std::string& file, const std::string& text) {
        std::filesystem::create_directories(std::filesystem::path(sysfs.Path(file)).parent_path());
        WriteFile(sysfs.Path(file), text);
    };
    make("pci/block/sda/removable", "0\n");
    make("pci/block/sda/sda1/partition", "1\n");
    make("pci/usb2/2-1/block/sdb/removable", "0\n");
    make("pci/usb2/2-1/block/sdb/sdb1/partition", "1\n");
    make("pci/block/sr0/removable", "1\n");
    make("pci/block/mmcblk0/device/type", "MMC\n");
    make("pci/block/mmcblk1/device/type", "SD\n");
    make("pci/block/mmcblk1/mmcblk1p2/partition", "2\n");
    make("virtual/block/loop0/loop/backing_file", folder.Path() + "\n");
    make("virtual/block/loop1/loop/backing_file", slow_.Point() + "\n");
    for (const auto& [device, below] : {std::pair("dm-0", "sda/sda1"), {"dm-1", "../usb2/2-1/block/sdb/sdb1"}}) {
        const std::string slaves = sysfs.Path("virtual/block/"s + device + "/slaves");
        std::filesystem::create_directories(slaves);
        std::filesystem::create_symlink(sysfs.Path("pci/block/"s + below), slaves + "/one");
    }
    for (const char* device : {"pci/block/sda", "pci/block/sda/sda1", "pci/block/mmcblk0", "virtual/block/loop0",
                               "virtual/block/dm-0", "virtual/block/none"})
        EXPECT_FALSE(IsRemovable(sysfs.Path(device))) << device;
    for (const char* device : {"pci/usb2/2-1/block/sdb/sdb1", "pci/block/sr0", "pci/block/mmcblk1/mmcblk1p2",
                               "virtual/block/loop1", "virtual/block/dm-1"})
        EXPECT_TRUE(IsRemovable(sysfs.Path(device))) << device;
}

} // namespace
