#include "tests/support/Bytes.h"

#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>

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
    std::mt19937_64 next(size);
    std::string bytes;
    while (bytes.size() < size) {
        const auto number = next();
        bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
    }
    bytes.resize(size);
    return bytes;
}
