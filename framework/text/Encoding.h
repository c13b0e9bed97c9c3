#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Published encodings of bytes. All are pure and safe on every thread.

// The 16 bytes of the MD5 digest.
std::string MD5(std::string_view bytes);

// Base64 in lines of `lineWrap` characters with CR LF between them; 0 for one line.
std::string EncodeBase64(std::string_view bytes, int32_t lineWrap);
