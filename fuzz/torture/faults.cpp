// To be loaded before all other libraries: lets calls fail, or do less than they were asked for, at random. See
// FaultControl.h.

#include "fuzz/torture/FaultControl.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <linux/fs.h>
#include <pthread.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <string_view>

namespace {

using namespace Torture;

FaultControl* control = nullptr;

__attribute__((constructor)) void MapControl() {
    const char* const path = std::getenv(kControlVariable);
    const auto file = path == nullptr ? -1 : static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, O_RDWR | O_CLOEXEC));
    if (file < 0)
        return;
    void* const memory = mmap(nullptr, sizeof(FaultControl), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    syscall(SYS_close, file);
    if (memory != MAP_FAILED)
        control = static_cast<FaultControl*>(memory);
}

// The function that this library hides.
template <class Function>
Function* Next(Function* /*own*/, const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

uint64_t Random() {
    uint64_t mixed = control->random.fetch_add(0x9E3779B97F4A7C15U);
    mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
    return mixed ^ (mixed >> 31U);
}

bool IsArmed() {
    return control != nullptr && control->armed.load() != 0;
}

bool IsBelow(const char* path) {
    return path != nullptr && std::string_view(path).starts_with(control->folder);
}

bool LeadsBelow(const char* link) {
    std::array<char, sizeof control->folder> place{};
    const ssize_t size = readlink(link, place.data(), place.size() - 1);
    return size > 0 && IsBelow(place.data());
}

bool Concerns(int descriptor) {
    std::array<char, 32> link{};
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", descriptor);
    return IsArmed() && LeadsBelow(link.data());
}

bool Concerns(const char* path) {
    if (!IsArmed() || path == nullptr)
        return false;
    return std::string_view(path).starts_with("/proc/self/fd/") ? LeadsBelow(path) : IsBelow(path);
}

bool Strikes(Call call, Severity severity) {
    const auto which = static_cast<std::size_t>(call);
    if (Random() % kOften >= control->rates[which][severity])
        return false;
    ++control->hits[which][severity];
    return true;
}

int Fail(std::initializer_list<int> errors) {
    errno = errors.begin()[Random() % errors.size()];
    return -1;
}

std::size_t Fewer(std::size_t count) {
    return count < 2 ? count : 1 + Random() % (count - 1);
}

mode_t ModeIn(int flags, va_list arguments) {
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}

bool FailsToOpen(const char* path, int flags) {
    if (!Concerns(path))
        return false;
    if (Strikes(Call::Open, Hard))
        return Fail({EMFILE, ENFILE, EACCES, EIO, ENOMEM, (flags & O_CREAT) != 0 ? ENOSPC : ENOENT}) < 0;
    return (flags & (O_CREAT | O_PATH)) == 0 && Strikes(Call::Open, Soft) && Fail({EINTR}) < 0;
}

bool FailsToRename(const char* from, const char* to) {
    return (Concerns(from) || Concerns(to)) && Strikes(Call::Rename, Hard) && Fail({EACCES, EIO, EXDEV, EROFS}) < 0;
}

} // namespace

extern "C" {

int open(const char* path, int flags, ...) {
    static auto* const next = Next(&open, "open");
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeIn(flags, arguments);
    va_end(arguments);
    return FailsToOpen(path, flags) ? -1 : next(path, flags, mode);
}

int open64(const char* path, int flags, ...) {
    static auto* const next = Next(&open64, "open64");
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeIn(flags, arguments);
    va_end(arguments);
    return FailsToOpen(path, flags) ? -1 : next(path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
    static auto* const next = Next(&openat, "openat");
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = ModeIn(flags, arguments);
    va_end(arguments);
    return FailsToOpen(path, flags) ? -1 : next(folder, path, flags, mode);
}

ssize_t read(int descriptor, void* buffer, size_t count) {
    static auto* const next = Next(&read, "read");
    if (Concerns(descriptor)) {
        if (Strikes(Call::Read, Hard))
            return Fail({EIO, ESTALE, ENOTCONN});
        if (Strikes(Call::Read, Soft)) {
            if (Random() % 4 == 0)
                return Fail({EINTR});
            count = Fewer(count);
        }
    }
    return next(descriptor, buffer, count);
}

ssize_t write(int descriptor, const void* buffer, size_t count) {
    static auto* const next = Next(&write, "write");
    if (Concerns(descriptor)) {
        if (Strikes(Call::Write, Hard))
            return Fail({ENOSPC, EIO, EDQUOT, EFBIG, ENOTCONN});
        if (Strikes(Call::Write, Soft)) {
            if (Random() % 4 == 0)
                return Fail({EINTR});
            count = Fewer(count);
        }
    }
    return next(descriptor, buffer, count);
}

int fallocate(int descriptor, int mode, off_t from, off_t count) {
    static auto* const next = Next(&fallocate, "fallocate");
    if (Concerns(descriptor) && Strikes(Call::Allocate, Soft))
        return Fail({ENOSPC, EOPNOTSUPP, EINTR, EIO});
    return next(descriptor, mode, from, count);
}

int ioctl(int descriptor, unsigned long request, ...) noexcept {
    static auto* const next = Next(&ioctl, "ioctl");
    va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    if (request == FICLONERANGE && Concerns(descriptor) && Strikes(Call::Clone, Soft))
        return Fail({EOPNOTSUPP, EXDEV, EINVAL, EIO, ENOSPC, EINTR});
    return next(descriptor, request, argument);
}

ssize_t copy_file_range(int from, off64_t* fromPlace, int to, off64_t* toPlace, size_t count, unsigned flags) {
    static auto* const next = Next(&copy_file_range, "copy_file_range");
    if (Concerns(from) && Strikes(Call::KernelCopy, Soft)) {
        const uint64_t kind = Random() % 4;
        if (kind == 0) // as some file systems do that have no such call
            return 0;
        if (kind == 1)
            return Fail({EIO, ENOSPC, EXDEV, EINVAL, EOPNOTSUPP, EINTR});
        count = Fewer(count);
    }
    return next(from, fromPlace, to, toPlace, count, flags);
}

int rename(const char* from, const char* to) noexcept {
    static auto* const next = Next(&rename, "rename");
    return FailsToRename(from, to) ? -1 : next(from, to);
}

int renameat(int fromFolder, const char* from, int toFolder, const char* to) noexcept {
    static auto* const next = Next(&renameat, "renameat");
    return FailsToRename(from, to) ? -1 : next(fromFolder, from, toFolder, to);
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept {
    static auto* const next = Next(&renameat2, "renameat2");
    return FailsToRename(from, to) ? -1 : next(fromFolder, from, toFolder, to, flags);
}

int fsync(int descriptor) {
    static auto* const next = Next(&fsync, "fsync");
    return Concerns(descriptor) && Strikes(Call::Sync, Hard) ? Fail({EIO, ENOSPC}) : next(descriptor);
}

int fdatasync(int descriptor) {
    static auto* const next = Next(&fdatasync, "fdatasync");
    return Concerns(descriptor) && Strikes(Call::Sync, Hard) ? Fail({EIO, ENOSPC}) : next(descriptor);
}

// Closed all the same: the system keeps no descriptor whose close has failed.
int close(int descriptor) {
    static auto* const next = Next(&close, "close");
    const bool strikes = Concerns(descriptor) && Strikes(Call::Close, Hard);
    const int result = next(descriptor);
    return strikes ? Fail({EIO, ENOSPC, EDQUOT}) : result;
}

int fstat(int descriptor, struct stat* status) noexcept {
    static auto* const next = Next(&fstat, "fstat");
    return Concerns(descriptor) && Strikes(Call::Stat, Hard) ? Fail({EIO, ESTALE, ENOTCONN}) : next(descriptor, status);
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*body)(void*), void* argument) noexcept {
    static auto* const next = Next(&pthread_create, "pthread_create");
    if (IsArmed() && gettid() == getpid() && Strikes(Call::Thread, Hard))
        return EAGAIN;
    return next(thread, attributes, body, argument);
}

} // extern "C"
