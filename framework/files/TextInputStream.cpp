#include "framework/files/TextInputStream.h"

#include <unistd.h>

TextInputStream::TextInputStream(int descriptor) : file_(fdopen(descriptor, "rb")) {
    if (file_ == nullptr)
        ::close(descriptor);
}

std::string TextInputStream::ReadLine() {
    std::string line;
    for (int byte = Next(); byte != EOF && byte != '\n'; byte = Next()) {
        if (byte == '\r') {
            const int following = Next();
            if (following != '\n' && following != EOF)
                std::ungetc(following, file_);
            break;
        }
        line.push_back(static_cast<char>(byte));
    }
    return line;
}

bool TextInputStream::AtEOF() {
    const int byte = Next();
    return byte == EOF || std::ungetc(byte, file_) == EOF;
}

void TextInputStream::Close() {
    if (file_ != nullptr)
        std::fclose(file_);
    file_ = nullptr;
}

int TextInputStream::Next() {
    return file_ == nullptr ? EOF : getc_unlocked(file_);
}
