#pragma once

#include "framework/base/Ref.h"

#include <cstddef>
#include <string>

// A text file read line by line, from its beginning. Used by one thread at a time; closes itself when the last
// reference goes.
class TextInputStream : public Object {
public:
    // Takes over an open descriptor.
    explicit TextInputStream(int descriptor) : descriptor_(descriptor) {}
    ~TextInputStream() override { Close(); }

    // The next line without its end: a carriage return, a line feed, or the pair. Bytes that are not valid UTF-8 are
    // kept as they are.
    std::string ReadLine();
    bool AtEOF(); // what can't be read counts as the end
    void Close();

private:
    // Reads the next block if need be.
    bool HasMore();

    int descriptor_;
    std::string block_;
    std::size_t next_ = 0; // in the block
};

// A text file open for writing. The program makes files by it and writes nothing. Closes itself when the last reference
// goes.
class TextOutputStream : public Object {
public:
    // Takes over an open descriptor.
    explicit TextOutputStream(int descriptor) : descriptor_(descriptor) {}
    ~TextOutputStream() override { Close(); }

    void Close();

private:
    int descriptor_;
};
