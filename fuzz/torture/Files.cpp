#include "fuzz/torture/Files.h"

#include "tests/support/Bytes.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>

namespace fs = std::filesystem;

namespace Torture {

namespace {

// Names in records are written like those in addresses.
std::string Decoded(const std::string& text) {
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool coded = text[at] == '%' && at + 2 < text.size();
        bytes += coded ? static_cast<char>(std::stoi(text.substr(at + 1, 2), nullptr, 16)) : text[at];
        at += coded ? 2 : 0;
    }
    return bytes;
}

} // namespace

std::vector<Entry> EntriesIn(const std::string& folder) {
    std::vector<Entry> entries;
    std::error_code missing;
    for (const fs::directory_entry& found : fs::directory_iterator(folder, missing)) {
        Entry entry{found.path().filename(), found.path()};
        if (lstat(entry.path.c_str(), &entry.status) == 0)
            entries.push_back(std::move(entry));
    }
    return entries;
}

std::vector<Entry> TrashedIn(const std::string& trash) {
    std::vector<Entry> entries = EntriesIn(trash + "/files");
    for (Entry& entry : entries) {
        const std::string record = ReadFile(trash + "/info/" + entry.name + ".trashinfo");
        const std::size_t path = record.find("Path=");
        if (path != std::string::npos)
            entry.name = fs::path(Decoded(record.substr(path + 5, record.find('\n', path) - path - 5))).filename();
    }
    return entries;
}

std::string BytesOf(const Entry& entry) {
    if (S_ISLNK(entry.status.st_mode))
        return fs::read_symlink(entry.path).string();
    return S_ISREG(entry.status.st_mode) ? ReadFile(entry.path) : std::string();
}

std::string FreshBytes(std::size_t size) {
    static std::atomic<uint64_t> random{1};
    std::string bytes(size + sizeof(uint64_t), '\0');
    uint64_t state = random.fetch_add(0x9E3779B97F4A7C15U) * 0xD1342543DE82EF95U;
    for (std::size_t at = 0; at < size; at += sizeof state) {
        state ^= state << 13U;
        state ^= state >> 7U;
        state ^= state << 17U;
        const uint64_t mixed = state * 0x2545F4914F6CDD1DU;
        std::copy_n(reinterpret_cast<const char*>(&mixed), sizeof mixed, bytes.data() + at);
    }
    bytes.resize(size);
    return bytes;
}

bool Make(const std::string& path, const std::string& bytes) {
    static std::atomic<time_t> lastTime{1'000'000'000};
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (file < 0)
        return false;
    const bool whole = Append(file, bytes) == bytes.size();
    const timespec times[2]{{++lastTime, 0}, {lastTime, 0}};
    futimens(file, times);
    close(file);
    if (!whole)
        unlink(path.c_str());
    return whole;
}

int OpenSame(const Entry& entry) {
    const int file = open(entry.path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC | O_NOFOLLOW);
    struct stat status = {};
    if (file >= 0 && fstat(file, &status) == 0 && status.st_ino == entry.status.st_ino)
        return file;
    if (file >= 0)
        close(file);
    return -1;
}

std::size_t Append(int file, const std::string& bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t step = write(file, bytes.data() + done, bytes.size() - done);
        if (step <= 0)
            break;
        done += static_cast<std::size_t>(step);
    }
    return done;
}

bool MoveToFreeName(const std::string& from, const std::string& to) {
    return renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0;
}

bool Exchange(const std::string& one, const std::string& other) {
    return renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE) == 0;
}

std::string NumberedPart(const std::string& base, uint32_t number) {
    std::string digits = std::to_string(number);
    digits.insert(0, digits.size() < 3 ? 3 - digits.size() : 0, '0');
    return base + "." + digits;
}

int64_t NumberIn(const std::string& name, const std::string& base) {
    constexpr std::size_t kMostDigits = 9;
    const std::size_t at = base.size() + 1;
    if (!name.starts_with(base + ".") || name.size() == at || name.size() > at + kMostDigits ||
        name.find_first_not_of("0123456789", at) != std::string::npos)
        return -1;
    const auto number = static_cast<uint32_t>(std::stoul(name.substr(at)));
    return NumberedPart(base, number) == name ? int64_t{number} : -1;
}

std::string Variant(const std::string& name, uint32_t number) {
    const std::size_t point = name.find('.');
    const std::size_t head = point == std::string::npos ? 0 : point;
    return name.substr(0, head) + " " + std::to_string(number) + name.substr(head);
}

} // namespace Torture
