#pragma once

#include <string>

// How files get to what they lie on.
enum class DeviceKind {
    Internal,  // a disk that stays where it is: the system may take its time
    Removable, // a block device that can be pulled out, and is slow as a rule: a USB stick or disk, a memory card
    Server     // a network, or a file system in user space: it alone knows what has become of the bytes
};

// The kind for what lies at that path. What can't be told is internal. A dead server takes its time. Any thread.
DeviceKind DeviceKindOf(const std::string& path);

// Whether the block device of that entry in sysfs, as /sys/dev/block/8:17, can be pulled out. A device that stands upon
// others (encrypted, a volume of several disks, an image file) can if one of them can.
bool IsRemovable(const std::string& entry);
