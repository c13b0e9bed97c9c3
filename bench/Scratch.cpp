#include "bench/Scratch.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/statvfs.h>
#include <sys/sysinfo.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr int kMostLooks = 100;
constexpr useconds_t kBetweenLooks = 50'000;
constexpr std::size_t kPage = 4096;
constexpr std::size_t kBetweenKept = 512 * kPage; // 2 MiB

uint64_t FreeBytesAtOnce(const std::string& path) {
    const int descriptor = open(path.c_str(), O_RDONLY);
    syncfs(descriptor);
    struct statvfs status {};
    fstatvfs(descriptor, &status);
    close(descriptor);
    return uint64_t(status.f_bavail) * status.f_frsize;
}

uint64_t FreeMemory() {
    struct sysinfo system {};
    sysinfo(&system);
    return uint64_t(system.freeram) * system.mem_unit;
}

bool Succeeds(const std::string& command) {
    return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
}

} // namespace

Scratch::Scratch(const std::string& parent) {
    fs::create_directories(parent);
    std::string pattern = parent + "/ombrivel-bench-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) {
        std::perror(pattern.c_str());
        std::_Exit(2);
    }
    path_ = fs::absolute(pattern).string();
}

Scratch::~Scratch() {
    std::error_code failure;
    fs::remove_all(path_, failure);
}

void Scratch::RemoveAll(const std::string& prefix, const std::string& keep) const {
    std::vector<fs::path> gone;
    for (const auto& entry : fs::directory_iterator(path_)) {
        const std::string name = entry.path().filename().string();
        if (name.rfind(prefix, 0) == 0 && name != keep)
            gone.push_back(entry.path());
    }
    for (const fs::path& path : gone)
        fs::remove(path);
    sync();
}

void MakeFile(const std::string& path, uint64_t bytes) {
    constexpr std::size_t kBlock = 1U << 20U;
    std::mt19937_64 random(20);
    std::vector<uint64_t> block(kBlock / sizeof(uint64_t));
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    for (uint64_t done = 0; file != nullptr && done < bytes; done += kBlock) {
        for (std::size_t i = 0; i < block.size(); i += 8)
            block[i] = random();
        std::fwrite(block.data(), 1, std::min<uint64_t>(kBlock, bytes - done), file);
    }
    if (file == nullptr || std::fclose(file) != 0) {
        std::perror(path.c_str());
        std::_Exit(2);
    }
    sync();
}

uint64_t FreeBytes(const std::string& path) {
    uint64_t before = 0;
    uint64_t now = FreeBytesAtOnce(path);
    for (int look = 0; look < kMostLooks && now != before; ++look) {
        usleep(kBetweenLooks);
        before = std::exchange(now, FreeBytesAtOnce(path));
    }
    return now;
}

WarmMemory::WarmMemory(uint64_t bytes) : size_(std::min<uint64_t>(bytes, FreeMemory() / 10 * 9)) {
    memory_ = mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory_ == MAP_FAILED)
        throw std::runtime_error("no memory to warm");
    madvise(memory_, size_, MADV_NOHUGEPAGE); // of which no part could be given back
    auto* const pages = static_cast<char*>(memory_);
    std::memset(pages, 1, size_);
    for (std::size_t at = 0; at + kBetweenKept < size_; at += kBetweenKept)
        madvise(pages + at + kPage, kBetweenKept - kPage, MADV_DONTNEED);
}

WarmMemory::~WarmMemory() {
    munmap(memory_, size_);
}

LoopMount::LoopMount(const std::string& kind, const std::string& folder, uint64_t bytes) : point_(folder + "/" + kind) {
    const std::string image = point_ + ".img";
    fs::create_directories(point_);
    mounted_ = Succeeds("truncate -s " + std::to_string(bytes) + " '" + image + "' && mkfs." + kind + " -q '" + image +
                        "' && mount -o loop '" + image + "' '" + point_ + "'");
}

LoopMount::~LoopMount() {
    if (mounted_ && !Succeeds("umount '" + point_ + "'"))
        std::fprintf(stderr, "%s could not be unmounted\n", point_.c_str());
}
