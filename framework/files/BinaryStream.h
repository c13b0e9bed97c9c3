#pragma once

#include "framework/base/Ref.h"
#include "framework/files/Writeback.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// An open file with one position, read or written from its beginning to its end.
//
// No call reports a failure. A read that fails is the end of the file. What can't be written is missing from it. The
// first failure is kept. Used by one thread at a time. Closes itself when the last reference goes.
class BinaryStream : public Object {
public:
    // Takes over an open descriptor of a plain file.
    explicit BinaryStream(int descriptor) : descriptor_(descriptor) {}
    ~BinaryStream() override { BinaryStream::Close(); }

    // Up to `count` bytes, fewer before the end, none behind it or for a count below 1.
    std::string Read(int32_t count);
    // Writes all bytes at the current position.
    void Write(std::string_view data);

    // Moves up to `count` bytes from `source` to here, as Write(source.Read(count)) would, but holds no block in
    // memory. Where the file system has reflinks no byte is copied. A write that fails advances the source by the block
    // all the same. `more` says how many bytes will follow by further calls: cloning and preallocation are cheaper in
    // large pieces.
    void WriteFrom(BinaryStream& source, int32_t count, int64_t more = 0);

    // Of a target: false where its file system is known to have no reflinks.
    bool MayClone();
    // Called on a source before its first WriteFrom into a target that may clone. A reflink needs the source's blocks
    // on the disk: this writes out what is not there yet, in small steps, until `stop` is set. After a stop the file is
    // copied and not cloned. (Left to the reflink it would be one step, on btrfs for the whole file at once.) `shift`
    // is the distance between the bytes' places in source and target; where it is not a multiple of the file system's
    // blocks, nothing can be cloned and nothing is written out.
    void PrepareToClone(int64_t shift, const std::atomic<bool>& stop);
    // Called on a target before its first WriteFrom: what that moves is brought to a slow device at once, and a file of
    // some size is there when Close returns.
    void SetWriteback(const Ref<Writeback>& writeback) { writeback_ = writeback; }
    // Whether WriteFrom has found this source not in memory, or parts of it.
    bool ReadsFromDisk() const { return readsFromDisk_; }
    // Bytes read or written so far.
    int64_t Position() const { return position_; }

    // True when all bytes have been read; for an empty file at once. (Plain EOF is a macro of the C library.)
    bool AtEOF();
    // A second call is harmless. A closed stream is at its end and swallows what is written.
    virtual void Close();
    // The error number of the first read, write or close that failed; 0 for none. After it the file, or what was made
    // of it, is not whole.
    int Failure() const { return failure_; }

    std::string ReadPString();                // one length byte, then that many bytes
    void WritePString(std::string_view text); // cut at 255 bytes
    bool ReadBoolean();                       // one byte; false behind the end
    void WriteBoolean(bool value);

protected:
    // Has the system begin now to put on the disk what was written. Does not wait for it.
    void BeginToWriteOut() const;

private:
    // How bytes get from one stream to another. Each source begins with Clone (FICLONERANGE, a reflink). When the
    // system declines, the method that suits the target follows. KernelCopy (copy_file_range) falls back to Copy.
    enum class CopyMethod { Clone, KernelCopy, Copy };

    // Of a target.
    unsigned long FileSystemType();
    CopyMethod MethodBesidesClone();

    int64_t Remaining();
    int64_t CloneFrom(BinaryStream& source, int64_t count, int64_t more);
    bool CloneAhead(BinaryStream& source, int64_t count);
    bool IsInMemory(int64_t available);
    int64_t KernelCopyFrom(BinaryStream& source, int64_t count);
    void CopyFrom(BinaryStream& source, int64_t count);
    void Preallocate(int64_t count);
    void ReleasePreallocation();
    int64_t ReadInto(char* buffer, int64_t count);
    bool WriteAll(const char* data, int64_t count);
    void Advance(int64_t count);
    void SkipTo(int64_t position);
    void KeepFirstFailure(int error);

    int descriptor_;
    int64_t position_ = 0; // bytes read or written so far
    std::optional<unsigned long> fileSystemType_;
    Ref<Writeback> writeback_;         // of a target; may be nil
    int64_t preallocatedUntil_ = 0;    // of a target: the position up to which its blocks are allocated
    int64_t cloned_ = 0;               // of a source: bytes behind the position that the target has cloned already
    WeakRef<BinaryStream> clonedInto_; // of a source: that target
    bool ended_ = false;               // a read failed or came back empty
    int failure_ = 0;
    CopyMethod copyMethod_ = CopyMethod::Clone; // of a source
    int64_t lookedUntil_ = 0;                   // of a source: up to there inMemory_ holds
    bool inMemory_ = true;
    bool readsFromDisk_ = false;
};
