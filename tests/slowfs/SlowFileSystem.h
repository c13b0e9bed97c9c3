#pragma once

#include <cstdint>
#include <string>

// A slow and faulty file system, mounted while this lives. slowfs_main.cpp tells how it is told what to do.
class SlowFileSystem {
public:
    // Makes what it needs in that folder. With `writeback` the kernel keeps what is written until somebody asks for it.
    SlowFileSystem(const std::string& folder, bool writeback);
    ~SlowFileSystem();
    SlowFileSystem(const SlowFileSystem&) = delete;
    SlowFileSystem& operator=(const SlowFileSystem&) = delete;

    bool Mounted() const { return mounted_; } // false where it can't be had: it takes root, /dev/fuse and libfuse
    const std::string& Point() const { return point_; }
    std::string At(const std::string& name) const { return point_ + "/" + name; }
    // Where what has reached the device lies.
    std::string Below(const std::string& name) const { return below_ + "/" + name; }

    // Lines of control, in place of those before.
    void Tell(const std::string& lines) const;
    // What it has done so far, a line each.
    std::string Calls() const;
    // Bytes that have reached the device so far, of all files together.
    int64_t BytesWritten() const;

private:
    const std::string below_, point_;
    bool mounted_ = false;
};
