#pragma once

#include "framework/base/Ref.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>

// An open file, read or written from its beginning to its end. Used by one thread at a time; closes itself when the
// last reference goes. Failures are not reported: what can't be read counts as the end of the file, what can't be
// written is missing from it.
class BinaryStream : public Object {
public:
    // Takes over an open descriptor of a plain file.
    explicit BinaryStream(int descriptor) : descriptor_(descriptor) {}
    ~BinaryStream() override { BinaryStream::Close(); }

    // Up to `count` bytes, fewer before the end, none behind it or for a count below 1.
    std::string Read(int32_t count);
    // Writes all bytes at the current position.
    void Write(std::string_view data);

    // Moves up to `count` bytes of `source` here: what Write(source.Read(count)) does, but without holding the block in
    // memory, and without copying it at all where the file system can share blocks between files. A write that fails
    // leaves the source advanced by the block all the same. `more` says how many further bytes will follow by such
    // calls: larger pieces are cheaper to share, and to find room for.
    void WriteFrom(BinaryStream& source, int32_t count, int64_t more = 0);

    // To be called before WriteFrom takes this as its source. Sharing blocks wants them on the disk: what is not there
    // yet is written out, in small steps until `stop` is set. (Left to the sharing it would be one step, on btrfs for
    // the whole file at the first piece.) After a stop the file is copied.
    void PrepareToClone(const std::atomic<bool>& stop);

    // True when all bytes have been read; for an empty file at once. (Plain EOF is a macro of the C library.)
    bool AtEOF();
    // A second call is harmless. A closed stream is at its end and swallows what is written.
    virtual void Close();

    std::string ReadPString();                // one length byte, then that many bytes
    void WritePString(std::string_view text); // cut at 255 bytes
    bool ReadBoolean();                       // one byte; false behind the end
    void WriteBoolean(bool value);

protected:
    // Whether something that was written is missing from the file.
    bool HasFailed() const { return failed_; }
    // Has the system begin now to put on the disk what was written. Does not wait for it.
    void BeginToWriteOut() const;

private:
    // How bytes get from a stream to another. Sharing is tried first and, once the system declines it, left for the way
    // that suits the target; delegating is left for copying in the same manner.
    enum class CopyMethod { Clone, KernelCopy, Copy, CopyPreallocated };

    static CopyMethod CopyMethodFor(int descriptor);
    int64_t Remaining();
    int64_t CloneFrom(BinaryStream& source, int64_t count, int64_t more);
    bool CloneAhead(BinaryStream& source, int64_t count);
    int64_t KernelCopyFrom(BinaryStream& source, int64_t count);
    void CopyFrom(BinaryStream& source, int64_t count);
    void Preallocate(int64_t count);
    void ReleasePreallocation();
    int64_t ReadInto(char* buffer, int64_t count);
    bool WriteAll(const char* data, int64_t count);
    void Advance(int64_t count);
    void SkipTo(int64_t position);

    int descriptor_;
    int64_t position_ = 0;             // bytes read or written so far
    int64_t preallocatedUntil_ = 0;    // of a target: the position up to which the file system has been asked for room
    int64_t cloned_ = 0;               // of a source: bytes behind the position that the file written to shares already
    WeakRef<BinaryStream> clonedInto_; // of a source: that file
    bool ended_ = false;               // a read failed or came back empty
    bool failed_ = false;              // a write did, or the closing of what was written
    CopyMethod copyMethod_ = CopyMethod::Clone; // of a source
};
