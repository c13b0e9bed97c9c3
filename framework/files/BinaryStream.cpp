#include "framework/files/BinaryStream.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <linux/magic.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <memory>
#include <tuple>

namespace {

// Large enough to make system calls cheap and to let the file system take memory in large pieces, small enough to stay
// in the processor's cache.
constexpr int64_t kCopyBuffer = int64_t{256} * 1024;
constexpr std::size_t kPage = 4096;
// A stop waits for the clone that is under way. A fragment of the source takes about as long to clone as a long run of
// blocks. So clones begin small and grow while they are quick. The upper bound is for a source whose fragments begin
// further on.
constexpr std::chrono::milliseconds kCloneTime{10};
constexpr int64_t kMinClone = int64_t{1} * 1024 * 1024;
constexpr int64_t kMaxClone = int64_t{16} * 1024 * 1024;
constexpr int64_t kFlushStep = int64_t{1} * 1024 * 1024;
// Up to as much stays with an unfinished file if the program ends while it is written.
constexpr int64_t kPreallocation = int64_t{64} * 1024 * 1024;
constexpr int64_t kMinPreallocation = int64_t{1} * 1024 * 1024;
constexpr int64_t kLookAhead = int64_t{64} * 1024 * 1024;
constexpr std::size_t kLongestPString = 255;

// Page upon page: the kernel copies noticeably faster between places that lie alike.
struct alignas(kPage) CopyBuffer {
    std::array<char, kCopyBuffer> bytes;
};

char* BytesToCopyThrough() {
    // Goes with its thread. NOLINTNEXTLINE(clang-diagnostic-exit-time-destructors)
    thread_local const auto buffer = std::make_unique_for_overwrite<CopyBuffer>();
    return buffer->bytes.data();
}

// Bytes to clone at a time. Kept for each thread and not for each stream, as parts come and go.
thread_local int64_t cloneSize = kMinClone;

void AdaptCloneSize(int64_t size, std::chrono::steady_clock::duration took) {
    if (took > kCloneTime)
        cloneSize = std::max(size / 2, kMinClone);
    else if (size >= cloneSize)
        cloneSize = std::min(size * 2, kMaxClone);
}

struct FileSystem {
    unsigned long type = 0; // where that can't be told
    int64_t blockSize = 1;
};

FileSystem FileSystemOf(int descriptor) {
    struct statfs status = {};
    if (fstatfs(descriptor, &status) != 0)
        return {};
    return {static_cast<unsigned long>(status.f_type), status.f_bsize};
}

template <class Call>
int64_t RetryOnEINTR(Call&& call) {
    ssize_t result = 0;
    do
        result = call();
    while (result < 0 && errno == EINTR);
    return result;
}

} // namespace

std::string BinaryStream::Read(int32_t count) {
    std::string block(static_cast<std::size_t>(std::clamp<int64_t>(count, 0, Remaining())), '\0');
    block.resize(static_cast<std::size_t>(ReadInto(block.data(), static_cast<int64_t>(block.size()))));
    return block;
}

void BinaryStream::Write(std::string_view data) {
    WriteAll(data.data(), static_cast<int64_t>(data.size()));
}

void BinaryStream::WriteFrom(BinaryStream& source, int32_t count, int64_t more) {
    const int64_t available = source.Remaining();
    const int64_t block = std::clamp<int64_t>(count, 0, available);
    const int64_t ahead = std::clamp<int64_t>(more, 0, available - block);
    int64_t moved = CloneFrom(source, block, ahead);
    if (moved < block && FileSystemType() == EXT4_SUPER_MAGIC)
        Preallocate(block - moved + ahead);
    if (moved < block && source.IsInMemory(available - moved))
        moved += KernelCopyFrom(source, block - moved);
    if (moved < block)
        CopyFrom(source, block - moved);
    if (!writeback_.IsNil())
        KeepFirstFailure(writeback_->Wrote(descriptor_, position_));
}

unsigned long BinaryStream::FileSystemType() {
    if (!fileSystemType_)
        fileSystemType_ = FileSystemOf(descriptor_).type;
    return *fileSystemType_;
}

bool BinaryStream::MayClone() {
    return FileSystemType() != EXT4_SUPER_MAGIC && FileSystemType() != TMPFS_MAGIC;
}

// For what has not been cloned. On btrfs and XFS copy_file_range would try to clone once more, with no regard to how
// long that takes.
BinaryStream::CopyMethod BinaryStream::MethodBesidesClone() {
    const bool clones = FileSystemType() == BTRFS_SUPER_MAGIC || FileSystemType() == XFS_SUPER_MAGIC;
    return clones ? CopyMethod::Copy : CopyMethod::KernelCopy;
}

void BinaryStream::PrepareToClone(int64_t shift, const std::atomic<bool>& stop) {
    const FileSystem fileSystem = FileSystemOf(descriptor_);
    if (fileSystem.type != BTRFS_SUPER_MAGIC && fileSystem.type != XFS_SUPER_MAGIC)
        return;
    const bool canShare = shift % fileSystem.blockSize == 0;
    const int64_t end = position_ + Remaining();
    int64_t at = position_;
    for (; canShare && at < end && !stop; at += kFlushStep)
        std::ignore = sync_file_range(descriptor_, at, kFlushStep,
                                      SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER);
    if (at < end)
        copyMethod_ = CopyMethod::Copy;
}

// Clones a good piece ahead of what was asked for, and then counts off what has been cloned. Returns the bytes moved.
int64_t BinaryStream::CloneFrom(BinaryStream& source, int64_t count, int64_t more) {
    if (source.clonedInto_.Held().Get() != this)
        source.cloned_ = 0;
    if (source.cloned_ < count && source.copyMethod_ == CopyMethod::Clone &&
        !(MayClone() && CloneAhead(source, std::min(count + more, std::max(count, cloneSize)))))
        source.copyMethod_ = MethodBesidesClone();
    const int64_t moved = std::min(count, source.cloned_);
    if (moved > 0) {
        source.cloned_ -= moved;
        Advance(moved);
        source.Advance(moved);
    }
    return moved;
}

// A reflink takes whole blocks of the file system only, so a series of odd part sizes is copied. False if the system
// declines.
bool BinaryStream::CloneAhead(BinaryStream& source, int64_t count) {
    file_clone_range range{};
    range.src_fd = source.descriptor_;
    range.src_offset = static_cast<uint64_t>(source.position_);
    range.src_length = static_cast<uint64_t>(count);
    range.dest_offset = static_cast<uint64_t>(position_);
    const auto begin = std::chrono::steady_clock::now();
    if (ioctl(descriptor_, FICLONERANGE, &range) != 0)
        return false;
    AdaptCloneSize(count, std::chrono::steady_clock::now() - begin);
    source.cloned_ = count;
    source.clonedInto_ = Self(this);
    return true;
}

// Looks at the far end of a window at a time: the system reads ahead, and others may have read the beginning. The look
// begins to read what is not there, so there are few of them. A server, and any other file system that can't tell,
// counts as memory.
bool BinaryStream::IsInMemory(int64_t available) {
    if (position_ < lookedUntil_)
        return inMemory_;
    char byte = 0;
    const iovec place{&byte, 1};
    lookedUntil_ = position_ + std::min(available, kLookAhead);
    inMemory_ = preadv2(descriptor_, &place, 1, lookedUntil_ - 1, RWF_NOWAIT) >= 0 || errno != EAGAIN;
    readsFromDisk_ = readsFromDisk_ || !inMemory_;
    return inMemory_;
}

// copy_file_range: one copy in place of two, and a server may move the bytes without sending them here. Returns the
// bytes moved. The rest is left to CopyFrom, which also finds out whether reading or writing failed.
int64_t BinaryStream::KernelCopyFrom(BinaryStream& source, int64_t count) {
    int64_t moved = 0;
    while (moved < count && source.copyMethod_ == CopyMethod::KernelCopy) {
        const int64_t step = RetryOnEINTR([&] {
            return copy_file_range(source.descriptor_, nullptr, descriptor_, nullptr,
                                   static_cast<std::size_t>(count - moved), 0);
        });
        if (step <= 0) {
            source.copyMethod_ = CopyMethod::Copy;
            break;
        }
        moved += step;
        position_ += step;
        source.position_ += step;
    }
    return moved;
}

void BinaryStream::CopyFrom(BinaryStream& source, int64_t count) {
    char* const buffer = BytesToCopyThrough();
    while (count > 0) {
        const int64_t size = source.ReadInto(buffer, std::min(count, kCopyBuffer));
        if (size == 0)
            return;
        count -= size;
        if (!WriteAll(buffer, size)) {
            source.SkipTo(source.position_ + count);
            return;
        }
    }
}

// ext4 has much less to do for each block that is allocated beforehand in a large piece, and does not allocate while
// another thread writes out the file's earlier blocks. Failure is ignored: a full disk shows when the bytes are
// written.
void BinaryStream::Preallocate(int64_t count) {
    if (position_ < preallocatedUntil_ || count < kMinPreallocation)
        return;
    count = std::min(count, kPreallocation);
    preallocatedUntil_ = position_ + count;
    std::ignore = fallocate(descriptor_, FALLOC_FL_KEEP_SIZE, position_, count);
}

// Blocks that were not written to after all, as after a stop, would stay with the file.
void BinaryStream::ReleasePreallocation() {
    struct stat status = {};
    if (position_ < preallocatedUntil_ && fstat(descriptor_, &status) == 0 && status.st_size < preallocatedUntil_)
        std::ignore = ftruncate(descriptor_, status.st_size);
}

void BinaryStream::BeginToWriteOut() const {
    std::ignore = sync_file_range(descriptor_, 0, 0, SYNC_FILE_RANGE_WRITE);
}

bool BinaryStream::AtEOF() {
    return Remaining() == 0;
}

void BinaryStream::Close() {
    if (descriptor_ >= 0) {
        ReleasePreallocation();
        if (!writeback_.IsNil())
            KeepFirstFailure(writeback_->Close(descriptor_, position_));
        if (::close(descriptor_) != 0) // a server may tell only now
            KeepFirstFailure(errno);
    }
    descriptor_ = -1;
}

std::string BinaryStream::ReadPString() {
    const std::string length = Read(1);
    return length.empty() ? std::string() : Read(static_cast<unsigned char>(length[0]));
}

void BinaryStream::WritePString(std::string_view text) {
    text = text.substr(0, kLongestPString);
    Write(std::string(1, static_cast<char>(text.size())).append(text));
}

bool BinaryStream::ReadBoolean() {
    const std::string byte = Read(1);
    return !byte.empty() && byte[0] != 0;
}

void BinaryStream::WriteBoolean(bool value) {
    Write(std::string(1, value ? '\1' : '\0'));
}

// Bytes between the position and the end of the file as it is now, which may still grow. What has been cloned counts as
// read even if the file has shrunk or failed since: the target holds it, and the next bytes have to come behind it. A
// failure ends the stream for good, as that of a read does: else a later part would hold the bytes of an earlier one.
int64_t BinaryStream::Remaining() {
    struct stat status = {};
    if (descriptor_ < 0)
        return 0;
    if (!ended_ && fstat(descriptor_, &status) != 0) {
        KeepFirstFailure(errno);
        ended_ = true;
    }
    return ended_ ? cloned_ : std::max(cloned_, status.st_size - position_);
}

// Reads until the buffer is full, the file ends or a read fails; the last two end the stream for good.
int64_t BinaryStream::ReadInto(char* buffer, int64_t count) {
    int64_t done = 0;
    while (done < count && !ended_) {
        const int64_t step =
            RetryOnEINTR([&] { return ::read(descriptor_, buffer + done, static_cast<std::size_t>(count - done)); });
        ended_ = step <= 0;
        if (step < 0)
            KeepFirstFailure(errno);
        done += std::max<int64_t>(step, 0);
    }
    position_ += done;
    cloned_ = 0;
    return done;
}

bool BinaryStream::WriteAll(const char* data, int64_t count) {
    while (count > 0) {
        const int64_t step = RetryOnEINTR([&] { return ::write(descriptor_, data, static_cast<std::size_t>(count)); });
        if (step <= 0) {
            KeepFirstFailure(step < 0 ? errno : ENOSPC);
            return false;
        }
        data += step;
        count -= step;
        position_ += step;
    }
    return true;
}

void BinaryStream::Advance(int64_t count) {
    SkipTo(position_ + count);
}

void BinaryStream::KeepFirstFailure(int error) {
    if (failure_ == 0)
        failure_ = error;
}

void BinaryStream::SkipTo(int64_t position) {
    position_ = position;
    ended_ = ended_ || lseek(descriptor_, position, SEEK_SET) < 0;
}
