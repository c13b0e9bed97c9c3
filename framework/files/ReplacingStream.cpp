#include "framework/files/ReplacingStream.h"

#include <unistd.h>

#include <cstdio>
#include <utility>

ReplacingStream::ReplacingStream(int descriptor, std::string written, std::string place)
    : BinaryStream(descriptor), written_(std::move(written)), place_(std::move(place)) {}

ReplacingStream::~ReplacingStream() {
    if (!written_.empty())
        unlink(written_.c_str());
}

// Left alone, some file systems write the bytes half a minute after the name: a power cut in between empties the file.
// The disk is not waited for, though: the program closes such a file as it ends, when a worker may keep the disk busy
// for long.
void ReplacingStream::Close() {
    BeginToWriteOut();
    BinaryStream::Close();
    if (Failure() == 0 && std::rename(written_.c_str(), place_.c_str()) == 0)
        written_.clear();
}
