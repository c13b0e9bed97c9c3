#include "tests/support/Bytes.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>
#include <vector>

std::string ReadFile(const std::filesystem::path& file) {
    std::ostringstream bytes;
    bytes << std::ifstream(file, std::ios::binary).rdbuf();
    return bytes.str();
}

void WriteFile(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream stream(file, std::ios::binary);
    stream << bytes;
    if (!stream.flush())
        throw std::runtime_error("could not write " + file.string());
}

std::string Pattern(std::size_t size) {
    std::vector<uint64_t> numbers(size / sizeof(uint64_t) + 1);
    std::generate(numbers.begin(), numbers.end(), std::mt19937_64(size));
    return {reinterpret_cast<const char*>(numbers.data()), size};
}
