#include "framework/files/Writeback.h"

#include "framework/files/FolderItem.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <tuple>
#include <utility>

namespace {

// A stop is to act within a second, and two windows may be on their way.
constexpr std::chrono::milliseconds kLongestWait{250};
constexpr int64_t kMinWindow = int64_t{1} * 1024 * 1024;
constexpr int64_t kMaxWindow = int64_t{32} * 1024 * 1024;
constexpr int64_t kStep = int64_t{1} * 1024 * 1024; // between two looks at the stop
constexpr std::size_t kMostSmallFiles = 64;
constexpr unsigned kWriteAndWait = SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER;

int ErrorOf(int result) {
    return result == 0 ? 0 : errno;
}

} // namespace

Writeback::Writeback(const FolderItem& folder, const std::atomic<bool>& stop)
    : stop_(stop),
      kind_(DeviceKindOf(folder.AbsolutePath())),
      folder_(kind_ == DeviceKind::Internal ? -1
                                            : open(folder.AbsolutePath().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
      window_(kMinWindow) {}

Writeback::~Writeback() {
    Release();
}

// A block device writes one window while the next one is filled. A server is waited for: the system may call bytes
// written that it has not sent yet.
int Writeback::Wrote(int descriptor, int64_t size) {
    if (!MayWait() || size - begunUntil_ < window_)
        return 0;
    const auto begin = std::chrono::steady_clock::now();
    int error = 0;
    if (kind_ == DeviceKind::Server) {
        error = ErrorOf(fdatasync(descriptor));
    } else {
        std::ignore = sync_file_range(descriptor, begunUntil_, size - begunUntil_, SYNC_FILE_RANGE_WRITE);
        error = WaitFor(descriptor, waitedUntil_, begunUntil_);
    }
    waitedUntil_ = begunUntil_;
    begunUntil_ = size;
    AdaptWindow(std::chrono::steady_clock::now() - begin);
    return error;
}

int Writeback::Close(int descriptor, int64_t size) {
    const int64_t from = waitedUntil_;
    waitedUntil_ = begunUntil_ = 0;
    if (!MayWait())
        return 0;
    if (size < window_)
        return KeepSmallFile(descriptor, size);
    const int error = kind_ == DeviceKind::Removable ? WaitFor(descriptor, from, size) : 0;
    return error != 0 || stop_ ? error : ErrorOf(fsync(descriptor));
}

int Writeback::WaitUntilOnDevice() {
    int error = 0;
    // A server has them, and might tell of what others did meanwhile.
    if (MayWait() && manySmallFiles_ && kind_ == DeviceKind::Removable)
        error = ErrorOf(syncfs(folder_));
    for (const int file : smallFiles_) {
        if (MayWait() && !manySmallFiles_ && error == 0)
            error = ErrorOf(fsync(file));
    }
    if (MayWait() && error == 0)
        error = ErrorOf(fsync(folder_));
    Release();
    return error == EINVAL || error == EBADF ? 0 : error; // of a folder that has nothing to write or can't be read
}

int Writeback::WaitFor(int descriptor, int64_t from, int64_t to) {
    int error = 0;
    for (; from < to && error == 0 && !stop_; from += kStep)
        error = ErrorOf(sync_file_range(descriptor, from, std::min(kStep, to - from), kWriteAndWait));
    return error;
}

int Writeback::KeepSmallFile(int descriptor, int64_t size) {
    std::ignore = sync_file_range(descriptor, 0, 0, SYNC_FILE_RANGE_WRITE);
    const int same = fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    manySmallFiles_ = manySmallFiles_ || same < 0;
    if (same < 0)
        return 0;
    smallFiles_.push_back(same);
    smallBytes_ += size;
    return smallBytes_ < window_ && smallFiles_.size() < kMostSmallFiles ? 0 : WaitForSmallFiles();
}

// To a server their bytes go when they are closed.
int Writeback::WaitForSmallFiles() {
    const auto begin = std::chrono::steady_clock::now();
    int error = 0;
    for (const int file : smallFiles_) {
        if (kind_ == DeviceKind::Removable && error == 0)
            error = ErrorOf(sync_file_range(file, 0, 0, kWriteAndWait));
    }
    if (smallBytes_ >= window_)
        AdaptWindow(std::chrono::steady_clock::now() - begin);
    CloseSmallFiles();
    manySmallFiles_ = true;
    return error;
}

// What is open keeps the device from being unmounted.
void Writeback::Release() {
    CloseSmallFiles();
    if (folder_ >= 0)
        close(std::exchange(folder_, -1));
}

void Writeback::CloseSmallFiles() {
    for (const int file : smallFiles_)
        close(file);
    smallFiles_.clear();
    smallBytes_ = 0;
}

void Writeback::AdaptWindow(std::chrono::steady_clock::duration waited) {
    if (waited > kLongestWait)
        window_ = std::max(window_ / 2, kMinWindow);
    else if (waited < kLongestWait / 4)
        window_ = std::min(window_ * 2, kMaxWindow);
}
