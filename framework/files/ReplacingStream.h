#pragma once

#include "framework/files/BinaryStream.h"

#include <string>

// A file that is written beside the one whose place it is to take. Close puts it there, in one step: at every moment
// either the older file is there or the new one, whole. So it is after a power cut, unless that comes while the disk is
// still busy with what was written earlier. One that a write failed on goes instead, and so does one that is never
// closed.
class ReplacingStream : public BinaryStream {
public:
    // Takes over an open descriptor of the file `written`.
    ReplacingStream(int descriptor, std::string written, std::string place);
    ~ReplacingStream() override;

    void Close() override;

private:
    std::string written_; // empty once nothing is left to do
    const std::string place_;
};
