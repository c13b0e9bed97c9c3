// A file system for tests: shows the folder BELOW at the place POINT, as slow and as faulty as it is told to be. What
// has arrived in BELOW has reached the device. Goes with the process that started it, whatever ends that.
// usage: slowfs BELOW POINT [writeback]
//
// "writeback" lets the kernel keep what is written, as it does for disks, until somebody asks for it or it is time.
// Faults are lines of the file BELOW.control, which is read anew for each call:
//   fail CALL ERRNO [AFTER]   the call fails
//   hang CALL 0 [AFTER]       it is not answered for as long as the line stands there
//   short CALL BYTES [AFTER]  it moves at most so many bytes
//   vanish CALL 0 [AFTER]     the server dies in the middle of it
//   rate write BYTES          so many bytes a second, of all files together
// CALL is a name as in struct fuse_operations, or "any"; the first AFTER calls since the mount are spared. What is done
// is appended to BELOW.calls, a line each: call, path, and what the system answered.

#define FUSE_USE_VERSION 35

#include <dirent.h>
#include <fcntl.h>
#include <fuse.h>
#include <poll.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <map>
#include <mutex>
#include <optional>
#include <sstream>
#include <string>
#include <thread>

namespace {

using namespace std::chrono_literals;

struct Server {
    std::string below, point;
    bool writeback = false;
    int calls = -1; // descriptor of the log
    pid_t starter = getppid();
    std::mutex device; // takes one write at a time
    std::mutex counting;
    std::map<std::string, int64_t> answered;
};
Server* server;

// What was removed while it was open has no path any more.
std::string Below(const char* path) {
    return path == nullptr ? std::string() : server->below + path;
}

int64_t AnsweredSoFar(const std::string& call) {
    const std::lock_guard lock(server->counting);
    return server->answered[call];
}

// The number that the control file gives with that word for the call, if it has such a line.
std::optional<int64_t> Told(const std::string& word, const std::string& call) {
    std::ifstream control(server->below + ".control");
    for (std::string line; std::getline(control, line);) {
        std::istringstream words(line);
        std::string what, whose;
        int64_t number = 0, after = 0;
        words >> what >> whose >> number >> after;
        if (what == word && (whose == call || whose == "any") && AnsweredSoFar(call) >= after)
            return number;
    }
    return {};
}

void Log(const std::string& call, const std::string& path, int64_t result) {
    const std::string line = call + " " + path + " " + std::to_string(result) + "\n";
    [[maybe_unused]] const ssize_t written = write(server->calls, line.data(), line.size());
    const std::lock_guard lock(server->counting);
    ++server->answered[call];
}

// What a call answers: a failure that it is told to have, or else what `work` gives, -1 with an error number.
template <class Work>
int Answer(const char* call, const char* path, Work&& work) {
    while (Told("hang", call))
        std::this_thread::sleep_for(5ms);
    if (Told("vanish", call))
        _exit(0);
    const auto failure = Told("fail", call);
    int64_t result = failure ? -*failure : int64_t{work()};
    if (!failure && result < 0)
        result = -errno;
    Log(call, path == nullptr ? "(removed)" : path, result);
    return static_cast<int>(result);
}

std::size_t Shortened(const char* call, std::size_t size) {
    return std::min(size, static_cast<std::size_t>(Told("short", call).value_or(INT64_MAX)));
}

int Handle(const fuse_file_info* info) {
    return static_cast<int>(info->fh);
}

// The kernel reads what it is to keep, and says itself where a file ends.
int Flags(int flags) {
    if (server->writeback && (flags & O_ACCMODE) == O_WRONLY)
        flags = (flags & ~O_ACCMODE) | O_RDWR;
    return flags & ~O_APPEND;
}

int Opened(int descriptor, fuse_file_info* info) {
    info->fh = static_cast<uint64_t>(descriptor);
    // Elsewhere the kernel takes a short read for the end of the file.
    info->direct_io = Told("short", "read") ? 1 : 0;
    return descriptor < 0 ? -1 : 0;
}

int Open(const char* path, fuse_file_info* info) {
    return Answer("open", path, [&] { return Opened(open(Below(path).c_str(), Flags(info->flags)), info); });
}

int Create(const char* path, mode_t mode, fuse_file_info* info) {
    return Answer("create", path,
                  [&] { return Opened(open(Below(path).c_str(), Flags(info->flags) | O_CREAT, mode), info); });
}

int Read(const char* path, char* buffer, std::size_t size, off_t at, fuse_file_info* info) {
    return Answer("read", path, [&] { return pread(Handle(info), buffer, Shortened("read", size), at); });
}

int Write(const char* path, const char* bytes, std::size_t size, off_t at, fuse_file_info* info) {
    return Answer("write", path, [&] {
        size = Shortened("write", size);
        if (const auto rate = Told("rate", "write")) {
            const std::lock_guard oneAtATime(server->device);
            std::this_thread::sleep_for(1s * (double(size) / double(*rate)));
        }
        return pwrite(Handle(info), bytes, size, at);
    });
}

int Flush(const char* path, fuse_file_info* info) {
    return Answer("flush", path, [&] { return close(dup(Handle(info))); });
}

// What has arrived below counts as safe, so nothing is left to do.
int Sync(const char* path, int, fuse_file_info*) {
    return Answer("fsync", path, [] { return 0; });
}

int SyncFolder(const char* path, int, fuse_file_info*) {
    return Answer("fsyncdir", path, [] { return 0; });
}

int Release(const char* path, fuse_file_info* info) {
    return Answer("release", path, [&] { return close(Handle(info)); });
}

int Allocate(const char* path, int mode, off_t at, off_t size, fuse_file_info* info) {
    return Answer("fallocate", path, [&] { return fallocate(Handle(info), mode, at, size); });
}

int Truncate(const char* path, off_t size, fuse_file_info* info) {
    return Answer("truncate", path, [&] {
        return info != nullptr ? ftruncate(Handle(info), size) : truncate(Below(path).c_str(), size);
    });
}

int GetAttributes(const char* path, struct stat* status, fuse_file_info* info) {
    return Answer("getattr", path,
                  [&] { return info != nullptr ? fstat(Handle(info), status) : lstat(Below(path).c_str(), status); });
}

int ReadFolder(const char* path, void* buffer, fuse_fill_dir_t fill, off_t, fuse_file_info*, fuse_readdir_flags) {
    return Answer("readdir", path, [&] {
        DIR* const folder = opendir(Below(path).c_str());
        if (folder == nullptr)
            return -1;
        while (const dirent* entry = readdir(folder))
            fill(buffer, entry->d_name, nullptr, 0, fuse_fill_dir_flags{});
        return closedir(folder);
    });
}

int ReadLink(const char* path, char* target, std::size_t size) {
    return Answer("readlink", path, [&] {
        const ssize_t length = readlink(Below(path).c_str(), target, size - 1);
        target[std::max<ssize_t>(length, 0)] = '\0';
        return length < 0 ? -1 : 0;
    });
}

int MakeFolder(const char* path, mode_t mode) {
    return Answer("mkdir", path, [&] { return mkdir(Below(path).c_str(), mode); });
}

int RemoveFolder(const char* path) {
    return Answer("rmdir", path, [&] { return rmdir(Below(path).c_str()); });
}

int Unlink(const char* path) {
    return Answer("unlink", path, [&] { return unlink(Below(path).c_str()); });
}

int MakeLink(const char* target, const char* path) {
    return Answer("symlink", path, [&] { return symlink(target, Below(path).c_str()); });
}

int MakeHardLink(const char* from, const char* path) {
    return Answer("link", path, [&] { return link(Below(from).c_str(), Below(path).c_str()); });
}

int Rename(const char* from, const char* to, unsigned flags) {
    return Answer("rename", from, [&] {
        return syscall(SYS_renameat2, AT_FDCWD, Below(from).c_str(), AT_FDCWD, Below(to).c_str(), flags);
    });
}

int ChangeMode(const char* path, mode_t mode, fuse_file_info*) {
    return Answer("chmod", path, [&] { return chmod(Below(path).c_str(), mode); });
}

int ChangeOwner(const char* path, uid_t user, gid_t group, fuse_file_info*) {
    return Answer("chown", path, [&] { return lchown(Below(path).c_str(), user, group); });
}

int ChangeTimes(const char* path, const timespec times[2], fuse_file_info* info) {
    return Answer("utimens", path, [&] {
        return info != nullptr ? futimens(Handle(info), times)
                               : utimensat(AT_FDCWD, Below(path).c_str(), times, AT_SYMLINK_NOFOLLOW);
    });
}

int StatFileSystem(const char* path, struct statvfs* status) {
    return Answer("statfs", path, [&] { return statvfs(Below(path).c_str(), status); });
}

int GetCode(const char* path, const char* name, char* value, std::size_t size) {
    return Answer("getxattr", path, [&] { return lgetxattr(Below(path).c_str(), name, value, size); });
}

int SetCode(const char* path, const char* name, const char* value, std::size_t size, int flags) {
    return Answer("setxattr", path, [&] { return lsetxattr(Below(path).c_str(), name, value, size, flags); });
}

int RemoveCode(const char* path, const char* name) {
    return Answer("removexattr", path, [&] { return lremovexattr(Below(path).c_str(), name); });
}

// Watches on a thread of its own: only now is this the process that serves.
void* Begin(fuse_conn_info* connection, fuse_config* configuration) {
    if (server->writeback)
        connection->want |= connection->capable & FUSE_CAP_WRITEBACK_CACHE;
    connection->max_write = 128 * 1024;
    configuration->use_ino = 1;
    configuration->hard_remove = 1;
    std::thread([] {
        pollfd end{static_cast<int>(syscall(SYS_pidfd_open, server->starter, 0)), POLLIN, 0};
        while (end.fd >= 0 && poll(&end, 1, -1) < 0)
            continue;
        umount2(server->point.c_str(), MNT_DETACH);
        _exit(0);
    }).detach();
    return nullptr;
}

} // namespace

int main(int count, char** words) {
    if (count < 3)
        return 2;
    server = new Server; // for ever
    server->below = words[1];
    server->point = words[2];
    server->writeback = count > 3 && std::strcmp(words[3], "writeback") == 0;
    server->calls = open((server->below + ".calls").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    umask(0); // modes come with the calls

    fuse_operations operations{};
    operations.init = Begin;
    operations.open = Open;
    operations.create = Create;
    operations.read = Read;
    operations.write = Write;
    operations.flush = Flush;
    operations.fsync = Sync;
    operations.fsyncdir = SyncFolder;
    operations.release = Release;
    operations.fallocate = Allocate;
    operations.truncate = Truncate;
    operations.getattr = GetAttributes;
    operations.readdir = ReadFolder;
    operations.readlink = ReadLink;
    operations.mkdir = MakeFolder;
    operations.rmdir = RemoveFolder;
    operations.unlink = Unlink;
    operations.symlink = MakeLink;
    operations.link = MakeHardLink;
    operations.rename = Rename;
    operations.chmod = ChangeMode;
    operations.chown = ChangeOwner;
    operations.utimens = ChangeTimes;
    operations.statfs = StatFileSystem;
    operations.getxattr = GetCode;
    operations.setxattr = SetCode;
    operations.removexattr = RemoveCode;

    char* arguments[] = {words[0], words[2], nullptr};
    return fuse_main(2, arguments, &operations, nullptr); // returns when the mount stands
}
