#include "framework/files/BinaryStream.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <vector>

namespace {

// Large enough to make system calls cheap, small enough to stay in the processor's cache.
constexpr int64_t kCopyBuffer = 128 * 1024;
constexpr std::size_t kLongestPString = 255;

std::vector<char>& CopyBuffer() {
    thread_local std::vector<char> buffer(kCopyBuffer);
    return buffer;
}

template <class Call>
int64_t Uninterrupted(Call&& call) {
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

void BinaryStream::WriteFrom(BinaryStream& source, int32_t count) {
    const int64_t block = std::clamp<int64_t>(count, 0, source.Remaining());
    const int64_t shared = ShareFrom(source, block);
    if (shared < block)
        CopyFrom(source, block - shared);
}

// Lets the kernel move the bytes. Gives the number moved; what it declines is left to CopyFrom, which also finds out
// whether reading or writing was the trouble.
int64_t BinaryStream::ShareFrom(BinaryStream& source, int64_t count) {
    int64_t moved = 0;
    while (moved < count && source.canShare_) {
        const int64_t step = Uninterrupted([&] {
            return copy_file_range(source.descriptor_, nullptr, descriptor_, nullptr,
                                   static_cast<std::size_t>(count - moved), 0);
        });
        if (step <= 0) {
            source.canShare_ = step == 0 || errno == ENOSPC || errno == EDQUOT || errno == EFBIG;
            break;
        }
        moved += step;
        position_ += step;
        source.position_ += step;
    }
    return moved;
}

void BinaryStream::CopyFrom(BinaryStream& source, int64_t count) {
    std::vector<char>& buffer = CopyBuffer();
    while (count > 0) {
        const int64_t size = source.ReadInto(buffer.data(), std::min(count, kCopyBuffer));
        if (size == 0)
            return;
        count -= size;
        if (!WriteAll(buffer.data(), size)) {
            source.SkipTo(source.position_ + count);
            return;
        }
    }
}

bool BinaryStream::AtEOF() {
    return Remaining() == 0;
}

void BinaryStream::Close() {
    if (descriptor_ >= 0)
        ::close(descriptor_);
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

// Bytes between the position and the end of the file as it is now, which may still grow.
int64_t BinaryStream::Remaining() {
    struct stat status = {};
    if (ended_ || descriptor_ < 0 || fstat(descriptor_, &status) != 0)
        return 0;
    return std::max<int64_t>(0, status.st_size - position_);
}

// Reads until the buffer is full, the file ends or a read fails; the last two end the stream for good.
int64_t BinaryStream::ReadInto(char* buffer, int64_t count) {
    int64_t done = 0;
    while (done < count && !ended_) {
        const int64_t step = Uninterrupted(
            [&] { return ::read(descriptor_, buffer + done, static_cast<std::size_t>(count - done)); });
        ended_ = step <= 0;
        done += std::max<int64_t>(step, 0);
    }
    position_ += done;
    return done;
}

bool BinaryStream::WriteAll(const char* data, int64_t count) {
    while (count > 0) {
        const int64_t step =
            Uninterrupted([&] { return ::write(descriptor_, data, static_cast<std::size_t>(count)); });
        if (step <= 0)
            return false;
        data += step;
        count -= step;
        position_ += step;
    }
    return true;
}

void BinaryStream::SkipTo(int64_t position) {
    position_ = position;
    ended_ = ended_ || lseek(descriptor_, position, SEEK_SET) < 0;
}
