#pragma once

#include "framework/base/Ref.h"

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
