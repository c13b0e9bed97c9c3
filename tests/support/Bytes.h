#pragma once

#include <filesystem>
#include <string>

// The bytes of a file, empty if there is none.
std::string ReadFile(const std::filesystem::path& file);
void WriteFile(const std::filesystem::path& file, const std::string& bytes);
// Bytes in which no two places look alike. Another size gives others.
std::string Pattern(std::size_t size);
