#include "framework/files/TextOutputStream.h"

#include <unistd.h>

#include <utility>

void TextOutputStream::Close() {
    if (descriptor_ >= 0)
        ::close(std::exchange(descriptor_, -1));
}
