#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// A folder of its own for one measure, removed with what is in it at the end.
class Scratch {
public:
    explicit Scratch(const std::string& parent);
    ~Scratch();
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    const std::string& Path() const { return path_; }
    std::string At(const std::string& name) const { return path_ + "/" + name; }
    // Removes every entry whose name begins with that text, other than `keep`.
    void RemoveAll(const std::string& prefix, const std::string& keep = "") const;

private:
    std::string path_;
};

// A file of that size without holes, and its data on the disk rather than on its way there.
void MakeFile(const std::string& path, uint64_t bytes);

// Bytes free on the file system of that path, once everything has been written out and the figure stands still: what
// deleted files held comes back late.
uint64_t FreeBytes(const std::string& path);

// Keeps that much memory, as far as it is free, ready for the files of a measure while this lives. The host of a
// virtual machine takes away what lies free in pieces of 2 MiB and more, and getting it back costs several times what
// copying into it does, to the one side or the other as it happens. So all of it is used once and given back but for a
// page in every 2 MiB, which leaves pieces large enough for what file systems ask for.
class WarmMemory {
public:
    explicit WarmMemory(uint64_t bytes);
    ~WarmMemory();
    WarmMemory(const WarmMemory&) = delete;
    WarmMemory& operator=(const WarmMemory&) = delete;

private:
    void* memory_;
    std::size_t size_;
};

// A file system of that kind ("btrfs", "xfs") in an image file, mounted while this lives.
class LoopMount {
public:
    LoopMount(const std::string& kind, const std::string& folder, uint64_t bytes);
    ~LoopMount();
    LoopMount(const LoopMount&) = delete;
    LoopMount& operator=(const LoopMount&) = delete;

    bool Mounted() const { return mounted_; } // false where it can't be had
    const std::string& Point() const { return point_; }

private:
    std::string point_;
    bool mounted_ = false;
};
